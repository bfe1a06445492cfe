import QtQuick
import Tessellar

// The saved arrangements of the display mode, each with a picture of its first page and its actions, and one text
// field for whichever action needs it.
Sheet {
    id: sheet

    required property LauncherController launcher
    readonly property ArrangementsPanel panel: launcher.panels.arrangements

    function accept() {
        if (accepting.enabled)
            panel.finish(field.value);
    }

    objectName: "arrangementsSheet"
    title: qsTr("Saved Arrangements")
    wanted: 680
    stretched: list
    onClosed: launcher.sheets.leave()
    Keys.onPressed: event => {
        event.accepted = event.matches(StandardKey.Undo) || event.matches(StandardKey.Redo);
        if (event.matches(StandardKey.Undo))
            panel.undo();
        else if (event.matches(StandardKey.Redo))
            panel.redo();
    }

    Binding {
        target: sheet.launcher.sheets
        property: "isTyped"
        value: field.value !== sheet.panel.suggestion
    }

    WordsText {
        width: sheet.bodyWidth
        text: sheet.panel.modeText
        font.pixelSize: Theme.noteFont
    }

    Row {
        width: sheet.bodyWidth
        spacing: 8

        FieldBox {
            id: field

            objectName: "arrangementField"
            width: parent.width - accepting.width - parent.spacing - (browse.visible ? browse.width + parent.spacing : 0)
            height: Theme.buttonHeight
            value: sheet.panel.suggestion
            label: sheet.panel.prompt
            placeholder: sheet.panel.prompt
            onEdited: text => value = text
            Component.onCompleted: input.forceActiveFocus()
            Keys.onReturnPressed: sheet.accept()
            Keys.onEnterPressed: sheet.accept()
        }

        FileButton {
            id: browse

            visible: sheet.panel.task === "import"
            filter: qsTr("Arrangements (*.tessellar-arrangement)")
            onChosen: file => sheet.panel.finish(sheet.launcher.sheets.localFile(file))
        }

        PushButton {
            id: accepting

            objectName: "arrangementAccept"
            text: sheet.panel.accept
            enabled: field.value.trim() !== ""
            onClicked: sheet.accept()
        }
    }

    Connections {
        target: sheet.panel

        function onTaskChanged() {
            field.value = sheet.panel.suggestion;
            field.input.forceActiveFocus();
            field.input.selectAll();
        }
    }

    WordsText {
        width: sheet.bodyWidth
        visible: sheet.panel.task !== "save"
        text: sheet.panel.prompt
        font.pixelSize: Theme.noteFont
    }

    WordsText {
        objectName: "arrangementIssue"
        width: sheet.bodyWidth
        text: sheet.panel.issue
        color: Theme.warningText
        font.pixelSize: Theme.controlFont
    }

    WordsText {
        width: sheet.bodyWidth
        text: sheet.panel.summary
    }

    ItemList {
        id: list

        objectName: "arrangementsList"
        width: sheet.bodyWidth
        height: Math.min(contentHeight, Math.max(140, sheet.stretchedRoom))
        visible: count > 0
        spacing: 6
        // A count as the model, so that rows are reused and keep the focus.
        model: sheet.panel.arrangements.length

        delegate: Item {
            id: row

            required property int index
            readonly property var modelData: sheet.panel.arrangements[index]
                ?? ({ id: "", title: "", text: "", rows: 1, columns: 1, tiles: [], isReadable: true })

            objectName: "arrangementRow"
            width: ListView.view.width
            height: 66

            PagePicture {
                id: picture

                anchors.left: parent.left
                anchors.verticalCenter: parent.verticalCenter
                width: sheet.isNarrow ? 64 : 96
                height: sheet.isNarrow ? 42 : 60
                icons: sheet.launcher.icons
                isMirrored: Theme.isMirrored
                rows: row.modelData.rows
                columns: row.modelData.columns
                tiles: row.modelData.tiles
            }

            ListRow {
                anchors.left: parent.left
                anchors.leftMargin: picture.width + 12
                width: parent.width - anchors.leftMargin - more.width - 8
                height: parent.height
                index: row.index
                list: row.ListView.view
                title: row.modelData.title
                text: row.modelData.text
                action: row.modelData.isReadable ? qsTr("Restore…") : ""
                actionName: "restoreButton"
                onActed: {
                    const panel = sheet.panel;
                    const id = row.modelData.id;
                    sheet.launcher.sheets.close();
                    panel.restore(id);
                }
            }

            RoundButton {
                id: more

                objectName: "arrangementMore"
                anchors.right: parent.right
                anchors.rightMargin: 8
                anchors.verticalCenter: parent.verticalCenter
                sign: "…"
                label: qsTr("More")
                onActiveFocusChanged: if (activeFocus)
                    list.positionViewAtIndex(row.index, ListView.Contain)
                onClicked: sheet.panel.openMenu(row.modelData.id, mapToItem(null, 0, height + 2))
            }

            MouseArea {
                anchors.fill: parent
                acceptedButtons: Qt.RightButton
                onClicked: event => sheet.panel.openMenu(row.modelData.id, mapToItem(null, event.x, event.y))
            }
        }
    }

    // A file can be dropped anywhere on the sheet.
    DropArea {
        parent: sheet
        anchors.fill: parent
        onDropped: event => {
            if (!event.hasUrls)
                return;
            sheet.panel.importFile();
            sheet.panel.finish(sheet.launcher.sheets.localFile(event.urls[0]));
        }
    }

    foot: PushButton {
        objectName: "arrangementUndo"
        visible: sheet.panel.undoText !== ""
        width: Math.min(implicitWidth, parent.width)
        text: sheet.panel.undoText
        onClicked: sheet.panel.undo()
    }

    buttons: [
        PushButton {
            text: qsTr("Backups…")
            onClicked: sheet.launcher.panels.openBackups()
        },
        PushButton {
            objectName: "arrangementImport"
            text: qsTr("Import…")
            onClicked: sheet.panel.importFile()
        },
        PushButton {
            text: qsTr("Done")
            isDefault: true
            onClicked: sheet.launcher.sheets.close()
        }
    ]
}
