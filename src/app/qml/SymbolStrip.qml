import QtQuick
import QtQuick.Templates as T
import Tessellar

// The symbols for a folder, one of them chosen.
Flow {
    id: strip

    required property var symbols
    required property TileIcons icons
    readonly property int side: 40
    readonly property int columns: Math.max(1, Math.floor((width + spacing) / (side + spacing)))

    signal chosen(string name)

    height: Math.ceil(symbols.length / columns) * (side + spacing) - spacing
    spacing: 4
    // The symbols are made in a turn of their own: making what surrounds them takes long enough.
    Component.onCompleted: Qt.callLater(() => repeater.model = Qt.binding(() => strip.symbols.length))

    Repeater {
        id: repeater

        T.AbstractButton {
            id: symbol

            required property int index
            readonly property var modelData: strip.symbols[index] ?? ({ name: "", isChosen: false, isDrawn: true })

            objectName: "symbol"
            implicitWidth: strip.side
            implicitHeight: strip.side
            text: modelData.name === "" ? qsTr("Contents") : modelData.name
            focusPolicy: Qt.StrongFocus
            hoverEnabled: true
            onClicked: strip.chosen(modelData.name)

            Accessible.role: Accessible.RadioButton
            Accessible.name: text
            Accessible.checked: modelData.isChosen

            background: Rectangle {
                radius: Theme.controlRadius
                color: symbol.modelData.isChosen ? Theme.accentSoft : symbol.hovered ? Theme.rowCurrent : Theme.clear
                border.width: symbol.modelData.isChosen || symbol.activeFocus ? Theme.focusWidth : 0
                border.color: symbol.activeFocus ? Theme.focusRing : Theme.accent
            }

            contentItem: Item {
                IconItem {
                    anchors.centerIn: parent
                    width: 32
                    height: 32
                    visible: symbol.modelData.isDrawn
                    icons: strip.icons
                    kind: IconItem.SmartFolder
                    symbolName: symbol.modelData.name
                }

                Loader {
                    anchors.fill: parent
                    anchors.margins: 3
                    active: !symbol.modelData.isDrawn
                    sourceComponent: Text {
                        verticalAlignment: Text.AlignVCenter
                        horizontalAlignment: Text.AlignHCenter
                        text: symbol.modelData.name
                        color: Theme.textDim
                        elide: Text.ElideRight
                        textFormat: Text.PlainText
                        font.pixelSize: Theme.tinyFont
                    }
                }
            }
        }
    }
}
