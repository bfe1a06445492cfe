import QtQuick
import Tessellar

// A short message that disappears by itself. Keeps its text while fading out.
Rectangle {
    id: notice

    required property string text
    property string shown

    onTextChanged: if (text !== "") shown = text

    width: words.width + 44
    height: words.height + 24
    radius: Math.min(height / 2, 22)
    color: Theme.panel
    border.color: Theme.panelOutline
    opacity: text !== "" ? 1 : 0
    visible: opacity > 0

    Accessible.role: Accessible.AlertMessage
    Accessible.name: shown

    Behavior on opacity {
        NumberAnimation { duration: Theme.fadeTime }
    }

    Text {
        id: words

        anchors.centerIn: parent
        width: Math.min(implicitWidth, 560, notice.parent.width - 60)
        text: notice.shown
        color: Theme.text
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
        textFormat: Text.PlainText
        font.pixelSize: Theme.textFont
    }
}
