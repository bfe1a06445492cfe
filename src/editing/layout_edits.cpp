#include "editing/layout_edits.h"

#include "editing/folder_names.h"
#include "platform/texts.h"

#include <algorithm>

namespace tessellar {
namespace {

struct RefusalText {
    EditRefusal refusal;
    const char* code;
    const char* message;
};

constexpr RefusalText refusalTexts[] = {
    {EditRefusal::noTiles, "noTiles", Texts::noop("Select at least one tile.")},
    {EditRefusal::noSuchTile, "noSuchTile", Texts::noop("The tile is no longer in this layout.")},
    {EditRefusal::noSuchFolder, "noSuchFolder", Texts::noop("The folder is no longer in this layout.")},
    {EditRefusal::noSuchPlace, "noSuchPlace", Texts::noop("There is no such place in this layout.")},
    {EditRefusal::intoItself, "intoItself", Texts::noop("A folder cannot be moved into itself.")},
    {EditRefusal::tooDeep, "tooDeep", Texts::noop("Folders cannot be nested any deeper.")},
    {EditRefusal::notAFolder, "notAFolder", Texts::noop("The tile is not a folder.")},
    {EditRefusal::notAnApplication, "notAnApplication", Texts::noop("The tile is not an app.")},
    {EditRefusal::notAnAlias, "notAnAlias", Texts::noop("The tile is not an alias.")},
    {EditRefusal::notHidden, "notHidden", Texts::noop("The app is not hidden.")},
    {EditRefusal::rulesDecide, "rulesDecide",
     Texts::noop("A smart folder shows what its rules choose; tiles cannot be added to it.")},
    {EditRefusal::alreadyPresent, "alreadyPresent",
     Texts::noop("The smart folder is already in this layout.")},
    {EditRefusal::emptyName, "emptyName", Texts::noop("A name cannot be empty.")},
    {EditRefusal::nameTooLong, "nameTooLong", Texts::noop("The name is too long.")},
    {EditRefusal::otherMode, "otherMode",
     Texts::noop("Tiles that were cut can only be pasted in the display mode that they were cut in.")},
    {EditRefusal::tilesGone, "tilesGone",
     Texts::noop("The tiles that were cut are no longer in this layout.")},
    {EditRefusal::nothingToPaste, "nothingToPaste", Texts::noop("There are no tiles to paste.")},
};

const RefusalText& textOf(EditRefusal refusal) {
    return *std::ranges::find(refusalTexts, refusal, &RefusalText::refusal);
}

using Refused = std::unexpected<EditRefusal>;

/// Completes every edit that moves, adds or shows tiles: passes on overflow, tidies up, and refuses a
/// result whose folders nest too deeply to be loaded again. The pages of `pages` correspond to those of
/// `before`.
EditResult settled(const LayoutDocument& before, Pages pages, const QSet<QString>& hiddenKeys,
                   const GridCapacities& capacities) {
    QHash<QUuid, QList<qsizetype>> countsBefore;
    forEachItem(before.pages, [&](const LaunchpadItem& item) {
        if (const FolderEntry* folder = item.folder())
            countsBefore.insert(folder->id, shownCounts(folder->pages, before.hiddenKeys));
        return true;
    });
    const TreeRewriter inFolders{.leave = [&](const LaunchpadItem& item) -> std::optional<Page> {
        FolderEntry folder = *item.folder();
        if (!cascadeOverflow(folder.pages, hiddenKeys, capacities.folder,
                             countsBefore.value(folder.id)))
            return std::nullopt;
        return Page{std::move(folder)};
    }};
    pages = inFolders.rewritten(pages);
    cascadeOverflow(pages, hiddenKeys, capacities.page, shownCounts(before.pages, before.hiddenKeys));
    pages = tidied(pages);
    if (folderDepth(pages) > std::max(maximumFolderDepth, folderDepth(before.pages)))
        return Refused(EditRefusal::tooDeep);
    return LayoutDocument{before.version, std::move(pages), hiddenKeys};
}

std::optional<EditRefusal> placeRefusal(const Pages& pages, const LayoutPlace& place) {
    const Pages* list = pagesOf(pages, place.folder);
    if (!list)
        return EditRefusal::noSuchFolder;
    const bool isNewPage = place.page == list->size();
    const qsizetype length = isNewPage ? 0 : list->value(place.page).size();
    if (place.page < 0 || place.page > list->size() || place.index < 0 ||
        (place.index > length && place.index != LayoutPlace::end))
        return EditRefusal::noSuchPlace;
    return std::nullopt;
}

/// Inserts tiles at an existing place.
Pages inserted(const Pages& pages, const Page& tiles, const LayoutPlace& place) {
    return withPagesChanged(pages, place.folder, [&](Pages& list) {
        if (place.page == list.size())
            list.append(Page());
        Page& page = list[place.page];
        const qsizetype index = std::min(place.index, page.size());
        page = page.first(index) + tiles + page.sliced(index);
    });
}

/// Every tile must exist and satisfy `fits`.
std::optional<EditRefusal> tilesRefusal(const Pages& pages, const QList<QUuid>& tiles,
                                        EditRefusal unfit = EditRefusal::noSuchTile,
                                        bool (*fits)(const LaunchpadItem&) = nullptr) {
    if (tiles.isEmpty())
        return EditRefusal::noTiles;
    QSet<QUuid> missing(tiles.begin(), tiles.end());
    bool allFit = true;
    forEachItem(pages, [&](const LaunchpadItem& item) {
        if (missing.remove(item.id()) && fits && !fits(item))
            allFit = false;
        return !missing.isEmpty() && allFit;
    });
    if (!allFit)
        return unfit;
    return missing.isEmpty() ? std::nullopt : std::optional(EditRefusal::noSuchTile);
}

bool contains(const Page& tiles, const QUuid& id) {
    return !forEachItem({tiles}, [&](const LaunchpadItem& item) { return item.id() != id; });
}

/// Calls `change` with the entry of a tile, which must be of type Entry.
template <typename Entry, typename Change>
EditResult changingEntry(const LayoutDocument& layout, const QUuid& tile, EditRefusal otherwise,
                         Change change) {
    const auto found = locate(layout.pages, tile);
    if (!found)
        return Refused(EditRefusal::noSuchTile);
    if (!std::get_if<Entry>(found->item))
        return Refused(otherwise);
    LayoutDocument result = layout;
    result.pages = withTileChanged(layout.pages, tile,
                                   [&](LaunchpadItem& item) { change(std::get<Entry>(item)); });
    return result;
}

LayoutDocument without(const LayoutDocument& layout,
                       const std::function<bool(const LaunchpadItem&)>& isUnwanted) {
    const TreeRewriter rewriter{.enter = [&](const LaunchpadItem& item) {
        return isUnwanted(item) ? std::optional(Page()) : std::nullopt;
    }};
    LayoutDocument result = layout;
    result.pages = rewriter.rewritten(layout.pages);
    if (result.pages != layout.pages)
        result.pages = tidied(result.pages);
    return result;
}

} // namespace

std::expected<QString, EditRefusal> usableName(QString name) {
    for (QChar& c : name)
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
            c == QChar::ParagraphSeparator)
            c = u' ';
    name = trimmed(name);
    if (name.isEmpty())
        return Refused(EditRefusal::emptyName);
    if (name.size() > maximumNameLength)
        return Refused(EditRefusal::nameTooLong);
    return name;
}

