#pragma once

#include "model/items.h"
#include "smartfolders/smart_folder_needs.h"
#include "smartfolders/smart_folder_vocabulary.h"

#include <QHash>
#include <QSet>

#include <memory>

namespace tessellar {

/// The known facts of one application. A missing fact is unknown, so rules on it cannot be decided: not
/// yet if one of its needs is `pending`, else for good.
struct SmartFolderAppFacts {
    AppEntry entry;
    std::optional<QString> developer;     ///< the signer
    std::optional<QString> publisher;     ///< named in the rights notice
    std::optional<QString> signingTeamID; ///< for example "FUV73783MZ"
    std::optional<QString> version;
    std::optional<QString> build;
    std::optional<Instant> installedDate;
    std::optional<Instant> firstSeenDate; ///< by the launcher
    std::optional<SmartFolderApplicationLocation> applicationLocation;
    std::optional<SmartFolderInstallSource> installSource;
    std::optional<SmartFolderDistributionChannel> distributionChannel;
    std::optional<SmartFolderPlatform> platform;
    std::optional<QStringList> architectures; ///< of the executable, in its order; never empty
    std::optional<QString> minimumMacOSVersion;
    std::optional<Instant> lastUsedDate;
    std::optional<qint64> launchCount;
    std::optional<bool> isNeverUsed;
    std::optional<SmartFolderUpdateState> updateStatus;
    std::optional<bool> hasCustomIcon;
    QList<SmartFolderPermission> declaredPermissions; ///< in declaration order of the enumeration
    SmartFolderNeeds pending;                         ///< still being gathered; not encoded

    bool operator==(const SmartFolderAppFacts&) const;
};

/// The facts of all applications, in scan order. Records are immutable and shared, so lists and
/// evaluations are cheap to copy.
using SmartFolderFactsList = QList<std::shared_ptr<const SmartFolderAppFacts>>;

/// The launcher's own knowledge for an evaluation, by app key.
struct SmartFolderRuntimeFacts {
    QHash<QString, Instant> firstSeenDates;
    QHash<QString, Instant> lastUsedDates;
    QHash<QString, qint64> launchCounts;
    bool usageDataIsComplete = false; ///< enough is recorded to call an application never used
    QHash<QString, SmartFolderUpdateState> updateStatuses;
    bool updateCheckingEnabled = false;
    QSet<QString> customIconKeys;
    QHash<QString, SmartFolderDistributionChannel> distributionChannels;
    SmartFolderNeeds pending; ///< which of these are not yet known

    bool operator==(const SmartFolderRuntimeFacts&) const = default;
};

/// Dates are in seconds since 2001; missing facts are omitted.
template <>
struct json::Codec<SmartFolderAppFacts> {
    static Decoded<SmartFolderAppFacts> decode(const QJsonValue& value);
    static QJsonValue encode(const SmartFolderAppFacts& facts);
};

} // namespace tessellar
