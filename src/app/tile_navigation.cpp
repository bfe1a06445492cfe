#include "app/tile_navigation.h"

#include <algorithm>

namespace tessellar {

std::optional<ShownPlace> neighbour(const ShownPages& pages, const GridGeometry& geometry,
                                    qsizetype page, std::optional<ShownPlace> from,
                                    Direction direction) {
    if (page < 0 || page >= pages.count())
        return std::nullopt;
    if (!from || from->page != page || !pages.tileAt(*from))
        return ShownPlace{page, 0};

    const qsizetype count = pages.tiles(page).size();
    const int slot = static_cast<int>(from->slot);
    const auto onPage = [&](qsizetype other, int column) -> ShownPlace {
        if (other < 0 || other >= pages.count())
            return *from;
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
        return slot >= geometry.columns ? ShownPlace{page, slot - geometry.columns} : *from;
    case Direction::down:
        if (geometry.row(slot) == geometry.row(static_cast<int>(count) - 1))
            return from;
        return ShownPlace{page, std::min<qsizetype>(slot + geometry.columns, count - 1)};
    }
    return from;
}

} // namespace tessellar
