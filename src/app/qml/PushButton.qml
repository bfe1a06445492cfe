import QtQuick

// A button of alerts and panels. The default one answers to Return.
Rectangle {
    id: button

    required property string text
    property bool isDefault: false
    property bool isDestructive: false

    signal clicked

    implicitWidth: Math.max(88, words.implicitWidth + 32)
    implicitHeight: 34
    radius: 10
    color: isDestructive ? (mouse.pressed ? "#c9362c" : "#e5483d")
                         : isDefault ? (mouse.pressed ? "#3d6ff0" : "#4f80ff")
                                     : (mouse.pressed ? "#38ffffff" : "#24ffffff")
    border.width: isDefault || activeFocus ? 2 : 0
    border.color: activeFocus ? "white" : "#99ffffff"
    opacity: enabled ? 1 : 0.4
    activeFocusOnTab: true

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: button.clicked()

    Keys.onSpacePressed: button.clicked()
    Keys.onReturnPressed: button.clicked()
    Keys.onEnterPressed: button.clicked()

    Text {
        id: words

        anchors.centerIn: parent
        width: Math.min(implicitWidth, parent.width - 20)
        elide: Text.ElideRight
        text: button.text
        color: "white"
        textFormat: Text.PlainText
        font.pixelSize: 14
        font.weight: Font.Medium
    }

    MouseArea {
        id: mouse

        anchors.fill: parent
        onClicked: button.clicked()
    }
}
