import QtQuick

// The frame of what lies over the grid to be read and worked with. Its content is laid out by who uses it.
// It has the keyboard: Tab goes through what is in it and nowhere else.
FocusScope {
    id: sheet

    required property string title
    property int wanted: 560
    default property alias content: body.data
    readonly property int bodyWidth: body.width
    readonly property int tallest: height - 120

    signal closed

    focus: true
    Component.onCompleted: if (!activeFocus) forceActiveFocus()
    // Where nothing in it has the keyboard yet.
    Keys.onTabPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
    Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)

    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.AllButtons
        onClicked: sheet.closed()
        onWheel: wheel => wheel.accepted = true
    }

    Rectangle {
        anchors.fill: parent
        color: "#80000000"
    }

    Rectangle {
        anchors.centerIn: parent
        width: Math.min(sheet.wanted, parent.width - 40)
        height: Math.min(sheet.height - 40, heading.height + body.childrenRect.height + 64)
        radius: 22
        color: "#fa262a39"
        border.color: "#38ffffff"

        Accessible.role: Accessible.Dialog
        Accessible.name: sheet.title

        MouseArea {
            anchors.fill: parent
            acceptedButtons: Qt.AllButtons
        }

        Text {
            id: heading

            x: 26
            y: 22
            width: parent.width - 52
            text: sheet.title
            color: "white"
            elide: Text.ElideRight
            textFormat: Text.PlainText
            font.pixelSize: 19
            font.weight: Font.DemiBold
        }

        Item {
            id: body

            anchors.fill: parent
            anchors.leftMargin: 26
            anchors.rightMargin: 26
            anchors.topMargin: heading.y + heading.height + 14
            anchors.bottomMargin: 24
        }
    }
}
