import QtQuick

// A box to tick, with its words.
Item {
    id: mark

    required property string text
    required property bool isChecked

    signal toggled

    implicitWidth: words.x + words.implicitWidth
    implicitHeight: Math.max(18, words.implicitHeight)
    activeFocusOnTab: true

    Accessible.role: Accessible.CheckBox
    Accessible.name: text
    Accessible.checked: isChecked
    Accessible.onPressAction: mark.toggled()

    Keys.onSpacePressed: mark.toggled()

    Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        width: 18
        height: 18
        radius: 5
        color: mark.isChecked ? "#4f80ff" : "transparent"
        border.width: mark.activeFocus ? 2 : mark.isChecked ? 0 : 1
        border.color: mark.activeFocus ? "white" : "#80ffffff"

        Text {
            anchors.centerIn: parent
            visible: mark.isChecked
            text: "✓"
            color: "white"
            font.pixelSize: 13
            font.weight: Font.Bold
        }
    }

    Text {
        id: words

        x: 26
        anchors.verticalCenter: parent.verticalCenter
        text: mark.text
        color: "white"
        font.pixelSize: 14
    }

    MouseArea {
        anchors.fill: parent
        onClicked: mark.toggled()
    }
}
