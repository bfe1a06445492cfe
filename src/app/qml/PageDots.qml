import QtQuick
import Tessellar

// One dot for each page; the brightest is the one that is shown. Of very many pages, those around it.
Row {
    id: dots

    required property int count
    required property real position
    // Many pages have small dots.
    readonly property int pitch: count > 24 ? 12 : 22
    property real room: 1000
    readonly property int most: Math.max(5, Math.min(41, Math.floor(room / pitch) - 1)) | 1
    readonly property int first: Math.max(0, Math.min(count - most, Math.round(position) - (most - 1) / 2))

    signal chosen(int page)

    visible: count > 1
    transformOrigin: Item.Bottom

    Repeater {
        model: Math.min(dots.count, dots.most)

        Item {
            id: dot

            required property int index
            readonly property int page: dots.first + index
            readonly property real nearness: Math.max(0, 1 - Math.abs(page - dots.position))

            width: dots.pitch
            height: 24

            Accessible.role: Accessible.PageTab
            Accessible.name: qsTr("Page %1").arg(page + 1)
            Accessible.onPressAction: dots.chosen(page)

            Rectangle {
                anchors.centerIn: parent
                width: Math.min(8, dots.pitch - 5)
                height: width
                radius: width / 2
                color: Theme.backdropText
                opacity: 0.28 + 0.67 * dot.nearness + (hover.hovered ? 0.2 : 0)
            }

            HoverHandler {
                id: hover
            }

            TapHandler {
                gesturePolicy: TapHandler.ReleaseWithinBounds
                onTapped: dots.chosen(dot.page)
            }
        }
    }
}
