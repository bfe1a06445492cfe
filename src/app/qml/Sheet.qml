import QtQuick
import QtQuick.Templates as T
import Tessellar

// The frame of what opens over the grid: a title, parts below each other, which scroll if necessary, and buttons
// below them, which are always visible.
//
// It has the focus: Tab stays within it, Return presses the default button unless the focused item uses it, and
// Escape is handled by the controller, which asks before anything is lost.
FocusScope {
    id: sheet

    required property string title
    property int wanted: 560 // at the usual text size
    readonly property real wantedWidth: wanted * Math.max(1, Theme.textScale)
    default property alias content: body.data
    // To the left of the buttons, or above them if there is no room.
    property alias foot: foot.data
    property alias buttons: buttons.data
    property alias spacing: body.spacing
    property alias card: card
    // The part, if any, that gets the remaining height.
    property Item stretched: null
    // False if the controller handles its keys.
    property bool takesKeyboard: true
    // False if Page Up and Page Down have another use.
    property bool scrollsByPages: true
    property int headingFont: Theme.headingFont
    property int role: Accessible.Dialog
    // Announced with the title by screen readers.
    property string message
    // If there is room, the sheet goes beside what it is about, which stays visible.
    property bool isBeside: false
    // What is behind shows the result of changes in the sheet.
    property bool isSeenThrough: false
    readonly property bool standsBeside: isBeside && width >= 2 * wantedWidth
    readonly property int bodyWidth: body.width
    readonly property bool isSmall: height < 620
    readonly property bool isNarrow: width < 560
    // The height available to the parts without scrolling.
    readonly property real room: height - 2 * margin - heading.height - ends.height - 2 * padding - 2 * gap
    readonly property real stretchedRoom: {
        let left = room;
        for (let i = 0; i < body.children.length; ++i) {
            const part = body.children[i];
            if (part !== stretched && part.visible && part.height > 0)
                left -= part.height + body.spacing;
        }
        return left;
    }

    readonly property int margin: isSmall ? 8 : 20
    readonly property int padding: isNarrow ? 14 : isSmall ? 18 : 24
    readonly property int gap: isSmall ? 10 : 14

    signal closed

    function pressDefault() {
        for (let i = 0; i < buttons.children.length; ++i) {
            const button = buttons.children[i];
            if (button.isDefault && button.enabled && button.visible)
                return button.clicked();
        }
    }

    // Scrolls to the focused item.
    readonly property Item focusItem: Window.activeFocusItem
    onFocusItemChanged: {
        let part = focusItem;
        while (part && part.parent !== body)
            part = part.parent;
        if (!part)
            return;
        // A part that scrolls by itself will show it within its own bounds.
        const top = Math.max(part.y, Math.min(focusItem.mapToItem(body, 0, 0).y, part.y + part.height - focusItem.height));
        const height = Math.min(focusItem.height, flick.height - 3);
        // Do not scroll for an item that is taller than the view if some of it is visible.
        if (height === focusItem.height || top >= flick.contentY + flick.height || top + focusItem.height <= flick.contentY)
            flick.contentY = Math.max(top + height + 3 - flick.height, Math.min(flick.contentY, Math.max(0, top - 3)));
    }

    focus: takesKeyboard
    Component.onCompleted: if (takesKeyboard && !activeFocus) forceActiveFocus()
    // If nothing in the sheet has the focus yet.
    Keys.onTabPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
    Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
    Keys.onReturnPressed: pressDefault()
    Keys.onEnterPressed: pressDefault()
    // Keys that nothing in the sheet uses scroll it.
    Keys.onPressed: event => {
        const line = 40;
        const by = event.key === Qt.Key_Down ? line : event.key === Qt.Key_Up ? -line
                 : event.key === Qt.Key_End ? flick.contentHeight : event.key === Qt.Key_Home ? -flick.contentHeight
                 : !scrollsByPages ? 0
                 : event.key === Qt.Key_PageDown ? flick.height - line
                 : event.key === Qt.Key_PageUp ? line - flick.height : 0;
        if (by === 0 || !flick.interactive)
            return;
        flick.contentY = Math.max(0, Math.min(flick.contentHeight - flick.height, flick.contentY + by));
        event.accepted = true;
    }

    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.AllButtons
        onClicked: sheet.closed()
        onWheel: wheel => wheel.accepted = true
    }

    Rectangle {
        anchors.fill: parent
        visible: !sheet.standsBeside && !sheet.isSeenThrough
        color: Theme.shade
    }

    Rectangle {
        id: card

        objectName: "sheetCard"
        opacity: sheet.isSeenThrough && !sheet.standsBeside ? Theme.unavailable : 1
        x: !sheet.standsBeside ? (parent.width - width) / 2
           : Theme.isMirrored ? sheet.margin : parent.width - width - sheet.margin
        y: (parent.height - height) / 2
        width: Math.min(sheet.wantedWidth, parent.width - 2 * sheet.margin)
        height: Math.min(sheet.height - 2 * sheet.margin,
                         heading.height + body.height + ends.height + 2 * sheet.padding + 2 * sheet.gap)
        radius: Theme.sheetRadius
        color: Theme.panel
        border.color: Theme.panelOutline

        Accessible.role: sheet.role
        Accessible.name: sheet.title
        Accessible.description: sheet.message

        MouseArea {
            anchors.fill: parent
            acceptedButtons: Qt.AllButtons
        }

        Text {
            id: heading

            anchors.left: parent.left
            anchors.leftMargin: sheet.padding
            y: sheet.padding
            width: parent.width - 2 * sheet.padding
            horizontalAlignment: Text.AlignLeft
            text: sheet.title
            color: Theme.text
            wrapMode: Text.Wrap
            maximumLineCount: sheet.isSmall ? 2 : 3
            elide: Text.ElideRight
            textFormat: Text.PlainText
            font.pixelSize: sheet.headingFont
            font.weight: Font.DemiBold

            Accessible.role: Accessible.Heading
            Accessible.name: text
        }

        Flickable {
            id: flick

            // The scroll bar is beside the parts, in their margin.
            readonly property int barRoom: 12

            anchors.left: parent.left
            anchors.right: parent.right
            anchors.leftMargin: sheet.padding
            anchors.rightMargin: sheet.padding - barRoom
            anchors.top: heading.bottom
            anchors.topMargin: sheet.gap
            anchors.bottom: ends.top
            anchors.bottomMargin: sheet.gap
            clip: interactive
            interactive: contentHeight > height + 1
            contentHeight: body.height
            boundsBehavior: Flickable.StopAtBounds

            Column {
                id: body

                x: Theme.isMirrored ? flick.barRoom : 0
                width: flick.width - flick.barRoom
                spacing: sheet.gap
            }

            T.ScrollBar.vertical: ScrollLine {
                visible: flick.interactive
            }
        }

        Item {
            id: ends

            readonly property real footWidth: {
                let widest = 0;
                for (let i = 0; i < foot.children.length; ++i)
                    if (foot.children[i].visible)
                        widest = Math.max(widest, foot.children[i].implicitWidth);
                return widest;
            }
            readonly property bool isBeside: footWidth + buttons.wantedWidth + 16 <= width

            anchors.left: parent.left
            anchors.right: parent.right
            anchors.leftMargin: sheet.padding
            anchors.rightMargin: sheet.padding
            anchors.bottom: parent.bottom
            anchors.bottomMargin: sheet.padding
            height: isBeside ? Math.max(buttons.height, foot.height) : foot.height + 6 + buttons.height

            Column {
                id: foot

                anchors.left: parent.left
                width: ends.isBeside ? ends.width - buttons.width - 16 : ends.width
                y: ends.isBeside ? (ends.height - height) / 2 : 0
            }

            Flow {
                id: buttons

                readonly property real wantedWidth: {
                    let sum = -spacing;
                    for (let i = 0; i < children.length; ++i)
                        if (children[i].visible)
                            sum += children[i].width + spacing;
                    return sum;
                }

                anchors.right: parent.right
                anchors.bottom: parent.bottom
                width: Math.min(wantedWidth, ends.width)
                spacing: 10
            }
        }
    }
}
