import QtQuick

// A part of the window that exists while it has a file, so that the first frame does not wait for its types.
Loader {
    property string file: ""
    // The initial properties.
    required property var initial

    onFileChanged: {
        if (file !== "")
            setSource(file, initial);
        else
            source = "";
    }
}
