import QtQuick
import Tessellar

// What few tiles have: a progress bar, the folder that a drop would form, the field for renaming, and a tooltip. A
// part of its own, because whatever every tile contains costs time on every page.
Item {
    id: overlay

    required property var owner
    required property Item image
    required property Text words

    // An indeterminate progress bar.
    Loader {
        active: overlay.owner.activity !== ""
        visible: overlay.image.visible
        x: overlay.image.x + (overlay.image.width - width) / 2
        y: overlay.image.y + overlay.image.height * 0.76
        sourceComponent: ProgressLine {
            width: Math.round(overlay.image.width * 0.6)
            indeterminate: true
            track: Theme.backdropShade
            part: Theme.backdropText
        }
    }

    Loader {
        active: overlay.owner.isForming
        x: overlay.image.x
        y: overlay.owner.iconTop
        sourceComponent: Item {
            width: overlay.owner.iconSide
            height: overlay.owner.iconSide

            Rectangle {
                anchors.fill: parent
                radius: width * 0.22
                color: Theme.badgeOutline
                border.width: 2
                border.color: Theme.tileRing
                z: -1
            }

            Text {
                anchors.horizontalCenter: parent.horizontalCenter
                y: overlay.owner.iconSide + 4
                width: Math.min(implicitWidth, overlay.owner.width - 10)
                text: overlay.owner.launcher.drag.suggestedName
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignHCenter
                color: Theme.backdropText
                font.pixelSize: overlay.owner.labelPixels
                font.weight: Font.DemiBold
                renderType: Text.QtRendering
                textFormat: Text.PlainText
            }
        }
    }

    Loader {
        active: overlay.owner.isRenamed
        anchors.horizontalCenter: parent.horizontalCenter
        y: overlay.words.y - 4
        z: 1
        sourceComponent: NameField {
            launcher: overlay.owner.launcher
            name: overlay.owner.label
            width: Math.max(overlay.owner.width - 4, 120)
            font.pixelSize: overlay.owner.labelPixels
        }
    }

    Loader {
        active: overlay.owner.isTipped
        // Below the name or on the icon, within the window.
        onLoaded: {
            const at = overlay.mapToItem(null, 0, 0);
            const top = overlay.owner.isUnavailable ? overlay.owner.iconTop - 10 : overlay.words.y + overlay.words.height + 2;
            x = Math.max(4 - at.x, Math.min((overlay.width - width) / 2, overlay.Window.width - at.x - width - 4));
            y = Math.max(4 - at.y, Math.min(top, overlay.Window.height - at.y - height - 4));
        }
        sourceComponent: Tip {
            text: overlay.owner.isUnavailable ? overlay.owner.launcher.unavailableNotice : overlay.owner.label
        }
    }
}
