import QtQuick
import Tessellar

// A menu while it is open. Takes the focus, and returns it when closed.
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
