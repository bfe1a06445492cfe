#pragma once

#include "model/layout_document.h"

#include <optional>

namespace tessellar {

/// How many tiles a page of the grid shows, and where: slots count from 0, row by row.
struct GridGeometry {
    int rows = 5;
    int columns = 8;
    double iconScale = 1.0;

    int capacity() const { return rows * columns; }
    int row(int slot) const { return slot / columns; }
    int column(int slot) const { return slot % columns; }
    int slot(int row, int column) const { return row * columns + column; }

    bool operator==(const GridGeometry&) const = default;
};

/// The grid of the arrangement's pages, and of an open folder's, by a mode's settings.
inline GridGeometry pageGeometry(const ArrangementLayout& layout) {
    return {layout.rows, layout.columns, layout.iconScale};
}
inline GridGeometry folderGeometry(const ArrangementLayout& layout) {
    return {layout.folderRows, layout.folderColumns, layout.folderIconScale};
}

/// Whether the grid shows a tile: an application unless its key is hidden, a folder unless every tile
/// in it, at any depth, is hidden. An empty folder and a smart folder are shown.
bool isShown(const LaunchpadItem& item, const QSet<QString>& hiddenKeys);

/// A place in pages as they are stored, hidden tiles counted.
struct StoredPlace {
    qsizetype page = 0;
    qsizetype index = 0;

    bool operator==(const StoredPlace&) const = default;
};

/// A place as the grid shows it.
struct ShownPlace {
    qsizetype page = 0;
    qsizetype slot = 0;

    bool operator==(const ShownPlace&) const = default;
};

/// What a grid of a given capacity shows of stored pages, which stay as they are: hidden tiles take no
/// slot, a stored page with more tiles than the grid holds is shown as several, one without a shown
/// tile as none. So a smaller grid and back leaves everything where it was.
class ShownPages {
public:
    ShownPages() = default;
    ShownPages(const Pages& pages, const QSet<QString>& hiddenKeys, int capacity);

    qsizetype count() const { return _shown.size(); }
    /// The tiles of a shown page in the order of their slots.
    Page tiles(qsizetype page) const;

    /// The tile in a slot, or nothing for an empty or impossible one.
    std::optional<StoredPlace> tileAt(ShownPlace place) const;
    /// Where a tile put at a shown place goes: before the tile in that slot; on an empty slot, after
    /// the page's last tile; past the last page, on a new one.
    StoredPlace insertionAt(ShownPlace place) const;
    /// Where a stored tile is shown; nothing for a hidden one.
    std::optional<ShownPlace> placeOf(StoredPlace place) const;
    std::optional<ShownPlace> placeOf(const QUuid& id) const;

private:
    struct ShownPage {
        qsizetype stored = 0;
        QList<qsizetype> indices; ///< into the stored page, by slot
    };

    Pages _pages;
    QList<ShownPage> _shown;
};

} // namespace tessellar
