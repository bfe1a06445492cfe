import QtQuick
import QtQuick.Templates as T
import Tessellar

// A button that shows the current choice and opens a menu of all.
T.AbstractButton {
    id: button

    property string label
    property string placeholder
    property bool needsInput: false

    // With the point in the window below which the menu opens.
    signal opened(point below)

    function open() {
        forceActiveFocus();
        opened(mapToItem(null, 0, height + 3));
    }

    implicitWidth: words.implicitWidth + 38
    implicitHeight: Theme.controlHeight
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    opacity: enabled ? 1 : Theme.unavailable

    Accessible.role: Accessible.ButtonMenu
    Accessible.name: label
    Accessible.description: text
    Accessible.onPressAction: button.open()

    Keys.onSpacePressed: button.open()
    Keys.onDownPressed: button.open()
    onPressed: open()

    background: Rectangle {
        radius: Theme.fieldRadius
        color: button.hovered ? Theme.controlHovered : Theme.control
        border.width: button.activeFocus ? Theme.focusWidth : button.needsInput ? 1 : 0
        border.color: button.activeFocus ? Theme.accent : Theme.warning
    }

    contentItem: Item {
        Text {
            id: words

            anchors.left: parent.left
            anchors.leftMargin: 11
            anchors.right: parent.right
            anchors.rightMargin: 24
            anchors.verticalCenter: parent.verticalCenter
            horizontalAlignment: Text.AlignLeft
            text: button.text === "" ? button.placeholder : button.text
            color: button.text === "" ? Theme.textFaint : Theme.text
            elide: Text.ElideRight
            textFormat: Text.PlainText
            font.pixelSize: Theme.controlFont
        }

        Repeater {
            model: ["up", "down"]

            Sign {
                required property int index
                required property string modelData

                anchors.right: parent.right
                anchors.rightMargin: 7
                y: button.height / 2 - height / 2 + (index === 0 ? -4 : 4)
                kind: modelData
                color: Theme.textDim
            }
        }
    }
}