QString code(EditRefusal refusal) { return QLatin1StringView(textOf(refusal).code); }

QString message(EditRefusal refusal) { return Texts::tr(textOf(refusal).message); }

EditResult moveTiles(const LayoutDocument& layout, const QList<QUuid>& tiles, const LayoutPlace& place,
                     const GridCapacities& capacities) {
    if (const auto refusal = tilesRefusal(layout.pages, tiles))
        return Refused(*refusal);
    if (const auto refusal = placeRefusal(layout.pages, place))
        return Refused(*refusal);
    Pages pages = layout.pages;
    const Page taken = takeTiles(pages, QSet<QUuid>(tiles.begin(), tiles.end()));
    if (place.folder && contains(taken, *place.folder))
        return Refused(EditRefusal::intoItself);
    return settled(layout, inserted(pages, taken, place), layout.hiddenKeys, capacities);
}

std::optional<LayoutPlace> placeAfter(const Pages& pages, const QUuid& tile,
                                      const QList<QUuid>& moved) {
    const auto found = locate(pages, tile);
    if (!found)
        return std::nullopt;
    const Page& page = pagesOf(pages, found->owner())->at(found->place.page);
    qsizetype index = 0;
    for (qsizetype i = 0; i <= found->place.index; ++i)
        if (!moved.contains(page.at(i).id()))
            ++index;
    return LayoutPlace{found->owner(), found->place.page, index};
}

