import QtQuick

// Something that is on or off.
Rectangle {
    id: control

    required property bool isOn
    property string label

    signal toggled

    implicitWidth: 46
    implicitHeight: 26
    radius: 13
    color: isOn ? "#4f80ff" : "#33ffffff"
    border.width: activeFocus ? 2 : 0
    border.color: "white"
    activeFocusOnTab: true

    Accessible.role: Accessible.CheckBox
    Accessible.name: label
    Accessible.checked: isOn
    Accessible.onPressAction: control.toggled()

    Keys.onSpacePressed: control.toggled()

    Rectangle {
        x: control.isOn ? parent.width - width - 3 : 3
        y: 3
        width: 20
        height: 20
        radius: 10

        Behavior on x {
            NumberAnimation { duration: 120 }
        }
    }

    MouseArea {
        anchors.fill: parent
        onClicked: control.toggled()
    }
}
