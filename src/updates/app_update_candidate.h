#pragma once

#include "model/items.h"
#include "platform/machine.h"

namespace tessellar {

/// An installed application as update checkers see it: data of its bundle, read once on a worker.
struct AppUpdateCandidate {
    QString appKey;
    QString name;
    QString path;
    QString resolvedPath; ///< standardized, with links resolved
    std::optional<QString> bundleIdentifier;
    std::optional<QString> version;
    std::optional<QString> build;
    bool isNativeMacApp = true;
    bool hasStoreReceipt = false;
    std::optional<QString> sparkleFeedUrl; ///< SUFeedURL
    bool hasSparkleFramework = false;
    bool hasKeystone = false; ///< KSUpdateURL

    /// Distinguishes bundles that may be different applications; unchanged by updates.
    QString fingerprint() const;
    /// True until an update has been installed.
    bool isSameRelease(const AppUpdateCandidate& other) const {
        return version == other.version && build == other.build;
    }
    bool operator==(const AppUpdateCandidate&) const = default;
};

/// Reads the bundle without running tools. Thread-safe.
AppUpdateCandidate inspectForUpdates(const FileSystem& files, const AppEntry& entry);

/// Checks both locations of a store receipt: inside "Contents", and directly inside the bundle.
bool hasStoreReceipt(const FileSystem& files, const QString& bundlePath);

} // namespace tessellar
