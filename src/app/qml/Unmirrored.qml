import QtQuick
import Tessellar

// Flips contents back if the grid that contains them is mirrored.
Scale {
    required property Item target

    origin.x: target.width / 2
    xScale: Theme.isMirrored ? -1 : 1
}
