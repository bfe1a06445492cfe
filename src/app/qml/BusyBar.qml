import QtQuick

// Something goes on, for a while that nobody knows.
Rectangle {
    id: bar

    implicitHeight: 6
    radius: height / 2
    color: "#66000000"
    clip: true

    Rectangle {
        id: part

        width: bar.width * 0.4
        height: parent.height
        radius: height / 2
        color: "#f2ffffff"

        SequentialAnimation on x {
            running: bar.visible
            loops: Animation.Infinite

            NumberAnimation { from: 0; to: bar.width - part.width; duration: 700; easing.type: Easing.InOutSine }
            NumberAnimation { from: bar.width - part.width; to: 0; duration: 700; easing.type: Easing.InOutSine }
        }
    }
}
