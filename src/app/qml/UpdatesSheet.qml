import QtQuick
import Tessellar

// What is known of updates, those that run and the check that does, and the settings of checks.
Sheet {
    id: sheet

    required property LauncherController launcher
    readonly property UpdatesPanel updates: launcher.updates
    readonly property bool isSmall: height < 620

    objectName: "updatesSheet"
    title: updates.title
    wanted: 720
    onClosed: launcher.sheets.close()
    Component.onCompleted: list.forceActiveFocus()

    Column {
        width: sheet.bodyWidth
        spacing: sheet.isSmall ? 8 : 12

        Item {
            id: head

            width: parent.width
            height: Math.max(34, summary.height)

            Text {
                id: summary

                objectName: "updatesSummary"
                anchors.left: parent.left
                anchors.right: actions.left
                anchors.rightMargin: 14
                anchors.verticalCenter: parent.verticalCenter
                text: sheet.updates.summary !== "" ? sheet.updates.summary : qsTr("Not checked yet.")
                color: "white"
                wrapMode: Text.Wrap
                elide: Text.ElideRight
                maximumLineCount: 3
                textFormat: Text.PlainText
                font.pixelSize: 14
            }

            Row {
                id: actions

                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                spacing: 8

                PushButton {
                    objectName: "checkButton"
                    enabled: sheet.updates.isEnabled
                    text: sheet.updates.isChecking ? qsTr("Stop") : qsTr("Check Now")
                    onClicked: sheet.updates.isChecking ? sheet.updates.cancelCheck() : sheet.updates.checkNow()
                }

                PushButton {
                    objectName: "updateAllButton"
                    visible: sheet.updates.isRunning || sheet.updates.runnableCount > 0
                    text: sheet.updates.isRunning ? qsTr("Cancel All") : qsTr("Update All")
                    onClicked: sheet.updates.isRunning ? sheet.updates.cancelRun() : sheet.updates.runAll()
                }
            }
        }

        Column {
            id: check

            width: parent.width
            visible: sheet.updates.isChecking
            spacing: 5

            Rectangle {
                width: parent.width
                height: 5
                radius: 2.5
                color: "#24ffffff"

                Rectangle {
                    width: Math.max(5, parent.width * sheet.updates.progress)
                    height: 5
                    radius: 2.5
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
            id: list

            // What all else leaves of the window.
            readonly property real room: sheet.height - 130 - head.height - settings.height - 34
                                         - (check.visible ? check.height + parent.spacing : 0)
                                         - parent.spacing * 3

            // Until somebody has moved in it, it begins with what matters most.
            property bool isUsed: false

            objectName: "updatesList"
            width: parent.width
            height: Math.max(72, Math.min(contentHeight, room))
            clip: true
            spacing: 2
            activeFocusOnTab: true
            keyNavigationEnabled: true
            boundsBehavior: Flickable.StopAtBounds
            highlightMoveDuration: 0
            model: sheet.updates.rows

            onCountChanged: {
                if (!isUsed) {
                    currentIndex = 0;
                    positionViewAtBeginning();
                }
            }

            Keys.onPressed: event => {
                isUsed = true;
                event.accepted = event.key === Qt.Key_Home || event.key === Qt.Key_End;
                if (event.accepted)
                    currentIndex = event.key === Qt.Key_Home ? 0 : count - 1;
            }
            Keys.onReturnPressed: sheet.updates.act(currentIndex)
            Keys.onEnterPressed: sheet.updates.act(currentIndex)
            Keys.onSpacePressed: sheet.updates.act(currentIndex)
            Keys.onMenuPressed: if (currentItem && !currentItem.isSection) currentItem.openMenu()
            Keys.onRightPressed: if (currentItem && !currentItem.isSection) currentItem.openMenu()

            Accessible.role: Accessible.List
            Accessible.name: sheet.title

            delegate: UpdateRow {
                width: ListView.view.width
                launcher: sheet.launcher
                isCurrent: ListView.isCurrentItem
                hasKeyboard: list.activeFocus
                onPressed: {
                    list.isUsed = true;
                    list.currentIndex = index;
                    list.forceActiveFocus();
                }
            }

            Text {
                anchors.centerIn: parent
                visible: list.count === 0
                text: sheet.updates.isChecking ? "" : qsTr("What can be updated is listed here.")
                color: "#66ffffff"
                font.pixelSize: 13
            }
        }

        Column {
            id: settings

            width: parent.width
            spacing: sheet.isSmall ? 6 : 10

            Rectangle {
                width: parent.width
                height: 1
                color: "#1fffffff"
            }

            Item {
                width: parent.width
                height: 32

                Switch {
                    id: power

                    objectName: "updatesSwitch"
                    anchors.verticalCenter: parent.verticalCenter
                    label: qsTr("Check for updates")
                    isOn: sheet.updates.isEnabled
                    onToggled: sheet.updates.isEnabled = !sheet.updates.isEnabled
                }

                Text {
                    anchors.left: power.right
                    anchors.leftMargin: 10
                    anchors.right: intervals.left
                    anchors.rightMargin: 10
                    anchors.verticalCenter: parent.verticalCenter
                    text: qsTr("Check for updates every")
                    color: "white"
                    elide: Text.ElideRight
                    opacity: sheet.updates.isEnabled ? 1 : 0.6
                    font.pixelSize: 13
                }

                SegmentedButton {
                    id: intervals

                    objectName: "updatesInterval"
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    opacity: sheet.updates.isEnabled ? 1 : 0.4
                    enabled: sheet.updates.isEnabled
                    choices: sheet.updates.intervals
                    onChosen: index => sheet.updates.chooseInterval(sheet.updates.intervals[index].seconds)
                    onStepped: by => sheet.updates.stepInterval(by)
                }
            }

            Text {
                width: parent.width
                text: sheet.updates.explanation
                color: "#80ffffff"
                wrapMode: Text.Wrap
                textFormat: Text.PlainText
                font.pixelSize: 11
            }
        }

        PushButton {
            objectName: "updatesDone"
            anchors.right: parent.right
            text: qsTr("Done")
            isDefault: true
            onClicked: sheet.launcher.sheets.close()
        }
    }
}
