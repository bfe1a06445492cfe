import QtQuick
import Tessellar

// Text of sheets that says something in sentences.
Text {
    color: Theme.textDim
    horizontalAlignment: Text.AlignLeft
    wrapMode: Text.Wrap
    textFormat: Text.PlainText
    font.pixelSize: Theme.textFont
    visible: text !== ""
}
