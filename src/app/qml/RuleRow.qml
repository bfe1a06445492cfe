import QtQuick
import Tessellar

// One rule: a field, a predicate and its operands.
Item {
    id: row

    required property SmartFolderPanel panel
    required property int index
    // If space is tight, the values go below.
    readonly property bool isNarrow: width < 480
    readonly property bool isTall: isNarrow || (width < 640 && values.count > 1)
    readonly property var rule: panel.rules[index] ?? ({ field: "", predicate: "", joint: "", operands: [] })

    signal added
    signal removed

    function takeFocus() {
        const first = operands.itemAt(0);
        if (first)
            first.takeFocus();
        else
            field.forceActiveFocus();
    }

    objectName: "ruleRow"
    height: Math.round((isTall ? 76 : 38) * Theme.textScale)

    PopUpButton {
        id: field

        objectName: "ruleField"
        anchors.left: parent.left
        y: 4
        width: row.isNarrow ? (row.width - 8) / 2 : Math.min(186, row.width * 0.27)
        text: row.rule.field
        label: qsTr("Field")
        onOpened: below => row.panel.popups.openChoices("field", below, row.index)
    }

    PopUpButton {
        id: predicate

        objectName: "rulePredicate"
        anchors.left: field.right
        anchors.leftMargin: 8
        y: 4
        width: row.isNarrow ? (row.width - 8) / 2 : Math.min(158, row.width * 0.23)
        text: row.rule.predicate
        label: qsTr("Condition")
        onOpened: below => row.panel.popups.openChoices("predicate", below, row.index)
    }

    Row {
        id: values

        readonly property int count: row.rule.operands.length
        readonly property bool hasJoint: row.rule.joint !== ""
        readonly property real share: (width - (count - 1) * spacing - (hasJoint ? 28 + spacing : 0)) / Math.max(1, count)

        readonly property real start: row.isNarrow ? 0 : field.width + 8 + (row.isTall ? 0 : predicate.width + 8)

        anchors.left: parent.left
        anchors.leftMargin: start
        y: 4 + (row.isTall ? row.height / 2 : 0)
        width: row.width - start - (row.isTall && !row.isNarrow ? 0 : buttons.width + 10)
        spacing: 8

        Repeater {
            id: operands

            model: values.count

            Row {
                id: place

                required property int index
                readonly property var operand: row.rule.operands[index] ?? ({ kind: "", text: "", needsInput: false, hasSuggestions: false })

                function takeFocus() {
                    const editor = operandEditor.item;
                    (editor.input ?? editor).forceActiveFocus();
                }

                spacing: values.spacing

                Text {
                    visible: place.index > 0 && values.hasJoint
                    width: 28
                    anchors.verticalCenter: parent.verticalCenter
                    horizontalAlignment: Text.AlignHCenter
                    text: row.rule.joint
                    color: Theme.textDim
                    font.pixelSize: Theme.controlFont
                }

                Loader {
                    id: operandEditor

                    readonly property bool isChosen: place.operand.kind === "choice" || place.operand.kind === "choices"

                    width: values.share
                    sourceComponent: place.operand.kind === "" ? null : isChosen ? chosen : typed
                }

                Component {
                    id: chosen

                    PopUpButton {
                        objectName: "ruleChoice"
                        text: place.operand.text
                        label: qsTr("Value")
                        placeholder: qsTr("Choose…")
                        needsInput: place.operand.needsInput
                        onOpened: below => row.panel.popups.openChoices("operand", below, row.index, place.index)
                    }
                }

                Component {
                    id: typed

                    FieldBox {
                        id: box

                        readonly property bool isDate: place.operand.kind === "date"

                        objectName: "ruleValue"
                        value: place.operand.text
                        label: qsTr("Value")
                        placeholder: isDate ? qsTr("Date")
                                   : place.operand.kind === "number" ? qsTr("Number") : qsTr("Value")
                        needsInput: place.operand.needsInput
                        hasSteps: isDate || place.operand.kind === "number"
                        hasButton: isDate || place.operand.hasSuggestions
                        onEdited: text => row.panel.type(row.index, place.index, text)
                        onStepped: by => row.panel.step(by, row.index, place.index)
                        onButtonPressed: {
                            const below = box.mapToItem(null, 0, box.height + 3);
                            if (isDate)
                                row.panel.popups.openDays(below, row.index, place.index);
                            else
                                row.panel.popups.openChoices("suggestion", below, row.index, place.index);
                        }
                    }
                }
            }
        }
    }

    Row {
        id: buttons

        anchors.right: parent.right
        y: 6 + (row.isNarrow ? row.height / 2 : 0)
        spacing: 6

        RoundButton {
            objectName: "removeRule"
            sign: "−"
            label: qsTr("Remove rule")
            onClicked: row.removed()
        }

        RoundButton {
            objectName: "addRule"
            sign: "+"
            label: qsTr("Add rule")
            onClicked: row.added()
        }
    }
}
