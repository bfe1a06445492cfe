import QtQuick
import Tessellar

// An application, a folder or a smart folder: its picture and its name.
Item {
    id: tile

    required property int index
    required property string tileId
    required property int kind
    required property string label
    required property list<string> appKeys
    required property string symbolName
    required property string badge
    required property bool isUnavailable
    property LauncherController launcher
    property int iconSide
    readonly property bool isSelected: launcher.selectedId === tileId
    readonly property int iconTop: Math.round((height - iconSide - name.height - 4) / 2)

    Accessible.role: Accessible.Button
    Accessible.name: label
    Accessible.onPressAction: launcher.activate(tileId)

    // The plate under the pointer, and the ring of the keyboard.
    Rectangle {
        anchors.centerIn: plate
        width: plate.width + 2
        height: plate.height + 2
        visible: hover.hovered || tile.isSelected
        radius: 18
        color: tile.isSelected ? "#26ffffff" : "#14ffffff"
        border.width: tile.isSelected ? 2 : 0
        border.color: "#b3ffffff"
    }

    Item {
        id: plate

        anchors.horizontalCenter: parent.horizontalCenter
        y: tile.iconTop - 8
        width: Math.min(tile.width - 4, tile.iconSide + 36)
        height: tile.iconSide + name.height + 24
    }

    IconItem {
        id: picture

        x: Math.round((tile.width - width) / 2)
        y: tile.iconTop
        width: tile.iconSide
        height: tile.iconSide
        icons: tile.launcher.icons
        kind: tile.kind
        appKeys: tile.appKeys
        symbolName: tile.symbolName
        opacity: tile.isUnavailable ? 0.35 : tap.pressed ? 0.7 : 1
        // A folder that is open is shown by its panel.
        visible: !(tile.launcher.isFolderOpen && tile.launcher.folderId === tile.tileId)
    }

    Rectangle {
        visible: tile.badge !== "" && picture.visible
        x: picture.x + picture.width - width * 0.7
        y: picture.y - height * 0.2
        width: Math.max(height, badgeText.implicitWidth + 12)
        height: badgeText.implicitHeight + 4
        radius: height / 2
        color: "#d93a3f4b"
        border.width: 1
        border.color: "#40ffffff"

        Text {
            id: badgeText

            anchors.centerIn: parent
            text: tile.badge
            color: "#f5ffffff"
            font.pixelSize: Math.max(10, tile.launcher.labelPixels - 2)
            renderType: Text.QtRendering
            textFormat: Text.PlainText
        }
    }

    Text {
        id: name

        anchors.horizontalCenter: parent.horizontalCenter
        y: tile.iconTop + tile.iconSide + 4
        width: Math.min(implicitWidth, tile.width - 10)
        text: tile.label
        elide: Text.ElideRight
        maximumLineCount: 1
        horizontalAlignment: Text.AlignHCenter
        color: tile.isUnavailable ? "#80ffffff" : "#f5ffffff"
        font.pixelSize: tile.launcher.labelPixels
        renderType: Text.QtRendering
        textFormat: Text.PlainText
    }

    HoverHandler {
        id: hover
    }

    TapHandler {
        id: tap

        // Takes the press from what lies below; a swipe takes it from here.
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: {
            tile.launcher.unselect();
            tile.launcher.activate(tile.tileId);
        }
    }

    Loader {
        active: tile.isUnavailable && hover.hovered
        anchors.horizontalCenter: parent.horizontalCenter
        y: tile.iconTop - 10
        z: 10
        sourceComponent: Tip {
            text: tile.launcher.unavailableNotice
        }
    }
}
