import QtQuick
import Tessellar

// The entries of a menu or submenu.
Rectangle {
    id: panel

    required property var entries
    required property int current
    property real tallest: 600
    property real widest: 370
    readonly property real longest: Math.min(340, widest - 12 - markWidth)
    // Room for check marks.
    readonly property int markWidth: entries.some(entry => entry.isChosen) ? 18 : 0
    readonly property real lineWidth: {
        let widest = 150;
        for (const entry of entries)
            widest = Math.max(widest, metrics.advanceWidth(entry.title)
                              + (entry.shortcut ? metrics.advanceWidth(entry.shortcut) + 28 : 0));
        return Math.ceil(Math.min(longest, widest + 50)) + markWidth;
    }

    signal hovered(int index)
    signal chosen(int index)

    // The top of an entry, in this panel.
    function lineTop(index) {
        const line = lines.itemAt(index);
        return line ? line.y - flick.contentY + flick.y : 0;
    }

    width: lineWidth + 12
    height: Math.min(tallest, column.height + 12)
    radius: Theme.menuRadius
    color: Theme.panel
    border.color: Theme.panelOutline

    Accessible.role: Accessible.PopupMenu
    Accessible.name: qsTr("Menu")

    function showLine(index) {
        const line = lines.itemAt(index);
        if (line)
            flick.contentY = Math.max(line.y + line.height - flick.height, Math.min(flick.contentY, line.y));
    }

    // Keeps the current entry visible.
    onCurrentChanged: showLine(current)
    Component.onCompleted: showLine(current)

    FontMetrics {
        id: metrics

        font.pixelSize: Theme.textFont
    }

    Flickable {
        id: flick

        anchors.fill: parent
        anchors.margins: 6
        clip: interactive
        interactive: contentHeight > height
        contentHeight: column.height
        boundsBehavior: Flickable.StopAtBounds

        Column {
            id: column

            Repeater {
                id: lines

                model: panel.entries

                Item {
                    id: line

                    required property int index
                    required property var modelData
                    readonly property bool isCurrent: index === panel.current

                    width: panel.lineWidth
                    height: modelData.isSeparator ? 9 : Math.max(28, words.implicitHeight + 10)

                    onIsCurrentChanged: if (isCurrent) AccessibleFocus.moveTo(spoken)

                    // Not the line itself, because the pointer must find disabled lines, too.
                    Item {
                        id: spoken

                        anchors.fill: parent
                        enabled: line.modelData.isSeparator || line.modelData.isEnabled

                        Accessible.role: line.modelData.isSeparator ? Accessible.Separator : Accessible.MenuItem
                        Accessible.name: line.modelData.title
                        Accessible.description: line.modelData.shortcut ?? ""
                        Accessible.focused: line.isCurrent
                        Accessible.checked: line.modelData.isChosen
                        Accessible.onPressAction: panel.chosen(line.index)
                    }

                    Rectangle {
                        visible: line.modelData.isSeparator
                        anchors.verticalCenter: parent.verticalCenter
                        x: 10
                        width: parent.width - 20
                        height: 1
                        color: Theme.control
                    }

                    Rectangle {
                        anchors.fill: parent
                        visible: line.isCurrent
                        radius: Theme.fieldRadius
                        color: line.modelData.isDestructive ? Theme.danger : Theme.accent
                    }

                    Text {
                        anchors.left: parent.left
                        anchors.leftMargin: 11
                        anchors.verticalCenter: parent.verticalCenter
                        visible: line.modelData.isChosen
                        text: "✓"
                        color: words.color
                        font.pixelSize: Theme.controlFont
                        font.weight: Font.Bold
                    }

                    Text {
                        id: words

                        anchors.left: parent.left
                        anchors.leftMargin: 12 + panel.markWidth
                        anchors.verticalCenter: parent.verticalCenter
                        width: parent.width - anchors.leftMargin - 12 - (line.modelData.hasEntries ? 14 : keys.text !== "" ? keys.width + 14 : 0)
                        horizontalAlignment: Text.AlignLeft
                        text: line.modelData.title
                        color: !line.modelData.isEnabled ? Theme.textFaint : line.isCurrent ? Theme.accentText
                               : line.modelData.isDestructive ? Theme.dangerText : Theme.text
                        wrapMode: line.modelData.isEnabled ? Text.NoWrap : Text.Wrap
                        elide: Text.ElideRight
                        textFormat: Text.PlainText
                        font.pixelSize: Theme.textFont
                    }

                    Text {
                        id: keys

                        anchors.right: parent.right
                        anchors.rightMargin: 12
                        anchors.verticalCenter: parent.verticalCenter
                        text: line.modelData.shortcut ?? ""
                        color: words.color
                        opacity: 0.6
                        textFormat: Text.PlainText
                        font.pixelSize: Theme.controlFont
                    }

                    Text {
                        anchors.right: parent.right
                        anchors.rightMargin: 10
                        anchors.verticalCenter: parent.verticalCenter
                        visible: line.modelData.hasEntries
                        text: Theme.isMirrored ? "‹" : "›"
                        color: words.color
                        font.pixelSize: Theme.alertFont
                    }

                    MouseArea {
                        anchors.fill: parent
                        hoverEnabled: true
                        acceptedButtons: Qt.LeftButton | Qt.RightButton
                        onPositionChanged: if (!line.isCurrent) panel.hovered(line.index)
                        onEntered: panel.hovered(line.index)
                        onClicked: panel.chosen(line.index)
                    }
                }
            }
        }
    }
}
