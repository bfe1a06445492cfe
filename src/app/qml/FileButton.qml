import QtQuick
import Tessellar

// A button that opens a file dialog.
PushButton {
    id: button

    // In the dialog's format: a name, and patterns in parentheses.
    required property string filter

    signal chosen(url file)

    text: qsTr("Browse…")
    enabled: dialog.status !== Loader.Error
    onClicked: {
        dialog.active = true;
        if (dialog.item)
            dialog.item.open();
    }

    Loader {
        id: dialog

        active: false
        source: "FileChooser.qml"
        onLoaded: item.nameFilters = [button.filter]
    }

    Connections {
        target: dialog.item
        function onAccepted() {
            button.chosen(dialog.item.selectedFile);
        }
    }
}
