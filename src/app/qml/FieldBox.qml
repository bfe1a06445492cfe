import QtQuick

// Where text is typed, in a sheet. What is shown follows `value`, but never under the hands of who types.
Rectangle {
    id: box

    required property string value
    property string label
    property string placeholder
    property bool needsInput: false
    // A button at its end, for what may be chosen instead: the key Alt+Down presses it.
    property bool hasButton: false
    // Arrows at its end, and the arrow keys, for a little more or less.
    property bool hasSteps: false
    property alias input: input

    signal edited(string text)
    signal buttonPressed
    signal stepped(int by)

    function pressButton() {
        input.forceActiveFocus();
        buttonPressed();
    }

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

        function step(by, event) {
            event.accepted = box.hasSteps;
            if (box.hasSteps)
                box.stepped(by);
        }

        anchors.fill: parent
        anchors.leftMargin: 9
        anchors.rightMargin: Math.max(9, ends.width)
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
        Keys.onUpPressed: event => step(1, event)
        Keys.onDownPressed: event => {
            if (box.hasButton && (!box.hasSteps || event.modifiers & Qt.AltModifier))
                box.buttonPressed();
            else
                step(-1, event);
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

    Row {
        id: ends

        anchors.right: parent.right
        height: parent.height

        Column {
            visible: box.hasSteps
            anchors.verticalCenter: parent.verticalCenter
            width: visible ? 18 : 0

            Repeater {
                model: 2

                MouseArea {
                    id: arrow

                    required property int index
                    readonly property int by: index === 0 ? 1 : -1

                    objectName: index === 0 ? "stepUp" : "stepDown"
                    width: 18
                    height: 13
                    hoverEnabled: true
                    onPressed: {
                        input.forceActiveFocus();
                        box.stepped(by);
                    }

                    Accessible.role: Accessible.Button
                    Accessible.name: index === 0 ? qsTr("More") : qsTr("Less")
                    Accessible.onPressAction: box.stepped(by)

                    Timer {
                        interval: repeats ? 60 : 400
                        repeat: true
                        running: arrow.pressed
                        property bool repeats: false
                        onRunningChanged: repeats = false
                        onTriggered: {
                            repeats = true;
                            box.stepped(arrow.by);
                        }
                    }

                    // An arrowhead.
                    Repeater {
                        model: 2

                        Rectangle {
                            required property int index

                            x: 5.5 + index * 3.5
                            y: 6
                            width: 5.5
                            height: 1.6
                            radius: 0.8
                            rotation: (index === 0) === (arrow.by > 0) ? -42 : 42
                            antialiasing: true
                            color: arrow.containsMouse ? "white" : "#99ffffff"
                        }
                    }
                }
            }
        }

        MouseArea {
            objectName: "fieldButton"
            width: box.hasButton ? 26 : 0
            height: parent.height
            visible: box.hasButton
            hoverEnabled: true
            onClicked: box.pressButton()

            Accessible.role: Accessible.ButtonMenu
            Accessible.name: qsTr("Suggestions")
            Accessible.onPressAction: box.pressButton()

            Text {
                anchors.centerIn: parent
                text: "▾"
                color: parent.containsMouse ? "white" : "#99ffffff"
                font.pixelSize: 12
            }
        }
    }
}
