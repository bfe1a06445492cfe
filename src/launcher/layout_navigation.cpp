#include "launcher/layout_navigation.h"

#include "launcher/live_layout.h"

#include <algorithm>

namespace tessellar {

static int nearest(qsizetype page, qsizetype count) {
    return static_cast<int>(std::clamp<qsizetype>(page, 0, std::max<qsizetype>(0, count - 1)));
}

static const LaunchpadItem* tileIn(const Pages& pages, const QUuid& id) {
    for (const Page& page : pages)
        for (const LaunchpadItem& tile : page)
            if (tile.id() == id)
                return &tile;
    return nullptr;
}

void LayoutNavigation::setCurrentPage(int page) {
    page = nearest(page, _layout.shownPages().count());
    if (std::exchange(_position.currentPage, page) != page)
        changed.notify();
}

std::optional<FolderEntry> LayoutNavigation::openFolder() const {
    std::optional<FolderEntry> open;
    for (const OpenFolderLevel& level : folderStack()) {
        const LaunchpadItem* tile = tileIn(open ? open->pages : _layout.pages(), level.id);
        open = tile ? _layout.openable(*tile) : std::nullopt;
        if (!open)
            return std::nullopt;
    }
    return open;
}

bool LayoutNavigation::isOpenFolderComputed() const {
    return !folderStack().isEmpty() && !_layout.folder(folderStack().last().id);
}

bool LayoutNavigation::openFolder(const QUuid& id) {
    const auto outer = openFolder();
    const LaunchpadItem* tile = tileIn(outer ? outer->pages : _layout.pages(), id);
    if (!tile || tile->app())
        return false;
    _position.folderStack.append({id, 0});
    changed.notify();
    return true;
}

void LayoutNavigation::setFolderPage(int page) {
    QList<OpenFolderLevel>& stack = _position.folderStack;
    if (stack.isEmpty())
        return;
    const auto open = openFolder();
    page = nearest(page, open ? _layout.shownPages(*open).count() : 0);
    if (std::exchange(stack.last().page, page) != page)
        changed.notify();
}

void LayoutNavigation::closeFolder() {
    if (_position.folderStack.isEmpty())
        return;
    _position.folderStack.removeLast();
    changed.notify();
}

void LayoutNavigation::select(const std::optional<QUuid>& id) {
    select(id ? QList{*id} : QList<QUuid>());
}

void LayoutNavigation::select(const QList<QUuid>& ids) {
    const Navigation before = _position;
    _position.selectedItemIDs = QSet<QUuid>(ids.begin(), ids.end());
    _position.selectedItemID = ids.isEmpty() ? std::nullopt : std::optional(ids.last());
    _position.selectionAnchorID = ids.isEmpty() ? std::nullopt : std::optional(ids.first());
    if (_position != before)
        selectionChanged.notify();
}

void LayoutNavigation::reveal(const QUuid& id) {
    const auto open = openFolder();
    const auto place = (open ? _layout.shownPages(*open) : _layout.shownPages()).placeOf(id);
    if (!place)
        return;
    const auto page = static_cast<int>(place->page);
    open ? setFolderPage(page) : setCurrentPage(page);
    select(id);
}

void LayoutNavigation::setPosition(const Navigation& position) {
    _position = position;
    tidy();
    changed.notify();
    selectionChanged.notify();
}

void LayoutNavigation::tidy() {
    const Navigation before = _position;
    _position.currentPage = nearest(_position.currentPage, _layout.shownPages().count());
    // If a folder is gone or was moved, it is closed, and so are those opened in it.
    Pages level = _layout.pages();
    for (qsizetype i = 0; i < _position.folderStack.size(); ++i) {
        const LaunchpadItem* tile = tileIn(level, _position.folderStack[i].id);
        const auto open = tile ? _layout.openable(*tile) : std::nullopt;
        if (!open) {
            _position.folderStack.resize(i);
            break;
        }
        _position.folderStack[i].page =
            nearest(_position.folderStack[i].page, _layout.shownPages(*open).count());
        level = open->pages;
    }
    const auto isGone = [this](const QUuid& id) { return !_layout.item(id); };
    for (auto* id : {&_position.selectedItemID, &_position.selectionAnchorID})
        if (*id && isGone(**id))
            id->reset();
    _position.selectedItemIDs.removeIf(isGone);
    if (_position.selectedItemIDs != before.selectedItemIDs)
        selectionChanged.notify();
    if (_position != before)
        changed.notify();
}

} // namespace tessellar
