#include "app/tile_navigation.h"

#include <algorithm>

namespace tessellar {

std::optional<ShownPlace> neighbour(const TilePages& pages, const GridGeometry& geometry,
                                    qsizetype page, std::optional<qsizetype> from,
                                    Direction direction) {
    if (page < 0 || page >= pages.count)
        return std::nullopt;
    const qsizetype count = pages.tiles(page).size();
    if (!from || *from >= count)
        return ShownPlace{page, 0};

    const int slot = static_cast<int>(*from);
    const auto onPage = [&](qsizetype other, int column) -> ShownPlace {
        if (other < 0 || other >= pages.count)
            return {page, slot};
        const qsizetype last = pages.tiles(other).size() - 1;
        const int row = std::min(geometry.row(slot), geometry.row(static_cast<int>(last)));
        return {other, std::min<qsizetype>(geometry.slot(row, column), last)};
    };
    switch (direction) {
    case Direction::left:
        return geometry.column(slot) > 0 ? ShownPlace{page, slot - 1}
                                         : onPage(page - 1, geometry.columns - 1);
    case Direction::right:
        return geometry.column(slot) < geometry.columns - 1 && slot + 1 < count
                   ? ShownPlace{page, slot + 1}
                   : onPage(page + 1, 0);
    case Direction::up:
        return slot >= geometry.columns ? ShownPlace{page, slot - geometry.columns}
                                        : ShownPlace{page, slot};
    case Direction::down:
        if (geometry.row(slot) == geometry.row(static_cast<int>(count) - 1))
            return ShownPlace{page, slot};
        return ShownPlace{page, std::min<qsizetype>(slot + geometry.columns, count - 1)};
    }
    return ShownPlace{page, slot};
}

} // namespace tessellar
