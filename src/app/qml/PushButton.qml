import QtQuick
import QtQuick.Templates as T
import Tessellar

// A button for alerts and sheets. Return presses a sheet's default button.
T.Button {
    id: button

    property bool isDefault: false
    property bool isDestructive: false

    implicitWidth: Math.max(88, words.implicitWidth + 32)
    implicitHeight: Theme.buttonHeight
    opacity: enabled ? 1 : Theme.unavailable
    hoverEnabled: true

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: button.clicked()

    Keys.onReturnPressed: button.clicked()
    Keys.onEnterPressed: button.clicked()

    background: Rectangle {
        radius: Theme.controlRadius
        color: button.isDestructive ? (button.down ? Theme.dangerPressed : Theme.danger)
             : button.isDefault ? (button.down ? Theme.accentPressed : Theme.accent)
             : button.down ? Theme.controlPressed : button.hovered ? Theme.controlHovered : Theme.control
        border.width: button.isDefault || button.activeFocus ? Theme.focusWidth : 0
        border.color: button.activeFocus ? Theme.focusRing : Theme.defaultRing
    }

    contentItem: Item {
        Text {
            id: words

            anchors.centerIn: parent
            width: Math.min(implicitWidth, parent.width - 20)
            elide: Text.ElideRight
            text: button.text
            color: button.isDefault || button.isDestructive ? Theme.accentText : Theme.text
            textFormat: Text.PlainText
            font.pixelSize: Theme.textFont
            font.weight: Font.Medium
        }
    }
}
