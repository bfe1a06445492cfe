import QtQuick
import Tessellar

// All that is known about one application. Pending values appear while it is open; texts can be selected and
// copied.
Sheet {
    id: sheet

    required property LauncherController launcher
    readonly property InformationPanel about: launcher.panels.information
    readonly property int labelWidth: isNarrow ? 104 : 150

    objectName: "informationSheet"
    title: about.name
    wanted: 600
    isBeside: true
    onClosed: launcher.sheets.close()
    Component.onDestruction: about.close()

    Row {
        width: sheet.bodyWidth
        spacing: 14

        IconItem {
            width: sheet.isSmall ? 48 : 64
            height: width
            icons: sheet.launcher.icons
            appKeys: [sheet.about.appKey]
        }

        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: sheet.about.version
            color: Theme.textDim
            textFormat: Text.PlainText
            font.pixelSize: Theme.textFont
        }
    }

    Repeater {
        model: sheet.about.sections.length

        Column {
            id: section

            required property int index
            readonly property var modelData: sheet.about.sections[index] ?? ({ title: "", rows: [] })

            width: sheet.bodyWidth
            spacing: 5

            Text {
                width: parent.width
                horizontalAlignment: Text.AlignLeft
                text: section.modelData.title
                color: Theme.textSoft
                font.pixelSize: Theme.controlFont
                font.weight: Font.DemiBold

                Accessible.role: Accessible.Heading
                Accessible.name: text
            }

            Repeater {
                model: section.modelData.rows.length

                InformationLine {
                    required property int index
                    readonly property var modelData: section.modelData.rows[index] ?? ({ label: "", text: "", isKnown: true, path: "" })

                    width: section.width
                    labelWidth: sheet.labelWidth
                    label: modelData.label
                    text: modelData.text
                    isKnown: modelData.isKnown
                    path: modelData.path
                    onRevealed: sheet.about.reveal(path)
                }
            }
        }
    }

    foot: WordsText {
        width: parent.width
        text: sheet.about.isPending ? qsTr("Looking…") : ""
    }

    buttons: PushButton {
        text: qsTr("Done")
        isDefault: true
        onClicked: sheet.launcher.sheets.close()
    }
}
