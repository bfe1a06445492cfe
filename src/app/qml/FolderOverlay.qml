import QtQuick
import Tessellar

// The open folder over the grid. Grows out of its tile and shrinks back into it.
Item {
    id: overlay

    objectName: "folderOverlay"

    required property LauncherController launcher
    required property Item stage
    readonly property OpenFolder folder: launcher.folder
    // The rectangle of the folder's tile in this item; empty if the tile is not visible.
    property rect origin
    property real progress: folder.isOpen ? 1 : 0
    readonly property rect area: folder.panel
    property rect from: Qt.rect(0, 0, 0, 0)

    function tileRect(tileId) {
        const rect = contents.item ? contents.item.tileRect(tileId) : Qt.rect(0, 0, 0, 0);
        return rect.width > 0 ? Qt.rect(rect.x + area.x, rect.y + area.y, rect.width, rect.height) : rect;
    }

    visible: progress > 0
    enabled: folder.isOpen

    Behavior on progress {
        NumberAnimation { duration: Theme.reducesMotion ? Theme.fadeTime : Theme.moveTime; easing.type: Theme.curve }
    }

    Connections {
        target: overlay.folder
        function onChanged() {
            if (overlay.folder.isOpen && overlay.origin.width > 0)
                overlay.from = overlay.origin;
        }
    }

    // Blocks the grid below.
    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        onClicked: overlay.folder.close()
        onWheel: wheel => wheel.accepted = true
    }

    Item {
        id: panel

        readonly property real startScale: Theme.reducesMotion ? 1 : overlay.from.width > 0 ? overlay.from.width / width : 0.85
        readonly property real startX: overlay.from.width > 0 && !Theme.reducesMotion
                                       ? overlay.from.x + overlay.from.width / 2 - (x + width / 2) : 0
        readonly property real startY: overlay.from.width > 0 && !Theme.reducesMotion
                                       ? overlay.from.y + overlay.from.height / 2 - (y + height / 2) : 0

        x: overlay.area.x
        y: overlay.area.y
        width: overlay.area.width
        height: overlay.area.height
        opacity: Math.min(1, overlay.progress * 1.6)
        scale: panel.startScale + (1 - panel.startScale) * overlay.progress
        transform: Translate {
            x: Math.round(panel.startX * (1 - overlay.progress))
            y: Math.round(panel.startY * (1 - overlay.progress))
        }

        Rectangle {
            anchors.fill: parent
            radius: Theme.folderRadius
            color: Theme.folderPanel
            // Highlighted when a drop would go into the folder as a whole.
            border.width: overlay.launcher.drag.targetId === overlay.folder.tileId && overlay.folder.tileId !== "" ? 3 : 1
            border.color: border.width > 1 ? Theme.tileRing : Theme.folderOutline
        }

        // Clicks beside the tiles do not close the folder.
        TapHandler {
            gesturePolicy: TapHandler.ReleaseWithinBounds
        }

        TapHandler {
            acceptedButtons: Qt.RightButton
            gesturePolicy: TapHandler.ReleaseWithinBounds
            onTapped: eventPoint => overlay.launcher.input.openMenu("", eventPoint.scenePosition)
        }

        Text {
            id: title

            y: 20
            transform: Unmirrored { target: title }
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(implicitWidth, parent.width - 60)
            text: overlay.folder.title
            color: Theme.backdropText
            elide: Text.ElideRight
            textFormat: Text.PlainText
            font.pixelSize: Theme.bigFont
            font.weight: Font.Medium
            visible: !titleField.active

            TapHandler {
                cursorShape: Qt.IBeamCursor
                gesturePolicy: TapHandler.ReleaseWithinBounds
                onTapped: overlay.launcher.renaming.begin(overlay.folder.tileId)
            }
        }

        Loader {
            id: titleField

            anchors.horizontalCenter: parent.horizontalCenter
            y: title.y - 4
            z: 1
            active: overlay.folder.isOpen && overlay.launcher.renaming.tileId === overlay.folder.tileId
                    && overlay.folder.tileId !== ""
            sourceComponent: NameField {
                id: nameField

                transform: Unmirrored { target: nameField }
                launcher: overlay.launcher
                name: overlay.folder.title
                width: Math.min(360, panel.width - 40)
                font.pixelSize: Theme.bigFont
            }
        }

        Text {
            id: notice

            transform: Unmirrored { target: notice }
            anchors.horizontalCenter: parent.horizontalCenter
            anchors.top: title.bottom
            width: Math.min(implicitWidth, parent.width - 40)
            visible: text !== ""
            text: overlay.folder.notice
            color: Theme.backdropTextFaint
            elide: Text.ElideRight
            textFormat: Text.PlainText
            font.pixelSize: Theme.noteFont
        }

        Item {
            anchors.fill: parent
            clip: contents.item && contents.item.position !== overlay.folder.tiles.page

            Loader {
                id: contents

                anchors.fill: parent
                active: overlay.visible
                sourceComponent: PageStrip {
                    launcher: overlay.launcher
                    stage: overlay.stage
                    model: overlay.folder.tiles
                    interactive: overlay.folder.isOpen
                    isInFolder: true
                }
            }
        }

        Text {
            id: nothing

            transform: Unmirrored { target: nothing }
            anchors.centerIn: parent
            width: parent.width - 60
            visible: overlay.folder.isOpen && overlay.folder.isEmpty
            text: qsTr("Nothing matches its rules.")
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignHCenter
            color: Theme.backdropTextDim
            font.pixelSize: Theme.textFont
        }

        PageDots {
            room: panel.width - 40
            anchors.horizontalCenter: parent.horizontalCenter
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 12
            count: overlay.folder.tiles.pageCount
            position: contents.item ? contents.item.position : 0
            onChosen: page => overlay.folder.tiles.turnTo(page)
        }
    }
}
