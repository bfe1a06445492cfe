import QtQuick
import QtQuick.Templates as T
import Tessellar

// A few choices beside each other, one of them chosen: {title, isChosen}. The arrow keys choose. They go below each
// other where there is no room.
FocusScope {
    id: control

    required property var choices

    signal chosen(int index)
    signal stepped(int by)

    implicitWidth: row.implicitWidth
    implicitHeight: row.implicitHeight
    height: row.height
    activeFocusOnTab: true
    opacity: enabled ? 1 : Theme.unavailable

    Keys.onLeftPressed: control.stepped(-1)
    Keys.onRightPressed: control.stepped(1)

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

                implicitWidth: words.implicitWidth + 24
                implicitHeight: Theme.controlHeight
                text: modelData.title
                focusPolicy: Qt.NoFocus
                hoverEnabled: true
                onClicked: control.chosen(index)

                Accessible.role: Accessible.RadioButton
                Accessible.name: text
                Accessible.checked: modelData.isChosen

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
                    color: choice.modelData.isChosen ? Theme.onAccent : Theme.text
                    textFormat: Text.PlainText
                    font.pixelSize: Theme.controlFont
                }
            }
        }
    }
}
