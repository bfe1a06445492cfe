import QtQuick
import Tessellar

// Pages side by side, turned by swiping, by the wheel and by the program. Only the current page and its neighbours
// are created.
PagerItem {
    id: strip

    required property LauncherController launcher
    // The item whose coordinates the pointer's positions use.
    required property Item stage
    required property GridModel model
    property bool interactive: true
    readonly property int sign: isMirrored ? -1 : 1
    property bool isInFolder: false
    property bool canLift: true
    // None before the arrangement is loaded.
    readonly property int existing: Math.max(model.pageCount, keptPages)
    // Pages that exist even if empty, for models that change all the time.
    property int keptPages: 0
    // The neighbours are created after the first frame, when idle.
    property bool hasNeighbours: false

    // The rectangle of a tile on the current page, or an empty one.
    function tileRect(tileId) {
        for (let i = 0; tileId && i < repeater.count; ++i) {
            const slot = repeater.itemAt(i);
            if (slot && slot.isCurrent && slot.item)
                return slot.item.tileRect(tileId);
        }
        return Qt.rect(0, 0, 0, 0);
    }

    // The visible pages, and the neighbours of the one that the strip moves to. Only these are created, however
    // many there are.
    function updateNear() {
        const wanted = [];
        const add = page => {
            if (page >= 0 && page < existing && !wanted.includes(page))
                wanted.push(page);
        };
        [Math.floor(position), Math.ceil(position)].forEach(add);
        [page, page + 1, page - 1].forEach(add);
        for (let i = near.count - 1; i >= 0; --i)
            if (!wanted.includes(near.get(i).page)) {
                const slot = repeater.itemAt(i);
                if (slot)
                    slot.active = false; // one that is being made would complain of its end
                near.remove(i);
            }
        for (const page of wanted) {
            let isThere = false;
            for (let i = 0; i < near.count && !isThere; ++i)
                isThere = near.get(i).page === page;
            if (!isThere)
                near.append({ page: page });
        }
    }

    // Where tiles were before a change, and where one was dropped.
    property var positions: ({})
    property var released: null

    Connections {
        target: strip.canLift ? strip.model : null

        function onAboutToRearrange() {
            const positions = {};
            for (let i = 0; i < repeater.count; ++i)
                if (repeater.itemAt(i) && repeater.itemAt(i).item)
                    repeater.itemAt(i).item.remember(positions);
            if (strip.released && positions[strip.released.tile] === undefined)
                positions[strip.released.tile] = strip.released.at;
            strip.positions = positions;
        }
        function onRearranged() {
            for (let i = 0; i < repeater.count && Object.keys(strip.positions).length > 0; ++i)
                if (repeater.itemAt(i) && repeater.itemAt(i).item)
                    repeater.itemAt(i).item.begin(strip.positions);
            strip.positions = {};
        }
    }

    Connections {
        target: strip.launcher.drag

        function onChanged() {
            const drag = strip.launcher.drag;
            if (drag.isActive || drag.releasedTile === "" || !strip.enabled || Theme.reducesMotion)
                return;
            for (let i = 0; i < repeater.count; ++i) {
                const slot = repeater.itemAt(i);
                if (!slot || !slot.item)
                    continue;
                slot.item.flyHome(drag.releasedTile, slot.item.mapFromItem(strip.stage, drag.pictureAt.x, drag.pictureAt.y));
                if (slot.isCurrent) {
                    const at = slot.item.mapFromItem(strip.stage, drag.pictureAt.x, drag.pictureAt.y);
                    const metrics = strip.model.metrics;
                    strip.released = {
                        tile: drag.releasedTile,
                        at: Qt.point(slot.x + at.x - (metrics.cellWidth - metrics.iconSide) / 2, at.y - metrics.cellHeight * 0.1)
                    };
                }
            }
            // The drop, if any, follows immediately.
            Qt.callLater(() => strip.released = null);
        }
    }

    pageCount: model.pageCount
    page: model.page
    onTurned: page => model.turnTo(page)
    onPositionChanged: Qt.callLater(updateNear)
    jumps: Theme.reducesMotion
    isMirrored: Theme.isMirrored
    onPageChanged: {
        Qt.callLater(updateNear);
        if (jumps)
            fadeIn.restart();
    }
    // Pages are created in a later turn than the one that adds or turns them, which is busy enough.
    onExistingChanged: near.count > 0 ? updateNear() : Qt.callLater(updateNear)
    Component.onCompleted: updateNear()
    enabled: interactive
    clip: false

    NumberAnimation {
        id: fadeIn

        target: all
        property: "opacity"
        from: 0
        to: 1
        duration: Theme.fadeTime
    }

    Item {
        id: all

        // Whole pixels, so that icons are not resampled.
        x: Math.round(-strip.position * strip.width)
        width: strip.width
        height: strip.height

        Repeater {
            id: repeater

            model: ListModel {
                id: near
            }

            Loader {
                id: slot

                required property int page
                readonly property bool isCurrent: page === strip.page
                readonly property bool isSeen: Math.abs(page - strip.position) < 1

                x: page * strip.width
                width: strip.width
                height: strip.height
                active: isCurrent || isSeen || strip.hasNeighbours
                asynchronous: !isCurrent
                visible: isSeen
                sourceComponent: GridPage {
                    launcher: strip.launcher
                    stage: strip.stage
                    tiles: strip.model.tilesOf(slot.page)
                    index: slot.page
                    isInFolder: strip.isInFolder
                    canLift: strip.canLift
                    metrics: strip.model.metrics
                }
            }
        }
    }

    DragHandler {
        property real last: 0

        target: null
        yAxis.enabled: false
        // Pressing on a tile lifts it; touch always swipes.
        enabled: strip.interactive && !strip.launcher.drag.isPressed && !strip.launcher.drag.isActive
        acceptedDevices: PointerDevice.AllDevices
        onActiveChanged: {
            if (active)
                last = 0;
            else
                strip.release(strip.sign * centroid.velocity.x);
        }
        onTranslationChanged: {
            if (!active)
                return;
            strip.drag(strip.sign * (translation.x - last));
            last = translation.x;
        }
    }

    FrameAnimation {
        running: strip.isMoving
        onTriggered: strip.advance(frameTime)
    }

    Timer {
        running: strip.launcher.isReady
        interval: Theme.neighboursDelay
        onTriggered: strip.hasNeighbours = true
    }
}
