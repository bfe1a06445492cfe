import QtQuick.Dialogs

// The desktop's own way to choose a file. By itself, for it takes its time to load.
FileDialog {}
