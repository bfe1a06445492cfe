import QtQuick
import Tessellar

// A small drawn sign: "+", "−", "…", "search", or an arrowhead "up", "down", "left", "right".
Item {
    id: sign

    required property string kind
    property color color: Theme.text
    // Bars as centre, length and angle, in a square of 14.
    readonly property var bars: ({
        "+": [[7, 7, 11, 0], [7, 7, 11, 90]],
        "−": [[7, 7, 11, 0]],
        "search": [[11.5, 11.5, 6, 45]],
        "up": [[5.2, 7, 6, -45], [8.8, 7, 6, 45]],
        "down": [[5.2, 7, 6, 45], [8.8, 7, 6, -45]],
        "left": [[7, 5.2, 6, -45], [7, 8.8, 6, 45]],
        "right": [[7, 5.2, 6, 45], [7, 8.8, 6, -45]]
    })[kind] ?? []

    implicitWidth: 14
    implicitHeight: 14

    Repeater {
        model: sign.bars.length

        Rectangle {
            required property int index
            readonly property var bar: sign.bars[index]

            x: bar[0] - width / 2
            y: bar[1] - height / 2
            width: bar[2]
            height: bar[3] % 90 === 0 ? 2 : 1.7
            radius: height / 2
            rotation: bar[3]
            antialiasing: true
            color: sign.color
        }
    }

    Rectangle {
        visible: sign.kind === "search"
        width: 10
        height: 10
        radius: width / 2
        color: Theme.clear
        border.width: 2
        border.color: sign.color
    }

    Row {
        anchors.centerIn: parent
        visible: sign.kind === "…"
        spacing: 3

        Repeater {
            model: 3

            Rectangle {
                width: 3
                height: 3
                radius: width / 2
                color: sign.color
            }
        }
    }
}
