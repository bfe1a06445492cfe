import QtQuick
import Tessellar

// The tiles of one page in their cells.
Item {
    id: page

    required property LauncherController launcher
    required property Item stage
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
    // The slots that tiles move to, to make room for a drag; empty if each is in its own.
    property var places: canLift && launcher.drag.revision > 0 ? launcher.drag.placesOf(isInFolder, index) : []

    function tileRect(tileId) {
        for (let i = 0; i < repeater.count; ++i) {
            const tile = repeater.itemAt(i);
            if (tile && tile.tileId === tileId && !tile.isVacant)
                return Qt.rect(tile.x + (tile.width - iconSide) / 2, tile.y + tile.iconTop, iconSide, iconSide);
        }
        return Qt.rect(0, 0, 0, 0);
    }

    // True while tiles are moving to their slots.
    property bool isGliding: false

    function offsetOf(index) {
        const place = index < places.length && places[index] >= 0 ? places[index] : index;
        return Qt.point((place % columns - index % columns) * cellWidth,
                        (Math.floor(place / columns) - Math.floor(index / columns)) * cellHeight);
    }

    // Advances the animation; completes it if `seconds` is negative.
    function slide(seconds) {
        const share = seconds < 0 || Theme.reducesMotion ? 1 : 1 - Math.exp(-seconds * Theme.glide);
        let isMoving = false;
        for (let i = 0; i < repeater.count; ++i) {
            const tile = repeater.itemAt(i);
            if (!tile)
                continue;
            const to = offsetOf(i);
            const across = to.x - tile.shiftX;
            const down = to.y - tile.shiftY;
            const isThere = Math.abs(across) + Math.abs(down) < 0.5;
            tile.shiftX = isThere ? to.x : tile.shiftX + across * share;
            tile.shiftY = isThere ? to.y : tile.shiftY + down * share;
            tile.isPushedOff = i < places.length && places[i] >= columns * rows;
            isMoving = isMoving || !isThere;
        }
        isGliding = isMoving;
    }

    // Records where each tile is shown, by identifier, in the strip's coordinates.
    function remember(positions) {
        for (let i = 0; i < repeater.count; ++i) {
            const tile = repeater.itemAt(i);
            if (tile && !tile.isVacant)
                positions[tile.tileId] = Qt.point(index * width + tile.x, tile.y);
        }
    }

    // Animates tiles from their former positions; new ones fade in.
    function begin(positions) {
        for (let i = 0; i < repeater.count; ++i) {
            const tile = repeater.itemAt(i);
            if (!tile || tile.isVacant)
                continue;
            const from = positions[tile.tileId];
            const x = leftMargin + i % columns * cellWidth;
            const y = topMargin + Math.floor(i / columns) * cellHeight;
            const isMoved = from !== undefined && Math.abs(from.x - index * width - x) + Math.abs(from.y - y) > 1;
            tile.shiftX = isMoved && !Theme.reducesMotion ? from.x - index * width - x : 0;
            tile.shiftY = isMoved && !Theme.reducesMotion ? from.y - y : 0;
            isGliding = isGliding || isMoved;
            if (from === undefined || (isMoved && Theme.reducesMotion))
                tile.appear();
        }
    }

    // Animates a dropped tile from a point of this page to its slot.
    function flyHome(tileId, point) {
        for (let i = 0; i < repeater.count; ++i) {
            const tile = repeater.itemAt(i);
            if (!tile || tile.tileId !== tileId || tile.isVacant)
                continue;
            tile.shiftX = point.x - (tile.width - iconSide) / 2 - (leftMargin + i % columns * cellWidth);
            tile.shiftY = point.y - tile.iconTop - (topMargin + Math.floor(i / columns) * cellHeight);
            isGliding = true;
        }
    }

    // The tiles that intersect a rectangle of the page.
    function tilesIn(rect) {
        const found = [];
        for (let i = 0; i < repeater.count; ++i) {
            const tile = repeater.itemAt(i);
            const side = tile ? (tile.width - iconSide) / 2 : 0;
            if (tile && !tile.isVacant && tile.x + side < rect.x + rect.width && tile.x + side + iconSide > rect.x
                    && tile.y + tile.iconTop < rect.y + rect.height && tile.y + tile.iconTop + iconSide > rect.y)
                found.push(tile.tileId);
        }
        return found;
    }

    readonly property rect caret: canLift && launcher.drag.revision > 0 && launcher.drag.isActive
                                  ? launcher.drag.caretOf(isInFolder, index) : Qt.rect(0, 0, 0, 0)

    onPlacesChanged: if (places.length === 0) isGliding = true

    // Between the tiles, a mouse draws a selection band. Touch, and drags that begin beyond the tiles, turn pages.
    MouseArea {
        id: band

        property point from
        property bool isDrawn: false
        property bool adds: false
        readonly property rect area: Qt.rect(Math.min(from.x, mouseX), Math.min(from.y, mouseY),
                                             Math.abs(mouseX - from.x), Math.abs(mouseY - from.y))

        function select() {
            page.launcher.selection.select(page.tilesIn(Qt.rect(x + area.x, y + area.y, area.width, area.height)), adds);
        }

        objectName: "selectionBand"
        x: page.leftMargin
        y: page.topMargin
        width: page.columns * page.cellWidth
        height: page.rows * page.cellHeight
        enabled: page.canLift
        preventStealing: true
        pressAndHoldInterval: Theme.longPressDelay
        onPressed: event => {
            event.accepted = event.source === Qt.MouseEventNotSynthesized;
            from = Qt.point(event.x, event.y);
            isDrawn = false;
            adds = event.modifiers & (Qt.ControlModifier | Qt.ShiftModifier);
        }
        onPositionChanged: {
            isDrawn = isDrawn || area.width + area.height > Qt.styleHints.startDragDistance;
            if (isDrawn)
                select();
        }
        onPressAndHold: event => {
            if (!isDrawn)
                page.launcher.input.openMenu("", mapToItem(null, event.x, event.y));
        }
        onReleased: isDrawn = false
        onCanceled: isDrawn = false
        onClicked: event => {
            if (area.width + area.height <= Qt.styleHints.startDragDistance && !adds)
                page.launcher.input.clickBackground();
        }
    }

    Repeater {
        id: repeater

        model: page.tiles

        Tile {
            x: page.leftMargin + index % page.columns * page.cellWidth + shiftX
            y: page.topMargin + Math.floor(index / page.columns) * page.cellHeight + shiftY
            width: page.cellWidth
            height: page.cellHeight
            launcher: page.launcher
            stage: page.stage
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

    // Separates the matches with scattered letters from the better ones.
    Rectangle {
        readonly property int first: page.tiles.firstWeakMatch
        readonly property bool isRow: first % page.columns === 0

        objectName: "matchDivider"
        visible: first > 0
        x: page.leftMargin + (isRow ? 0 : first % page.columns * page.cellWidth - 1)
        y: page.topMargin + Math.floor(first / page.columns) * page.cellHeight + (isRow ? -1 : page.cellHeight * 0.12)
        width: isRow ? page.columns * page.cellWidth : 2
        height: isRow ? 2 : page.cellHeight * 0.76
        color: Theme.backdropOutline
    }

    Rectangle {
        visible: band.isDrawn
        x: band.x + band.area.x
        y: band.y + band.area.y
        width: band.area.width
        height: band.area.height
        radius: Theme.fieldRadius
        color: Theme.tileHovered
        border.color: Theme.tileRing
    }

    Loader {
        active: page.places.length > 0 || page.isGliding
        sourceComponent: FrameAnimation {
            running: true
            onTriggered: page.slide(frameTime)
        }
    }
}
