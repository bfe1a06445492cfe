import QtQuick
import Tessellar

// The editor of a smart folder, with a preview.
Sheet {
    id: sheet

    required property LauncherController launcher
    readonly property SmartFolderPanel panel: launcher.panels.smartFolder

    function addRule(place) {
        panel.insertRule(place);
        const row = rows.itemAt(place);
        if (row)
            row.takeFocus();
    }

    objectName: "smartFolderSheet"
    title: panel.title
    wanted: 820
    stretched: list
    // A click beside it must not discard what was typed.
    onClosed: if (!panel.isChanged) launcher.sheets.close()

    // Also scrolls to the focused item in parts that scroll by themselves.
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

    Item {
        width: sheet.bodyWidth
        height: Math.max(sheet.isSmall ? 82 : 92, look.height)

        IconItem {
            // Compensates for the picture's own margin.
            anchors.left: parent.left
            anchors.leftMargin: -6
            y: -6
            width: sheet.isNarrow ? 64 : sheet.isSmall ? 94 : 104
            height: width
            icons: sheet.launcher.icons
            kind: IconItem.SmartFolder
            symbolName: sheet.panel.symbolName
            appKeys: sheet.panel.preview.icons
        }

        Column {
            id: look

            anchors.left: parent.left
            anchors.leftMargin: sheet.isNarrow ? 66 : 110
            anchors.right: parent.right
            spacing: sheet.isSmall ? 6 : 10

            FieldBox {
                objectName: "smartFolderName"
                width: parent.width
                height: 36
                value: sheet.panel.name
                label: qsTr("Name")
                placeholder: qsTr("Name")
                input.font.pixelSize: Theme.titleFont
                input.maximumLength: 255
                onEdited: text => sheet.panel.name = text
                Component.onCompleted: input.forceActiveFocus()
            }

            // All at once if there is room, otherwise one line that scrolls.
            Flickable {
                id: symbols

                readonly property bool isOneLine: sheet.isSmall || sheet.isNarrow

                width: parent.width
                height: isOneLine ? 40 : strip.height
                contentWidth: strip.width
                contentX: Theme.isMirrored ? Math.max(0, contentWidth - width) : 0
                interactive: isOneLine
                clip: isOneLine
                boundsBehavior: Flickable.StopAtBounds

                SymbolStrip {
                    id: strip

                    width: symbols.isOneLine ? sheet.panel.symbols.length * 44 : symbols.width
                    icons: sheet.launcher.icons
                    symbols: sheet.panel.symbols
                    onChosen: name => sheet.panel.symbolName = name
                }
            }
        }
    }

    Flow {
        width: sheet.bodyWidth
        spacing: 8

        Text {
            height: Theme.controlHeight
            verticalAlignment: Text.AlignVCenter
            text: qsTr("Show apps that match")
            color: Theme.text
            font.pixelSize: Theme.textFont
        }

        PopUpButton {
            objectName: "matchMode"
            text: sheet.panel.matchMode
            label: qsTr("Match")
            onOpened: below => sheet.panel.popups.openChoices("matchMode", below)
        }

        Text {
            height: Theme.controlHeight
            verticalAlignment: Text.AlignVCenter
            text: qsTr("of these rules:")
            color: Theme.text
            font.pixelSize: Theme.textFont
        }
    }

    Flickable {
        id: list

        width: sheet.bodyWidth
        height: Math.min(contentHeight, Math.max(Math.round((sheet.isNarrow ? 84 : 76) * Theme.textScale), sheet.stretchedRoom))
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

                // A count as the model, so that rows are reused and keep the focus.
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
        width: sheet.bodyWidth
        height: 1
        color: Theme.separator
    }

    Flow {
        width: sheet.bodyWidth
        spacing: 8

        Text {
            height: Theme.controlHeight
            verticalAlignment: Text.AlignVCenter
            text: qsTr("Sort by")
            color: Theme.text
            font.pixelSize: Theme.textFont
        }

        PopUpButton {
            objectName: "sortField"
            text: sheet.panel.sortField
            label: qsTr("Sort by")
            onOpened: below => sheet.panel.popups.openChoices("sortField", below)
        }

        PopUpButton {
            objectName: "sortDirection"
            text: sheet.panel.sortDirection
            label: qsTr("Order")
            onOpened: below => sheet.panel.popups.openChoices("sortDirection", below)
        }

        // Pushes what follows to the right if everything fits in one line.
        Item {
            width: Math.max(0, parent.width - limit.width
                            - [0, 1, 2].reduce((sum, i) => sum + parent.children[i].width, 0) - 4 * parent.spacing)
            height: 1
        }

        Row {
            id: limit

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
                color: Theme.text
                opacity: sheet.panel.hasLimit ? 1 : Theme.unavailable
                font.pixelSize: Theme.textFont
            }
        }
    }

    // The preview. Its height is fixed, so that nothing jumps while rules are being edited.
    Rectangle {
        width: sheet.bodyWidth
        height: sheet.isSmall ? 30 : 122
        radius: Theme.menuRadius
        color: Theme.sunken

        Text {
            id: summary

            x: 14
            y: sheet.isSmall ? 7 : 9
            width: parent.width - 28
            horizontalAlignment: Text.AlignLeft
            text: [sheet.panel.preview.summary, sheet.panel.preview.notice].filter(t => t !== "").join(" ")
            color: Theme.textDim
            elide: Text.ElideRight
            textFormat: Text.PlainText
            font.pixelSize: Theme.noteFont
        }

        Text {
            anchors.centerIn: parent
            visible: summary.text === ""
            text: qsTr("What matches appears here.")
            color: Theme.textHint
            font.pixelSize: Theme.controlFont
        }

        ListView {
            anchors.fill: parent
            anchors.topMargin: 30
            anchors.leftMargin: 6
            anchors.rightMargin: 6
            orientation: ListView.Horizontal
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            model: sheet.panel.preview.matches

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
                    color: Theme.textSoft
                    elide: Text.ElideRight
                    textFormat: Text.PlainText
                    font.pixelSize: Theme.captionFont
                }
            }
        }
    }

    foot: Text {
        objectName: "smartFolderIssue"
        width: parent.width
        visible: text !== ""
        horizontalAlignment: Text.AlignLeft
        text: sheet.panel.issue
        color: Theme.warningText
        elide: Text.ElideRight
        textFormat: Text.PlainText
        font.pixelSize: Theme.controlFont
    }

    buttons: [
        PushButton {
            objectName: "smartFolderCancel"
            text: qsTr("Cancel")
            onClicked: sheet.launcher.sheets.close()
        },
        PushButton {
            objectName: "smartFolderSave"
            text: qsTr("Save")
            isDefault: true
            enabled: sheet.panel.issue === ""
            onClicked: sheet.panel.save()
        }
    ]
}
