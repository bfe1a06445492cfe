#pragma once

#include "discovery/app_scanner.h"
#include "discovery/scan_observation.h"

namespace tessellar {

/// A scan's data about a bundle.
struct BundleRecord {
    QString path;          ///< resolved
    ScanEvidence evidence; ///< the first observation is the bundle's own
    AppScanner::InstallState state = AppScanner::InstallState::missing;
    bool isLaunchProhibited = false; ///< the store says that it cannot run on this Mac
    bool holdsApplications = false;  ///< has a folder "Contents/Applications"
    bool isPartlyUnseen = false;     ///< unknown whether it has one
    QString name;
    std::optional<QString> bundleIdentifier;
    std::optional<QString> category;
    QByteArray nameSortKey;

    std::optional<std::int64_t> fileIdentifier() const;
    /// True if both lead to the same scan result.
    bool sameFindings(const BundleRecord& other) const;
};

BundleRecord readBundleRecord(const ScanContext& context, const QString& path);

} // namespace tessellar
