import QtQuick
import Tessellar

// The symbols that a folder can have, one of them chosen.
Flow {
    id: strip

    required property var symbols
    required property TileIcons icons

    signal chosen(string name)

    spacing: 4

    Repeater {
        model: strip.symbols.length

        Rectangle {
            id: symbol

            required property int index
            readonly property var modelData: strip.symbols[index] ?? ({ name: "", isChosen: false, isDrawn: true })
            readonly property string title: modelData.name === "" ? qsTr("Contents") : modelData.name

            objectName: "symbol"
            width: 40
            height: 40
            radius: 9
            color: modelData.isChosen ? "#404f80ff" : mouse.containsMouse ? "#1fffffff" : "transparent"
            border.width: modelData.isChosen || activeFocus ? 2 : 0
            border.color: activeFocus ? "white" : "#4f80ff"
            activeFocusOnTab: true

            Accessible.role: Accessible.RadioButton
            Accessible.name: title
            Accessible.checked: modelData.isChosen
            Accessible.onPressAction: strip.chosen(modelData.name)

            Keys.onSpacePressed: strip.chosen(modelData.name)

            IconItem {
                anchors.centerIn: parent
                width: 32
                height: 32
                visible: symbol.modelData.isDrawn
                icons: strip.icons
                kind: IconItem.SmartFolder
                symbolName: symbol.modelData.name
            }

            Text {
                anchors.fill: parent
                anchors.margins: 3
                visible: !symbol.modelData.isDrawn
                verticalAlignment: Text.AlignVCenter
                horizontalAlignment: Text.AlignHCenter
                text: symbol.modelData.name
                color: "#b3ffffff"
                elide: Text.ElideRight
                textFormat: Text.PlainText
                font.pixelSize: 10
            }

            MouseArea {
                id: mouse

                anchors.fill: parent
                hoverEnabled: true
                onClicked: strip.chosen(symbol.modelData.name)
            }
        }
    }
}
