#pragma once

#include "discovery/launchpad_rows.h"

namespace tessellar {

/// A page, folder or application of the old arrangement, with its children in order.
struct ImportedNode {
    enum class Kind { page, folder, app };
    Kind kind = Kind::page;
    std::int64_t item = 0;
    QString title = {};                ///< of folders
    QList<ImportedNode> children = {}; ///< pages of a folder, tiles of a page

    bool operator==(const ImportedNode&) const = default;
};

/// The old Launchpad's arrangement from the root down: pages of applications and folders, folders of
/// pages. Keeps empty pages and folders.
/// Tolerates any rows. Each item appears at most once; items not reachable from the root (orphans,
/// cycles, trees of other features) are dropped, and so is the holding page of items that the system
/// hides. Items directly under the root or in a folder get a page of their own there; a page inside a
/// page is placed after it; a folder nested too deep is dissolved into its parent. Linear in the items,
/// apart from sorting.
QList<ImportedNode> launchpadTree(const LaunchpadRows& rows);

} // namespace tessellar
