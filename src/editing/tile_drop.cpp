#include "editing/tile_drop.h"

#include <algorithm>
#include <cmath>

namespace tessellar {
namespace {

/// Within this distance from a tile's middle, in cells, a drop is onto the tile, not beside it.
constexpr double middleAcross = 0.24;
constexpr double middleDown = 0.36;

/// The place before or after a tile of the page, counted as edits do: without the tiles being moved.
LayoutPlace placeAt(const DropGrid& grid, const QList<qsizetype>& staying, qsizetype index) {
    StoredPlace stored = grid.pages.insertionAt({grid.page, 0});
    if (index < staying.size())
        stored = *grid.pages.tileAt({grid.page, staying[index]});
    else if (!staying.isEmpty()) {
        stored = *grid.pages.tileAt({grid.page, staying.last()});
        ++stored.index;
    }
    qsizetype leaving = 0;
    for (const QUuid& id : grid.moving) {
        const auto shown = grid.pages.placeOf(id);
        const auto at = shown ? grid.pages.tileAt(*shown) : std::nullopt;
        if (at && at->page == stored.page && at->index < stored.index)
            ++leaving;
    }
    return {grid.folder, stored.page, stored.index - leaving};
}

} // namespace

Drop dropAt(const DropGrid& grid, DropPoint point) {
    if (grid.rulesDecide || grid.moving.isEmpty() || grid.columns < 1 || grid.rows < 1 ||
        grid.page < 0 || grid.page > grid.pages.count() ||
        (grid.folder && grid.moving.contains(*grid.folder)))
        return {};
    const Page tiles = grid.pages.tiles(grid.page);
    QList<qsizetype> staying;
    for (qsizetype slot = 0; slot < tiles.size(); ++slot)
        if (!grid.moving.contains(tiles.at(slot).id()))
            staying.append(slot);

    const int column = std::clamp(static_cast<int>(std::floor(point.column)), 0, grid.columns - 1);
    const int row = std::clamp(static_cast<int>(std::floor(point.row)), 0, grid.rows - 1);
    const int cell = row * grid.columns + column;
    const auto between = [&](qsizetype index) {
        index = std::min(index, staying.size());
        return Drop{Drop::Kind::between, static_cast<int>(index), placeAt(grid, staying, index), {}};
    };
    if (grid.gap == cell)
        return between(cell);
    const int index = grid.gap && cell > *grid.gap ? cell - 1 : cell;
    if (index >= staying.size())
        return between(staying.size());

    const LaunchpadItem& tile = tiles.at(staying[index]);
    const double across = point.column - column - 0.5;
    const double down = point.row - row - 0.5;
    if (std::abs(across) <= middleAcross && std::abs(down) <= middleDown && !tile.smartFolder())
        return {Drop::Kind::onto, index, {}, tile.id()};
    return between(across < 0 ? index : index + 1);
}

QList<int> slotsAround(const Page& tiles, const QSet<QUuid>& moving, std::optional<int> gap) {
    QList<int> slots;
    int next = 0;
    for (const LaunchpadItem& tile : tiles) {
        if (moving.contains(tile.id())) {
            slots.append(-1);
            continue;
        }
        if (next == gap)
            ++next;
        slots.append(next++);
    }
    return slots;
}

} // namespace tessellar
