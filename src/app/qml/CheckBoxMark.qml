import QtQuick
import Tessellar

// The box of a check box, or of a row that can be checked.
Rectangle {
    id: box

    required property bool isChecked
    property bool hasKeyboard: false

    implicitWidth: Math.round(18 * Theme.textScale)
    implicitHeight: implicitWidth
    radius: width * 0.28
    color: isChecked ? Theme.accent : Theme.clear
    border.width: hasKeyboard ? Theme.focusWidth : isChecked ? 0 : 1.5
    border.color: hasKeyboard ? Theme.focusRing : Theme.boxOutline

    Text {
        anchors.centerIn: parent
        visible: box.isChecked
        text: "✓"
        color: Theme.accentText
        font.pixelSize: Theme.controlFont
        font.weight: Font.Bold
    }
}
