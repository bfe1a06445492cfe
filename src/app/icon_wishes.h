#pragma once

#include "editing/grid_geometry.h"
#include "icons/icon_loader.h"

namespace tessellar {

/// What a folder's tile previews: the applications among its first nine tiles, a nested folder standing
/// with its own first application.
QList<AppEntry> previewApplications(const FolderEntry& folder);

/// Which icons a window wants, in the order in which the user is likely to see them: first the page
/// that is shown (of an open folder before the grid under it), then the pages beside it and the inside
/// of the folders on it, then all others. Folders count with what their previews show.
IconLoader::Wishes iconWishes(const ShownPages& grid, int page, const ShownPages* openFolder,
                              int folderPage);

} // namespace tessellar
