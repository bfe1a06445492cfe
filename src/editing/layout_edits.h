#pragma once

#include "editing/page_tree.h"
#include "platform/text.h"

#include <expected>
#include <functional>

namespace tessellar {

/// Why an edit is not made. Nothing has changed then.
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
    otherMode,      ///< tiles cut in the other display mode, or in an unknown one
    tilesGone,      ///< cut tiles that are no longer all there
    nothingToPaste, ///< no tile that can be shown here
};

/// For programs: the case's name. For people: one sentence.
QString code(EditRefusal refusal);
QString message(EditRefusal refusal);

/// An edit's result: the whole layout with the change made.
using EditResult = std::expected<LayoutDocument, EditRefusal>;

/// What was given as a name, as it is kept: in one line, without white space at its ends.
std::expected<QString, EditRefusal> usableName(QString name);

/// How many tiles a page shows, of the arrangement and of an open folder. A page that an edit would
/// make longer passes its last tiles on to the next.
struct GridCapacities {
    qsizetype page = 40;
    qsizetype folder = 15;

    static GridCapacities of(const ArrangementLayout& layout) {
        return {pageGeometry(layout).capacity(), folderGeometry(layout).capacity()};
    }
    qsizetype of(const std::optional<QUuid>& folderID) const { return folderID ? folder : page; }
};

/// The longest name that an edit gives, in UTF-16 units.
inline constexpr qsizetype maximumNameLength = 255;

// Every edit is a function from a layout to the layout with the change made. After one that moves or
// removes tiles no page is empty, and no folder holds fewer than two tiles. None nests folders deeper
// than `maximumFolderDepth`, which is what can be read again.

/// Moves tiles, in the order of the arrangement, from wherever they are. The first of them then stands
/// at the place: its index counts the tiles that stay. A tile in a moved folder goes with the folder.
EditResult moveTiles(const LayoutDocument& layout, const QList<QUuid>& tiles, const LayoutPlace& place,
                     const GridCapacities& capacities);

/// The place just after a tile, as `moveTiles` counts it when `moved` leave.
std::optional<LayoutPlace> placeAfter(const Pages& pages, const QUuid& tile,
                                      const QList<QUuid>& moved = {});

/// Puts `tiles` together with `target`: into it, at its end, when it is a folder; else into a new
/// folder in its place, of which it is the first tile. `tiles` may name the target too.
EditResult groupTiles(const LayoutDocument& layout, const QList<QUuid>& tiles, const QUuid& target,
                      const QUuid& newFolderID, const Locale& locale, const GridCapacities& capacities);

/// Puts a folder's tiles in its place.
EditResult ungroupFolder(const LayoutDocument& layout, const QUuid& folder,
                         const GridCapacities& capacities);

/// Names are taken without the white space at their ends; line breaks and other control characters
/// become blanks.
EditResult renameFolder(const LayoutDocument& layout, const QUuid& folder, const QString& name);
EditResult renameApp(const LayoutDocument& layout, const QUuid& tile, const QString& name);
EditResult revertAppName(const LayoutDocument& layout, const QUuid& tile);

/// The name of a symbol of the system; nothing or an empty one clears it.
EditResult setFolderSymbol(const LayoutDocument& layout, const QUuid& folder,
                           const std::optional<QString>& symbolName);

/// Hides applications by the keys of their tiles; the tiles stay where they are and are not shown.
EditResult hideApps(const LayoutDocument& layout, const QList<QUuid>& tiles);
EditResult unhideApp(const LayoutDocument& layout, const QString& key,
                     const GridCapacities& capacities);

/// Adds tiles, whose identifiers must be new. An application that has a tile of its own in the layout
/// gets an alias of it; so does the second of two alike.
EditResult insertTiles(const LayoutDocument& layout, const Page& tiles, const LayoutPlace& place,
                       const GridCapacities& capacities);

/// A second tile for the application of a tile.
EditResult createAlias(const LayoutDocument& layout, const QUuid& tile, const QUuid& newTileID,
                       const LayoutPlace& place, const GridCapacities& capacities);
EditResult removeAliases(const LayoutDocument& layout, const QList<QUuid>& tiles);

/// A smart folder has one tile at most in a layout.
EditResult addSmartFolder(const LayoutDocument& layout, const QUuid& definitionID,
                          const LayoutPlace& place, const GridCapacities& capacities);
/// Takes a smart folder's tiles out, wherever they are; a layout without one stays as it is.
LayoutDocument removeSmartFolder(const LayoutDocument& layout, const QUuid& definitionID);

/// Takes out every tile of some applications, aliases too: they are no longer installed.
LayoutDocument removeApplications(const LayoutDocument& layout, const QSet<QString>& keys);

/// What a smart folder is called; asked when tiles are sorted.
using SmartFolderNames = std::function<QString(const QUuid& definitionID)>;

/// Sorts one page by name, its hidden tiles with the others.
EditResult sortPage(const LayoutDocument& layout, const std::optional<QUuid>& folder, qsizetype page,
                    const Locale& locale, const SmartFolderNames& names);
/// Sorts the whole arrangement, and each folder within itself, over all of its pages, which are filled
/// one by one.
LayoutDocument sortEverything(const LayoutDocument& layout, const Locale& locale,
                              const SmartFolderNames& names, const GridCapacities& capacities);

} // namespace tessellar
