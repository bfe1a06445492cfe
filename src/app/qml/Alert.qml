import QtQuick
import Tessellar

// Something that the user has to take note of, or to decide, before going on.
Item {
    id: box

    required property LauncherController launcher
    readonly property AlertPanel alert: launcher.alert
    readonly property bool isQuestion: alert.accept !== ""

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
        Accessible.name: box.alert.title

        Column {
            id: column

            anchors.centerIn: parent
            width: parent.width - 48
            spacing: 12

            Text {
                width: parent.width
                text: box.alert.title
                color: "white"
                wrapMode: Text.Wrap
                textFormat: Text.PlainText
                font.pixelSize: 17
                font.weight: Font.DemiBold
            }

            Text {
                width: parent.width
                text: box.alert.text
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
                    visible: box.isQuestion
                    text: qsTr("Cancel")
                    isDefault: box.isQuestion && !box.alert.isAcceptDefault
                    onClicked: box.alert.answer(false)
                }

                PushButton {
                    objectName: "acceptButton"
                    text: box.isQuestion ? box.alert.accept : qsTr("OK")
                    isDefault: box.alert.isAcceptDefault
                    isDestructive: box.alert.isDestructive
                    onClicked: box.alert.answer(true)
                }
            }
        }
    }
}
