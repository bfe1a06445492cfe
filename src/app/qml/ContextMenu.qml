import QtQuick
import Tessellar

// The context menu, with one submenu beside it.
Item {
    id: root

    required property MenuModel menu

    // Keeps a coordinate within the window.
    function within(wanted, size, available) {
        return Math.round(Math.max(8, Math.min(wanted, available - size - 8)));
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        // On release: if this area disappeared on press, the release would reach what is below.
        onClicked: root.menu.close()
        onWheel: wheel => wheel.accepted = true
    }

    MenuPanel {
        id: main

        objectName: "menuPanel"
        x: root.within(root.menu.position.x + 1, width, root.width)
        // Above the pointer if there is no room below, but never under it.
        y: root.menu.position.y + 1 + height <= root.height - 8 ? root.menu.position.y + 1
           : root.within(root.menu.position.y - 1 - height >= 8 ? root.menu.position.y - 1 - height : root.menu.position.y, height, root.height)
        tallest: root.height - 16
        widest: root.width - 16
        entries: root.menu.entries
        current: root.menu.current
        onHovered: index => root.menu.hover(false, index)
        onChosen: index => root.menu.choose(false, index)
    }

    Loader {
        active: root.menu.parentEntry >= 0
        sourceComponent: MenuPanel {
            readonly property bool fitsRight: main.x + main.width + width - 4 < root.width - 8

            objectName: "subMenuPanel"
            x: fitsRight ? main.x + main.width - 4 : root.within(main.x - width + 4, width, root.width)
            y: root.within(main.y + main.lineTop(root.menu.parentEntry) - 6, height, root.height)
            tallest: root.height - 16
            widest: root.width - 16
            entries: root.menu.subEntries
            current: root.menu.subCurrent
            onHovered: index => root.menu.hover(true, index)
            onChosen: index => root.menu.choose(true, index)
        }
    }
}
