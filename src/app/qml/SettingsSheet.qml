import QtQuick
import Tessellar

// The settings. They take effect at once, and the grid beside shows the result.
Sheet {
    id: sheet

    required property LauncherController launcher
    readonly property SettingsPanel panel: launcher.panels.settings

    objectName: "settingsSheet"
    title: qsTr("Settings")
    wanted: 460
    isBeside: true
    isSeenThrough: focusItem instanceof Slider && focusItem.pressed
    spacing: 6
    onClosed: launcher.sheets.close()

    Repeater {
        // A count as the model, so that a change does not recreate rows while they are in use.
        model: sheet.panel.sections.length

        Column {
            id: section

            required property int index
            readonly property var modelData: sheet.panel.sections[index] ?? ({ title: "", rows: [], note: "" })

            width: sheet.bodyWidth
            spacing: 2

            Text {
                width: parent.width
                height: implicitHeight + (section.index === 0 ? 0 : 14)
                verticalAlignment: Text.AlignBottom
                horizontalAlignment: Text.AlignLeft
                text: section.modelData.title
                color: Theme.text
                elide: Text.ElideRight
                textFormat: Text.PlainText
                font.pixelSize: Theme.titleFont
                font.weight: Font.DemiBold

                Accessible.role: Accessible.Heading
                Accessible.name: text
            }

            Repeater {
                model: section.modelData.rows.length

                SettingRow {
                    required property int index

                    width: section.width
                    modelData: section.modelData.rows[index] ?? ({ kind: "", title: "" })
                    panel: sheet.panel
                }
            }

            WordsText {
                width: parent.width
                text: section.modelData.note
                color: Theme.textFaint
                font.pixelSize: Theme.noteFont
            }
        }
    }

    foot: WordsText {
        objectName: "settingsIssue"
        width: parent ? parent.width : 0
        text: sheet.panel.issue
        color: Theme.warningText
        font.pixelSize: Theme.controlFont
    }

    buttons: PushButton {
        text: qsTr("Done")
        isDefault: true
        onClicked: sheet.launcher.sheets.close()
    }
}
