#pragma once

#include "editing/page_tree.h"
#include "platform/text.h"

#include <expected>
#include <functional>

namespace tessellar {

/// Why an edit was refused; nothing has changed then.
enum class EditRefusal {
    noTiles,
    noSuchTile,
    noSuchFolder,
    noSuchPlace,
    intoItself,
    tooDeep,
    notAFolder,
    notAnApplication,
    notAnAlias,
    notHidden,
    rulesDecide,
    alreadyPresent,
    emptyName,
    nameTooLong,
    otherMode,      ///< tiles cut in the other display mode, or an unknown one
    tilesGone,      ///< some of the cut tiles no longer exist
    nothingToPaste, ///< no tile that this mode can show
};

/// `code` is the enumerator's name, for programs; `message` one sentence for people.
QString code(EditRefusal refusal);
QString message(EditRefusal refusal);

/// The whole layout after the edit.
using EditResult = std::expected<LayoutDocument, EditRefusal>;

/// A name as it will be stored: on one line and trimmed.
std::expected<QString, EditRefusal> usableName(QString name);

/// How many tiles a page shows, in the arrangement and in an open folder. If an edit overfills a page,
/// its last tiles move on to the next.
struct GridCapacities {
    qsizetype page = 40;
    qsizetype folder = 15;

    static GridCapacities of(const ArrangementLayout& layout) {
        return {pageGeometry(layout).capacity(), folderGeometry(layout).capacity()};
    }
    qsizetype of(const std::optional<QUuid>& folderID) const { return folderID ? folder : page; }
};

/// The longest name allowed, in UTF-16 units.
inline constexpr qsizetype maximumNameLength = 255;

// Every edit takes a layout and returns the changed one. After an edit that moves or removes tiles, no
// page is empty and no folder has fewer than two tiles. No edit nests folders deeper than
// `maximumFolderDepth`, the limit for reading.

/// Moves tiles, keeping their order in the arrangement, so that the first ends up at `place`, whose
/// index does not count the moved tiles. A tile inside a moved folder stays in it.
EditResult moveTiles(const LayoutDocument& layout, const QList<QUuid>& tiles, const LayoutPlace& place,
                     const GridCapacities& capacities);

/// The place after `tile`, for `moveTiles` of `moved`.
std::optional<LayoutPlace> placeAfter(const Pages& pages, const QUuid& tile,
                                      const QList<QUuid>& moved = {});

/// Groups `tiles` with `target`: appended to it if it is a folder; else in a new folder that takes its
/// place and begins with it. `tiles` may include the target.
EditResult groupTiles(const LayoutDocument& layout, const QList<QUuid>& tiles, const QUuid& target,
                      const QUuid& newFolderID, const Locale& locale, const GridCapacities& capacities);

/// Replaces a folder with its tiles.
EditResult ungroupFolder(const LayoutDocument& layout, const QUuid& folder,
                         const GridCapacities& capacities);

/// Names are trimmed; line breaks and other control characters become spaces.
EditResult renameFolder(const LayoutDocument& layout, const QUuid& folder, const QString& name);
EditResult renameApp(const LayoutDocument& layout, const QUuid& tile, const QString& name);
EditResult revertAppName(const LayoutDocument& layout, const QUuid& tile);

/// The name of a system symbol; nullopt or empty clears it.
EditResult setFolderSymbol(const LayoutDocument& layout, const QUuid& folder,
                           const std::optional<QString>& symbolName);

/// Hides applications by their tiles' keys; hidden tiles keep their places.
EditResult hideApps(const LayoutDocument& layout, const QList<QUuid>& tiles);
EditResult unhideApp(const LayoutDocument& layout, const QString& key,
                     const GridCapacities& capacities);

/// Adds tiles, whose identifiers must be new. An application that already has a tile in the layout, or
/// among `tiles`, gets an alias.
EditResult insertTiles(const LayoutDocument& layout, const Page& tiles, const LayoutPlace& place,
                       const GridCapacities& capacities);

/// Adds an alias of a tile's application.
EditResult createAlias(const LayoutDocument& layout, const QUuid& tile, const QUuid& newTileID,
                       const LayoutPlace& place, const GridCapacities& capacities);
EditResult removeAliases(const LayoutDocument& layout, const QList<QUuid>& tiles);

/// A layout has at most one tile per smart folder.
EditResult addSmartFolder(const LayoutDocument& layout, const QUuid& definitionID,
                          const LayoutPlace& place, const GridCapacities& capacities);
/// Removes a smart folder's tiles everywhere, if there are any.
LayoutDocument removeSmartFolder(const LayoutDocument& layout, const QUuid& definitionID);

/// Removes every tile of uninstalled applications, including aliases.
LayoutDocument removeApplications(const LayoutDocument& layout, const QSet<QString>& keys);

/// Looks up a smart folder's name for sorting.
using SmartFolderNames = std::function<QString(const QUuid& definitionID)>;

/// Sorts one page by name, including hidden tiles.
EditResult sortPage(const LayoutDocument& layout, const std::optional<QUuid>& folder, qsizetype page,
                    const Locale& locale, const SmartFolderNames& names);
/// Sorts the whole arrangement and the contents of each folder, across pages, which are filled up in
/// turn.
LayoutDocument sortEverything(const LayoutDocument& layout, const Locale& locale,
                              const SmartFolderNames& names, const GridCapacities& capacities);

} // namespace tessellar