EditResult groupTiles(const LayoutDocument& layout, const QList<QUuid>& tiles, const QUuid& target,
                      const QUuid& newFolderID, const Locale& locale,
                      const GridCapacities& capacities) {
    QSet<QUuid> dropped(tiles.begin(), tiles.end());
    dropped.remove(target);
    if (const auto refusal = tilesRefusal(layout.pages, dropped.values()))
        return Refused(*refusal);
    const auto onto = locate(layout.pages, target);
    if (!onto)
        return Refused(EditRefusal::noSuchTile);
    if (onto->item->smartFolder())
        return Refused(EditRefusal::rulesDecide);
    if (const FolderEntry* folder = onto->item->folder()) {
        const qsizetype lastPage = std::max<qsizetype>(folder->pages.size() - 1, 0);
        return moveTiles(layout, dropped.values(), {target, lastPage, LayoutPlace::end}, capacities);
    }

    Pages pages = layout.pages;
    Page contents = takeTiles(pages, dropped);
    if (contains(contents, target))
        return Refused(EditRefusal::intoItself);
    contents.prepend(*onto->item);
    FolderEntry folder;
    folder.id = newFolderID;
    folder.name = suggestedFolderName(contents, locale);
    folder.pages = {contents};
    pages = withTileChanged(pages, target, [&](LaunchpadItem& item) { item = folder; });
    return settled(layout, std::move(pages), layout.hiddenKeys, capacities);
}

EditResult ungroupFolder(const LayoutDocument& layout, const QUuid& folder,
                         const GridCapacities& capacities) {
    const auto found = locate(layout.pages, folder);
    if (!found)
        return Refused(EditRefusal::noSuchTile);
    const FolderEntry* entry = found->item->folder();
    if (!entry)
        return Refused(EditRefusal::notAFolder);
    Page contents;
    for (const Page& page : entry->pages)
        contents += page;
    Pages pages = layout.pages;
    takeTiles(pages, {folder});
    const LayoutPlace place{found->owner(), found->place.page, found->place.index};
    return settled(layout, inserted(pages, contents, place), layout.hiddenKeys, capacities);
}

EditResult renameFolder(const LayoutDocument& layout, const QUuid& folder, const QString& name) {
    const auto usable = usableName(name);
    if (!usable)
        return Refused(usable.error());
    return changingEntry<FolderEntry>(layout, folder, EditRefusal::notAFolder,
                                      [&](FolderEntry& entry) { entry.name = *usable; });
}

EditResult renameApp(const LayoutDocument& layout, const QUuid& tile, const QString& name) {
    const auto usable = usableName(name);
    if (!usable)
        return Refused(usable.error());
    return changingEntry<AppEntry>(layout, tile, EditRefusal::notAnApplication,
                                   [&](AppEntry& entry) { entry.name = *usable; });
}

EditResult revertAppName(const LayoutDocument& layout, const QUuid& tile) {
    return changingEntry<AppEntry>(layout, tile, EditRefusal::notAnApplication,
                                   [](AppEntry& entry) { entry.name = entry.originalName; });
}

EditResult setFolderSymbol(const LayoutDocument& layout, const QUuid& folder,
                           const std::optional<QString>& symbolName) {
    std::optional<QString> symbol;
    if (symbolName && !trimmed(*symbolName).isEmpty()) {
        const auto usable = usableName(*symbolName);
        if (!usable)
            return Refused(usable.error());
        symbol = *usable;
    }
    return changingEntry<FolderEntry>(layout, folder, EditRefusal::notAFolder,
                                      [&](FolderEntry& entry) { entry.customSymbolName = symbol; });
}

