import QtQuick
import Tessellar

// A row of a list: a title with details below, and a button at its end.
Item {
    id: row

    required property int index
    required property string title
    property string text
    property string action
    property bool hasAction: action !== ""
    property bool canAct: true
    property alias actionName: button.objectName
    // The list that contains the row, directly or not.
    property ListView list: ListView.view

    signal acted

    width: list ? list.width : 0
    height: Math.round(54 * Theme.textScale)

    Accessible.role: Accessible.ListItem
    Accessible.name: title
    Accessible.description: text

    Column {
        anchors.left: parent.left
        anchors.right: button.visible ? button.left : parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        spacing: 1

        Text {
            width: parent.width
            horizontalAlignment: Text.AlignLeft
            text: row.title
            color: Theme.text
            elide: Text.ElideRight
            textFormat: Text.PlainText
            font.pixelSize: Theme.textFont
        }

        Text {
            width: parent.width
            visible: text !== ""
            horizontalAlignment: Text.AlignLeft
            text: row.text
            color: Theme.textFaint
            elide: Text.ElideRight
            textFormat: Text.PlainText
            font.pixelSize: Theme.noteFont
        }
    }

    PushButton {
        id: button

        anchors.right: parent.right
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        height: Theme.controlHeight
        visible: row.hasAction
        enabled: row.canAct
        text: row.action
        Accessible.description: row.title
        // Tab must also reach rows out of view: showing the neighbours creates them.
        onActiveFocusChanged: {
            if (!activeFocus || !row.list)
                return;
            for (const beside of [row.index + 1, row.index - 1, row.index])
                if (beside >= 0 && beside < row.list.count)
                    row.list.positionViewAtIndex(beside, ListView.Contain);
        }
        onClicked: row.acted()
    }
}
