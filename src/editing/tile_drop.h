#pragma once

#include "editing/page_tree.h"

#include <QSet>

namespace tessellar {

/// The page under the tiles being dragged.
struct DropGrid {
    ShownPages pages;       ///< of the arrangement, or of the open folder
    qsizetype page = 0;     ///< the shown page; one past the last is a new page
    int columns = 8;        ///< as drawn
    int rows = 5;           ///< as drawn
    std::optional<int> gap; ///< the slot currently kept free
    std::optional<QUuid> folder;
    bool rulesDecide = false; ///< a smart folder: does not accept drops
    QSet<QUuid> moving;
};

/// A point in the grid, in cells: 2.5 is the middle of the third column or row.
struct DropPoint {
    double column = 0;
    double row = 0;
};

/// The effect of dropping at a point.
struct Drop {
    enum class Kind {
        nowhere, ///< the tiles return to where they were
        between, ///< the tiles move to `place`
        onto,    ///< the tiles are grouped with `target`
    };
    Kind kind = Kind::nowhere;
    int slot = 0; ///< the slot to keep free, not counting the dragged tiles
    LayoutPlace place;
    QUuid target;

    bool operator==(const Drop&) const = default;
};

/// The remaining tiles are laid out around the gap. The middle of a tile means onto it (smart folders
/// do not accept drops); left and right of the middle mean before and after it; the gap keeps its slot;
/// past the last tile means after it. Points outside the cells count as the nearest cell.
Drop dropAt(const DropGrid& grid, DropPoint point);

/// The slot in which each tile of the page is drawn during a drag; -1 for dragged tiles.
QList<int> slotsAround(const Page& tiles, const QSet<QUuid>& moving, std::optional<int> gap);

} // namespace tessellar
