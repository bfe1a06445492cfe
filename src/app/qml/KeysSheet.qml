import QtQuick
import Tessellar

// The keyboard shortcuts.
Sheet {
    id: sheet

    required property LauncherController launcher
    readonly property string command: Qt.platform.os === "osx" ? "⌘" : qsTr("Ctrl+")
    readonly property var keys: [
        [qsTr("Any letter"), qsTr("Search")],
        [qsTr("Return"), qsTr("Open what is selected, or found")],
        [command + "1 … 9", qsTr("Open one of the first that are found")],
        [qsTr("Arrows"), qsTr("Go from tile to tile")],
        [qsTr("Shift and arrows"), qsTr("Select more or fewer")],
        [command + qsTr("arrows"), qsTr("Move what is selected")],
        [command + qsTr("Shift+arrows"), qsTr("Group with the tile beside")],
        [command + "G", qsTr("Group what is selected")],
        [command + "A", qsTr("Select all of the page")],
        [command + "X, C, V", qsTr("Cut, copy, paste")],
        [command + "Z, " + command + qsTr("Shift+Z"), qsTr("Undo, redo")],
        [command + "I", qsTr("Information about the application")],
        [command + ",", qsTr("Settings")],
        ["F2", qsTr("Rename")],
        [qsTr("Page Up, Page Down"), qsTr("Turn the page")],
        [qsTr("Home, End"), qsTr("First page, last page")],
        [qsTr("Menu"), qsTr("The menu of what is selected")],
        [qsTr("Escape"), qsTr("One step back")],
        ["?", qsTr("This list")]
    ]

    objectName: "keysSheet"
    title: qsTr("Keyboard Shortcuts")
    wanted: 520
    stretched: list
    onClosed: launcher.sheets.close()

    ItemList {
        id: list

        width: sheet.bodyWidth
        height: Math.min(contentHeight, Math.max(100, sheet.stretchedRoom))
        focus: true
        activeFocusOnTab: true
        model: sheet.keys
        Component.onCompleted: forceActiveFocus()

        delegate: Item {
            id: row

            required property var modelData

            width: ListView.view.width
            height: Math.max(Theme.controlHeight - 2, keys.implicitHeight + 6, meaning.implicitHeight + 6)

            Accessible.role: Accessible.ListItem
            Accessible.name: modelData.join(": ")

            Text {
                id: keys

                anchors.left: parent.left
                width: parent.width * 0.42
                anchors.verticalCenter: parent.verticalCenter
                horizontalAlignment: Text.AlignLeft
                text: row.modelData[0]
                color: Theme.text
                wrapMode: Text.Wrap
                font.pixelSize: Theme.controlFont
                font.weight: Font.Medium
            }

            Text {
                id: meaning

                anchors.left: parent.left
                anchors.leftMargin: parent.width * 0.44
                width: parent.width - anchors.leftMargin - 12
                anchors.verticalCenter: parent.verticalCenter
                horizontalAlignment: Text.AlignLeft
                text: row.modelData[1]
                color: Theme.textDim
                wrapMode: Text.Wrap
                font.pixelSize: Theme.controlFont
            }
        }
    }

    buttons: PushButton {
        text: qsTr("Done")
        isDefault: true
        onClicked: sheet.launcher.sheets.close()
    }
}
