import QtQuick

// A small button with one sign.
Rectangle {
    id: button

    required property string sign
    property string label

    signal clicked

    implicitWidth: 26
    implicitHeight: 26
    radius: height / 2
    color: mouse.pressed ? "#4dffffff" : mouse.containsMouse ? "#38ffffff" : "#1fffffff"
    border.width: activeFocus ? 2 : 0
    border.color: "#4f80ff"
    activeFocusOnTab: true

    Accessible.role: Accessible.Button
    Accessible.name: label
    Accessible.onPressAction: button.clicked()

    Keys.onSpacePressed: button.clicked()

    Row {
        anchors.centerIn: parent
        visible: button.sign === "…"
        spacing: 3

        Repeater {
            model: 3

            Rectangle {
                width: 3
                height: 3
                radius: 1.5
            }
        }
    }

    Rectangle {
        anchors.centerIn: parent
        visible: button.sign !== "…"
        width: 11
        height: 2
        radius: 1
    }

    Rectangle {
        anchors.centerIn: parent
        visible: button.sign === "+"
        width: 2
        height: 11
        radius: 1
    }

    MouseArea {
        id: mouse

        anchors.fill: parent
        hoverEnabled: true
        onClicked: button.clicked()
    }
}
