import QtQuick
import Tessellar

// Which file an application's icon is to come from.
Sheet {
    id: sheet

    required property LauncherController launcher

    objectName: "iconSheet"
    title: qsTr("Change the Icon of “%1”").arg(launcher.sheets.appName)
    wanted: 520
    onClosed: launcher.sheets.close()

    Column {
        width: sheet.bodyWidth
        spacing: 14

        Text {
            width: parent.width
            text: qsTr("Drop an .icns file here, or give its path.")
            color: "#b3ffffff"
            wrapMode: Text.Wrap
            font.pixelSize: 14
        }

        Rectangle {
            width: parent.width
            height: 38
            radius: 8
            color: drop.containsDrag ? "#404f80ff" : "#1b1e2a"
            border.width: 2
            border.color: "#4f80ff"

            TextInput {
                id: path

                anchors.fill: parent
                anchors.leftMargin: 10
                anchors.rightMargin: 10
                verticalAlignment: TextInput.AlignVCenter
                color: "white"
                selectionColor: "#4f80ff"
                selectByMouse: true
                clip: true
                font.pixelSize: 14

                Accessible.name: qsTr("Path of an .icns file")

                Component.onCompleted: forceActiveFocus()
                Keys.onReturnPressed: sheet.launcher.sheets.changeIcon(text)
                Keys.onEnterPressed: sheet.launcher.sheets.changeIcon(text)
            }

            DropArea {
                id: drop

                anchors.fill: parent
                onDropped: event => {
                    if (event.hasUrls)
                        path.text = sheet.launcher.sheets.localFile(event.urls[0]);
                }
            }
        }

        Row {
            anchors.right: parent.right
            spacing: 10

            PushButton {
                text: qsTr("Cancel")
                onClicked: sheet.launcher.sheets.close()
            }

            PushButton {
                objectName: "iconAccept"
                text: qsTr("Change")
                isDefault: true
                enabled: path.text !== ""
                onClicked: sheet.launcher.sheets.changeIcon(path.text)
            }
        }
    }
}
