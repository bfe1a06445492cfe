#include "launcher/live_layout.h"

#include "launcher/smart_folder_library.h"
#include "model/layout_settings.h"
#include "platform/texts.h"

#include <algorithm>

namespace tessellar {

/// Lookup tables. Each is built on first use, because showing a change needs only the first.
struct LiveLayout::Lookups {
    std::optional<ShownPages> shown;
    std::optional<QHash<QUuid, const LaunchpadItem*>> items;
    std::optional<QHash<QString, const AppEntry*>> tiles; ///< by app key, without aliases
};

LiveLayout::LiveLayout(LauncherWindowMode mode, const Settings& settings,
                       const SmartFolderLibrary& smartFolders)
    : _mode(mode)
    , _store(settings)
    , _smartFolders(smartFolders)
    , _settings(readLayoutSettings(settings, mode))
    , _navigation(*this) {}

LiveLayout::~LiveLayout() = default;

QString LiveLayout::unavailableNotice() {
    return Texts::tr("This app is not currently available. Tessellar will remove it from the layout "
                     "when the installed-app list refreshes.");
}

// ---- tiles

LiveLayout::Lookups& LiveLayout::lookups() const {
    if (!_lookups)
        _lookups = std::make_unique<Lookups>();
    return *_lookups;
}

/// The number of tiles in the grid, for reserving: growing a table takes twice the time.
static qsizetype tileCount(const Pages& pages) {
    qsizetype count = 0;
    for (const Page& page : pages)
        count += page.size();
    return count;
}

const LaunchpadItem* LiveLayout::item(const QUuid& id) const {
    auto& items = lookups().items;
    if (!items) {
        items.emplace().reserve(tileCount(pages()));
        forEachItem(pages(), [&](const LaunchpadItem& item) {
            if (const LaunchpadItem*& first = (*items)[item.id()]; !first)
                first = &item;
            return true;
        });
    }
    return items->value(id);
}

const FolderEntry* LiveLayout::folder(const QUuid& id) const {
    const LaunchpadItem* found = item(id);
    return found ? found->folder() : nullptr;
}

const AppEntry* LiveLayout::tileOf(const QString& appKey) const {
    auto& tiles = lookups().tiles;
    if (!tiles) {
        tiles.emplace().reserve(tileCount(pages()));
        forEachItem(pages(), [&](const LaunchpadItem& item) {
            if (const AppEntry* app = item.app(); app && !app->alias)
                if (const AppEntry*& first = (*tiles)[tessellar::appKey(*app)]; !first)
                    first = app;
            return true;
        });
    }
    return tiles->value(appKey);
}

QList<QUuid> LiveLayout::inOrder(const QSet<QUuid>& tiles) const {
    QList<QUuid> ordered;
    forEachItem(_document.pages, [&](const LaunchpadItem& item) {
        if (tiles.contains(item.id()))
            ordered.append(item.id());
        return ordered.size() < tiles.size();
    });
    return ordered;
}

QHash<QString, QString> LiveLayout::customNames() const {
    QHash<QString, QString> names;
    forEachItem(pages(), [&](const LaunchpadItem& item) {
        const AppEntry* app = item.app();
        if (!app || app->alias || app->name == app->originalName)
            return true;
        if (const QString key = appKey(*app); tileOf(key) == app)
            names.insert(key, app->name);
        return true;
    });
    return names;
}

const ShownPages& LiveLayout::shownPages() const {
    auto& shown = lookups().shown;
    if (!shown)
        shown.emplace(pages(), hiddenKeys(), pageGeometry(_settings).capacity());
    return *shown;
}

ShownPages LiveLayout::shownPages(const FolderEntry& folder) const {
    return ShownPages(folder.pages, hiddenKeys(), folderGeometry(_settings).capacity());
}

std::optional<FolderEntry> LiveLayout::openable(const LaunchpadItem& item, qsizetype most) const {
    if (const FolderEntry* found = item.folder())
        return *found;
    const SmartFolderReference* reference = item.smartFolder();
    if (!reference)
        return std::nullopt;
    // By the user's names; applications without a tile as scanned.
    Page shown;
    if (const SmartFolderEvaluation* evaluation =
            _smartFolders.evaluation(reference->definitionID, _mode)) {
        for (const auto& facts : evaluation->matches) {
            if (most >= 0 && shown.size() >= most)
                break;
            const AppEntry* tile = tileOf(appKey(facts->entry));
            shown.append(tile ? *tile : facts->entry);
        }
    }
    const SmartFolderDefinition* definition = _smartFolders.definition(reference->definitionID);
    return FolderEntry{.id = reference->definitionID,
                       .name = _smartFolders.name(reference->definitionID),
                       .customSymbolName = definition ? definition->customSymbolName : std::nullopt,
                       .pages = {shown}};
}

// ---- changes

void LiveLayout::documentChanged() {
    _lookups.reset();
    _navigation.tidy();
    changed.notify();
}

void LiveLayout::reveal(const QUuid& tile) {
    const auto at = locate(pages(), tile);
    if (!at)
        return;
    while (!_navigation.folderStack().isEmpty())
        _navigation.closeFolder();
    for (const QUuid& folder : at->folders) {
        _navigation.reveal(folder);
        _navigation.openFolder(folder);
    }
    _navigation.reveal(tile);
}

void LiveLayout::setDocument(LayoutDocument document) {
    _document = std::move(document);
    documentChanged();
}

void LiveLayout::setArrangement(LayoutDocument document) {
    _document = std::move(document);
    _lookups.reset();
    replaced.notify();
    _navigation.setPosition({});
    changed.notify();
}

void LiveLayout::setUnavailable(QSet<QString> appKeys) {
    if (appKeys == _unavailableAppKeys)
        return;
    _unavailableAppKeys = std::move(appKeys);
    changed.notify();
}

void LiveLayout::settingsChanged() { tryOut(readLayoutSettings(_store, _mode)); }

void LiveLayout::tryOut(const ArrangementLayout& settings) {
    if (std::exchange(_settings, settings) != settings)
        documentChanged();
}

// ---- both modes

LiveLayouts::LiveLayouts(LauncherWindowMode shown, const Settings& settings,
                         const SmartFolderLibrary& smartFolders)
    : _layouts{LiveLayout(modes[0], settings, smartFolders),
               LiveLayout(modes[1], settings, smartFolders)}
    , _shownMode(shown) {}

void LiveLayouts::show(LauncherWindowMode mode) {
    if (std::exchange(_shownMode, mode) != mode)
        shownModeChanged.notify();
}

void LiveLayouts::forEachApplication(
    const std::function<void(LauncherWindowMode, const AppEntry&)>& call) const {
    for (const LiveLayout& layout : _layouts)
        forEachItem(layout.pages(), [&](const LaunchpadItem& item) {
            if (const AppEntry* app = item.app())
                call(layout.mode(), *app);
            return true;
        });
}

void LiveLayouts::markUnavailable(const QString& appKey) {
    for (LiveLayout& layout : _layouts)
        layout.setUnavailable(layout.unavailableAppKeys() + QSet{appKey});
}

} // namespace tessellar
