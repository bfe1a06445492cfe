import QtQuick
import Tessellar

// The arrangements that were kept before others took their place.
Sheet {
    id: sheet

    required property LauncherController launcher
    readonly property BackupsPanel panel: launcher.backups

    objectName: "backupsSheet"
    title: qsTr("Backups")
    wanted: 620
    onClosed: launcher.sheets.close()

    Column {
        width: sheet.bodyWidth
        spacing: 14

        Text {
            width: parent.width
            visible: text !== ""
            text: sheet.panel.summary
            color: "#b3ffffff"
            wrapMode: Text.Wrap
            textFormat: Text.PlainText
            font.pixelSize: 14
        }

        ListView {
            objectName: "backupsList"
            width: parent.width
            height: Math.min(contentHeight, Math.max(120, sheet.tallest - 120))
            visible: count > 0
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            model: sheet.panel.backups

            delegate: Item {
                id: row

                required property var modelData
                required property int index

                width: ListView.view.width
                height: 56

                Column {
                    anchors.verticalCenter: parent.verticalCenter
                    width: parent.width - action.width - 12

                    Text {
                        width: parent.width
                        text: row.modelData.title
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

                    objectName: "restoreButton"
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    height: 30
                    text: qsTr("Restore…")
                    // Tab goes to rows out of view, too.
                    onActiveFocusChanged: if (activeFocus)
                        row.ListView.view.positionViewAtIndex(row.index, ListView.Contain)
                    onClicked: {
                        const name = row.modelData.name;
                        const panel = sheet.panel;
                        sheet.launcher.sheets.close();
                        panel.restore(name);
                    }
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
