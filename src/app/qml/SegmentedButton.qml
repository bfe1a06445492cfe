import QtQuick

// A few choices beside each other, one of them chosen: {title, isChosen}. The arrow keys choose.
FocusScope {
    id: control

    required property var choices

    signal chosen(int index)
    signal stepped(int by)

    implicitWidth: row.width
    implicitHeight: 30
    activeFocusOnTab: true

    Keys.onLeftPressed: control.stepped(-1)
    Keys.onRightPressed: control.stepped(1)

    Row {
        id: row

        spacing: 6

        Repeater {
            model: control.choices.length

            Rectangle {
                id: choice

                required property int index
                readonly property var modelData: control.choices[index] ?? ({ title: "", isChosen: false })

                width: words.implicitWidth + 24
                height: 30
                radius: 9
                color: modelData.isChosen ? "#4f80ff" : "#24ffffff"
                border.width: modelData.isChosen && control.activeFocus ? 2 : 0
                border.color: "white"

                Accessible.role: Accessible.RadioButton
                Accessible.name: modelData.title
                Accessible.checked: modelData.isChosen
                Accessible.onPressAction: control.chosen(index)

                Text {
                    id: words

                    anchors.centerIn: parent
                    text: choice.modelData.title
                    color: "white"
                    font.pixelSize: 13
                }

                MouseArea {
                    anchors.fill: parent
                    onClicked: control.chosen(choice.index)
                }
            }
        }
    }
}
