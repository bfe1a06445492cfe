import QtQuick
import QtQuick.Templates as T
import Tessellar

// A text field for sheets. Follows `value`, except while the user is typing.
Item {
    id: box

    required property string value
    property string label
    property string placeholder
    property bool needsInput: false
    // A button at the end for choosing from a list, also opened by Alt+Down.
    property bool hasButton: false
    // Buttons at the end for stepping up and down, as the arrow keys do.
    property bool hasSteps: false
    property alias input: input

    readonly property int edge: 9
    readonly property real endRoom: Math.max(edge, ends.width)

    signal edited(string text)
    signal buttonPressed
    signal stepped(int by)

    function pressButton() {
        input.forceActiveFocus();
        buttonPressed();
    }

    implicitWidth: 120
    implicitHeight: Theme.controlHeight
    opacity: enabled ? 1 : Theme.unavailable

    onValueChanged: if (!input.isTyped && input.text !== value) input.text = value

    T.TextField {
        id: input

        property bool isTyped: false

        function step(by, event) {
            event.accepted = box.hasSteps;
            if (box.hasSteps)
                box.stepped(by);
        }

        anchors.fill: parent
        leftPadding: Theme.isMirrored ? box.endRoom : box.edge
        rightPadding: Theme.isMirrored ? box.edge : box.endRoom
        verticalAlignment: TextInput.AlignVCenter
        activeFocusOnTab: true
        color: Theme.text
        selectionColor: Theme.accent
        selectedTextColor: Theme.accentText
        selectByMouse: true
        clip: true
        font.family: Theme.family
        font.pixelSize: Theme.controlFont
        background: Rectangle {
            radius: Theme.fieldRadius
            color: Theme.well
            border.width: input.activeFocus ? Theme.focusWidth : 1
            border.color: input.activeFocus ? Theme.accent : box.needsInput ? Theme.warning : Theme.wellOutline
        }

        Accessible.name: box.label

        Component.onCompleted: text = box.value
        onTextEdited: {
            isTyped = true;
            box.edited(text);
            isTyped = false;
        }
        // Normalizes what was typed.
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
        anchors.leftMargin: box.edge
        anchors.rightMargin: box.endRoom
        visible: input.text === "" && input.preeditText === ""
        horizontalAlignment: Text.AlignLeft
        text: box.placeholder
        color: Theme.textHint
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
                model: box.hasSteps ? 2 : 0

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
                        interval: repeats ? Theme.repeatTime : Theme.repeatDelay
                        repeat: true
                        running: arrow.pressed
                        property bool repeats: false
                        onRunningChanged: repeats = false
                        onTriggered: {
                            repeats = true;
                            box.stepped(arrow.by);
                        }
                    }

                    Sign {
                        anchors.centerIn: parent
                        kind: arrow.by > 0 ? "up" : "down"
                        color: arrow.containsMouse ? Theme.text : Theme.textFaint
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

            Sign {
                anchors.centerIn: parent
                kind: "down"
                color: parent.containsMouse ? Theme.text : Theme.textFaint
            }
        }
    }
}
