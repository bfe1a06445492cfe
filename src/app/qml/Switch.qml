import QtQuick
import QtQuick.Templates as T
import Tessellar

// A switch. Shows the actual state, not the requested one.
T.Switch {
    id: control

    required property bool isOn
    property string label

    implicitWidth: 46
    implicitHeight: 26
    checked: isOn
    onToggled: checked = Qt.binding(() => control.isOn)

    Accessible.role: Accessible.CheckBox
    Accessible.name: label

    background: Rectangle {
        radius: height / 2
        color: control.isOn ? Theme.accent : Theme.controlHovered
        border.width: control.activeFocus ? Theme.focusWidth : 0
        border.color: Theme.focusRing
    }

    indicator: Rectangle {
        x: control.isOn !== control.mirrored ? control.width - width - 3 : 3
        y: 3
        width: control.height - 6
        height: width
        radius: width / 2
        color: Theme.knob

        Behavior on x {
            NumberAnimation { duration: Theme.quickTime }
        }
    }
}
