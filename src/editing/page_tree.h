#pragma once

#include "editing/grid_geometry.h"

#include <functional>
#include <optional>

namespace tessellar {

// Building blocks of all edits. Each rewrites only the pages it changes and shares all others with the
// original, which keeps undo snapshots cheap.

/// A place to put tiles. `folder` is empty for the arrangement's own pages. A page one past the last is
/// a new one; `end` is after a page's last tile.
struct LayoutPlace {
    static constexpr qsizetype end = std::numeric_limits<qsizetype>::max();

    std::optional<QUuid> folder;
    qsizetype page = 0;
    qsizetype index = end;

    /// Parses "page:index" or "folderID/page:index", both numbers from 0; without an index ("page" or
    /// "page:") the page's end. nullopt for any other text.
    static std::optional<LayoutPlace> fromText(QStringView text);

    bool operator==(const LayoutPlace&) const = default;
};

/// The location of a tile. The pointer is valid as long as the searched pages.
struct TileLocation {
    QList<QUuid> folders; ///< containing folders, outermost first
    StoredPlace place;    ///< in the pages of the innermost folder
    const LaunchpadItem* item = nullptr;

    std::optional<QUuid> owner() const {
        return folders.isEmpty() ? std::nullopt : std::optional(folders.last());
    }
};

/// Finds the first tile with an identifier, depth first.
std::optional<TileLocation> locate(const Pages& pages, const QUuid& id);

/// Which tiles an app key may match.
enum class AppTiles { ownFirst, aliasesOnly };

/// Finds a tile by its identifier, else by its app key, the application's own tile before its aliases.
std::optional<QUuid> findTile(const Pages& pages, const QString& idOrAppKey,
                              AppTiles which = AppTiles::ownFirst);

/// The pages of a folder, or the arrangement's own; null if there is no such folder.
const Pages* pagesOf(const Pages& pages, const std::optional<QUuid>& folder);

/// A traversal that replaces tiles. Each step returns a tile's replacement, or nullopt to keep it.
struct TreeRewriter {
    using Step = std::function<std::optional<Page>(const LaunchpadItem&)>;

    Step enter; ///< before a folder's contents; a replacement is not traversed
    Step leave; ///< after a folder's contents, with the new contents; folders only

    Pages rewritten(const Pages& pages) const;

private:
    std::optional<Pages> changed(const Pages& pages) const;
    std::optional<Page> changed(const LaunchpadItem& item) const;
};

/// Applies `change` to the pages of a folder, or to the arrangement's own.
Pages withPagesChanged(const Pages& pages, const std::optional<QUuid>& folder,
                       const std::function<void(Pages&)>& change);

/// Applies `change` to the first tile with an identifier.
Pages withTileChanged(const Pages& pages, const QUuid& id,
                      const std::function<void(LaunchpadItem&)>& change);

/// Removes the first tile with each identifier and returns them in arrangement order. Tiles inside a
/// removed folder stay in it. Emptied pages and folders remain until `tidied`.
Page takeTiles(Pages& pages, QSet<QUuid> ids);

/// Removes empty pages and folders, and replaces each folder of one tile with that tile.
Pages tidied(const Pages& pages);

/// The number of shown tiles on each page.
QList<qsizetype> shownCounts(const Pages& pages, const QSet<QString>& hiddenKeys);

/// Moves tiles that do not fit on a page to the front of the next, and so on, adding a page if needed.
/// Keeps the order of all tiles, including hidden ones. A page may keep as many grid pages as it showed
/// `before` the edit, so that editing in a smaller grid does not rewrite pages of a larger one. True if
/// a page changed.
bool cascadeOverflow(Pages& pages, const QSet<QString>& hiddenKeys, qsizetype capacity,
                     const QList<qsizetype>& before);

} // namespace tessellar
