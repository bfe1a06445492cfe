import QtQuick

// Where text is typed, in a sheet. What is shown follows `value`, but never under the hands of who types.
Rectangle {
    id: box

    required property string value
    property string label
    property string placeholder
    property bool needsInput: false
    // A button at its end, for what may be chosen instead.
    property bool hasButton: false
    property alias input: input

    signal edited(string text)
    signal buttonPressed

    implicitWidth: 120
    implicitHeight: 30
    radius: 7
    color: "#1b1e2a"
    border.width: input.activeFocus ? 2 : 1
    border.color: input.activeFocus ? "#4f80ff" : needsInput ? "#ffb340" : "#30ffffff"
    opacity: enabled ? 1 : 0.4

    onValueChanged: if (!input.isTyped && input.text !== value) input.text = value

    TextInput {
        id: input

        property bool isTyped: false

        anchors.fill: parent
        anchors.leftMargin: 9
        anchors.rightMargin: box.hasButton ? 28 : 9
        verticalAlignment: TextInput.AlignVCenter
        activeFocusOnTab: true
        color: "white"
        selectionColor: "#4f80ff"
        selectedTextColor: "white"
        selectByMouse: true
        clip: true
        font.pixelSize: 13

        Accessible.name: box.label

        Component.onCompleted: text = box.value
        onTextEdited: {
            isTyped = true;
            box.edited(text);
            isTyped = false;
        }
        // What was typed in another form than is usual is now written in that.
        onActiveFocusChanged: {
            if (activeFocus)
                selectAll();
            else if (text !== box.value)
                text = box.value;
            if (!activeFocus)
                deselect();
        }
    }

    Text {
        anchors.fill: input
        visible: input.text === "" && input.preeditText === ""
        text: box.placeholder
        color: "#66ffffff"
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        textFormat: Text.PlainText
        font: input.font
    }

    MouseArea {
        anchors.right: parent.right
        width: 28
        height: parent.height
        visible: box.hasButton
        hoverEnabled: true
        onClicked: {
            input.forceActiveFocus();
            box.buttonPressed();
        }

        Accessible.role: Accessible.ButtonMenu
        Accessible.name: qsTr("Suggestions")
        Accessible.onPressAction: box.buttonPressed()

        Text {
            anchors.centerIn: parent
            text: "▾"
            color: parent.containsMouse ? "white" : "#99ffffff"
            font.pixelSize: 12
        }
    }
}
