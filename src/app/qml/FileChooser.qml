import QtQuick.Dialogs

// The desktop's file dialog. In a file of its own, because it is slow to load.
FileDialog {}
