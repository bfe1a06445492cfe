#pragma once

#include "editing/page_tree.h"

#include <QSet>

namespace tessellar {

/// The page over which tiles are held that a pointer has lifted.
struct DropGrid {
    ShownPages pages;       ///< of the arrangement, or of the open folder
    qsizetype page = 0;     ///< the one shown; one past the last is a new one
    int columns = 8;        ///< as they are drawn
    int rows = 5;           ///< likewise
    std::optional<int> gap; ///< the slot in which room is made at the moment
    std::optional<QUuid> folder;
    bool rulesDecide = false; ///< a smart folder: nothing is put into it by hand
    QSet<QUuid> lifted;
};

/// A point of the grid in cells: 2.5 is the middle of the third column, or row.
struct DropPoint {
    double column = 0;
    double row = 0;
};

/// What it means to let go.
struct Drop {
    enum class Kind {
        nowhere, ///< the tiles go back
        between, ///< they go to `place`
        onto,    ///< they are put together with `target`
    };
    Kind kind = Kind::nowhere;
    int slot = 0; ///< where room is made, counted without the lifted tiles
    LayoutPlace place;
    QUuid target;

    bool operator==(const Drop&) const = default;
};

/// The tiles that stay lie around the gap. On the middle of one of them is onto it, except that a smart
/// folder takes nothing; left and right of the middle is before and after it; on the gap is where the
/// gap is; past the last tile is after it. A point beside the cells counts for the nearest.
Drop dropAt(const DropGrid& grid, DropPoint point);

/// The slot in which each tile of a shown page is drawn while others are lifted and room is made: -1
/// for those that are lifted.
QList<int> slotsAround(const Page& tiles, const QSet<QUuid>& lifted, std::optional<int> gap);

} // namespace tessellar
