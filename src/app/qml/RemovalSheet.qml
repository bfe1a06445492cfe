import QtQuick
import Tessellar

// The review of a removal: what would go, the removal itself, and what came of it.
Sheet {
    id: sheet

    required property LauncherController launcher
    readonly property RemovalPanel removal: launcher.removal

    objectName: "removalSheet"
    title: removal.phase === "done" ? qsTr("“%1”").arg(removal.appName)
                                    : qsTr("Move “%1” to the Trash?").arg(removal.appName)
    wanted: 660
    onClosed: if (removal.phase !== "removing") removal.cancel()

    Column {
        width: sheet.bodyWidth
        spacing: 14

        // While it looks, and while it moves.
        Column {
            width: parent.width
            visible: sheet.removal.phase === "scanning" || sheet.removal.phase === "removing"
            spacing: 8

            Text {
                width: parent.width
                text: sheet.removal.progressText
                color: "#cfffffff"
                elide: Text.ElideMiddle
                textFormat: Text.PlainText
                font.pixelSize: 14
            }

            Rectangle {
                width: parent.width
                height: 6
                radius: 3
                color: "#24ffffff"
                visible: sheet.removal.phase === "removing"

                Rectangle {
                    width: Math.max(6, parent.width * sheet.removal.progress)
                    height: 6
                    radius: 3
                    color: "#4f80ff"
                }
            }
        }

        Item {
            width: parent.width
            height: 20
            visible: sheet.removal.phase === "review"

            CheckMark {
                objectName: "removalSelectAll"
                x: 8
                text: qsTr("Select all")
                isChecked: sheet.removal.isAllSelected
                onToggled: sheet.removal.selectAll(!sheet.removal.isAllSelected)
            }
        }

        ListView {
            id: items

            objectName: "removalItems"
            width: parent.width
            height: Math.min(contentHeight, Math.max(160, sheet.tallest - 240))
            visible: sheet.removal.phase === "review"
            clip: true
            spacing: 2
            boundsBehavior: Flickable.StopAtBounds
            model: visible ? sheet.removal.items : null
            currentIndex: sheet.removal.currentRow
            highlightMoveDuration: 0 // from one end to the other at once

            // How far down it is; there may be a thousand.
            Rectangle {
                parent: items
                anchors.right: parent.right
                y: items.visibleArea.yPosition * items.height
                width: 4
                height: Math.max(12, items.visibleArea.heightRatio * items.height)
                radius: 2
                color: "#4dffffff"
                visible: items.visibleArea.heightRatio < 1
            }

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
                radius: 10
                color: hover.hovered ? "#14ffffff" : "transparent"
                border.width: ListView.isCurrentItem ? 2 : 0
                border.color: "#4f80ff"

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

                Rectangle {
                    x: 8
                    anchors.verticalCenter: parent.verticalCenter
                    width: 20
                    height: 20
                    radius: 6
                    color: row.isSelected ? "#4f80ff" : "transparent"
                    border.width: row.isSelected ? 0 : 2
                    border.color: "#80ffffff"

                    Text {
                        anchors.centerIn: parent
                        visible: row.isSelected
                        text: "✓"
                        color: "white"
                        font.pixelSize: 14
                        font.weight: Font.Bold
                    }
                }

                Column {
                    id: words

                    x: 40
                    anchors.verticalCenter: parent.verticalCenter
                    width: parent.width - x - Math.max(bytes.width, reveal.width) - 20
                    spacing: 2

                    Text {
                        width: parent.width
                        text: row.name
                        color: "white"
                        elide: Text.ElideMiddle
                        textFormat: Text.PlainText
                        font.pixelSize: 14
                    }

                    Text {
                        width: parent.width
                        text: row.folder
                        color: "#cfffffff"
                        elide: Text.ElideMiddle
                        textFormat: Text.PlainText
                        font.pixelSize: 12
                    }

                    Text {
                        id: about

                        width: parent.width
                        text: (row.isLocked ? "🔒 " + sheet.removal.lockText + " · " : "") + row.reason
                        color: row.isLocked ? "#ffd479" : "#99ffffff"
                        wrapMode: Text.Wrap
                        maximumLineCount: 3
                        elide: Text.ElideRight
                        textFormat: Text.PlainText
                        font.pixelSize: 12
                    }
                }

                Text {
                    id: bytes

                    anchors.right: parent.right
                    anchors.rightMargin: 10
                    y: 10
                    text: row.size
                    color: "#b3ffffff"
                    font.pixelSize: 13
                }

                PushButton {
                    id: reveal

                    objectName: "removalReveal"
                    anchors.right: parent.right
                    anchors.rightMargin: 8
                    anchors.bottom: parent.bottom
                    anchors.bottomMargin: 8
                    height: 24
                    visible: hover.hovered || row.ListView.isCurrentItem
                    text: qsTr("Reveal")
                    onClicked: sheet.removal.reveal(row.path)
                }
            }
        }

        ListView {
            width: parent.width
            height: Math.min(contentHeight, Math.max(160, sheet.tallest - 190))
            visible: sheet.removal.phase === "done"
            clip: true
            spacing: 6
            boundsBehavior: Flickable.StopAtBounds
            model: visible ? sheet.removal.log : []

            delegate: Text {
                required property var modelData

                width: ListView.view.width
                text: modelData.text
                color: modelData.isFailure ? "#ff8a80" : "#d9ffffff"
                wrapMode: Text.Wrap
                textFormat: Text.PlainText
                font.pixelSize: 13
            }
        }

        Text {
            width: parent.width
            visible: text !== ""
            text: sheet.removal.noticeTitle
            color: "white"
            textFormat: Text.PlainText
            font.pixelSize: 15
            font.weight: Font.DemiBold
        }

        Text {
            width: parent.width
            visible: text !== ""
            text: sheet.removal.warning
            color: "#ffd479"
            wrapMode: Text.Wrap
            textFormat: Text.PlainText
            font.pixelSize: 13
        }

        Item {
            width: parent.width
            height: 34

            Column {
                anchors.verticalCenter: parent.verticalCenter
                visible: sheet.removal.phase === "review"

                Text {
                    text: sheet.removal.total
                    color: "white"
                    font.pixelSize: 14
                }

                Text {
                    visible: text !== ""
                    text: sheet.removal.staying
                    color: "#99ffffff"
                    font.pixelSize: 12
                }
            }

            Row {
                anchors.right: parent.right
                spacing: 10

                PushButton {
                    objectName: "removalCancel"
                    text: sheet.removal.phase === "done" ? qsTr("Done") : qsTr("Cancel")
                    isDefault: true
                    enabled: sheet.removal.canCancel
                    onClicked: sheet.removal.cancel()
                }

                PushButton {
                    objectName: "removalRestore"
                    visible: sheet.removal.phase === "done" && sheet.removal.canRestore
                    text: qsTr("Put Back")
                    onClicked: sheet.removal.restore()
                }

                PushButton {
                    objectName: "removalAccept"
                    visible: sheet.removal.phase === "scanning" || sheet.removal.phase === "review"
                    enabled: sheet.removal.canRemove
                    isDestructive: true
                    text: qsTr("Move to Trash")
                    onClicked: sheet.removal.remove()
                }
            }
        }
    }
}
