import QtQuick
import Tessellar

// What is known of updates, the check that runs, and the settings of checks.
Sheet {
    id: sheet

    required property LauncherController launcher
    readonly property UpdatesPanel updates: launcher.updates

    objectName: "updatesSheet"
    title: updates.title
    wanted: 680
    onClosed: launcher.sheets.close()

    Column {
        width: sheet.bodyWidth
        spacing: 14

        Text {
            width: parent.width
            text: sheet.updates.explanation
            color: "#b3ffffff"
            wrapMode: Text.Wrap
            textFormat: Text.PlainText
            font.pixelSize: 13
            lineHeight: 1.15
        }

        Item {
            width: parent.width
            height: 32

            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: qsTr("Check for updates")
                color: "white"
                font.pixelSize: 14
            }

            Rectangle {
                objectName: "updatesSwitch"
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                width: 46
                height: 26
                radius: 13
                color: sheet.updates.isEnabled ? "#4f80ff" : "#33ffffff"

                Accessible.role: Accessible.CheckBox
                Accessible.name: qsTr("Check for updates")
                Accessible.checked: sheet.updates.isEnabled
                Accessible.onPressAction: sheet.updates.isEnabled = !sheet.updates.isEnabled

                Rectangle {
                    x: sheet.updates.isEnabled ? parent.width - width - 3 : 3
                    y: 3
                    width: 20
                    height: 20
                    radius: 10
                }

                MouseArea {
                    anchors.fill: parent
                    onClicked: sheet.updates.isEnabled = !sheet.updates.isEnabled
                }
            }
        }

        Item {
            width: parent.width
            height: 32
            opacity: sheet.updates.isEnabled ? 1 : 0.4
            enabled: sheet.updates.isEnabled

            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: qsTr("Every")
                color: "white"
                font.pixelSize: 14
            }

            Row {
                anchors.right: parent.right
                spacing: 6

                Repeater {
                    model: sheet.updates.intervals

                    Rectangle {
                        id: interval

                        required property var modelData

                        width: words.implicitWidth + 24
                        height: 30
                        radius: 9
                        color: modelData.isChosen ? "#4f80ff" : "#24ffffff"

                        Accessible.role: Accessible.RadioButton
                        Accessible.name: modelData.title
                        Accessible.onPressAction: sheet.updates.chooseInterval(modelData.seconds)

                        Text {
                            id: words

                            anchors.centerIn: parent
                            text: interval.modelData.title
                            color: "white"
                            font.pixelSize: 13
                        }

                        MouseArea {
                            anchors.fill: parent
                            onClicked: sheet.updates.chooseInterval(interval.modelData.seconds)
                        }
                    }
                }
            }
        }

        Rectangle {
            width: parent.width
            height: 1
            color: "#1fffffff"
        }

        Text {
            width: parent.width
            text: sheet.updates.summary
            visible: text !== ""
            color: "white"
            wrapMode: Text.Wrap
            textFormat: Text.PlainText
            font.pixelSize: 15
        }

        Column {
            width: parent.width
            visible: sheet.updates.isChecking
            spacing: 6

            Rectangle {
                width: parent.width
                height: 6
                radius: 3
                color: "#24ffffff"

                Rectangle {
                    width: Math.max(6, parent.width * sheet.updates.progress)
                    height: 6
                    radius: 3
                    color: "#4f80ff"
                }
            }

            Text {
                width: parent.width
                text: sheet.updates.progressText
                color: "#99ffffff"
                elide: Text.ElideRight
                textFormat: Text.PlainText
                font.pixelSize: 12
            }
        }

        ListView {
            width: parent.width
            height: Math.min(contentHeight, Math.max(120, sheet.tallest - 330))
            visible: count > 0
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            model: sheet.updates.available

            delegate: Item {
                id: row

                required property var modelData

                width: ListView.view.width
                height: 56

                IconItem {
                    anchors.verticalCenter: parent.verticalCenter
                    width: 40
                    height: 40
                    icons: sheet.launcher.icons
                    appKeys: [row.modelData.appKey]
                }

                Column {
                    x: 52
                    anchors.verticalCenter: parent.verticalCenter
                    width: parent.width - x - action.width - 12

                    Text {
                        width: parent.width
                        text: row.modelData.name
                        color: "white"
                        elide: Text.ElideRight
                        textFormat: Text.PlainText
                        font.pixelSize: 14
                    }

                    Text {
                        width: parent.width
                        text: row.modelData.text
                        color: "#99ffffff"
                        elide: Text.ElideRight
                        textFormat: Text.PlainText
                        font.pixelSize: 12
                    }
                }

                PushButton {
                    id: action

                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    width: Math.min(implicitWidth, row.width * 0.55)
                    height: 30
                    visible: row.modelData.isRunning || row.modelData.action !== ""
                    enabled: row.modelData.isRunning || row.modelData.canRun
                    text: row.modelData.isRunning ? qsTr("Cancel") : row.modelData.action
                    onClicked: row.modelData.isRunning ? sheet.updates.cancelRun()
                                                       : sheet.updates.run(row.modelData.appKey)
                }
            }
        }

        Row {
            anchors.right: parent.right
            spacing: 10

            PushButton {
                objectName: "checkButton"
                enabled: sheet.updates.isEnabled
                text: sheet.updates.isChecking ? qsTr("Cancel") : qsTr("Check Now")
                onClicked: sheet.updates.isChecking ? sheet.updates.cancelCheck() : sheet.updates.checkNow()
            }

            PushButton {
                text: qsTr("Done")
                isDefault: true
                onClicked: sheet.launcher.sheets.close()
            }
        }
    }
}
