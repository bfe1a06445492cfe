import QtQuick
import Tessellar

// One dot for each page, the current one brightest. If there are very many pages, only those around it.
Row {
    id: dots

    required property int count
    required property real position
    // Smaller dots for many pages.
    readonly property int pitch: count > 24 ? 12 : 22
    property real room: 1000
    readonly property int limit: 41
    readonly property int most: Math.max(5, Math.min(limit, Math.floor(room / pitch) - 1)) | 1
    readonly property int first: Math.max(0, Math.min(count - most, Math.round(position) - (most - 1) / 2))
    readonly property int shown: Math.min(count, most)
    // The dots created so far. Surplus dots are kept, because a search changes the number of pages with every
    // letter.
    property int kept: 0
    readonly property int hoveredPage: hover.hovered ? pageAt(hover.point.position) : -1

    signal chosen(int page)

    function pageAt(point) {
        return first + Math.max(0, Math.min(shown - 1, Math.floor(point.x / pitch)));
    }

    onShownChanged: kept = Math.max(kept, shown)
    Component.onCompleted: kept = Math.max(kept, shown)
    visible: count > 1
    transformOrigin: Item.Bottom

    HoverHandler {
        id: hover
    }

    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: eventPoint => dots.chosen(dots.pageAt(dots.mapFromItem(null, eventPoint.scenePosition)))
    }

    Repeater {
        model: dots.kept

        Item {
            id: dot

            required property int index
            readonly property int page: dots.first + index
            readonly property real nearness: Math.max(0, 1 - Math.abs(page - dots.position))

            visible: index < dots.shown
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
                opacity: 0.28 + 0.67 * dot.nearness + (dot.page === dots.hoveredPage ? 0.2 : 0)
            }
        }
    }
}
