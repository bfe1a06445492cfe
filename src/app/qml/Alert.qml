import QtQuick

// Something that the user has to take note of before going on.
Item {
    id: alert

    required property bool isShown
    required property string title
    required property string text

    signal dismissed

    visible: isShown

    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        onWheel: wheel => wheel.accepted = true
    }

    Rectangle {
        anchors.fill: parent
        color: "#80000000"
    }

    Rectangle {
        anchors.centerIn: parent
        width: Math.min(420, parent.width - 40)
        height: column.height + 48
        radius: 20
        color: "#f52b2f40"
        border.color: "#40ffffff"

        Accessible.role: Accessible.AlertMessage
        Accessible.name: alert.title

        Column {
            id: column

            anchors.centerIn: parent
            width: parent.width - 48
            spacing: 12

            Text {
                width: parent.width
                text: alert.title
                color: "white"
                wrapMode: Text.Wrap
                textFormat: Text.PlainText
                font.pixelSize: 17
                font.weight: Font.DemiBold
            }

            Text {
                width: parent.width
                text: alert.text
                color: "#d9ffffff"
                wrapMode: Text.Wrap
                textFormat: Text.PlainText
                font.pixelSize: 14
                lineHeight: 1.2
            }

            Rectangle {
                anchors.right: parent.right
                width: 88
                height: 34
                radius: 10
                color: tap.pressed ? "#3d6ff0" : "#4f80ff"

                Accessible.role: Accessible.Button
                Accessible.name: ok.text
                Accessible.onPressAction: alert.dismissed()

                Text {
                    id: ok

                    anchors.centerIn: parent
                    text: qsTr("OK")
                    color: "white"
                    font.pixelSize: 14
                    font.weight: Font.Medium
                }

                TapHandler {
                    id: tap

                    gesturePolicy: TapHandler.ReleaseWithinBounds
                    onTapped: alert.dismissed()
                }
            }
        }
    }
}
