#pragma once

#include "discovery/app_scanner.h"
#include "discovery/scan_observation.h"

#include <QSet>

namespace tessellar {

/// The entries of a folder that matter to a scan; or what the search paths resolve to.
struct ScanListing {
    QString path;          ///< resolved; empty for the search paths
    ScanEvidence evidence; ///< a folder's own observation comes first
    bool listed = false;
    qsizetype entryCount = 0;
    QList<AppScanner::TraversalCandidate> candidates; ///< folders only, in directory order
    QList<AppScanner::UnreadableDirectory> unreadable;

    /// True if a scan would continue the same way.
    bool sameFindings(const ScanListing& other) const;
};

/// Devices on which an unchanged folder time means unchanged entries: those of the system and the home.
/// Others (memory sticks, some servers) do not always update it.
QSet<std::uint64_t> reliableDevices(const FileSystem& files, const QString& home);

ScanListing listDirectory(const ScanContext& context, const QSet<std::uint64_t>& reliableDevices,
                          const QString& path);
ScanListing listSearchPaths(const ScanContext& context);

} // namespace tessellar
