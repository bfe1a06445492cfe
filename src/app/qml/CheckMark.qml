import QtQuick
import QtQuick.Templates as T
import Tessellar

// A check box with a label. Shows the actual state, not the requested one.
T.CheckBox {
    id: mark

    required property bool isChecked

    implicitWidth: box.width + (text === "" ? 0 : words.implicitWidth + 8)
    implicitHeight: Math.max(box.height, words.implicitHeight)
    opacity: enabled ? 1 : Theme.unavailable
    checked: isChecked
    onToggled: checked = Qt.binding(() => mark.isChecked)

    Accessible.role: Accessible.CheckBox
    Accessible.name: text

    indicator: CheckBoxMark {
        id: box

        x: mark.mirrored ? mark.width - width : 0
        y: (mark.height - height) / 2
        isChecked: mark.isChecked
        hasKeyboard: mark.activeFocus
    }

    contentItem: Text {
        id: words

        leftPadding: mark.mirrored ? 0 : box.width + 8
        rightPadding: mark.mirrored ? box.width + 8 : 0
        verticalAlignment: Text.AlignVCenter
        text: mark.text
        color: Theme.text
        elide: Text.ElideRight
        textFormat: Text.PlainText
        font.pixelSize: Theme.textFont
    }
}
