import QtQuick
import Tessellar

// The tiles of one page in their cells.
Item {
    id: page

    required property LauncherController launcher
    required property PageModel tiles
    required property int columns
    required property int leftMargin
    required property int topMargin
    required property int cellWidth
    required property int cellHeight
    required property int iconSide

    function tileRect(tileId) {
        for (let i = 0; i < repeater.count; ++i) {
            const tile = repeater.itemAt(i);
            if (tile && tile.tileId === tileId)
                return Qt.rect(tile.x + (tile.width - iconSide) / 2, tile.y + tile.iconTop, iconSide, iconSide);
        }
        return Qt.rect(0, 0, 0, 0);
    }

    Repeater {
        id: repeater

        model: page.tiles

        Tile {
            x: page.leftMargin + index % page.columns * page.cellWidth
            y: page.topMargin + Math.floor(index / page.columns) * page.cellHeight
            width: page.cellWidth
            height: page.cellHeight
            launcher: page.launcher
            iconSide: page.iconSide
        }
    }
}
