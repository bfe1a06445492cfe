import QtQuick
import QtQuick.Templates as T
import Tessellar

// A slider. Emits `tried` while it is dragged, and `chosen` at the end.
T.Slider {
    id: slider

    required property real current
    property string label

    signal tried(real value)
    signal chosen(real value)

    implicitWidth: 150
    implicitHeight: Theme.controlHeight
    snapMode: T.Slider.SnapAlways
    // Never moves the handle while it is being dragged.
    onCurrentChanged: if (!pressed) value = current
    Component.onCompleted: value = current
    onMoved: pressed ? tried(value) : chosen(value)
    onPressedChanged: if (!pressed && value !== current) chosen(value)

    Accessible.role: Accessible.Slider
    Accessible.name: label

    background: Rectangle {
        x: slider.leftPadding
        y: (slider.height - height) / 2
        width: slider.availableWidth
        height: 4
        radius: height / 2
        color: Theme.controlHovered

        Rectangle {
            anchors.left: parent.left
            width: slider.position * parent.width
            height: parent.height
            radius: height / 2
            color: Theme.accent
        }
    }

    handle: Rectangle {
        x: slider.leftPadding + slider.visualPosition * (slider.availableWidth - width)
        y: (slider.height - height) / 2
        width: 18
        height: 18
        radius: height / 2
        color: Theme.knob
        border.width: slider.activeFocus ? Theme.focusWidth : 1
        border.color: slider.activeFocus ? Theme.focusRing : Theme.boxOutline
    }
}
