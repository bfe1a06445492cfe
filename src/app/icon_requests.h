#pragma once

#include "app/grid_model.h"

#include <QVariant>

namespace tessellar {

class SmartFolderLibrary;

/// The maximum number of tiles in a folder's preview.
constexpr qsizetype previewCount = 9;

IconRequest iconRequest(const AppEntry& app);

/// The icons in a folder's preview: the applications among its first tiles, and the first application
/// of each nested folder.
QList<IconRequest> previewIcons(const FolderEntry& folder);

/// The icons in a thumbnail of a page.
QList<IconRequest> pageIcons(const Page& page);

/// The tiles of a page for a `PagePicture`.
QVariantList pictureTiles(const Page& page, const SmartFolderLibrary& smartFolders);

/// The icons wanted by a window, in the order in which the user will probably see them: the current
/// page (of `over` first, then of the grid), then the pages beside it and the contents of its folders,
/// then the rest of the grid. Folders count as the icons in their previews. `over` is the open folder
/// or the search results; null if neither covers the grid.
IconLoader::Requests iconRequests(const GridModel& grid, const GridModel* over);

} // namespace tessellar
