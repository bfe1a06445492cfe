import QtQuick
import Tessellar

// Past removals. Each can be restored as long as some of its items are in the Trash.
Sheet {
    id: sheet

    required property LauncherController launcher
    readonly property PastRemovalsPanel past: launcher.panels.pastRemovals

    objectName: "pastRemovalsSheet"
    title: qsTr("Past Removals")
    wanted: 600
    stretched: list
    onClosed: launcher.sheets.close()
    Component.onDestruction: past.close()

    WordsText {
        width: sheet.bodyWidth
        text: sheet.past.message
    }

    ItemList {
        id: list

        width: sheet.bodyWidth
        height: Math.min(contentHeight, Math.max(120, sheet.stretchedRoom))
        visible: count > 0
        model: sheet.past.removals

        delegate: ListRow {
            required property var modelData

            title: modelData.name
            text: modelData.text
            action: qsTr("Put Back")
            actionName: "putBackButton"
            hasAction: modelData.canPutBack
            canAct: !sheet.past.isMoving
            onActed: sheet.past.putBack(modelData.id)
        }
    }

    buttons: PushButton {
        text: qsTr("Done")
        isDefault: true
        onClicked: sheet.launcher.sheets.close()
    }
}
