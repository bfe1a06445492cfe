import QtQuick
import Tessellar

// What is not on the pages: hidden applications, smart folders without a tile, and the remembered places of removed
// applications.
Sheet {
    id: sheet

    required property LauncherController launcher
    readonly property UnplacedPanel panel: launcher.panels.unplaced

    objectName: "unplacedSheet"
    title: qsTr("Hidden and Remembered")
    wanted: 620
    stretched: list
    onClosed: launcher.sheets.close()

    WordsText {
        width: sheet.bodyWidth
        text: sheet.panel.summary
    }

    ItemList {
        id: list

        objectName: "unplacedList"
        width: sheet.bodyWidth
        height: Math.min(contentHeight, Math.max(120, sheet.stretchedRoom))
        visible: count > 0
        // A count as the model, so that rows are reused and keep the focus.
        model: sheet.panel.rows.length

        delegate: Item {
            id: row

            required property int index
            readonly property var modelData: sheet.panel.rows[index] ?? ({ title: "", action: "" })
            readonly property bool isSection: modelData.action === ""

            width: ListView.view.width
            height: isSection ? 34 : line.height

            Text {
                anchors.bottom: parent.bottom
                anchors.bottomMargin: 6
                visible: row.isSection
                width: parent.width
                horizontalAlignment: Text.AlignLeft
                text: row.modelData.title
                color: Theme.textSoft
                elide: Text.ElideRight
                font.pixelSize: Theme.controlFont
                font.weight: Font.DemiBold

                Accessible.role: Accessible.Heading
                Accessible.name: text
            }

            IconItem {
                anchors.left: parent.left
                anchors.verticalCenter: parent.verticalCenter
                width: 36
                height: 36
                visible: !row.isSection
                icons: sheet.launcher.icons
                kind: row.modelData.kind ?? IconItem.App
                appKeys: row.modelData.appKeys ?? []
                symbolName: row.modelData.symbolName ?? ""
            }

            ListRow {
                id: line

                anchors.left: parent.left
                anchors.leftMargin: 48
                width: parent.width - anchors.leftMargin
                index: row.index
                visible: !row.isSection
                title: row.modelData.title
                text: row.modelData.text ?? ""
                action: row.modelData.action
                actionName: "unplacedAction"
                list: row.ListView.view
                onActed: sheet.panel.act(row.index)
            }
        }
    }

    buttons: PushButton {
        text: qsTr("Done")
        isDefault: true
        onClicked: sheet.launcher.sheets.close()
    }
}
