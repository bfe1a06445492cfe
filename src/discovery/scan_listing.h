#pragma once

#include "discovery/app_scanner.h"
#include "discovery/scan_observation.h"

#include <QSet>

namespace tessellar {

/// What a folder holds that concerns the scan; or what the search paths lead to.
struct ScanListing {
    QString path;          ///< resolved; empty for the search paths
    ScanEvidence evidence; ///< for a folder, the first observation is its own
    bool listed = false;
    qsizetype entryCount = 0;
    QList<AppScanner::TraversalCandidate> candidates; ///< folders only; in the order of the entries
    QList<AppScanner::UnreadableDirectory> unreadable;

    /// True when a scan would go on from here in the same way.
    bool sameFindings(const ScanListing& other) const;
};

/// Where the lists of folders can be relied upon while the folder's own times stand: not every disk
/// changes them when an entry comes or goes (memory sticks, some servers), but those that a system and
/// its homes lie on do.
QSet<std::uint64_t> reliableDevices(const FileSystem& files, const QString& home);

ScanListing listDirectory(const ScanContext& context, const QSet<std::uint64_t>& reliableDevices,
                          const QString& path);
ScanListing listSearchPaths(const ScanContext& context);

} // namespace tessellar
