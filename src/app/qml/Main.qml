import QtQuick
import Tessellar

// Everything in the window. Presents the controller's state; decides nothing.
FocusScope {
    id: root

    required property LauncherController launcher

    // True while the launcher is fading out or hidden; it is slightly enlarged then.
    property bool isAway: false
    // On very large screens the controls around the tiles grow with them, as the names do.
    readonly property real largeScale: Math.max(1, launcher.grid.metrics.iconSide / Theme.largeIcon)

    LayoutMirroring.enabled: Theme.isMirrored
    LayoutMirroring.childrenInherit: true

    focus: true
    opacity: isAway ? 0 : 1
    scale: isAway && !Theme.reducesMotion ? 1.04 : 1
    Keys.onPressed: event => {
        if (launcher.renaming.tileId === "")
            event.accepted = launcher.input.pressKey(event.key, event.modifiers, event.text)
                || (!(event.modifiers & (Qt.ControlModifier | Qt.MetaModifier)) && launcher.input.type(event.text));
    }

    Connections {
        target: root.launcher.search
        function onChanged() {
            found.active = true;
        }
    }

    Timer {
        running: root.launcher.isReady
        interval: Theme.resultsDelay
        onTriggered: {
            found.active = true;
            fonts.active = true;
        }
    }

    Connections {
        target: root.launcher.input
        function onMenuRequested(tileId) {
            const shown = root.launcher.search.isActive ? found.item : root.launcher.folder.isOpen ? folder : pages;
            const rect = shown.tileRect(tileId);
            root.launcher.input.openMenu(tileId, rect.width > 0 ? tiles.mapToItem(null, rect.x + rect.width / 2, rect.y + rect.height / 2)
                                                          : Qt.point(root.width / 2, root.height / 2));
        }
    }

    Behavior on opacity {
        NumberAnimation { duration: Theme.fadeTime }
    }

    Behavior on scale {
        NumberAnimation { duration: Theme.fadeTime; easing.type: Theme.curve }
    }

    Binding {
        target: Theme
        property: "appearance"
        value: root.launcher.appearance.theme
    }

    Binding {
        target: Theme
        property: "reducesMotion"
        value: root.launcher.appearance.reducesMotion
    }

    Binding {
        target: Theme
        property: "textScale"
        value: root.launcher.appearance.textScale
    }

    BackdropItem {
        anchors.fill: parent
        backdrop: root.launcher.backdrop
        isDark: !Theme.isLight
    }

    // The grid and its controls. Disabled under a sheet or an alert. In right-to-left layouts all of it is
    // mirrored, and texts and icons are flipped back.
    Item {
        id: tiles

        transform: Unmirrored { target: tiles }
        LayoutMirroring.enabled: false
        LayoutMirroring.childrenInherit: true

        anchors.fill: parent
        enabled: !root.launcher.input.isCovered

        // A click beside the tiles closes the launcher, as on the Mac, or ends a search. Handlers instead of an
        // area, because they also see events that the pages above only watch.
        Item {
            anchors.fill: parent

            TapHandler {
                gesturePolicy: TapHandler.ReleaseWithinBounds
                onTapped: root.launcher.input.clickBackground()
                onLongPressed: root.launcher.input.openMenu("", point.position)
            }

            TapHandler {
                acceptedButtons: Qt.RightButton
                gesturePolicy: TapHandler.ReleaseWithinBounds
                onTapped: eventPoint => root.launcher.input.openMenu("", eventPoint.scenePosition)
            }
        }

        Item {
            id: stage

            anchors.fill: parent
            opacity: root.launcher.isReady && !root.launcher.search.isActive ? 1 - 0.68 * folder.progress : 0
            visible: opacity > 0

            PageStrip {
                id: pages

                anchors.fill: parent
                launcher: root.launcher
                stage: tiles
                model: root.launcher.grid
                interactive: !root.launcher.folder.isOpen && !root.launcher.alert.isOpen
            }

            PageDots {
                anchors.horizontalCenter: parent.horizontalCenter
                anchors.bottom: parent.bottom
                anchors.bottomMargin: root.launcher.isWindowed ? 14 : 28
                scale: root.largeScale
                room: (root.width - 40) / scale
                count: root.launcher.grid.pageCount
                position: pages.position
                onChosen: page => root.launcher.grid.turnTo(page)
            }

            Text {
                id: nothingInstalled

                transform: Unmirrored { target: nothingInstalled }
                anchors.centerIn: parent
                visible: root.launcher.isReady && root.launcher.grid.pageCount === 0
                text: qsTr("No applications were found.")
                color: Theme.backdropTextDim
                font.pixelSize: Theme.bigFont
                font.weight: Font.Light
            }
        }

        Loader {
            id: found

            // Created when idle, so that the first letter need not wait for it.
            anchors.fill: parent
            active: false
            asynchronous: !root.launcher.search.isActive
            visible: root.launcher.search.isActive
            sourceComponent: Item {
                function tileRect(tileId) {
                    return results.tileRect(tileId);
                }

                PageStrip {
                    id: results

                    keptPages: 2

                    anchors.fill: parent
                    launcher: root.launcher
                    stage: tiles
                    model: root.launcher.search.results
                    interactive: !root.launcher.alert.isOpen
                    canLift: false
                }

                PageDots {
                    anchors.horizontalCenter: parent.horizontalCenter
                    anchors.bottom: parent.bottom
                    anchors.bottomMargin: root.launcher.isWindowed ? 14 : 28
                    scale: root.largeScale
                    room: (root.width - 40) / scale
                    count: root.launcher.search.results.pageCount
                    position: results.position
                    kept: limit
                    onChosen: page => root.launcher.search.results.turnTo(page)
                }

                Text {
                    id: nothingFound

                    transform: Unmirrored { target: nothingFound }
                    anchors.centerIn: parent
                    width: Math.min(implicitWidth, parent.width - 80)
                    visible: root.launcher.search.results.pageCount === 0
                    text: qsTr("No results for “%1”").arg(root.launcher.search.text)
                    elide: Text.ElideRight
                    textFormat: Text.PlainText
                    color: Theme.backdropTextDim
                    font.pixelSize: Theme.bigFont
                    font.weight: Font.Light
                }
            }
        }

        SearchField {
            id: searchField

            transform: Unmirrored { target: searchField }
            LayoutMirroring.enabled: Theme.isMirrored
            LayoutMirroring.childrenInherit: true
            anchors.horizontalCenter: parent.horizontalCenter
            y: Math.max(4, Math.round((root.launcher.grid.metrics.top - height) / 2))
            scale: root.largeScale
            opacity: root.launcher.isReady ? 1 - folder.progress : 0
            visible: opacity > 0
            launcher: root.launcher
        }

        FolderOverlay {
            id: folder

            anchors.fill: parent
            launcher: root.launcher
            stage: tiles
            origin: pages.tileRect(root.launcher.folder.tileId)
        }

        Loader {
            anchors.fill: parent
            active: root.launcher.drag.isActive
            sourceComponent: DraggedTiles {
                launcher: root.launcher
                iconSide: (root.launcher.folder.isOpen ? root.launcher.folder.tiles : root.launcher.grid).metrics.iconSide
            }
        }

        // The side at which the page is about to turn.
        Rectangle {
            readonly property int side: root.launcher.drag.turning

            x: side > 0 ? parent.width - width : 0
            width: Theme.edgeWidth
            height: parent.height
            visible: side !== 0 && !root.launcher.folder.isOpen
            gradient: Gradient {
                orientation: Gradient.Horizontal
                GradientStop { position: 0; color: root.launcher.drag.turning > 0 ? Theme.glowEnd : Theme.glow }
                GradientStop { position: 1; color: root.launcher.drag.turning > 0 ? Theme.glow : Theme.glowEnd }
            }
        }

        DragStage {
            anchors.fill: parent
            drag: root.launcher.drag
        }
    }

    Notice {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: root.launcher.isWindowed ? 8 : 20
        text: root.launcher.notice
    }

    OnDemand {
        anchors.fill: parent
        enabled: !root.launcher.alert.isOpen
        file: root.launcher.panels.removal.isOpen ? "RemovalSheet.qml" : ""
        initial: ({ launcher: root.launcher })
    }

    OnDemand {
        readonly property string sheet: root.launcher.sheets.current

        anchors.fill: parent
        enabled: !root.launcher.alert.isOpen
        file: sheet !== "" ? sheet.charAt(0).toUpperCase() + sheet.slice(1) + "Sheet.qml" : ""
        initial: ({ launcher: root.launcher })
    }

    OnDemand {
        // The item that had the focus before and gets it back.
        property Item former: null

        anchors.fill: parent
        file: root.launcher.panels.smartFolder.popups.days.isOpen ? "DayGrid.qml" : ""
        initial: ({ days: root.launcher.panels.smartFolder.popups.days })
        onLoaded: {
            former = root.Window.activeFocusItem;
            item.forceActiveFocus();
        }
        onFileChanged: if (file === "" && former) former.forceActiveFocus()
    }

    // Finding a font takes long, so those of the sheets are found while nothing else happens.
    Loader {
        id: fonts

        active: false
        asynchronous: true
        visible: false
        sourceComponent: Repeater {
            model: [
                Qt.font({ pixelSize: Theme.captionFont }),
                Qt.font({ pixelSize: Theme.noteFont }),
                Qt.font({ pixelSize: Theme.controlFont }),
                Qt.font({ pixelSize: Theme.titleFont }),
                Qt.font({ pixelSize: Theme.textFont, weight: Font.Medium }),
                Qt.font({ pixelSize: Theme.headingFont, weight: Font.DemiBold })
            ]

            Text {
                required property font modelData

                text: "…"
                font: modelData
            }
        }
    }

    OpenMenu {
        anchors.fill: parent
        menu: root.launcher.panels.smartFolder.popups.choices
    }

    OpenMenu {
        anchors.fill: parent
        menu: root.launcher.panels.arrangements.menu
    }

    OpenMenu {
        anchors.fill: parent
        menu: root.launcher.input.menu
    }

    OnDemand {
        anchors.fill: parent
        file: root.launcher.alert.isOpen ? "Alert.qml" : ""
        initial: ({ launcher: root.launcher })
    }
}
