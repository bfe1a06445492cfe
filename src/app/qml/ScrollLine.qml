import QtQuick
import QtQuick.Templates as T
import Tessellar

T.ScrollBar {
    id: bar

    implicitWidth: 8
    implicitHeight: 8
    padding: 1
    minimumSize: 0.08

    contentItem: Rectangle {
        radius: width / 2
        color: Theme.text
        opacity: bar.pressed ? 0.5 : bar.active ? 0.35 : 0.18

        Behavior on opacity {
            NumberAnimation { duration: Theme.fadeTime }
        }
    }
}
