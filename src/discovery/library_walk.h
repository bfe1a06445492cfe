#pragma once

#include "discovery/bundle_record.h"
#include "discovery/scan_listing.h"

#include <QHash>
#include <QSet>

#include <vector>

namespace tessellar {

/// A scan in progress: first revalidates the cache; only if something changed, walks the folders again,
/// reusing valid entries.
class LibraryWalk {
public:
    LibraryWalk(const ScanContext& context, ScanCache& cache, std::stop_token stop);

    std::optional<AppScanner::LibraryScan> run();

private:
    using Listing = std::shared_ptr<const ScanListing>;
    using Record = std::shared_ptr<const BundleRecord>;
    using Reason = AppScanner::UnreadableDirectory::Reason;
    using PendingDirectory = AppScanner::PendingDirectory;
    struct PendingBundle {
        QString path;
        int depth = 0;
    };

    bool refresh();
    bool walk();
    bool listLevel(int depth);
    bool readBundles();
    void enqueue(const AppScanner::TraversalCandidate& candidate, int depth);
    void addListing(const Listing& listing, int depth);
    void addRecord(const Record& record, int depth);
    void addUnreadable(const AppScanner::UnreadableDirectory& directory);
    void stopAtLimit();
    void markUncertain();
    void finish();
    void recordVolumes();
    bool seenBefore(const ScanEvidence& evidence);

    const ScanContext& _context;
    ScanCache& _cache;
    std::stop_token _stop;
    QSet<std::uint64_t> _reliableDevices;

    ScanCache _next; ///< replaces the cache when the scan is done
    QHash<QString, Listing> _knownListings;
    QHash<QString, Record> _knownRecords;

    std::vector<QList<PendingDirectory>> _pending; ///< by depth
    QList<PendingBundle> _pendingBundles;          ///< of the current level
    QSet<QString> _foundPaths;
    QSet<std::pair<std::uint64_t, std::uint64_t>> _seenFiles; ///< device and inode
    QList<Record> _ready;
    qsizetype _entryCount = 0;
    qsizetype _bundleCount = 0;
    bool _isOverLimit = false;
};

} // namespace tessellar
