import QtQuick
import Tessellar

// A tooltip for the tile under the pointer.
Rectangle {
    id: tip

    objectName: "tip"

    required property string text

    width: words.width + 24
    height: words.height + 16
    radius: Theme.controlRadius
    color: Theme.panel
    border.color: Theme.panelOutline

    Text {
        id: words

        anchors.centerIn: parent
        width: Math.min(implicitWidth, 260, tip.Window.width - 32)
        text: tip.text
        color: Theme.textSoft
        font.pixelSize: Theme.noteFont
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
    }
}
