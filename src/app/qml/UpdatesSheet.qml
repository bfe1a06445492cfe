import QtQuick
import Tessellar

// Available and running updates, the check in progress, and the settings of checks.
Sheet {
    id: sheet

    required property LauncherController launcher
    readonly property UpdatesPanel updates: launcher.panels.updates

    objectName: "updatesSheet"
    title: updates.title
    wanted: 720
    spacing: isSmall ? 8 : 12
    stretched: list
    onClosed: launcher.sheets.close()
    Component.onCompleted: list.forceActiveFocus()

    Item {
        width: sheet.bodyWidth
        height: sheet.isNarrow ? summary.height + 8 + actions.height : Math.max(Theme.buttonHeight, summary.height)

        Text {
            id: summary

            objectName: "updatesSummary"
            anchors.left: parent.left
            width: sheet.isNarrow ? parent.width : parent.width - actions.width - 14
            y: sheet.isNarrow ? 0 : (parent.height - height) / 2
            horizontalAlignment: Text.AlignLeft
            text: sheet.updates.summary !== "" ? sheet.updates.summary : qsTr("Not checked yet.")
            color: Theme.text
            wrapMode: Text.Wrap
            elide: Text.ElideRight
            maximumLineCount: 3
            textFormat: Text.PlainText
            font.pixelSize: Theme.textFont
        }

        Row {
            id: actions

            anchors.right: parent.right
            anchors.bottom: parent.bottom
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
        width: sheet.bodyWidth
        visible: sheet.updates.isChecking
        spacing: 5

        ProgressLine {
            width: parent.width
            height: 5
            value: sheet.updates.progress
        }

        Text {
            width: parent.width
            horizontalAlignment: Text.AlignLeft
            text: sheet.updates.progressText
            color: Theme.textFaint
            elide: Text.ElideRight
            textFormat: Text.PlainText
            font.pixelSize: Theme.noteFont
        }
    }

    ItemList {
        id: list

        // Until the user navigates in it, the list stays at its top, where the most important rows are.
        property bool isUsed: false

        objectName: "updatesList"
        width: sheet.bodyWidth
        height: Math.max(sheet.isSmall ? 64 : 72, Math.min(contentHeight, sheet.stretchedRoom))
        activeFocusOnTab: true
        model: sheet.updates.rows

        onCountChanged: {
            if (!isUsed) {
                currentIndex = 0;
                positionViewAtBeginning();
            }
        }

        // Not when the current index changes: that also happens as rows are inserted.
        Keys.onPressed: isUsed = true
        Keys.onReturnPressed: count > 0 ? sheet.updates.act(currentIndex) : sheet.pressDefault()
        Keys.onEnterPressed: count > 0 ? sheet.updates.act(currentIndex) : sheet.pressDefault()
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
            color: Theme.textHint
            font.pixelSize: Theme.controlFont
        }
    }

    Rectangle {
        width: sheet.bodyWidth
        height: 1
        color: Theme.separator
    }

    Item {
        width: sheet.bodyWidth
        height: sheet.isNarrow ? power.height + 8 + intervals.height : Math.max(32, intervals.height)

        Switch {
            id: power

            objectName: "updatesSwitch"
            anchors.left: parent.left
            y: sheet.isNarrow ? 0 : (parent.height - height) / 2
            label: qsTr("Check for updates")
            isOn: sheet.updates.isEnabled
            onToggled: sheet.updates.isEnabled = !sheet.updates.isEnabled
        }

        Text {
            anchors.left: power.right
            anchors.leftMargin: 10
            anchors.right: sheet.isNarrow ? parent.right : intervals.left
            anchors.rightMargin: 10
            anchors.verticalCenter: power.verticalCenter
            horizontalAlignment: Text.AlignLeft
            text: qsTr("Check for updates every")
            color: Theme.text
            elide: Text.ElideRight
            opacity: sheet.updates.isEnabled ? 1 : Theme.unavailable
            font.pixelSize: Theme.controlFont
        }

        SegmentedButton {
            id: intervals

            objectName: "updatesInterval"
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            width: sheet.isNarrow ? parent.width : implicitWidth
            enabled: sheet.updates.isEnabled
            choices: sheet.updates.intervals
            onChosen: index => sheet.updates.chooseInterval(sheet.updates.intervals[index].seconds)
            onStepped: by => sheet.updates.stepInterval(by)
        }
    }

    WordsText {
        width: sheet.bodyWidth
        text: sheet.updates.explanation
        color: Theme.textFaint
        font.pixelSize: Theme.captionFont
    }

    buttons: PushButton {
        objectName: "updatesDone"
        text: qsTr("Done")
        isDefault: true
        onClicked: sheet.launcher.sheets.close()
    }
}
