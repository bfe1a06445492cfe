import QtQuick

// A few words about the tile under the pointer.
Rectangle {
    id: tip

    required property string text

    width: words.width + 24
    height: words.height + 16
    radius: 10
    color: "#f0242732"
    border.color: "#33ffffff"

    Text {
        id: words

        anchors.centerIn: parent
        width: Math.min(implicitWidth, 260)
        text: tip.text
        color: "#e6ffffff"
        font.pixelSize: 12
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
    }
}