EditResult hideApps(const LayoutDocument& layout, const QList<QUuid>& tiles) {
    if (const auto refusal =
            tilesRefusal(layout.pages, tiles, EditRefusal::notAnApplication,
                         [](const LaunchpadItem& item) { return item.app() != nullptr; }))
        return Refused(*refusal);
    LayoutDocument result = layout;
    const QSet<QUuid> chosen(tiles.begin(), tiles.end());
    forEachItem(layout.pages, [&](const LaunchpadItem& item) {
        if (chosen.contains(item.id()))
            if (const AppEntry* entry = item.app())
                result.hiddenKeys.insert(appKey(*entry));
        return true;
    });
    return result;
}

EditResult unhideApp(const LayoutDocument& layout, const QString& key,
                     const GridCapacities& capacities) {
    QSet<QString> hiddenKeys = layout.hiddenKeys;
    if (!hiddenKeys.remove(key))
        return Refused(EditRefusal::notHidden);
    // Its tile is back in its place, and may overflow the page.
    return settled(layout, layout.pages, hiddenKeys, capacities);
}

EditResult insertTiles(const LayoutDocument& layout, const Page& tiles, const LayoutPlace& place,
                       const GridCapacities& capacities) {
    if (tiles.isEmpty())
        return Refused(EditRefusal::noTiles);
    if (const auto refusal = placeRefusal(layout.pages, place))
        return Refused(*refusal);
    QSet<QString> present;
    forEachItem(layout.pages, [&](const LaunchpadItem& item) {
        if (const AppEntry* entry = item.app(); entry && !entry->alias)
            present.insert(appKey(*entry));
        return true;
    });
    const TreeRewriter secondsBecomeAliases{
        .enter = [&](const LaunchpadItem& item) -> std::optional<Page> {
            const AppEntry* entry = item.app();
            if (!entry || entry->alias)
                return std::nullopt;
            const QString key = appKey(*entry);
            if (!present.contains(key)) {
                present.insert(key);
                return std::nullopt;
            }
            AppEntry alias = *entry;
            alias.alias = AppAliasReference{key};
            return Page{alias};
        }};
    const Page added = secondsBecomeAliases.rewritten({tiles}).first();
    return settled(layout, inserted(layout.pages, added, place), layout.hiddenKeys, capacities);
}

EditResult createAlias(const LayoutDocument& layout, const QUuid& tile, const QUuid& newTileID,
                       const LayoutPlace& place, const GridCapacities& capacities) {
    const auto found = locate(layout.pages, tile);
    if (!found)
        return Refused(EditRefusal::noSuchTile);
    const AppEntry* entry = found->item->app();
    if (!entry)
        return Refused(EditRefusal::notAnApplication);
    AppEntry alias = *entry;
    alias.id = newTileID;
    alias.alias = AppAliasReference{appKey(*entry)};
    return insertTiles(layout, {alias}, place, capacities);
}

EditResult removeAliases(const LayoutDocument& layout, const QList<QUuid>& tiles) {
    if (const auto refusal =
            tilesRefusal(layout.pages, tiles, EditRefusal::notAnAlias, [](const LaunchpadItem& item) {
                return item.app() && item.app()->alias.has_value();
            }))
        return Refused(*refusal);
    LayoutDocument result = layout;
    takeTiles(result.pages, QSet<QUuid>(tiles.begin(), tiles.end()));
    result.pages = tidied(result.pages);
    return result;
}

EditResult addSmartFolder(const LayoutDocument& layout, const QUuid& definitionID,
                          const LayoutPlace& place, const GridCapacities& capacities) {
    if (locate(layout.pages, definitionID))
        return Refused(EditRefusal::alreadyPresent);
    return insertTiles(layout, {SmartFolderReference{definitionID}}, place, capacities);
}

LayoutDocument removeSmartFolder(const LayoutDocument& layout, const QUuid& definitionID) {
    return without(layout, [&](const LaunchpadItem& item) {
        return item.smartFolder() && item.smartFolder()->definitionID == definitionID;
    });
}

LayoutDocument removeApplications(const LayoutDocument& layout, const QSet<QString>& keys) {
    return without(layout, [&](const LaunchpadItem& item) {
        return item.app() && keys.contains(appKey(*item.app()));
    });
}

} // namespace tessellar
