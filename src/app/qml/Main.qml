import QtQuick
import Tessellar

// Everything in the window. Presents what the controller says; decides nothing.
FocusScope {
    id: root

    required property LauncherController launcher

    focus: true
    Keys.onPressed: event => event.accepted = launcher.pressKey(event.key)

    BackdropItem {
        anchors.fill: parent
        icons: root.launcher.icons
    }

    Item {
        id: stage

        anchors.fill: parent
        opacity: root.launcher.isReady ? 1 - 0.68 * folder.progress : 0
        visible: opacity > 0

        // A click beside the tiles closes the launcher, as it does on the Mac.
        TapHandler {
            enabled: !root.launcher.isFolderOpen
            gesturePolicy: TapHandler.ReleaseWithinBounds
            onTapped: root.launcher.escape()
        }

        PageStrip {
            id: pages

            anchors.fill: parent
            launcher: root.launcher
            model: root.launcher.grid
            page: root.launcher.currentPage
            interactive: !root.launcher.isFolderOpen && !root.launcher.hasAlert
            columns: root.launcher.columns
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

    FolderOverlay {
        id: folder

        anchors.fill: parent
        launcher: root.launcher
        origin: pages.tileRect(root.launcher.folderId)
    }

    Notice {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: root.launcher.isWindowed ? 48 : 76
        text: root.launcher.notice
    }

    Alert {
        anchors.fill: parent
        isShown: root.launcher.hasAlert
        title: root.launcher.alertTitle
        text: root.launcher.alertText
        onDismissed: root.launcher.dismissAlert()
    }
}
