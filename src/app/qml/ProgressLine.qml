import QtQuick
import QtQuick.Templates as T
import Tessellar

// A progress bar; moves continuously if indeterminate.
T.ProgressBar {
    id: bar

    property color track: Theme.control
    property color part: indeterminate ? Theme.text : Theme.accent

    implicitWidth: 120
    implicitHeight: 6

    background: Rectangle {
        radius: height / 2
        color: bar.track
    }

    contentItem: Item {
        clip: bar.indeterminate

        Rectangle {
            id: moving

            width: bar.indeterminate ? bar.width * 0.4 : Math.max(height, bar.width * bar.position)
            height: parent.height
            radius: height / 2
            color: bar.part

            // With reduced motion it pulses in place.
            SequentialAnimation on x {
                running: bar.indeterminate && bar.visible && !Theme.reducesMotion
                loops: Animation.Infinite

                NumberAnimation { from: 0; to: bar.width * 0.6; duration: Theme.busyTime; easing.type: Theme.swing }
                NumberAnimation { from: bar.width * 0.6; to: 0; duration: Theme.busyTime; easing.type: Theme.swing }
            }

            SequentialAnimation on opacity {
                running: bar.indeterminate && bar.visible && Theme.reducesMotion
                loops: Animation.Infinite

                NumberAnimation { from: 1; to: 0.3; duration: Theme.busyTime }
                NumberAnimation { from: 0.3; to: 1; duration: Theme.busyTime }
            }
        }
    }
}
