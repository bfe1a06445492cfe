import QtQuick
import Tessellar

// The rules of a smart folder, and what they come to.
Sheet {
    id: sheet

    required property LauncherController launcher
    readonly property SmartFolderPanel panel: launcher.smartFolder
    readonly property Item focusItem: Window.activeFocusItem
    readonly property bool isSmall: height < 600

    function addRule(place) {
        panel.insertRule(place);
        const row = rows.itemAt(place);
        if (row)
            row.takeFocus();
    }

    objectName: "smartFolderSheet"
    title: panel.title
    wanted: 820
    // A click beside it is no way to lose what was typed.
    onClosed: if (!panel.isChanged) launcher.sheets.close()

    // What has the keyboard is seen.
    onFocusItemChanged: {
        if (focusItem && focusItem.parent === strip)
            symbols.contentX = Math.max(focusItem.x + focusItem.width - symbols.width,
                                        Math.min(symbols.contentX, focusItem.x));
        for (let i = 0; i < rows.count; ++i) {
            const row = rows.itemAt(i);
            let item = focusItem;
            while (item && item !== row)
                item = item.parent;
            if (item)
                list.contentY = Math.max(row.y + row.height - list.height, Math.min(list.contentY, row.y));
        }
    }

    Column {
        id: parts

        width: sheet.bodyWidth
        spacing: sheet.isSmall ? 8 : 14

        Item {
            id: header

            width: parent.width
            height: Math.max(sheet.isSmall ? 82 : 92, look.height)

            IconItem {
                // The plate has a margin of its own.
                x: -6
                y: -6
                width: sheet.isSmall ? 94 : 104
                height: width
                icons: sheet.launcher.icons
                kind: IconItem.SmartFolder
                symbolName: sheet.panel.symbolName
                appKeys: sheet.panel.matchKeys
            }

            Column {
                id: look

                anchors.left: parent.left
                anchors.leftMargin: 110
                anchors.right: parent.right
                spacing: sheet.isSmall ? 6 : 10

                FieldBox {
                    id: name

                    objectName: "smartFolderName"
                    width: parent.width
                    height: 36
                    value: sheet.panel.name
                    label: qsTr("Name")
                    placeholder: qsTr("Name")
                    input.font.pixelSize: 15
                    input.maximumLength: 255
                    onEdited: text => sheet.panel.name = text
                    Component.onCompleted: input.forceActiveFocus()
                }

                // All at once where there is room, else one line to be drawn along.
                Flickable {
                    id: symbols

                    width: parent.width
                    height: sheet.isSmall ? 40 : strip.height
                    contentWidth: strip.width
                    interactive: sheet.isSmall
                    clip: sheet.isSmall
                    boundsBehavior: Flickable.StopAtBounds

                    SymbolStrip {
                        id: strip

                        width: sheet.isSmall ? sheet.panel.symbols.length * 44 : symbols.width
                        icons: sheet.launcher.icons
                        symbols: sheet.panel.symbols
                        onChosen: name => sheet.panel.symbolName = name
                    }
                }
            }
        }

        Row {
            id: mode

            spacing: 8

            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: qsTr("Show apps that match")
                color: "white"
                font.pixelSize: 14
            }

            PopUpButton {
                objectName: "matchMode"
                text: sheet.panel.matchMode
                label: qsTr("Match")
                onPressed: below => sheet.panel.openChoices("matchMode", below)
            }

            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: qsTr("of these rules:")
                color: "white"
                font.pixelSize: 14
            }
        }

        Flickable {
            id: list

            width: parent.width
            // What all else leaves of the window.
            height: Math.min(contentHeight, Math.max(38, sheet.height - 128 - header.height - mode.height
                                                         - order.height - preview.height - answers.height - 7 * parts.spacing - 2))
            visible: rows.count > 0
            clip: true
            contentHeight: column.height
            boundsBehavior: Flickable.StopAtBounds
            interactive: contentHeight > height

            Column {
                id: column

                width: list.width

                Repeater {
                    id: rows

                    // Their number: rows stay, and keep the keyboard, while what they show changes.
                    model: sheet.panel.rules.length

                    RuleRow {
                        width: column.width
                        panel: sheet.panel
                        onAdded: sheet.addRule(index + 1)
                        onRemoved: sheet.panel.removeRule(index)
                    }
                }
            }
        }

        PushButton {
            objectName: "firstRule"
            visible: rows.count === 0
            text: qsTr("Add Rule")
            onClicked: sheet.addRule(0)
        }

        Rectangle {
            width: parent.width
            height: 1
            color: "#1fffffff"
        }

        Item {
            id: order

            width: parent.width
            height: 30

            Row {
                spacing: 8

                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    text: qsTr("Sort by")
                    color: "white"
                    font.pixelSize: 14
                }

                PopUpButton {
                    objectName: "sortField"
                    text: sheet.panel.sortField
                    label: qsTr("Sort by")
                    onPressed: below => sheet.panel.openChoices("sortField", below)
                }

                PopUpButton {
                    objectName: "sortDirection"
                    text: sheet.panel.sortDirection
                    label: qsTr("Order")
                    onPressed: below => sheet.panel.openChoices("sortDirection", below)
                }
            }

            Row {
                anchors.right: parent.right
                spacing: 8

                CheckMark {
                    objectName: "limitSwitch"
                    anchors.verticalCenter: parent.verticalCenter
                    text: qsTr("Show at most")
                    isChecked: sheet.panel.hasLimit
                    onToggled: sheet.panel.hasLimit = !sheet.panel.hasLimit
                }

                FieldBox {
                    objectName: "limit"
                    width: 70
                    enabled: sheet.panel.hasLimit
                    value: sheet.panel.limitText
                    label: qsTr("Limit")
                    hasSteps: true
                    onEdited: text => sheet.panel.typeLimit(text)
                    onStepped: by => sheet.panel.step(by)
                }

                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    text: qsTr("apps")
                    color: "white"
                    opacity: sheet.panel.hasLimit ? 1 : 0.4
                    font.pixelSize: 14
                }
            }
        }

        // What would be in it. Its room is always there: nothing jumps while rules are typed.
        Rectangle {
            id: preview

            width: parent.width
            height: sheet.isSmall ? 30 : 122
            radius: 12
            color: "#33000000"

            Text {
                id: summary

                x: 14
                y: sheet.isSmall ? 7 : 9
                width: parent.width - 28
                text: [sheet.panel.summary, sheet.panel.notice].filter(t => t !== "").join(" ")
                color: "#b3ffffff"
                elide: Text.ElideRight
                textFormat: Text.PlainText
                font.pixelSize: 12
            }

            Text {
                anchors.centerIn: parent
                visible: summary.text === ""
                text: qsTr("What matches appears here.")
                color: "#66ffffff"
                font.pixelSize: 13
            }

            ListView {
                anchors.fill: parent
                anchors.topMargin: 30
                anchors.leftMargin: 6
                anchors.rightMargin: 6
                orientation: ListView.Horizontal
                clip: true
                boundsBehavior: Flickable.StopAtBounds
                model: sheet.panel.matches

                delegate: Item {
                    id: match

                    required property var modelData

                    objectName: "match"
                    width: 84
                    height: 88

                    IconItem {
                        anchors.horizontalCenter: parent.horizontalCenter
                        width: 52
                        height: 52
                        icons: sheet.launcher.icons
                        appKeys: [match.modelData.appKey]
                    }

                    Text {
                        y: 57
                        width: parent.width - 6
                        anchors.horizontalCenter: parent.horizontalCenter
                        horizontalAlignment: Text.AlignHCenter
                        text: match.modelData.name
                        color: "#e6ffffff"
                        elide: Text.ElideRight
                        textFormat: Text.PlainText
                        font.pixelSize: 11
                    }
                }
            }
        }

        Item {
            width: parent.width
            height: 34

            Text {
                objectName: "smartFolderIssue"
                anchors.left: parent.left
                anchors.right: answers.left
                anchors.rightMargin: 12
                anchors.verticalCenter: parent.verticalCenter
                text: sheet.panel.issue
                color: "#ffd479"
                elide: Text.ElideRight
                textFormat: Text.PlainText
                font.pixelSize: 13
            }

            Row {
                id: answers

                anchors.right: parent.right
                spacing: 10

                PushButton {
                    objectName: "smartFolderCancel"
                    text: qsTr("Cancel")
                    onClicked: sheet.launcher.sheets.close()
                }

                PushButton {
                    objectName: "smartFolderSave"
                    text: qsTr("Save")
                    isDefault: true
                    enabled: sheet.panel.issue === ""
                    onClicked: sheet.panel.save()
                }
            }
        }
    }
}
