import QtQuick
import Tessellar

// Something that the user has to take note of, or to decide, before going on.
Item {
    id: alert

    required property LauncherController launcher
    readonly property bool isQuestion: launcher.alertAccept !== ""

    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.AllButtons
        onWheel: wheel => wheel.accepted = true
    }

    Rectangle {
        anchors.fill: parent
        color: "#80000000"
    }

    Rectangle {
        anchors.centerIn: parent
        width: Math.min(440, parent.width - 40)
        height: column.height + 48
        radius: 20
        color: "#f52b2f40"
        border.color: "#40ffffff"

        Accessible.role: Accessible.AlertMessage
        Accessible.name: alert.launcher.alertTitle

        Column {
            id: column

            anchors.centerIn: parent
            width: parent.width - 48
            spacing: 12

            Text {
                width: parent.width
                text: alert.launcher.alertTitle
                color: "white"
                wrapMode: Text.Wrap
                textFormat: Text.PlainText
                font.pixelSize: 17
                font.weight: Font.DemiBold
            }

            Text {
                width: parent.width
                text: alert.launcher.alertText
                color: "#d9ffffff"
                wrapMode: Text.Wrap
                textFormat: Text.PlainText
                font.pixelSize: 14
                lineHeight: 1.2
                maximumLineCount: 16
                elide: Text.ElideRight
            }

            Row {
                anchors.right: parent.right
                topPadding: 6
                spacing: 10

                PushButton {
                    objectName: "cancelButton"
                    visible: alert.isQuestion
                    text: qsTr("Cancel")
                    isDefault: alert.isQuestion && !alert.launcher.isAcceptDefault
                    onClicked: alert.launcher.answerAlert(false)
                }

                PushButton {
                    objectName: "acceptButton"
                    text: alert.isQuestion ? alert.launcher.alertAccept : qsTr("OK")
                    isDefault: alert.launcher.isAcceptDefault
                    isDestructive: alert.launcher.isAlertDestructive
                    onClicked: alert.launcher.answerAlert(true)
                }
            }
        }
    }
}
