import QtQuick
import Tessellar

// Which file an application's icon is to come from. It stays until the icon has been taken.
Sheet {
    id: sheet

    required property LauncherController launcher

    objectName: "iconSheet"
    title: qsTr("Change the Icon of “%1”").arg(launcher.sheets.appName)
    wanted: 520
    onClosed: if (path.input.text === "") launcher.sheets.close()

    WordsText {
        width: sheet.bodyWidth
        text: qsTr("Drop an .icns file here, or give its path.")
        color: drop.containsDrag ? Theme.accent : Theme.textDim
    }

    FieldBox {
        id: path

        width: sheet.bodyWidth
        height: Theme.buttonHeight
        value: ""
        label: qsTr("Path of an .icns file")
        placeholder: label
        onEdited: text => value = text
        Component.onCompleted: input.forceActiveFocus()
    }

    WordsText {
        objectName: "iconIssue"
        width: sheet.bodyWidth
        text: sheet.launcher.sheets.issue
        color: Theme.warningText
        font.pixelSize: Theme.controlFont
    }

    // The whole sheet takes what is dropped.
    DropArea {
        id: drop

        parent: sheet
        anchors.fill: parent
        onDropped: event => {
            if (event.hasUrls)
                path.value = sheet.launcher.sheets.localFile(event.urls[0]);
        }
    }

    buttons: [
        PushButton {
            text: qsTr("Cancel")
            onClicked: sheet.launcher.sheets.close()
        },
        PushButton {
            objectName: "iconAccept"
            text: qsTr("Change")
            isDefault: true
            enabled: path.value !== ""
            onClicked: sheet.launcher.sheets.changeIcon(path.value)
        }
    ]
}
