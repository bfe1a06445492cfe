import QtQuick
import Tessellar

// A menu while it is open. It has the keyboard, and gives it back to who had it.
OnDemand {
    id: part

    required property MenuModel menu
    property Item former: null

    file: "ContextMenu.qml"
    initial: ({ menu: part.menu })
    wanted: menu.isOpen
    onLoaded: {
        former = Window.activeFocusItem;
        item.forceActiveFocus();
    }
    onWantedChanged: if (!wanted && former) former.forceActiveFocus()
}
