import QtQuick
import Tessellar

// The past removals, each to be put back as long as something of it lies in the Trash.
Sheet {
    id: sheet

    required property LauncherController launcher
    readonly property PastRemovalsPanel past: launcher.pastRemovals

    objectName: "pastRemovalsSheet"
    title: qsTr("Past Removals")
    wanted: 600
    onClosed: launcher.sheets.close()
    Component.onDestruction: past.close()

    Column {
        width: sheet.bodyWidth
        spacing: 14

        Text {
            width: parent.width
            visible: text !== ""
            text: sheet.past.message
            color: "#b3ffffff"
            wrapMode: Text.Wrap
            textFormat: Text.PlainText
            font.pixelSize: 14
        }

        ListView {
            width: parent.width
            height: Math.min(contentHeight, Math.max(120, sheet.tallest - 110))
            visible: count > 0
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            model: sheet.past.removals

            delegate: Item {
                id: row

                required property var modelData

                width: ListView.view.width
                height: 52

                Column {
                    anchors.verticalCenter: parent.verticalCenter
                    width: parent.width - action.width - 12

                    Text {
                        width: parent.width
                        text: row.modelData.name
                        color: "white"
                        elide: Text.ElideRight
                        textFormat: Text.PlainText
                        font.pixelSize: 14
                    }

                    Text {
                        width: parent.width
                        text: row.modelData.text
                        color: "#99ffffff"
                        elide: Text.ElideRight
                        textFormat: Text.PlainText
                        font.pixelSize: 12
                    }
                }

                PushButton {
                    id: action

                    objectName: "putBackButton"
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    height: 30
                    visible: row.modelData.canPutBack
                    enabled: !sheet.past.isMoving
                    text: qsTr("Put Back")
                    onClicked: sheet.past.putBack(row.modelData.id)
                }
            }
        }

        PushButton {
            anchors.right: parent.right
            text: qsTr("Done")
            isDefault: true
            onClicked: sheet.launcher.sheets.close()
        }
    }
}
