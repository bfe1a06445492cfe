import QtQuick
import Tessellar

// A label and its text. Without a label it is a remark.
Item {
    id: line

    required property string label
    required property string text
    property bool isKnown: true
    property string path
    property int labelWidth: 150

    signal revealed

    objectName: "informationLine"
    height: Math.max(name.height, words.height, button.visible ? button.height : 0)

    Accessible.role: Accessible.StaticText
    Accessible.name: [label, text].filter(part => part !== "").join(": ")

    Text {
        id: name

        anchors.left: parent.left
        width: line.labelWidth
        horizontalAlignment: Text.AlignLeft
        text: line.label
        color: Theme.textFaint
        wrapMode: Text.Wrap
        font.pixelSize: Theme.controlFont
    }

    TextEdit {
        id: words

        anchors.left: parent.left
        anchors.leftMargin: line.labelWidth + 10
        width: line.width - anchors.leftMargin - (button.visible ? button.width + 8 : 0)
        horizontalAlignment: TextEdit.AlignLeft
        text: line.text
        readOnly: true
        selectByMouse: true
        activeFocusOnPress: true
        persistentSelection: false
        wrapMode: TextEdit.Wrap
        textFormat: TextEdit.PlainText
        color: line.isKnown ? line.label === "" ? Theme.textDim : Theme.text : Theme.textHint
        selectionColor: Theme.accent
        selectedTextColor: Theme.accentText
        font.pixelSize: line.label === "" ? Theme.noteFont : Theme.controlFont
        onActiveFocusChanged: if (!activeFocus) deselect()
    }

    PushButton {
        id: button

        objectName: "revealButton"
        anchors.right: parent.right
        height: 24
        visible: line.path !== ""
        text: qsTr("Reveal")
        onClicked: line.revealed()
    }
}
