import QtQuick
import QtQuick.Templates as T
import Tessellar

// A list that scrolls if necessary, by wheel, scroll bar and keyboard.
ListView {
    id: list

    implicitHeight: contentHeight
    clip: true
    spacing: 2
    boundsBehavior: Flickable.StopAtBounds
    keyNavigationEnabled: true
    highlightMoveDuration: 0

    readonly property Item spokenItem: activeFocus ? currentItem : null
    onSpokenItemChanged: if (spokenItem) AccessibleFocus.moveTo(spokenItem)

    Keys.onPressed: event => {
        const last = count - 1;
        const page = Math.max(1, Math.floor(height / Math.max(1, contentHeight / Math.max(1, count))) - 1);
        const to = event.key === Qt.Key_Home ? 0 : event.key === Qt.Key_End ? last
                 : event.key === Qt.Key_PageUp ? currentIndex - page
                 : event.key === Qt.Key_PageDown ? currentIndex + page : -1;
        event.accepted = event.key === Qt.Key_Home || event.key === Qt.Key_End
                         || event.key === Qt.Key_PageUp || event.key === Qt.Key_PageDown;
        if (event.accepted)
            currentIndex = Math.max(0, Math.min(last, to));
    }

    T.ScrollBar.vertical: ScrollLine {
        visible: list.contentHeight > list.height
    }
}
