import QtQuick
import Tessellar

// Everything in the window. Presents what the controller says; decides nothing.
FocusScope {
    id: root

    required property LauncherController launcher

    focus: true
    Keys.onPressed: event => {
        if (launcher.renamingId === "")
            event.accepted = launcher.pressKey(event.key, event.modifiers) || launcher.type(event.text);
    }

    Connections {
        target: root.launcher
        function onMenuWanted(tileId) {
            const rect = root.launcher.isFolderOpen ? folder.tileRect(tileId) : pages.tileRect(tileId);
            root.launcher.openMenu(tileId, rect.width > 0 ? Qt.point(rect.x + rect.width / 2, rect.y + rect.height / 2)
                                                          : Qt.point(root.width / 2, root.height / 2));
        }
    }

    BackdropItem {
        anchors.fill: parent
        icons: root.launcher.icons
    }

    // A click beside the tiles closes the launcher, as it does on the Mac, or ends a search. Handlers, not
    // an area: they get what the pages above only look at.
    Item {
        anchors.fill: parent

        TapHandler {
            gesturePolicy: TapHandler.ReleaseWithinBounds
            onTapped: root.launcher.escape()
            onLongPressed: root.launcher.openMenu("", point.position)
        }

        TapHandler {
            acceptedButtons: Qt.RightButton
            gesturePolicy: TapHandler.ReleaseWithinBounds
            onTapped: eventPoint => root.launcher.openMenu("", eventPoint.scenePosition)
        }
    }

    Item {
        id: stage

        anchors.fill: parent
        opacity: root.launcher.isReady && !root.launcher.search.isActive ? 1 - 0.68 * folder.progress : 0
        visible: opacity > 0

        PageStrip {
            id: pages

            anchors.fill: parent
            launcher: root.launcher
            model: root.launcher.grid
            page: root.launcher.shownPage
            interactive: !root.launcher.isFolderOpen && !root.launcher.hasAlert
            columns: root.launcher.columns
            rows: root.launcher.rows
            leftMargin: root.launcher.left
            topMargin: root.launcher.top
            cellWidth: root.launcher.cellWidth
            cellHeight: root.launcher.cellHeight
            iconSide: root.launcher.iconSide
            onTurned: page => root.launcher.currentPage = page
        }

        PageDots {
            anchors.horizontalCenter: parent.horizontalCenter
            anchors.bottom: parent.bottom
            anchors.bottomMargin: root.launcher.isWindowed ? 14 : 28
            count: root.launcher.grid.pageCount
            position: pages.position
            onChosen: page => root.launcher.currentPage = page
        }

        Text {
            anchors.centerIn: parent
            visible: root.launcher.isReady && root.launcher.grid.pageCount === 0
            text: qsTr("No applications were found.")
            color: "#b8ffffff"
            font.pixelSize: 22
            font.weight: Font.Light
        }
    }

    Loader {
        id: found

        anchors.fill: parent
        active: root.launcher.search.isActive
        sourceComponent: Item {
            PageStrip {
                id: results

                anchors.fill: parent
                launcher: root.launcher
                model: root.launcher.search.results
                page: root.launcher.search.page
                interactive: !root.launcher.hasAlert
                canLift: false
                columns: root.launcher.columns
                rows: root.launcher.rows
                leftMargin: root.launcher.left
                topMargin: root.launcher.top
                cellWidth: root.launcher.cellWidth
                cellHeight: root.launcher.cellHeight
                iconSide: root.launcher.iconSide
                onTurned: page => root.launcher.search.page = page
            }

            PageDots {
                anchors.horizontalCenter: parent.horizontalCenter
                anchors.bottom: parent.bottom
                anchors.bottomMargin: root.launcher.isWindowed ? 14 : 28
                count: root.launcher.search.results.pageCount
                position: results.position
                onChosen: page => root.launcher.search.page = page
            }

            Text {
                anchors.centerIn: parent
                width: Math.min(implicitWidth, parent.width - 80)
                visible: root.launcher.search.results.pageCount === 0
                text: qsTr("No results for “%1”").arg(root.launcher.search.text)
                elide: Text.ElideRight
                textFormat: Text.PlainText
                color: "#b8ffffff"
                font.pixelSize: 22
                font.weight: Font.Light
            }
        }
    }

    SearchField {
        anchors.horizontalCenter: parent.horizontalCenter
        y: Math.max(4, Math.round((root.launcher.top - height) / 2))
        opacity: root.launcher.isReady ? 1 - folder.progress : 0
        visible: opacity > 0
        launcher: root.launcher
    }

    FolderOverlay {
        id: folder

        anchors.fill: parent
        launcher: root.launcher
        origin: pages.tileRect(root.launcher.folderId)
    }

    Loader {
        anchors.fill: parent
        active: root.launcher.drag.isLifted
        sourceComponent: LiftedTiles {
            launcher: root.launcher
            iconSide: root.launcher.isFolderOpen ? root.launcher.folderIconSide : root.launcher.iconSide
        }
    }

    DragStage {
        anchors.fill: parent
        drag: root.launcher.drag
    }

    Notice {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: root.launcher.isWindowed ? 48 : 76
        text: root.launcher.notice
    }

    Loader {
        anchors.fill: parent
        active: root.launcher.sheet === "icon"
        sourceComponent: IconSheet {
            launcher: root.launcher
        }
    }

    Loader {
        anchors.fill: parent
        active: root.launcher.removal.isOpen
        sourceComponent: RemovalSheet {
            launcher: root.launcher
        }
    }

    Loader {
        anchors.fill: parent
        active: root.launcher.sheet === "updates"
        sourceComponent: UpdatesSheet {
            launcher: root.launcher
        }
    }

    Loader {
        anchors.fill: parent
        active: root.launcher.sheet === "smartFolder"
        sourceComponent: SmartFolderSheet {
            launcher: root.launcher
        }
    }

    Loader {
        // Who had the keyboard before, and has it again.
        property Item former: null

        anchors.fill: parent
        active: root.launcher.smartFolder.choices.isOpen
        onLoaded: {
            former = root.Window.activeFocusItem;
            item.forceActiveFocus();
        }
        onActiveChanged: if (!active && former) former.forceActiveFocus()
        sourceComponent: ContextMenu {
            menu: root.launcher.smartFolder.choices
        }
    }

    Loader {
        anchors.fill: parent
        active: root.launcher.menu.isOpen
        sourceComponent: ContextMenu {
            menu: root.launcher.menu
        }
    }

    Loader {
        anchors.fill: parent
        active: root.launcher.hasAlert
        sourceComponent: Alert {
            launcher: root.launcher
        }
    }
}
