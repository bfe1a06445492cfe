import QtQuick

// A part of the window that is loaded when it is wanted: the first frame need not wait for its types.
Loader {
    id: part

    required property string file
    // What the part is given.
    required property var initial
    property bool wanted: false

    onWantedChanged: {
        if (wanted)
            setSource(file, initial);
        else
            source = "";
    }
}
