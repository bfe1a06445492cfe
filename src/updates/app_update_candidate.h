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
    std::optional<qint64> storeItemIdentifier; ///< only looked for beside a receipt
    std::optional<QString> sparkleFeedUrl;     ///< SUFeedURL
    bool hasSparkleFramework = false;
    bool hasKeystone = false; ///< KSUpdateURL

    bool operator==(const AppUpdateCandidate&) const = default;
};

/// What looking at bundles needs of the machine; good for any thread.
struct AppUpdateInspection {
    const FileSystem& files;
    CommandRunner& commands;
    std::map<QByteArray, QByteArray> environment;
};

/// `before` is what was found of it last, if it was looked at: Spotlight is not asked again of what is
/// the same.
AppUpdateCandidate inspectForUpdates(const AppUpdateInspection& machine, const AppEntry& entry,
                                     const AppUpdateCandidate* before, std::stop_token stop);

/// The two places of a store receipt: inside "Contents", and directly inside the bundle.
bool hasStoreReceipt(const FileSystem& files, const QString& bundlePath);

/// What Spotlight says of the attribute "kMDItemAppStoreAdamID": a positive integer, also as text with
/// a sign; anything else is none.
std::optional<qint64> storeItemIdentifier(const QByteArray& spotlightAnswer);

} // namespace tessellar
