#include "editing/tile_paste.h"

#include <algorithm>

namespace tessellar {
namespace {

using Refused = std::unexpected<EditRefusal>;

/// Gives tiles, and the definitions of smart folders among them, new identifiers.
class Copier {
public:
    Copier(const QList<SmartFolderDefinition>& known, UuidSource& uuids, Instant now)
        : _known(known), _uuids(uuids), _now(now) {}

    QList<SmartFolderDefinition> definitions;

    Page copies(const Page& tiles) {
        Page result;
        for (const LaunchpadItem& tile : tiles)
            if (auto copied = copy(tile))
                result.append(*std::move(copied));
        return result;
    }

private:
    std::optional<LaunchpadItem> copy(const LaunchpadItem& tile) {
        if (const auto* reference = tile.smartFolder())
            return copyOf(*reference);
        LaunchpadItem result = tile;
        if (AppEntry* app = result.app())
            app->id = _uuids.next();
        if (FolderEntry* folder = result.folder()) {
            folder->id = _uuids.next();
            for (Page& page : folder->pages)
                page = copies(page);
        }
        return result;
    }

    std::optional<LaunchpadItem> copyOf(const SmartFolderReference& reference) {
        const auto known =
            std::ranges::find(_known, reference.definitionID, &SmartFolderDefinition::id);
        if (known == _known.end())
            return std::nullopt;
        SmartFolderDefinition definition = *known;
        definition.id = _uuids.next();
        definition.modifiedAt = _now;
        for (SmartFolderRule& rule : definition.rules)
            rule = rule.withID(_uuids.next());
        definitions.append(definition);
        return SmartFolderReference{definition.id};
    }

    const QList<SmartFolderDefinition>& _known;
    UuidSource& _uuids;
    Instant _now;
};

QList<QUuid> idsOf(const Page& tiles) {
    QList<QUuid> ids;
    for (const LaunchpadItem& tile : tiles)
        ids.append(tile.id());
    return ids;
}

} // namespace

LayoutPlace pastePlace(const LayoutDocument& layout, const Navigation& navigation,
                       const GridCapacities& capacities, const QList<QUuid>& moved) {
    std::optional<QUuid> level;
    qsizetype page = navigation.currentPage;
    if (!navigation.folderStack.isEmpty()) {
        level = navigation.folderStack.last().id;
        page = navigation.folderStack.last().page;
    }
    const auto after = [&](const QUuid& tile) -> std::optional<LayoutPlace> {
        const auto place = placeAfter(layout.pages, tile, moved);
        return place && place->folder == level ? place : std::nullopt;
    };
    if (navigation.selectedItemID)
        if (const auto place = after(*navigation.selectedItemID))
            return *place;
    const Pages* pages = pagesOf(layout.pages, level);
    if (!pages) // the folder is gone
        return pastePlace(layout, {.currentPage = navigation.currentPage}, capacities, moved);
    const auto capacity = static_cast<int>(capacities.of(level));
    const Page shown = ShownPages(*pages, layout.hiddenKeys, capacity).tiles(page);
    if (!shown.isEmpty())
        if (const auto place = after(shown.last().id()))
            return *place;
    return {level, pages->size(), LayoutPlace::end};
}

std::expected<PasteResult, EditRefusal> pasteTiles(const TileClipboardPayload& payload,
                                                   const PasteContext& context,
                                                   const Navigation& navigation, UuidSource& uuids,
                                                   const std::optional<LayoutPlace>& at) {
    const LayoutDocument& layout = context.layout;
    const auto place = [&](const QList<QUuid>& moved) {
        return at ? *at : pastePlace(layout, navigation, context.capacities, moved);
    };
    PasteResult result;
    if (payload.operation == TileClipboardPayload::Operation::cut) {
        if (payload.sourceMode != context.mode)
            return Refused(EditRefusal::otherMode);
        result.tiles = idsOf(payload.items);
        const auto isGone = [&](const QUuid& id) { return !locate(layout.pages, id); };
        if (std::ranges::any_of(result.tiles, isGone))
            return Refused(EditRefusal::tilesGone);
        auto moved = moveTiles(layout, result.tiles, place(result.tiles), context.capacities);
        if (!moved)
            return Refused(moved.error());
        result.layout = *std::move(moved);
        return result;
    }

    Copier copier(context.smartFolderDefinitions, uuids, context.now);
    const Page copies = tidied({copier.copies(payload.items)}).value(0);
    if (copies.isEmpty())
        return Refused(EditRefusal::nothingToPaste);
    auto inserted = insertTiles(layout, copies, place({}), context.capacities);
    if (!inserted)
        return Refused(inserted.error());
    result.layout = *std::move(inserted);
    result.addedDefinitions = copier.definitions;
    result.tiles = idsOf(copies);
    return result;
}

} // namespace tessellar
