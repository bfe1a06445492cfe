import QtQuick

// A button that shows what is chosen and opens a menu of what may be.
Rectangle {
    id: button

    required property string text
    property string label
    property string placeholder
    property bool needsInput: false

    // With the place, in the window, below which the menu is to open.
    signal pressed(point below)

    function press() {
        forceActiveFocus();
        pressed(mapToItem(null, 0, height + 3));
    }

    implicitWidth: words.implicitWidth + 38
    implicitHeight: 30
    radius: 7
    color: mouse.containsMouse ? "#38ffffff" : "#24ffffff"
    border.width: activeFocus ? 2 : needsInput ? 1 : 0
    border.color: activeFocus ? "#4f80ff" : "#ffb340"
    activeFocusOnTab: true

    Accessible.role: Accessible.ButtonMenu
    Accessible.name: label
    Accessible.description: text
    Accessible.onPressAction: button.press()

    Keys.onSpacePressed: button.press()
    Keys.onDownPressed: button.press()

    Text {
        id: words

        anchors.left: parent.left
        anchors.leftMargin: 11
        anchors.right: parent.right
        anchors.rightMargin: 24
        anchors.verticalCenter: parent.verticalCenter
        text: button.text === "" ? button.placeholder : button.text
        color: button.text === "" ? "#99ffffff" : "white"
        elide: Text.ElideRight
        textFormat: Text.PlainText
        font.pixelSize: 13
    }

    // Two arrowheads, up and down.
    Repeater {
        model: 4

        Rectangle {
            required property int index
            readonly property bool isRight: index % 2
            readonly property bool isLower: index > 1

            x: button.width - 19 + (isRight ? 3.5 : 0)
            y: button.height / 2 + (isLower ? 3 : -5)
            width: 6
            height: 1.6
            radius: 0.8
            rotation: isRight === isLower ? -45 : 45
            antialiasing: true
            color: "#b3ffffff"
        }
    }

    MouseArea {
        id: mouse

        anchors.fill: parent
        hoverEnabled: true
        onPressed: button.press()
    }
}
