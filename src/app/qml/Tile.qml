import QtQuick
import Tessellar

// An application, a folder or a smart folder: its picture and its name.
TileItem {
    id: tile

    required index
    required tileId
    required kind
    required label
    required appKeys
    required symbolName
    required badge
    required activity
    required description
    required markedLabel
    required place
    required isUnavailable
    required isSelected
    required isVacant
    required isCut
    required isWeakMatch
    property LauncherController launcher
    property Item stage
    property int iconSide
    property int labelPixels
    property bool canLift: true
    // The offset from its own slot, while tiles make room.
    property real shiftX: 0
    property real shiftY: 0
    property bool isPushedOff: false
    readonly property bool isTarget: launcher.drag.targetId === tileId
    // Tiles are being dragged onto it: the folder that they would form is shown.
    readonly property bool isForming: isTarget && launcher.drag.suggestedName !== ""
    // The same tile may also be on a page behind.
    readonly property bool isRenamed: launcher.renaming.tileId === tileId && enabled && visible
    readonly property int iconTop: Math.round((height - iconSide - name.height - 4) / 2)
    readonly property real wholeOpacity: isPushedOff || (launcher.drag.isActive && launcher.drag.tileIds.indexOf(tileId) >= 0) ? 0 : 1

    // The text is applied once per event loop turn, however often it changes: text layout is a tile's greatest
    // cost.
    // A signal, because it is not delivered if the tile is destroyed with its page before the end of the turn.
    signal nameSettled

    onNameSettled: {
        name.textFormat = markedLabel !== "" && activity === "" ? Text.StyledText : Text.PlainText;
        name.text = activity !== "" ? activity : markedLabel !== "" ? launcher.search.colored(markedLabel, Theme.matched) : label;
    }
    onLabelChanged: Qt.callLater(nameSettled)
    onMarkedLabelChanged: Qt.callLater(nameSettled)
    onActivityChanged: Qt.callLater(nameSettled)
    Component.onCompleted: {
        nameSettled();
        if (isSpoken)
            AccessibleFocus.moveTo(tile);
    }

    function appear() {
        fadeIn.restart();
    }

    transform: Unmirrored { target: tile }

    visible: !isVacant
    // Dragged tiles are hidden in place.
    opacity: wholeOpacity

    NumberAnimation {
        id: fadeIn

        target: tile
        property: "opacity"
        from: 0
        to: 1
        duration: Theme.fadeTime
        onStopped: tile.opacity = Qt.binding(() => tile.wholeOpacity)
    }

    Accessible.role: Accessible.Button
    Accessible.name: label
    Accessible.description: description
    Accessible.focusable: true
    Accessible.focused: isSelected
    Accessible.selectable: true
    Accessible.selected: isSelected
    Accessible.onPressAction: launcher.input.activate(tileId)

    // Also after a menu or sheet over it has closed.
    readonly property bool isSpoken: isSelected && !launcher.input.isCovered && !launcher.input.menu.isOpen
    onIsSpokenChanged: if (isSpoken) AccessibleFocus.moveTo(tile)

    readonly property bool isTipped: hover.hovered && !launcher.drag.isActive && !isRenamed && (isUnavailable || name.truncated)
    z: isTipped ? 1 : 0

    // The plate under the pointer, and the focus ring.
    Rectangle {
        anchors.centerIn: plate
        width: plate.width + 2
        height: plate.height + 2
        visible: (hover.hovered && !tile.launcher.drag.isActive) || tile.isSelected || tile.isTarget
        radius: Math.min(Theme.tileRadius, width / 4)
        color: tile.isTarget ? Theme.tileTarget : tile.isSelected ? Theme.tileSelected : Theme.tileHovered
        border.width: tile.isSelected ? 2 : 0
        border.color: Theme.tileRing
    }

    Item {
        id: plate

        anchors.horizontalCenter: parent.horizontalCenter
        y: tile.iconTop - 8
        width: Math.min(tile.width - 4, tile.iconSide + 36)
        height: tile.iconSide + name.height + 24

        HoverHandler {
            id: hover
        }
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
        opacity: tile.isUnavailable ? 0.35 : tile.isCut ? 0.4 : tile.isWeakMatch ? 0.75 : tile.activity !== "" ? 0.55 : mouse.pressed ? 0.7 : 1
        scale: tile.isForming ? 0.62 : tile.isTarget ? 0.88 : tile.launcher.drag.heldId === tile.tileId ? 1.06 : 1
        // An open folder's picture is replaced by its panel.
        visible: !(tile.launcher.folder.isOpen && tile.launcher.folder.tileId === tile.tileId)
    }

    Loader {
        active: tile.badge !== "" && tile.activity === ""
        visible: picture.visible
        x: picture.x + picture.width - width * 0.7
        y: picture.y - height * 0.2
        sourceComponent: Rectangle {
            // Text would hide a small icon, so it gets a dot.
            readonly property bool isDot: tile.iconSide < 40

            width: isDot ? height : Math.max(height, badgeText.implicitWidth + 12)
            height: isDot ? Math.ceil(tile.iconSide / 3) : badgeText.implicitHeight + 4
            radius: height / 2
            color: isDot ? Theme.accent : Theme.badge
            border.width: 1
            border.color: Theme.badgeOutline

            Text {
                id: badgeText

                anchors.centerIn: parent
                visible: !parent.isDot
                text: tile.badge
                color: Theme.backdropText
                font.pixelSize: Math.max(Theme.tinyFont, tile.labelPixels - 2)
                renderType: Text.QtRendering
                textFormat: Text.PlainText
            }
        }
    }

    Text {
        id: name

        visible: !tile.isRenamed && !tile.isForming
        anchors.horizontalCenter: parent.horizontalCenter
        y: tile.iconTop + tile.iconSide + 4
        width: tile.width - 10
        elide: Text.ElideRight
        maximumLineCount: 1
        horizontalAlignment: Text.AlignHCenter
        color: tile.isUnavailable || tile.isCut ? Theme.backdropTextFaint : tile.isWeakMatch ? Theme.backdropTextDim : Theme.backdropText
        font.pixelSize: tile.labelPixels
        renderType: Text.QtRendering
    }

    // The place of a search result.
    Loader {
        active: tile.place !== "" && !tile.isRenamed
        anchors.horizontalCenter: parent.horizontalCenter
        y: name.y + name.height
        sourceComponent: Text {
            width: Math.min(implicitWidth, tile.width - 10)
            text: tile.place
            elide: Text.ElideRight
            color: Theme.backdropTextFaint
            font.pixelSize: Math.max(Theme.tinyFont, tile.labelPixels - 3)
            renderType: Text.QtRendering
            textFormat: Text.PlainText
        }
    }

    MouseArea {
        id: mouse

        anchors.fill: plate
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        pressAndHoldInterval: Theme.longPressDelay
        onPressed: event => {
            if (event.button === Qt.RightButton)
                tile.launcher.input.openMenu(tile.tileId, mapToItem(null, event.x, event.y));
            else if (tile.canLift && event.source === Qt.MouseEventNotSynthesized)
                tile.launcher.drag.press(tile.tileId, mapToItem(tile.stage, event.x, event.y),
                                         picture.mapToItem(tile.stage, Theme.isMirrored ? picture.width : 0, 0));
        }
        onPositionChanged: event => tile.launcher.drag.move(mapToItem(tile.stage, event.x, event.y))
        onPressAndHold: event => tile.launcher.input.openMenu(tile.tileId, mapToItem(null, event.x, event.y))
        onReleased: tile.launcher.drag.release()
        onCanceled: tile.launcher.drag.release()
        onClicked: event => {
            if (event.button === Qt.LeftButton)
                tile.launcher.input.click(tile.tileId, event.modifiers);
        }
    }

    Loader {
        anchors.fill: parent
        z: 11
        active: tile.activity !== "" || tile.isForming || tile.isRenamed || tile.isTipped
        sourceComponent: TileOverlay {
            owner: tile
            image: picture
            words: name
        }
    }
}
