import QtQuick
import Tessellar

// A button that lets a file be chosen.
PushButton {
    id: button

    // As the dialog has it: words, and a pattern in parentheses.
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
