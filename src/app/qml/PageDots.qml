import QtQuick

// One dot for each page; the brightest is the one that is shown.
Row {
    id: dots

    required property int count
    required property real position
    // Many pages have small dots.
    readonly property int pitch: count > 24 ? 12 : 22

    signal chosen(int page)

    visible: count > 1

    Repeater {
        model: dots.count

        Item {
            id: dot

            required property int index
            readonly property real nearness: Math.max(0, 1 - Math.abs(index - dots.position))

            width: dots.pitch
            height: 24

            Accessible.role: Accessible.PageTab
            Accessible.name: qsTr("Page %1").arg(index + 1)
            Accessible.onPressAction: dots.chosen(index)

            Rectangle {
                anchors.centerIn: parent
                width: Math.min(8, dots.pitch - 5)
                height: width
                radius: width / 2
                color: "white"
                opacity: 0.28 + 0.67 * dot.nearness + (hover.hovered ? 0.2 : 0)
            }

            HoverHandler {
                id: hover
            }

            TapHandler {
                gesturePolicy: TapHandler.ReleaseWithinBounds
                onTapped: dots.chosen(dot.index)
            }
        }
    }
}
