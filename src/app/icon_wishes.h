#pragma once

#include "app/grid_model.h"

#include <QVariant>

namespace tessellar {

class SmartFolderLibrary;

/// How many of its tiles a folder's tile previews.
constexpr qsizetype previewCount = 9;

IconWish iconWish(const AppEntry& app);

/// What a folder's tile previews: the applications among its first tiles, a nested folder standing
/// with its own first application.
QList<IconWish> previewIcons(const FolderEntry& folder);

/// What a picture of a page shows.
QList<IconWish> pageIcons(const Page& page);

/// The tiles of a page for a `PagePicture`.
QVariantList pictureTiles(const Page& page, const SmartFolderLibrary& smartFolders);

/// The icons that a window wants, in the order in which the user is likely to see them: first the page
/// that is shown (of what lies over the grid before the grid's), then the pages beside it and the
/// inside of the folders on it, then all of the grid. Folders count with what their previews show.
/// `over` is the open folder, or what was found; null when nothing lies over the grid.
IconLoader::Wishes iconWishes(const GridModel& grid, const GridModel* over);

} // namespace tessellar
