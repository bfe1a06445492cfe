import QtQuick
import Tessellar

// The backups of arrangements that were replaced.
Sheet {
    id: sheet

    required property LauncherController launcher
    readonly property BackupsPanel panel: launcher.panels.backups

    objectName: "backupsSheet"
    title: qsTr("Backups")
    wanted: 620
    stretched: list
    onClosed: launcher.sheets.close()

    WordsText {
        width: sheet.bodyWidth
        text: sheet.panel.summary
    }

    ItemList {
        id: list

        objectName: "backupsList"
        width: sheet.bodyWidth
        height: Math.min(contentHeight, Math.max(120, sheet.stretchedRoom))
        visible: count > 0
        model: sheet.panel.backups

        delegate: ListRow {
            required property var modelData

            title: modelData.title
            text: modelData.text
            action: qsTr("Restore…")
            actionName: "restoreButton"
            onActed: {
                const panel = sheet.panel;
                const name = modelData.name;
                sheet.launcher.sheets.close();
                panel.restore(name);
            }
        }
    }

    buttons: [
        PushButton {
            text: qsTr("Saved Arrangements…")
            onClicked: sheet.launcher.panels.openArrangements()
        },
        PushButton {
            text: qsTr("Done")
            isDefault: true
            onClicked: sheet.launcher.sheets.close()
        }
    ]
}
