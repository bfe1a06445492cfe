import QtQuick
import Tessellar

// Where a new name is typed, over the old one.
Rectangle {
    id: field

    required property LauncherController launcher
    required property string name
    property alias font: input.font

    height: input.implicitHeight + 8
    radius: 6
    color: "#f01b1e2a"
    border.width: 2
    border.color: "#4f80ff"

    Component.onCompleted: {
        input.text = field.name;
        input.selectAll();
        input.forceActiveFocus();
    }

    TextInput {
        id: input

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.margins: 8
        anchors.verticalCenter: parent.verticalCenter
        horizontalAlignment: contentWidth < width ? TextInput.AlignHCenter : TextInput.AlignLeft
        color: "white"
        selectionColor: "#4f80ff"
        selectedTextColor: "white"
        selectByMouse: true
        clip: true
        maximumLength: 255
        renderType: Text.QtRendering

        Accessible.name: qsTr("Name")

        onEditingFinished: field.launcher.renaming.end(text)
        Keys.onEscapePressed: field.launcher.renaming.cancel()
        // Not for the tile below as well.
        Keys.onReturnPressed: field.launcher.renaming.end(text)
        Keys.onEnterPressed: field.launcher.renaming.end(text)
    }
}
