import QtQuick
import Tessellar

// What is typed anywhere comes here. It has the keyboard as soon as there is time to make it.
Item {
    id: field

    required property LauncherController launcher

    // Back to it after something else had the keyboard.
    function takeKeyboard() {
        if (input.item)
            input.item.forceActiveFocus();
    }

    width: 240
    height: 30

    Rectangle {
        anchors.fill: parent
        radius: 9
        color: field.launcher.search.isActive ? "#40ffffff" : "#1fffffff"
        border.color: "#2bffffff"
    }

    // A magnifying glass.
    Item {
        x: 9
        anchors.verticalCenter: parent.verticalCenter
        width: 14
        height: 14
        opacity: 0.75

        Rectangle {
            width: 10
            height: 10
            radius: 5
            color: "transparent"
            border.width: 2
            border.color: "white"
        }

        Rectangle {
            x: 8
            y: 10
            width: 6
            height: 2
            radius: 1
            rotation: 45
        }
    }

    Text {
        x: 30
        anchors.verticalCenter: parent.verticalCenter
        visible: !field.launcher.search.isActive
        text: qsTr("Search")
        color: "#99ffffff"
        font.pixelSize: 14
    }

    MouseArea {
        anchors.fill: parent
        onClicked: field.takeKeyboard()
    }

    Loader {
        id: input

        x: 30
        width: parent.width - 38
        height: parent.height
        active: false
        onLoaded: if (field.launcher.renaming.tileId === "" && !field.launcher.isCovered) item.forceActiveFocus()

        sourceComponent: TextInput {
            id: typed

            objectName: "searchInput"
            verticalAlignment: TextInput.AlignVCenter
            opacity: text !== "" ? 1 : 0
            color: "white"
            selectionColor: "#4f80ff"
            clip: true
            font.pixelSize: 14
            maximumLength: 200

            Accessible.name: qsTr("Search")

            Component.onCompleted: text = field.launcher.search.text
            onTextEdited: field.launcher.search.text = text
            Keys.onPressed: event => event.accepted = field.launcher.pressKey(event.key, event.modifiers)

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
        interval: 80
        onTriggered: input.active = true
    }

    Connections {
        target: field.launcher
        function onCoveredChanged() {
            if (!field.launcher.isCovered && !field.launcher.menu.isOpen && field.launcher.renaming.tileId === "")
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
