#pragma once

#include "model/layout_document.h"

#include <optional>

namespace tessellar {

/// The dimensions of the grid. Slots are numbered from 0, row by row.
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

/// The grids of the arrangement's pages and of an open folder, by a mode's settings.
inline GridGeometry pageGeometry(const ArrangementLayout& layout) {
    return {layout.rows, layout.columns, layout.iconScale};
}
inline GridGeometry folderGeometry(const ArrangementLayout& layout) {
    return {layout.folderRows, layout.folderColumns, layout.folderIconScale};
}

/// Whether the grid shows a tile. Hidden: an application whose key is hidden, and a folder with tiles
/// that are all hidden, at any depth. Empty folders and smart folders are shown.
bool isShown(const LaunchpadItem& item, const QSet<QString>& hiddenKeys);

/// A place in the stored pages, counting hidden tiles.
struct StoredPlace {
    qsizetype page = 0;
    qsizetype index = 0;

    bool operator==(const StoredPlace&) const = default;
};

/// A place as displayed in the grid.
struct ShownPlace {
    qsizetype page = 0;
    qsizetype slot = 0;

    bool operator==(const ShownPlace&) const = default;
};

/// How a grid of a given capacity displays stored pages, without changing them: hidden tiles take no
/// slot; a stored page that exceeds the capacity is displayed as several pages, one without visible
/// tiles not at all. So shrinking and enlarging the grid moves nothing.
class ShownPages {
public:
    ShownPages() = default;
    ShownPages(const Pages& pages, const QSet<QString>& hiddenKeys, int capacity);

    qsizetype count() const { return _shown.size(); }
    /// The tiles of a displayed page, by slot.
    Page tiles(qsizetype page) const;

    /// The tile in a slot; nullopt if the slot is empty or out of range.
    std::optional<StoredPlace> tileAt(ShownPlace place) const;
    /// Where to insert a tile dropped at a displayed place: before the tile in that slot; on an empty
    /// slot, after the page's last tile; past the last page, on a new page.
    StoredPlace insertionAt(ShownPlace place) const;
    /// Where a stored tile is displayed; nullopt if hidden.
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
