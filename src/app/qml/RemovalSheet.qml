import QtQuick
import Tessellar

// A removal: the review, the progress, and the result.
Sheet {
    id: sheet

    required property LauncherController launcher
    readonly property RemovalPanel removal: launcher.panels.removal
    readonly property bool isReview: removal.phase === "review"
    readonly property bool isDone: removal.phase === "done"

    objectName: "removalSheet"
    title: isDone ? qsTr("“%1”").arg(removal.appName) : qsTr("Move “%1” to the Trash?").arg(removal.appName)
    wanted: 660
    stretched: isDone ? log : items
    onClosed: if (removal.phase !== "removing") removal.cancel()

    // While scanning, and while moving items.
    Text {
        width: sheet.bodyWidth
        visible: sheet.removal.phase === "scanning" || sheet.removal.phase === "removing"
        horizontalAlignment: Text.AlignLeft
        text: sheet.removal.progressText
        color: Theme.textSoft
        elide: Text.ElideMiddle
        textFormat: Text.PlainText
        font.pixelSize: Theme.textFont
    }

    ProgressLine {
        width: sheet.bodyWidth
        visible: sheet.removal.phase === "scanning" || sheet.removal.phase === "removing"
        indeterminate: sheet.removal.phase === "scanning"
        value: sheet.removal.progress
    }

    CheckMark {
        objectName: "removalSelectAll"
        anchors.left: parent.left
        anchors.leftMargin: 8
        visible: sheet.isReview
        text: qsTr("Select all")
        isChecked: sheet.removal.isAllSelected
        onToggled: sheet.removal.selectAll(!sheet.removal.isAllSelected)
    }

    ItemList {
        id: items

        objectName: "removalItems"
        width: sheet.bodyWidth
        height: Math.min(contentHeight, Math.max(142, sheet.stretchedRoom))
        visible: sheet.isReview
        // The panel handles the keys.
        keyNavigationEnabled: false
        model: visible ? sheet.removal.items : null
        currentIndex: sheet.removal.currentRow

        delegate: Rectangle {
            id: row

            required property int index
            required property string path
            required property string name
            required property string folder
            required property string reason
            required property string size
            required property bool isSelected
            required property bool isLocked

            objectName: "removalItem"
            width: ListView.view.width
            height: Math.max(70, words.height + 18)
            radius: Theme.controlRadius
            color: hover.hovered ? Theme.rowHovered : Theme.clear
            border.width: ListView.isCurrentItem ? Theme.focusWidth : 0
            border.color: Theme.accent

            Accessible.role: Accessible.CheckBox
            Accessible.name: name
            Accessible.description: [folder, size, about.text].join(", ")
            Accessible.checked: isSelected
            Accessible.onPressAction: sheet.removal.select(path, !isSelected)

            HoverHandler {
                id: hover
            }

            MouseArea {
                anchors.fill: parent
                onClicked: sheet.removal.select(row.path, !row.isSelected)
            }

            CheckBoxMark {
                anchors.left: parent.left
                anchors.leftMargin: 8
                anchors.verticalCenter: parent.verticalCenter
                isChecked: row.isSelected
            }

            Column {
                id: words

                anchors.left: parent.left
                anchors.leftMargin: 40
                anchors.verticalCenter: parent.verticalCenter
                width: parent.width - anchors.leftMargin - Math.max(bytes.width, reveal.visible ? reveal.width : 0) - 20
                spacing: 2

                Text {
                    width: parent.width
                    horizontalAlignment: Text.AlignLeft
                    text: row.name
                    color: Theme.text
                    elide: Text.ElideMiddle
                    textFormat: Text.PlainText
                    font.pixelSize: Theme.textFont
                }

                Text {
                    width: parent.width
                    horizontalAlignment: Text.AlignLeft
                    text: row.folder
                    color: Theme.textSoft
                    elide: Text.ElideMiddle
                    textFormat: Text.PlainText
                    font.pixelSize: Theme.noteFont
                }

                Text {
                    id: about

                    width: parent.width
                    horizontalAlignment: Text.AlignLeft
                    text: (row.isLocked ? "🔒 " + sheet.removal.lockText + " · " : "") + row.reason
                    color: row.isLocked ? Theme.warningText : Theme.textFaint
                    wrapMode: Text.Wrap
                    maximumLineCount: 3
                    elide: Text.ElideRight
                    textFormat: Text.PlainText
                    font.pixelSize: Theme.noteFont
                }
            }

            Text {
                id: bytes

                anchors.right: parent.right
                anchors.rightMargin: 10
                y: 10
                text: row.size
                color: Theme.textDim
                font.pixelSize: Theme.controlFont
            }

            PushButton {
                id: reveal

                objectName: "removalReveal"
                anchors.right: parent.right
                anchors.rightMargin: 10
                anchors.bottom: parent.bottom
                anchors.bottomMargin: 8
                height: 24
                visible: hover.hovered || row.ListView.isCurrentItem
                text: qsTr("Reveal")
                onClicked: sheet.removal.reveal(row.path)
            }
        }
    }

    ItemList {
        id: log

        width: sheet.bodyWidth
        height: Math.min(contentHeight, Math.max(100, sheet.stretchedRoom))
        visible: sheet.isDone
        spacing: 6
        model: visible ? sheet.removal.log : []

        delegate: WordsText {
            required property var modelData

            width: ListView.view.width
            text: modelData.text
            color: modelData.isFailure ? Theme.dangerText : Theme.textSoft
            font.pixelSize: Theme.controlFont
        }
    }

    WordsText {
        width: sheet.bodyWidth
        text: sheet.removal.noticeTitle
        color: Theme.text
        font.pixelSize: Theme.titleFont
        font.weight: Font.DemiBold
    }

    WordsText {
        width: sheet.bodyWidth
        text: sheet.removal.warning
        color: Theme.warningText
        font.pixelSize: Theme.controlFont
    }

    foot: [
        Text {
            width: parent.width
            visible: sheet.isReview
            horizontalAlignment: Text.AlignLeft
            text: sheet.removal.total
            color: Theme.text
            elide: Text.ElideRight
            font.pixelSize: Theme.textFont
        },
        Text {
            width: parent.width
            visible: sheet.isReview && text !== ""
            horizontalAlignment: Text.AlignLeft
            text: sheet.removal.staying
            color: Theme.textFaint
            elide: Text.ElideRight
            font.pixelSize: Theme.noteFont
        }
    ]

    buttons: [
        PushButton {
            objectName: "removalCancel"
            text: sheet.isDone ? qsTr("Done") : qsTr("Cancel")
            isDefault: true
            enabled: sheet.removal.canCancel
            onClicked: sheet.removal.cancel()
        },
        PushButton {
            objectName: "removalRestore"
            visible: sheet.isDone && sheet.removal.canRestore
            text: qsTr("Put Back")
            onClicked: sheet.removal.restore()
        },
        PushButton {
            objectName: "removalAccept"
            visible: sheet.removal.phase === "scanning" || sheet.isReview
            enabled: sheet.removal.canRemove
            isDestructive: true
            text: qsTr("Move to Trash")
            onClicked: sheet.removal.remove()
        }
    ]
}
