#pragma once

#include "discovery/launchpad_rows.h"

namespace tessellar {

/// A page, folder or application of the old arrangement, with what it holds in order.
struct ImportedNode {
    enum class Kind { page, folder, app };
    Kind kind = Kind::page;
    std::int64_t item = 0;
    QString title = {};                ///< of a folder
    QList<ImportedNode> children = {}; ///< of a folder its pages, of a page its tiles

    bool operator==(const ImportedNode&) const = default;
};

/// What the old Launchpad showed, from the root down: pages of applications and folders, folders of
/// pages. Pages and folders without anything are kept.
///
/// Whatever the rows say, each item is in the tree once at most, and what does not hang under the root
/// is not in it: orphans, rings, the trees of other features. The holding page, where the system keeps
/// what it does not show, is not a page of the user's. Things that stand directly under the root or in
/// a folder get a page of their own there; a page inside a page follows it; a folder nested too deep
/// for an arrangement gives its tiles to the one around it. Linear in the items, but for the sorting.
QList<ImportedNode> launchpadTree(const LaunchpadRows& rows);

} // namespace tessellar
