import QtQuick
import Tessellar

// The dragged tiles: the one under the pointer, and their number.
Item {
    id: dragged

    required property LauncherController launcher
    required property int iconSide
    readonly property TileDrag drag: launcher.drag
    readonly property var tile: launcher.tileView(drag.heldTile)

    IconItem {
        id: picture

        x: dragged.drag.pictureAt.x
        y: dragged.drag.pictureAt.y
        width: dragged.iconSide
        height: dragged.iconSide
        scale: 1.08
        transform: Unmirrored { target: picture }
        opacity: 0.92
        icons: dragged.launcher.icons
        kind: dragged.tile.kind
        appKeys: dragged.tile.appKeys
        symbolName: dragged.tile.symbolName
    }

    Rectangle {
        visible: dragged.drag.tileIds.length > 1
        x: picture.x + picture.width - width * 0.6
        y: picture.y - height * 0.35
        width: Math.max(height, count.implicitWidth + 14)
        height: 24
        radius: height / 2
        color: Theme.danger

        Text {
            id: count

            anchors.centerIn: parent
            transform: Unmirrored { target: count }
            text: dragged.drag.tileIds.length
            color: Theme.backdropText
            font.pixelSize: Theme.controlFont
            font.weight: Font.DemiBold
        }
    }
}
