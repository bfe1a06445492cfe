import QtQuick
import QtQuick.Templates as T
import Tessellar

// A few choices side by side, one of them chosen: {title, isChosen}. The arrow keys choose. Stacked if there is no
// room.
FocusScope {
    id: control

    required property var choices

    signal chosen(int index)
    signal stepped(int by)

    // Side by side.
    implicitWidth: {
        let sum = 0;
        for (let i = 0; i < row.children.length; ++i)
            if (row.children[i].implicitWidth > 0)
                sum += row.children[i].implicitWidth + (sum > 0 ? row.spacing : 0);
        return sum;
    }
    implicitHeight: row.height
    activeFocusOnTab: true
    opacity: enabled ? 1 : Theme.unavailable

    Keys.onLeftPressed: control.stepped(Theme.isMirrored ? 1 : -1)
    Keys.onRightPressed: control.stepped(Theme.isMirrored ? -1 : 1)

    Flow {
        id: row

        width: control.width
        spacing: 6

        Repeater {
            model: control.choices.length

            T.AbstractButton {
                id: choice

                required property int index
                readonly property var modelData: control.choices[index] ?? ({ title: "", isChosen: false })
                readonly property bool isSpoken: control.activeFocus && modelData.isChosen
                onIsSpokenChanged: if (isSpoken) AccessibleFocus.moveTo(choice)

                implicitWidth: words.implicitWidth + 24
                implicitHeight: Theme.controlHeight
                text: modelData.title
                focusPolicy: Qt.NoFocus
                hoverEnabled: true
                onClicked: control.chosen(index)

                Accessible.role: Accessible.RadioButton
                Accessible.name: text
                Accessible.checked: modelData.isChosen
                Accessible.onPressAction: control.chosen(index)

                background: Rectangle {
                    radius: Theme.controlRadius
                    color: choice.modelData.isChosen ? Theme.accent : choice.hovered ? Theme.controlHovered : Theme.control
                    border.width: choice.modelData.isChosen && control.activeFocus ? Theme.focusWidth : 0
                    border.color: Theme.focusRing
                }

                contentItem: Text {
                    id: words

                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    text: choice.text
                    color: choice.modelData.isChosen ? Theme.accentText : Theme.text
                    textFormat: Text.PlainText
                    font.pixelSize: Theme.controlFont
                }
            }
        }
    }
}
