import QtQuick
import Tessellar

// Turns what is to be read the right way round again, where the grid that it lies in is mirrored.
Scale {
    required property Item target

    origin.x: target.width / 2
    xScale: Theme.isMirrored ? -1 : 1
}
