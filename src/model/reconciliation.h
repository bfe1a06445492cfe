#pragma once

#include "model/layout_document.h"
#include "model/remembered_places.h"
#include "platform/text.h"

#include <QHash>

#include <functional>

namespace tessellar {

/// The state of the machine and the grid, for a merge.
struct MergeContext {
    QList<AppEntry> scannedApps;
    /// True if the application at `path` was looked for and is certainly gone; any other that the scan
    /// did not find is only unavailable (on an unmounted volume, say). Null: none is gone.
    std::function<bool(const QString& path)> isGone;
    qsizetype pageCapacity = 40;
    /// A restore puts new applications on pages of their own; otherwise they fill up the last page
    /// first.
    bool isRestore = false;
    /// Unavailable applications that the arrangement had so far. If the given pages lack them they are
    /// added like new ones, as nobody can tell whether they were meant to go.
    QList<AppEntry> unseenApps = {};
    RememberedPlaces places = {}; ///< of this mode
    Instant now = {};
};

struct MergeResult {
    Pages pages;
    QSet<QString> hiddenKeys;
    /// App keys of tiles whose application is unavailable.
    QSet<QString> unavailableAppKeys;
    /// App keys that changed, because a second copy of an application appeared or went away, or its
    /// identifier changed. Move everything else stored by app key accordingly.
    QHash<QString, QString> changedKeys;

    // What was dropped and what returned, with the consequences.
    QList<AppEntry> dropped;
    QList<AppEntry> returned;
    QList<QUuid> closedFolders;
    qsizetype closedPages = 0; ///< top-level pages only
    /// To pass to the next merge. Still includes the returned applications, which has no effect while
    /// they have tiles: so whichever of layout and places is saved last, nothing is lost.
    RememberedPlaces places;

    bool operator==(const MergeResult&) const = default;
};

/// Merges a stored arrangement with the scanned applications.
///
/// 1. Remembered applications are woven back in, each tile in its place.
/// 2. Each application tile is matched with a scanned application: first by path, then by app key given
///    the scan's duplicates, finally by path alone, as an identifier may change. So a second copy that
///    appears or goes away affects neither the place nor the hidden state of the first. A matched tile
///    keeps its place, `id` and the user's name, and takes everything else from the scan; if the
///    identifier changed it also gets a new `id`. A tile whose application is gone is dropped and its
///    place remembered; any other is kept.
/// 3. Folders are tidied from the inside out: empty ones are removed, one with a single tile is
///    replaced by it.
/// 4. Empty top-level pages are removed.
/// 5. Applications without a tile are appended in alphabetical order.
///
/// The order within pages is the user's and never changes; once every application has returned, the
/// arrangement is as before. Linear in tiles and applications, except for those dropped. Pure.
MergeResult mergeLayout(const Pages& pages, const QSet<QString>& hiddenKeys,
                        const MergeContext& context, const Locale& locale);

/// The places after the user removes the application at `path`, with its place, in case it is put back.
RememberedPlaces placesAfterRemoval(const Pages& pages, const RememberedPlaces& places,
                                    const QString& path, Instant now, const Locale& locale);

/// All applications as top-level tiles, in alphabetical order.
Pages defaultLayout(const QList<AppEntry>& apps, qsizetype pageCapacity, const Locale& locale);

} // namespace tessellar
