import QtQuick
import Tessellar

// A month to pick a day from, below its text field.
Item {
    id: root

    required property DayPicker days

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        onClicked: root.days.close()
        onWheel: wheel => wheel.accepted = true
    }

    Rectangle {
        id: panel

        readonly property int cell: 34

        objectName: "dayGrid"
        x: Math.round(Math.max(8, Math.min(root.days.position.x, root.width - width - 8)))
        y: Math.round(Math.max(8, Math.min(root.days.position.y, root.height - height - 8)))
        width: 7 * cell + 24
        height: column.height + 22
        radius: Theme.menuRadius
        color: Theme.panel
        border.color: Theme.panelOutline

        Accessible.role: Accessible.PopupMenu
        Accessible.name: root.days.title

        MouseArea {
            anchors.fill: parent
            acceptedButtons: Qt.AllButtons
            onWheel: wheel => root.days.turn(wheel.angleDelta.y > 0 ? -1 : 1)
        }

        Column {
            id: column

            x: 12
            y: 10
            width: parent.width - 24
            spacing: 4

            Item {
                width: parent.width
                height: 30

                Text {
                    anchors.left: parent.left
                    anchors.leftMargin: 8
                    width: parent.width - turning.width - 12
                    anchors.verticalCenter: parent.verticalCenter
                    text: root.days.title
                    color: Theme.text
                    elide: Text.ElideRight
                    textFormat: Text.PlainText
                    font.pixelSize: Theme.titleFont
                    font.weight: Font.DemiBold
                }

                Row {
                    id: turning

                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    spacing: 2

                    Repeater {
                        model: [
                            { sign: "‹", name: qsTr("Previous month"), by: -1 },
                            { sign: "•", name: qsTr("Today"), by: 0 },
                            { sign: "›", name: qsTr("Next month"), by: 1 }
                        ]

                        Rectangle {
                            id: turn

                            required property var modelData

                            objectName: "monthTurn" + modelData.by
                            width: 28
                            height: 28
                            radius: width / 2
                            color: area.containsMouse ? Theme.control : Theme.clear

                            Accessible.role: Accessible.Button
                            Accessible.name: modelData.name
                            Accessible.onPressAction: area.act()

                            Text {
                                anchors.centerIn: parent
                                text: turn.modelData.sign
                                color: Theme.text
                                font.pixelSize: Theme.alertFont
                            }

                            MouseArea {
                                id: area

                                function act() {
                                    if (turn.modelData.by === 0)
                                        root.days.goToToday();
                                    else
                                        root.days.turn(turn.modelData.by);
                                }

                                anchors.fill: parent
                                hoverEnabled: true
                                onClicked: act()
                            }
                        }
                    }
                }
            }

            Row {
                Repeater {
                    model: root.days.weekdays

                    Text {
                        required property string modelData

                        width: panel.cell
                        height: 22
                        horizontalAlignment: Text.AlignHCenter
                        verticalAlignment: Text.AlignVCenter
                        text: modelData
                        color: Theme.textFaint
                        font.pixelSize: Theme.noteFont
                    }
                }
            }

            Grid {
                columns: 7

                Repeater {
                    // A count as the model: it never changes, so the cells are reused.
                    model: root.days.days.length

                    Item {
                        id: day

                        required property int index
                        readonly property var modelData: root.days.days[index]
                            ?? ({ text: "", name: "", isInMonth: false, isToday: false, isChosen: false, isCurrent: false })

                        objectName: modelData.isInMonth ? "day" + modelData.text : "dayBeside"
                        width: panel.cell
                        height: panel.cell - 2

                        Accessible.role: Accessible.MenuItem
                        Accessible.name: modelData.name
                        Accessible.onPressAction: root.days.choose(index)

                        Rectangle {
                            anchors.centerIn: parent
                            width: 30
                            height: 30
                            radius: width / 2
                            color: day.modelData.isChosen ? Theme.accent : pointer.containsMouse ? Theme.control : Theme.clear
                            border.width: day.modelData.isCurrent ? 2 : day.modelData.isToday ? 1 : 0
                            border.color: day.modelData.isCurrent ? Theme.text : Theme.textFaint
                        }

                        Text {
                            anchors.centerIn: parent
                            text: day.modelData.text
                            color: day.modelData.isChosen ? Theme.accentText : day.modelData.isInMonth ? Theme.text : Theme.textHint
                            font.pixelSize: Theme.controlFont
                        }

                        MouseArea {
                            id: pointer

                            anchors.fill: parent
                            hoverEnabled: true
                            onClicked: root.days.choose(day.index)
                        }
                    }
                }
            }
        }
    }
}
