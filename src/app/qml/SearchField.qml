import QtQuick
import QtQuick.Templates as T
import Tessellar

// Receives what is typed anywhere. Takes the focus as soon as its input has been created.
Item {
    id: field

    required property LauncherController launcher
    // An input method has uncommitted text.
    readonly property bool isComposing: input.item !== null && input.item.preeditText !== ""

    // Takes the focus back.
    function takeKeyboard() {
        if (input.item)
            input.item.forceActiveFocus();
    }

    width: Math.min(240, parent.width - 24)
    height: 30

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius
        color: field.launcher.search.isActive ? Theme.backdropFieldTyped : Theme.backdropField
        border.color: Theme.backdropOutline
    }

    Sign {
        anchors.left: parent.left
        anchors.leftMargin: 9
        anchors.verticalCenter: parent.verticalCenter
        kind: "search"
        color: Theme.backdropTextDim
    }

    Text {
        anchors.left: parent.left
        anchors.leftMargin: 30
        anchors.verticalCenter: parent.verticalCenter
        visible: !field.launcher.search.isActive && !field.isComposing
        text: qsTr("Search")
        color: Theme.backdropTextDim
        font.pixelSize: Theme.textFont
    }

    MouseArea {
        anchors.fill: parent
        onClicked: field.takeKeyboard()

        // The field is invisible until something is typed.
        Accessible.role: Accessible.Button
        Accessible.name: qsTr("Search")
        Accessible.onPressAction: field.takeKeyboard()
    }

    Loader {
        id: input

        anchors.left: parent.left
        anchors.leftMargin: 30
        width: parent.width - 38
        height: parent.height
        active: false
        onLoaded: if (field.launcher.renaming.tileId === "" && !field.launcher.input.isCovered) item.forceActiveFocus()

        sourceComponent: T.TextField {
            id: typed

            objectName: "searchInput"
            verticalAlignment: TextInput.AlignVCenter
            // No blinking cursor while the field is empty.
            opacity: text !== "" || preeditText !== "" ? 1 : 0
            color: Theme.backdropText
            selectionColor: Theme.accent
            selectedTextColor: Theme.accentText
            selectByMouse: true
            clip: true
            font.family: Theme.family
            font.pixelSize: Theme.textFont
            maximumLength: 200

            Accessible.role: Accessible.EditableText
            Accessible.name: qsTr("Search")

            Component.onCompleted: text = field.launcher.search.text
            onTextEdited: field.launcher.search.text = text
            Keys.onPressed: event => event.accepted = field.launcher.input.pressKey(event.key, event.modifiers, event.text)

            Connections {
                target: field.launcher.search
                function onChanged() {
                    if (typed.text !== field.launcher.search.text)
                        typed.text = field.launcher.search.text;
                }
            }
        }
    }

    Timer {
        running: field.launcher.isReady
        interval: Theme.searchInputDelay
        onTriggered: input.active = true
    }

    Connections {
        target: field.launcher.input
        function onCoveredChanged() {
            if (!field.launcher.input.isCovered && !field.launcher.input.menu.isOpen && field.launcher.renaming.tileId === "")
                field.takeKeyboard();
        }
    }

    Connections {
        target: field.launcher.renaming
        function onChanged() {
            if (field.launcher.renaming.tileId === "")
                field.takeKeyboard();
        }
    }
}
