import QtQuick
import QtQuick.Templates as T
import Tessellar

// A small round button with a sign.
T.RoundButton {
    id: button

    required property string sign
    property string label

    implicitWidth: 26
    implicitHeight: 26
    hoverEnabled: true
    opacity: enabled ? 1 : Theme.unavailable

    Accessible.role: Accessible.Button
    Accessible.name: label
    Accessible.onPressAction: button.clicked()

    Keys.onReturnPressed: button.clicked()
    Keys.onEnterPressed: button.clicked()

    background: Rectangle {
        radius: height / 2
        color: button.down ? Theme.controlPressed : button.hovered ? Theme.controlHovered : Theme.control
        border.width: button.activeFocus ? Theme.focusWidth : 0
        border.color: Theme.accent
    }

    contentItem: Item {
        Sign {
            anchors.centerIn: parent
            kind: button.sign
        }
    }
}
