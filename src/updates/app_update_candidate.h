#pragma once

#include "model/items.h"
#include "platform/machine.h"

namespace tessellar {

/// An installed application as the checkers see it: what its bundle says, read once on a worker.
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

    /// Differs between bundles that may be different applications; an update leaves it as it is.
    QString fingerprint() const;
    /// What was installed: the same until an update has come.
    bool isSameRelease(const AppUpdateCandidate& other) const {
        return version == other.version && build == other.build;
    }
    bool operator==(const AppUpdateCandidate&) const = default;
};

/// Never starts a tool. Any thread.
AppUpdateCandidate inspectForUpdates(const FileSystem& files, const AppEntry& entry);

/// The two places of a store receipt: inside "Contents", and directly inside the bundle.
bool hasStoreReceipt(const FileSystem& files, const QString& bundlePath);

} // namespace tessellar
