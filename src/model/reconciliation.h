#pragma once

#include "model/layout_document.h"
#include "platform/text.h"

#include <QHash>

#include <functional>

namespace tessellar {

/// What a merge is told of the machine and the grid.
struct MergeContext {
    QList<AppEntry> scannedApps;
    /// True for the path of an application that was looked for and is certainly not there. Every other
    /// one that the scan did not find is only out of sight. Without it, nothing is gone.
    std::function<bool(const QString& path)> isGone;
    qsizetype pageCapacity = 40;
    /// A restore puts new applications on pages of their own; otherwise the last page is filled first.
    bool isRestore = false;
};

struct MergeResult {
    Pages pages;
    QSet<QString> hiddenKeys;
    /// App keys of tiles whose application is out of reach.
    QSet<QString> unavailableAppKeys;
    /// Keys that changed, because a second copy of an application appeared or went away. What else is
    /// kept by app key (icons, records) moves along.
    QHash<QString, QString> changedKeys;

    bool operator==(const MergeResult&) const = default;
};

/// Brings a stored arrangement and the applications that a scan found together.
///
/// 1. Each application tile is matched with a scanned application: by its path first, then by its app
///    key as the scan's duplicates make it. So a second copy that appears or goes away costs the first
///    neither its place nor its hidden state. A matched tile keeps its place, `id` and the name that
///    the user gave, and takes all else from the scan. A tile out of reach stays as it is; any other is
///    dropped.
/// 2. Folders close up from the inside out: an empty one goes, one with a single tile becomes that
/// tile.
/// 3. Empty top-level pages go.
/// 4. Applications without a tile are added at the end, in alphabetical order.
///
/// The order inside pages is the user's and never changes. Linear in tiles and applications; pure.
MergeResult mergeLayout(const Pages& pages, const QSet<QString>& hiddenKeys,
                        const MergeContext& context, const Locale& locale);

/// Every application as a top-level tile, in alphabetical order, filled page by page.
Pages defaultLayout(const QList<AppEntry>& apps, qsizetype pageCapacity, const Locale& locale);

} // namespace tessellar
