import QtQuick
import Tessellar

// Pages side by side, turned by swipe, wheel and program. Only the page shown and its neighbours exist.
PagerItem {
    id: strip

    required property LauncherController launcher
    required property GridModel model
    required property int columns
    required property int rows
    required property int leftMargin
    required property int topMargin
    required property int cellWidth
    required property int cellHeight
    required property int iconSide
    property bool interactive: true
    property bool isInFolder: false
    property bool canLift: true
    // The neighbours are made when there is time: after the first frame.
    property bool hasNeighbours: false

    // Where a tile of the page shown lies, or nowhere.
    function tileRect(tileId) {
        const current = tileId ? repeater.itemAt(strip.page) : null;
        return current && current.item ? current.item.tileRect(tileId) : Qt.rect(0, 0, 0, 0);
    }

    pageCount: model.pageCount
    enabled: interactive
    clip: false

    Item {
        // Whole pixels, so that icons are not smoothed again.
        x: Math.round(-strip.position * strip.width)
        width: strip.width
        height: strip.height

        Repeater {
            id: repeater

            model: strip.model.pageCount

            Loader {
                id: slot

                required property int index
                readonly property bool isCurrent: index === strip.page

                x: index * strip.width
                width: strip.width
                height: strip.height
                active: isCurrent || Math.abs(index - strip.position) < 1
                        || (strip.hasNeighbours && Math.abs(index - strip.page) <= 1)
                asynchronous: !isCurrent
                visible: Math.abs(index - strip.position) < 1
                sourceComponent: GridPage {
                    launcher: strip.launcher
                    tiles: strip.model.page(slot.index)
                    index: slot.index
                    isInFolder: strip.isInFolder
                    canLift: strip.canLift
                    columns: strip.columns
                    rows: strip.rows
                    leftMargin: strip.leftMargin
                    topMargin: strip.topMargin
                    cellWidth: strip.cellWidth
                    cellHeight: strip.cellHeight
                    iconSide: strip.iconSide
                }
            }
        }
    }

    DragHandler {
        property real last: 0

        target: null
        yAxis.enabled: false
        // What begins on a tile lifts it; a finger always swipes.
        enabled: strip.interactive && !strip.launcher.drag.isPressed && !strip.launcher.drag.isLifted
        acceptedDevices: PointerDevice.AllDevices
        onActiveChanged: {
            if (active)
                last = 0;
            else
                strip.release(centroid.velocity.x);
        }
        onTranslationChanged: {
            if (!active)
                return;
            strip.drag(translation.x - last);
            last = translation.x;
        }
    }

    FrameAnimation {
        running: strip.isMoving
        onTriggered: strip.advance(frameTime)
    }

    Timer {
        running: strip.launcher.isReady
        interval: 60
        onTriggered: strip.hasNeighbours = true
    }
}
