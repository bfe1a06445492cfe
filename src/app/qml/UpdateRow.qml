import QtQuick
import Tessellar

// A row of the updates sheet: a section's title, or an application, with details if it is the current row.
Item {
    id: row

    required property int index
    required property string appKey
    required property string name
    required property string text
    required property string detail
    required property string source
    required property string action
    required property bool canAct
    required property bool isRunning
    required property bool isFailure
    required property bool isOpen
    required property LauncherController launcher
    property bool isCurrent: false
    property bool hasKeyboard: false
    readonly property bool isSection: appKey === ""
    readonly property UpdatesPanel updates: launcher.panels.updates

    function openMenu() {
        launcher.input.openUpdateMenu(appKey, more.mapToItem(null, 0, more.height + 2));
    }

    signal pressed

    objectName: isSection ? "updateSection" : "updateRow"
    height: isSection ? 34 : Math.max(56, words.height + 16)

    Accessible.role: Accessible.ListItem
    Accessible.name: name
    Accessible.description: text
    Accessible.onPressAction: updates.act(index)

    Rectangle {
        anchors.fill: parent
        visible: row.isCurrent || area.containsMouse
        radius: Theme.controlRadius
        color: row.isCurrent ? Theme.separator : Theme.rowHovered
        border.width: row.isCurrent && row.hasKeyboard ? 2 : 0
        border.color: Theme.accent
    }

    MouseArea {
        id: area

        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onClicked: event => {
            row.pressed();
            if (row.isSection)
                row.updates.act(row.index);
            else if (event.button === Qt.RightButton)
                row.launcher.input.openUpdateMenu(row.appKey, mapToItem(null, event.x, event.y));
        }
    }

    // A section's title.
    Loader {
        anchors.left: parent.left
        anchors.leftMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        active: row.isSection
        sourceComponent: Row {
            spacing: 8

            Text {
                width: 12
                text: Theme.isMirrored ? "‹" : "›"
                rotation: !row.isOpen ? 0 : Theme.isMirrored ? -90 : 90
                horizontalAlignment: Text.AlignHCenter
                color: Theme.textDim
                font.pixelSize: Theme.titleFont
            }

            Text {
                text: row.name
                color: Theme.textSoft
                font.pixelSize: Theme.controlFont
                font.weight: Font.DemiBold
            }

            Text {
                text: row.text
                color: Theme.textFaint
                font.pixelSize: Theme.controlFont
            }
        }
    }

    IconItem {
        anchors.left: parent.left
        anchors.leftMargin: 8
        y: 8
        width: 40
        height: 40
        visible: !row.isSection
        icons: row.launcher.icons
        appKeys: row.isSection ? [] : [row.appKey]
    }

    Column {
        id: words

        anchors.left: parent.left
        anchors.leftMargin: 60
        y: Math.max(8, (56 - headline.height - said.height - 2) / 2)
        width: parent.width - anchors.leftMargin - (buttons.visible ? buttons.width + 18 : 12)
        visible: !row.isSection
        spacing: 2

        Text {
            id: headline

            width: parent.width
            horizontalAlignment: Text.AlignLeft
            text: row.name
            color: Theme.text
            elide: Text.ElideRight
            textFormat: Text.PlainText
            font.pixelSize: Theme.textFont
        }

        Text {
            id: said

            width: parent.width
            horizontalAlignment: Text.AlignLeft
            text: row.text
            color: row.isFailure ? Theme.dangerText : Theme.textDim
            wrapMode: row.isCurrent ? Text.Wrap : Text.NoWrap
            elide: Text.ElideRight
            maximumLineCount: row.isCurrent ? 4 : 1
            textFormat: Text.PlainText
            font.pixelSize: Theme.noteFont
        }

        Loader {
            width: Math.min(220, parent.width)
            active: row.isRunning
            visible: active
            sourceComponent: ProgressLine {
                height: 4
                indeterminate: true
            }
        }

        Text {
            objectName: "updateDetail"
            width: parent.width
            visible: text !== ""
            horizontalAlignment: Text.AlignLeft
            text: row.isCurrent || row.isRunning ? row.detail : ""
            color: Theme.textFaint
            wrapMode: Text.Wrap
            elide: Text.ElideRight
            maximumLineCount: row.isRunning ? 1 : 6
            textFormat: Text.PlainText
            font.pixelSize: Theme.noteFont
        }

        Text {
            objectName: "updateSource"
            width: parent.width
            visible: text !== ""
            horizontalAlignment: Text.AlignLeft
            text: row.isCurrent ? row.source : ""
            color: Theme.textFaint
            wrapMode: Text.Wrap
            textFormat: Text.PlainText
            font.pixelSize: Theme.captionFont
        }
    }

    Row {
        id: buttons

        anchors.right: parent.right
        anchors.rightMargin: 8
        y: 13
        visible: !row.isSection && (row.action !== "" || more.visible)
        spacing: 6

        PushButton {
            objectName: "updateAction"
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, row.width * 0.36)
            height: 30
            // The row has the focus instead.
            activeFocusOnTab: false
            visible: row.action !== ""
            enabled: row.canAct
            text: row.action
            onClicked: {
                row.pressed();
                row.updates.act(row.index);
            }
        }

        RoundButton {
            id: more

            objectName: "updateMore"
            anchors.verticalCenter: parent.verticalCenter
            activeFocusOnTab: false
            sign: "…"
            label: qsTr("More")
            onClicked: {
                row.pressed();
                row.openMenu();
            }
        }
    }
}
