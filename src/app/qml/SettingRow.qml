import QtQuick
import Tessellar

// A row of the settings: a title and a control.
Item {
    id: row

    required property var modelData
    required property SettingsPanel panel
    readonly property string kind: modelData.kind
    readonly property bool isNote: kind === "note"
    // Wide controls go below the title.
    readonly property bool isTall: isNote || kind === "field" || (kind !== "slider" && control.implicitWidth > width * 0.62)
    readonly property bool canReset: modelData.isSet === true && kind === "slider"

    height: 6 + (isNote ? words.height
                 : isTall ? words.height + 4 + control.height : Math.max(words.height, control.height))

    Column {
        id: words

        anchors.left: parent.left
        width: row.isTall ? row.width : row.width - control.width - 12
        y: Math.max(0, ((row.isTall ? height : row.height) - height) / 2)
        spacing: 1

        Text {
            width: parent.width
            height: row.isNote ? implicitHeight : Math.max(implicitHeight, row.isTall ? 0 : 26)
            verticalAlignment: Text.AlignVCenter
            horizontalAlignment: Text.AlignLeft
            text: row.modelData.title
            color: row.isNote ? Theme.textFaint : Theme.text
            wrapMode: row.isNote ? Text.Wrap : Text.NoWrap
            elide: row.isNote ? Text.ElideNone : Text.ElideMiddle
            textFormat: Text.PlainText
            font.pixelSize: row.isNote ? Theme.noteFont : Theme.controlFont
        }

        Text {
            width: parent.width
            visible: row.kind === "action" && text !== ""
            horizontalAlignment: Text.AlignLeft
            text: row.kind === "action" ? row.modelData.text ?? "" : ""
            color: Theme.textFaint
            wrapMode: Text.Wrap
            textFormat: Text.PlainText
            font.pixelSize: Theme.noteFont
        }
    }

    Loader {
        id: control

        anchors.right: parent.right
        y: row.isTall ? words.height + 4 : (row.height - height) / 2
        width: row.isTall ? row.width : implicitWidth
        sourceComponent: ({ slider: slider, switch: toggle, choice: choice, field: field, action: action })[row.kind] ?? null
    }

    Component {
        id: slider

        Row {
            spacing: 6

            RoundButton {
                anchors.verticalCenter: parent.verticalCenter
                visible: row.canReset
                sign: "left"
                label: qsTr("Back to what is usual")
                onClicked: row.panel.reset(row.modelData.key)
            }

            Text {
                id: words

                anchors.verticalCenter: parent.verticalCenter
                width: Math.max(Math.round(68 * Theme.textScale), implicitWidth)
                horizontalAlignment: Text.AlignRight
                text: row.modelData.text
                color: Theme.textDim
                textFormat: Text.PlainText
                font.pixelSize: Theme.controlFont
            }

            Slider {
                objectName: row.modelData.key
                label: row.modelData.title
                from: row.modelData.low
                to: row.modelData.high
                stepSize: row.modelData.step
                // If nothing is set, the default: 100 % for shares, 13 for the text size.
                current: row.modelData.value ?? (row.modelData.high <= 2 ? 1 : 13)
                onTried: value => row.panel.tryOut(row.modelData.key, value)
                onChosen: value => row.panel.set(row.modelData.key, value)
            }
        }
    }

    Component {
        id: toggle

        Switch {
            objectName: row.modelData.key
            isOn: row.modelData.value === true
            label: row.modelData.title
            onToggled: row.panel.set(row.modelData.key, !row.modelData.value)
        }
    }

    Component {
        id: choice

        SegmentedButton {
            objectName: row.modelData.key
            choices: row.modelData.choices
            onChosen: index => row.panel.choose(row.modelData.key, index)
            onStepped: by => row.panel.choose(row.modelData.key, row.modelData.choices.findIndex(each => each.isChosen) + by)
        }
    }

    Component {
        id: field

        FieldBox {
            objectName: row.modelData.key
            value: row.modelData.value ?? ""
            label: row.modelData.title
            placeholder: row.modelData.hint
            input.maximumLength: 1024
            input.onEditingFinished: if (input.text !== value) row.panel.set(row.modelData.key, input.text)
            // Keeps the sheet open: there may be an error about what was typed.
            Keys.onReturnPressed: event => event.accepted = true
            Keys.onEnterPressed: event => event.accepted = true
        }
    }

    Component {
        id: action

        PushButton {
            objectName: row.modelData.key
            height: Theme.controlHeight
            visible: text !== ""
            text: row.modelData.action
            onClicked: row.panel.act(row.modelData.key)
        }
    }
}
