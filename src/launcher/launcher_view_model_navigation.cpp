#include "launcher/launcher_view_model.h"

#include <algorithm>

namespace tessellar {

// ---- what is shown, and where the user is

QString LauncherViewModel::unavailableNotice() {
    return QStringLiteral(
        "This app is not currently available. Tessellar will remove it from the layout "
        "when the installed-app list refreshes.");
}

void LauncherViewModel::setMode(LauncherWindowMode mode) {
    if (mode == this->mode())
        return;
    if (const auto flushed = _store.flush(); !flushed)
        alert(launcherError(flushed.error(), QStringLiteral("Could not save the layout")));
    _mode = mode;
    changed(LauncherChange::mode);
    changed(LauncherChange::layout);
    changed(LauncherChange::navigation);
}

void LauncherViewModel::settingsChanged() {
    tidyNavigation();
    changed(LauncherChange::settings);
    changed(LauncherChange::layout);
}

void LauncherViewModel::setLocale(const Locale& locale) {
    if (locale.identifier() == _machine.locale.identifier())
        return;
    _machine.locale = locale;
    _editor->invalidateSearch();
    _smartFolders.localeChanged();
    rescan(); // Applications may have other names in it.
}

ShownPages LauncherViewModel::shownPages() const {
    return ShownPages(pages(), hiddenKeys(), pageGeometry(layoutSettings()).capacity());
}

ShownPages LauncherViewModel::shownPages(const FolderEntry& folder) const {
    return ShownPages(folder.pages, hiddenKeys(), folderGeometry(layoutSettings()).capacity());
}

const LaunchpadItem* LauncherViewModel::item(const QUuid& id) const {
    const LaunchpadItem* found = nullptr;
    forEachItem(pages(), [&](const LaunchpadItem& item) {
        if (item.id() == id)
            found = &item;
        return !found;
    });
    return found;
}

const FolderEntry* LauncherViewModel::folder(const QUuid& id) const {
    const LaunchpadItem* found = item(id);
    return found ? found->folder() : nullptr;
}

std::optional<FolderEntry> LauncherViewModel::openable(const LaunchpadItem& item) const {
    if (const FolderEntry* found = item.folder())
        return *found;
    const SmartFolderReference* reference = item.smartFolder();
    if (!reference)
        return std::nullopt;
    // As the user named them; what has no tile of its own goes by the scan.
    QHash<QString, AppEntry> named;
    forEachItem(pages(), [&](const LaunchpadItem& tile) {
        if (const AppEntry* app = tile.app(); app && !app->alias)
            named.insert(appKey(*app), *app);
        return true;
    });
    Page shown;
    if (const SmartFolderEvaluation* evaluation = _smartFolders.evaluation(reference->definitionID))
        for (const auto& facts : evaluation->matches)
            shown.append(named.value(appKey(facts->entry), facts->entry));
    const SmartFolderDefinition* definition = _smartFolders.definition(reference->definitionID);
    return FolderEntry{.id = reference->definitionID,
                       .name = _smartFolders.name(reference->definitionID),
                       .customSymbolName = definition ? definition->customSymbolName : std::nullopt,
                       .pages = {shown}};
}

std::optional<FolderEntry> LauncherViewModel::openFolder() const {
    std::optional<FolderEntry> open;
    for (const OpenFolderLevel& level : folderStack()) {
        const Pages within = open ? open->pages : pages();
        open.reset();
        for (const Page& page : within)
            for (const LaunchpadItem& tile : page)
                if (tile.id() == level.id)
                    open = openable(tile);
        if (!open)
            return std::nullopt;
    }
    return open;
}

static int nearest(qsizetype page, qsizetype count) {
    return static_cast<int>(std::clamp<qsizetype>(page, 0, std::max<qsizetype>(0, count - 1)));
}

void LauncherViewModel::setCurrentPage(int page) {
    page = nearest(page, shownPages().count());
    if (std::exchange(live().navigation.currentPage, page) != page)
        changed(LauncherChange::navigation);
}

bool LauncherViewModel::openFolder(const QUuid& id) {
    const auto outer = openFolder();
    for (const Page& page : outer ? outer->pages : pages()) {
        for (const LaunchpadItem& tile : page) {
            if (tile.id() != id || tile.app())
                continue;
            live().navigation.folderStack.append({id, 0});
            if (const QString notice = tile.smartFolder() ? _smartFolders.notice(id) : QString();
                !notice.isEmpty())
                showNotice(notice);
            changed(LauncherChange::navigation);
            return true;
        }
    }
    return false;
}

void LauncherViewModel::setFolderPage(int page) {
    QList<OpenFolderLevel>& stack = live().navigation.folderStack;
    if (stack.isEmpty())
        return;
    const auto open = openFolder();
    page = nearest(page, open ? shownPages(*open).count() : 0);
    if (std::exchange(stack.last().page, page) != page)
        changed(LauncherChange::navigation);
}

void LauncherViewModel::closeFolder() {
    if (live().navigation.folderStack.isEmpty())
        return;
    live().navigation.folderStack.removeLast();
    changed(LauncherChange::navigation);
}

void LauncherViewModel::select(const std::optional<QUuid>& id) {
    Navigation& navigation = live().navigation;
    const QSet<QUuid> all = id ? QSet{*id} : QSet<QUuid>();
    if (navigation.selectedItemID == id && navigation.selectedItemIDs == all)
        return;
    navigation.selectedItemID = navigation.selectionAnchorID = id;
    navigation.selectedItemIDs = all;
    changed(LauncherChange::selection);
}

void LauncherViewModel::tidyNavigation() {
    Navigation& navigation = live().navigation;
    const Navigation before = navigation;
    navigation.currentPage = nearest(navigation.currentPage, shownPages().count());
    // A folder that is gone, or lies elsewhere now, closes with those in it.
    Pages level = live().pages;
    for (qsizetype i = 0; i < navigation.folderStack.size(); ++i) {
        std::optional<FolderEntry> open;
        for (const Page& page : std::as_const(level))
            for (const LaunchpadItem& tile : page)
                if (tile.id() == navigation.folderStack[i].id)
                    open = openable(tile);
        if (!open) {
            navigation.folderStack.resize(i);
            break;
        }
        navigation.folderStack[i].page =
            nearest(navigation.folderStack[i].page, shownPages(*open).count());
        level = open->pages;
    }
    const auto isGone = [this](const QUuid& id) { return !item(id); };
    if (navigation.selectedItemID && isGone(*navigation.selectedItemID))
        navigation.selectedItemID.reset();
    if (navigation.selectionAnchorID && isGone(*navigation.selectionAnchorID))
        navigation.selectionAnchorID.reset();
    navigation.selectedItemIDs.removeIf(isGone);
    if (navigation != before)
        changed(LauncherChange::navigation);
}

} // namespace tessellar
