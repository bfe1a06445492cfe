#pragma once

#include "editing/grid_geometry.h"

#include <functional>
#include <optional>

namespace tessellar {

// What all edits of the tree of pages are made of. Each step writes only the pages it changes: all
// others stay shared with the arrangement it began with, which is what makes undo snapshots cheap.

/// A place for tiles. The arrangement's own pages have no folder. A page one past the last is a new
/// one; `end` stands for the place after a page's last tile.
struct LayoutPlace {
    static constexpr qsizetype end = std::numeric_limits<qsizetype>::max();

    std::optional<QUuid> folder;
    qsizetype page = 0;
    qsizetype index = end;

    /// "page:index" or "folderID/page:index", both numbers counted from 0; the index may be missing
    /// ("page" or "page:"), which is its end. Nothing for any other text.
    static std::optional<LayoutPlace> fromText(QStringView text);

    bool operator==(const LayoutPlace&) const = default;
};

/// Where a tile stands. The pointer is valid while the pages it was found in are.
struct TileLocation {
    QList<QUuid> folders; ///< that it lies in, outermost first
    StoredPlace place;    ///< in the pages of the innermost
    const LaunchpadItem* item = nullptr;

    std::optional<QUuid> owner() const {
        return folders.isEmpty() ? std::nullopt : std::optional(folders.last());
    }
};

/// The first tile with an identifier, depth first.
std::optional<TileLocation> locate(const Pages& pages, const QUuid& id);

/// The tiles that an app key may stand for.
enum class AppTiles { ownFirst, aliasesOnly };

/// The tile that a text names: by its identifier, else by its app key, an application's own tile before
/// its aliases.
std::optional<QUuid> findTile(const Pages& pages, const QString& idOrAppKey,
                              AppTiles which = AppTiles::ownFirst);

/// The pages of a folder, or the arrangement's own; null when there is no such folder.
const Pages* pagesOf(const Pages& pages, const std::optional<QUuid>& folder);

/// A way through the tree. Each step gives the tiles that take a tile's place, or nothing when it stays
/// as it is.
struct TreeRewriter {
    using Step = std::function<std::optional<Page>(const LaunchpadItem&)>;

    Step enter; ///< before a folder's contents; what it replaces is not looked into
    Step leave; ///< after a folder's contents, with the new ones; for folders only

    Pages rewritten(const Pages& pages) const;

private:
    std::optional<Pages> changed(const Pages& pages) const;
    std::optional<Page> changed(const LaunchpadItem& item) const;
};

/// `change` applied to the pages of a folder, or to the arrangement's own.
Pages withPagesChanged(const Pages& pages, const std::optional<QUuid>& folder,
                       const std::function<void(Pages&)>& change);

/// `change` applied to the first tile with an identifier.
Pages withTileChanged(const Pages& pages, const QUuid& id,
                      const std::function<void(LaunchpadItem&)>& change);

/// Takes the first tile of each identifier out and returns them in the order of the arrangement. A tile
/// in a folder that is taken goes with the folder. Emptied pages and folders stay until `tidied`.
Page takeTiles(Pages& pages, QSet<QUuid> ids);

/// Emptied pages go, a folder left with one tile becomes that tile, one left with none goes.
Pages tidied(const Pages& pages);

/// How many tiles of each page are shown.
QList<qsizetype> shownCounts(const Pages& pages, const QSet<QString>& hiddenKeys);

/// Passes what a page cannot show at its end on to the front of the next, and so on, to a new page at
/// the end. The order of all tiles stays, hidden ones among them. A page was allowed what it showed
/// `before` the edit, in whole pages of the grid, so that the pages of a larger grid are not rewritten
/// by an edit under a smaller one. True when a page was changed.
bool passOverflowOn(Pages& pages, const QSet<QString>& hiddenKeys, qsizetype capacity,
                    const QList<qsizetype>& before);

} // namespace tessellar
