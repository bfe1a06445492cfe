import QtQuick
import Tessellar

// What is new in this version of the launcher.
Sheet {
    id: sheet

    required property LauncherController launcher

    objectName: "newsSheet"
    title: qsTr("What Is New in Tessellar")
    onClosed: launcher.sheets.close()

    WordsText {
        objectName: "newsText"
        width: sheet.bodyWidth
        text: sheet.launcher.sheets.news
        textFormat: Text.MarkdownText
    }

    buttons: PushButton {
        text: qsTr("Done")
        isDefault: true
        onClicked: sheet.launcher.sheets.close()
    }
}
