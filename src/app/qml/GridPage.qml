import QtQuick
import Tessellar

// The tiles of one page in their cells.
Item {
    id: page

    required property LauncherController launcher
    required property PageModel tiles
    required property int index
    required property bool isInFolder
    required property bool canLift
    required property gridMetrics metrics
    readonly property int columns: metrics.columns
    readonly property int rows: metrics.rows
    readonly property int leftMargin: metrics.left
    readonly property int topMargin: metrics.top
    readonly property int cellWidth: metrics.cellWidth
    readonly property int cellHeight: metrics.cellHeight
    readonly property int iconSide: metrics.iconSide
    readonly property int labelPixels: metrics.labelPixels
    // Where the tiles make room for others that are carried over them; empty when each is in its own slot.
    property var places: canLift && launcher.drag.revision > 0 ? launcher.drag.slotsOf(isInFolder, index) : []

    function tileRect(tileId) {
        for (let i = 0; i < repeater.count; ++i) {
            const tile = repeater.itemAt(i);
            if (tile && tile.tileId === tileId && !tile.isVacant)
                return Qt.rect(tile.x + (tile.width - iconSide) / 2, tile.y + tile.iconTop, iconSide, iconSide);
        }
        return Qt.rect(0, 0, 0, 0);
    }

    // Moves the tiles on their way to where they make room; all the way without a time.
    function slide(seconds) {
        const share = seconds < 0 ? 1 : Math.min(1, seconds * 16);
        for (let i = 0; i < repeater.count; ++i) {
            const tile = repeater.itemAt(i);
            if (!tile)
                continue;
            const place = i < places.length && places[i] >= 0 ? places[i] : i;
            const across = (place % columns - i % columns) * cellWidth;
            const down = (Math.floor(place / columns) - Math.floor(i / columns)) * cellHeight;
            tile.shiftX += (across - tile.shiftX) * share;
            tile.shiftY += (down - tile.shiftY) * share;
            tile.isPushedOff = place >= columns * rows;
        }
    }

    readonly property rect caret: canLift && launcher.drag.revision > 0 && launcher.drag.isLifted
                                  ? launcher.drag.caretOf(isInFolder, index) : Qt.rect(0, 0, 0, 0)

    onPlacesChanged: if (places.length === 0) slide(-1)

    Repeater {
        id: repeater

        model: page.tiles

        Tile {
            x: page.leftMargin + index % page.columns * page.cellWidth + shiftX
            y: page.topMargin + Math.floor(index / page.columns) * page.cellHeight + shiftY
            width: page.cellWidth
            height: page.cellHeight
            launcher: page.launcher
            iconSide: page.iconSide
            labelPixels: page.labelPixels
            canLift: page.canLift
        }
    }

    Rectangle {
        x: page.caret.x
        y: page.caret.y
        width: page.caret.width
        height: page.caret.height
        visible: width > 0
        radius: width / 2
        color: Theme.caret
    }

    Loader {
        active: page.places.length > 0
        sourceComponent: FrameAnimation {
            running: true
            onTriggered: page.slide(frameTime)
        }
    }
}
