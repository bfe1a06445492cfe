import QtQuick
import Tessellar

// A menu while it is open. Takes the focus, and returns it when closed.
OnDemand {
    id: part

    required property MenuModel menu
    property Item former: null

    file: menu.isOpen ? "ContextMenu.qml" : ""
    initial: ({ menu: part.menu })
    onLoaded: {
        former = Window.activeFocusItem;
        item.forceActiveFocus();
    }
    onFileChanged: if (file === "" && former) former.forceActiveFocus()
}
