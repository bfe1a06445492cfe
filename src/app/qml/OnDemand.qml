import QtQuick

// A part of the window that is loaded on demand, so that the first frame does not wait for its types.
Loader {
    id: part

    required property string file
    // The initial properties.
    required property var initial
    property bool wanted: false

    onWantedChanged: {
        if (wanted)
            setSource(file, initial);
        else
            source = "";
    }
}
