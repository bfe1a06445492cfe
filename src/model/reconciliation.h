#pragma once

#include "model/layout_document.h"
#include "model/remembered_places.h"
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
    /// Applications out of sight that the arrangement had until now. Where the given pages do not have
    /// them they are added like new ones, for nobody could say that they are to go.
    QList<AppEntry> unseenApps = {};
    RememberedPlaces places = {}; ///< of this mode
    Instant now = {};
};

struct MergeResult {
    Pages pages;
    QSet<QString> hiddenKeys;
    /// App keys of tiles whose application is out of sight.
    QSet<QString> unavailableAppKeys;
    /// Keys that changed, because a second copy of an application appeared or went away, or its
    /// vendor gave it another identifier. Whatever else is kept by app key moves along.
    QHash<QString, QString> changedKeys;

    // What went and came back, and what followed from it.
    QList<AppEntry> dropped;
    QList<AppEntry> returned;
    QList<QUuid> closedFolders;
    qsizetype closedPages = 0; ///< of the arrangement's own
    /// To be remembered until the next merge. Those that came back are in it still, and without effect
    /// while the arrangement has their tiles: whichever of the two is saved last, nothing is lost.
    RememberedPlaces places;

    bool operator==(const MergeResult&) const = default;
};

/// Brings a stored arrangement and the applications that a scan found together.
///
/// 1. What went earlier is put back in thought, each tile where it lay.
/// 2. Each application tile is matched with a scanned application: by its path first, then by its app
///    key as the scan's duplicates make it, and in the end by its path alone, for a vendor may change
///    an identifier. So a second copy that appears or goes away costs the first neither its place
///    nor its hidden state. A matched tile has its place, `id` and the name that the user gave, and
///    takes all else from the scan; one under another identifier takes a new `id` too. A tile whose
///    application is gone is dropped and its place remembered; any other stays as it is.
/// 3. Folders close up from the inside out: an empty one goes, one with a single tile becomes that
///    tile.
/// 4. Empty top-level pages go.
/// 5. Applications without a tile are added at the end, in alphabetical order.
///
/// The order inside pages is the user's and never changes. When everything that went is back, all lies
/// where it lay. Linear in tiles and applications, but for what went; pure.
MergeResult mergeLayout(const Pages& pages, const QSet<QString>& hiddenKeys,
                        const MergeContext& context, const Locale& locale);

/// What is to be remembered when the user removes the application at `path` from this arrangement: its
/// place, for the case that it is put back.
RememberedPlaces placesAfterRemoval(const Pages& pages, const RememberedPlaces& places,
                                    const QString& path, Instant now, const Locale& locale);

/// Every application as a top-level tile, in alphabetical order, filled page by page.
Pages defaultLayout(const QList<AppEntry>& apps, qsizetype pageCapacity, const Locale& locale);

} // namespace tessellar
