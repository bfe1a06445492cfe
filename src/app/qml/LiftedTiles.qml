import QtQuick
import Tessellar

// The dragged tiles: the one under the pointer, and their number.
Item {
    id: lifted

    required property LauncherController launcher
    required property int iconSide
    readonly property TileDrag drag: launcher.drag
    readonly property var tile: launcher.tileView(drag.heldTile)

    IconItem {
        id: picture

        x: lifted.drag.pointer.x - lifted.drag.grip.x
        y: lifted.drag.pointer.y - lifted.drag.grip.y
        width: lifted.iconSide
        height: lifted.iconSide
        scale: 1.08
        transform: Unmirrored { target: picture }
        opacity: 0.92
        icons: lifted.launcher.icons
        kind: lifted.tile.kind
        appKeys: lifted.tile.appKeys
        symbolName: lifted.tile.symbolName
    }

    Rectangle {
        visible: lifted.drag.liftedIds.length > 1
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
            text: lifted.drag.liftedIds.length
            color: Theme.backdropText
            font.pixelSize: Theme.controlFont
            font.weight: Font.DemiBold
        }
    }
}
