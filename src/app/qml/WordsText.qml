import QtQuick
import Tessellar

// Body text for sheets.
Text {
    color: Theme.textDim
    horizontalAlignment: Text.AlignLeft
    wrapMode: Text.Wrap
    textFormat: Text.PlainText
    font.pixelSize: Theme.textFont
    visible: text !== ""
}
