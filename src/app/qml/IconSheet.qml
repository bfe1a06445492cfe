import QtQuick
import Tessellar

// Chooses the file for an application's icon. Stays open until the icon has been imported.
Sheet {
    id: sheet

    required property LauncherController launcher

    function take(file) {
        path.value = launcher.sheets.localFile(file);
        path.input.forceActiveFocus();
    }

    objectName: "iconSheet"
    title: qsTr("Change the Icon of “%1”").arg(launcher.sheets.appName)
    wanted: 520
    onClosed: launcher.sheets.leave()

    Binding {
        target: sheet.launcher.sheets
        property: "isTyped"
        value: path.value !== ""
    }

    WordsText {
        width: sheet.bodyWidth
        text: qsTr("Drop an .icns file here, choose one, or give its path.")
        color: drop.containsDrag ? Theme.accent : Theme.textDim
    }

    Row {
        width: sheet.bodyWidth
        spacing: 8

        FieldBox {
            id: path

            objectName: "iconPath"
            width: parent.width - browse.width - parent.spacing
            height: Theme.buttonHeight
            value: ""
            label: qsTr("Path of an .icns file")
            placeholder: label
            onEdited: text => value = text
            Component.onCompleted: input.forceActiveFocus()
        }

        FileButton {
            id: browse

            objectName: "iconBrowse"
            filter: qsTr("Icons (*.icns)")
            onChosen: file => sheet.take(file)
        }
    }

    WordsText {
        objectName: "iconIssue"
        width: sheet.bodyWidth
        text: sheet.launcher.sheets.issue
        color: Theme.warningText
        font.pixelSize: Theme.controlFont
    }

    // A file can be dropped anywhere on the sheet.
    DropArea {
        id: drop

        parent: sheet
        anchors.fill: parent
        onDropped: event => {
            if (event.hasUrls)
                sheet.take(event.urls[0]);
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
