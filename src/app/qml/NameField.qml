import QtQuick
import QtQuick.Templates as T
import Tessellar

// Edits a name in place.
T.TextField {
    id: field

    required property LauncherController launcher
    required property string name

    height: contentHeight + 8
    leftPadding: 8
    rightPadding: 8
    verticalAlignment: TextInput.AlignVCenter
    horizontalAlignment: contentWidth < width - 16 ? TextInput.AlignHCenter : TextInput.AlignLeft
    color: Theme.text
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentText
    selectByMouse: true
    clip: true
    maximumLength: 255
    font.family: Theme.family
    renderType: Text.QtRendering
    background: Rectangle {
        radius: Theme.fieldRadius
        color: Theme.well
        border.width: Theme.focusWidth
        border.color: Theme.accent
    }

    Accessible.name: qsTr("Name")

    Component.onCompleted: {
        text = field.name;
        selectAll();
        forceActiveFocus();
    }
    onEditingFinished: field.launcher.renaming.end(text)
    Keys.onEscapePressed: field.launcher.renaming.cancel()
    // Keep the key from the tile below.
    Keys.onReturnPressed: field.launcher.renaming.end(text)
    Keys.onEnterPressed: field.launcher.renaming.end(text)
}
