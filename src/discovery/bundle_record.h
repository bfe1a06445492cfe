#pragma once

#include "discovery/app_scanner.h"
#include "discovery/scan_observation.h"

namespace tessellar {

/// A bundle as a scan needs it.
struct BundleRecord {
    QString path;          ///< resolved
    ScanEvidence evidence; ///< the first observation is the bundle's own
    AppScanner::InstallState state = AppScanner::InstallState::missing;
    bool isLaunchProhibited = false; ///< the store says that it does not run on this Mac
    bool holdsApplications = false;  ///< a folder "Contents/Applications"
    bool isPartlyUnseen = false;     ///< whether there is one could not be told
    QString name;
    std::optional<QString> bundleIdentifier;
    std::optional<QString> category;
    QByteArray nameSortKey;

    std::optional<std::int64_t> fileIdentifier() const;
    /// True when both give the same result.
    bool sameFindings(const BundleRecord& other) const;
};

BundleRecord readBundleRecord(const ScanContext& context, const QString& path);

} // namespace tessellar
