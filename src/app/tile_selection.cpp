#include "app/tile_selection.h"

#include "launcher/live_layout.h"
#include "platform/uuid_source.h"

#include <algorithm>

namespace tessellar {

TileSelection::TileSelection(LauncherViewModel& viewModel, GridModel& grid, OpenFolder& folder,
                             TileSearch& search)
    : _viewModel(viewModel), _grid(grid), _folder(folder), _search(search) {}

GridModel& TileSelection::shown() const {
    return _search.isActive() ? *_search.results() : _folder.isOpen() ? *_folder.tiles() : _grid;
}

QStringList TileSelection::ids() const {
    QStringList ids;
    if (_search.isActive()) {
        if (const auto& selected = _search.selected())
            ids.append(toText(*selected));
        return ids;
    }
    for (const QUuid& id : navigation().selectedItemIDs())
        ids.append(toText(id));
    return ids;
}

bool TileSelection::contains(const QUuid& tile) const {
    return _search.isActive() ? _search.selected() == tile
                              : navigation().selectedItemIDs().contains(tile);
}

std::optional<QUuid> TileSelection::last() const {
    return _search.isActive() ? _search.selected() : navigation().selectedItemID();
}

std::optional<ShownPlace> TileSelection::beside(Direction direction) const {
    const GridModel& model = shown();
    const GridGeometry geometry{.rows = model.metrics().rows, .columns = model.metrics().columns};
    const auto selected = last();
    return neighbour(model.pages(), geometry, model.page(),
                     selected ? model.pages().slotOf(*selected, model.page()) : std::nullopt,
                     direction);
}

QList<QUuid> TileSelection::inOrder() const {
    return _viewModel.shown().inOrder(navigation().selectedItemIDs());
}

void TileSelection::select(const QStringList& tileIds, bool adds) {
    if (_search.isActive())
        return;
    QList<QUuid> selected = adds ? inOrder() : QList<QUuid>();
    for (const QString& text : tileIds)
        if (const QUuid id = QUuid::fromString(text); !selected.contains(id))
            selected.append(id);
    navigation().select(selected);
}

void TileSelection::toggle(const QUuid& tile) {
    if (_search.isActive())
        return _search.select(tile);
    QList<QUuid> selected = inOrder();
    // The anchor is the first one.
    if (!selected.removeOne(tile))
        selected = QList{tile} + selected + QList{tile};
    navigation().select(selected);
}

void TileSelection::extendTo(const QUuid& tile) {
    if (_search.isActive())
        return _search.select(tile);
    const GridModel& model = shown();
    const auto end = model.pages().slotOf(tile, model.page());
    if (!end)
        return;
    const auto& anchor = navigation().position().selectionAnchorID;
    const auto begin = anchor ? model.pages().slotOf(*anchor, model.page()) : std::nullopt;
    const Page tiles = model.pages().tiles(model.page());
    QList<QUuid> range;
    const qsizetype by = begin && *begin > *end ? -1 : 1;
    for (qsizetype slot = begin.value_or(*end);; slot += by) {
        range.append(tiles.at(slot).id());
        if (slot == *end)
            break;
    }
    navigation().select(range);
}

void TileSelection::move(Direction direction, bool extends) {
    GridModel& model = shown();
    const auto to = beside(direction);
    if (!to || (extends && to->page != model.page()))
        return;
    const QUuid tile = model.pages().tiles(to->page).at(to->slot).id();
    if (to->page != model.page())
        model.turnTo(static_cast<int>(to->page));
    if (_search.isActive())
        return _search.select(tile);
    if (extends)
        return extendTo(tile);
    navigation().select(tile);
}

void TileSelection::clear() { navigation().select(std::nullopt); }

void TileSelection::keepToPage() {
    const GridModel& model = _folder.isOpen() ? *_folder.tiles() : _grid;
    deselectIf([&](const QUuid& id) { return !model.pages().slotOf(id, model.page()); });
}

void TileSelection::deselectHidden() {
    const LiveLayout& layout = _viewModel.shown();
    deselectIf([&](const QUuid& id) {
        const LaunchpadItem* item = layout.item(id);
        return item && !isShown(*item, layout.hiddenKeys());
    });
}

void TileSelection::deselectIf(const std::function<bool(const QUuid&)>& isGone) {
    QList<QUuid> selected = inOrder();
    if (selected.removeIf(isGone) > 0)
        navigation().select(selected);
}

} // namespace tessellar
