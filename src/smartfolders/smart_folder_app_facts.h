#pragma once

#include "model/items.h"
#include "smartfolders/smart_folder_needs.h"
#include "smartfolders/smart_folder_vocabulary.h"

#include <QHash>
#include <QSet>

#include <memory>

namespace tessellar {

/// What is known of one application. A fact that is missing is unknown: rules on it cannot be decided,
/// for good or, where it needs what is `pending`, not yet.
struct SmartFolderAppFacts {
    AppEntry entry;
    std::optional<QString> developer;     ///< who signed it
    std::optional<QString> publisher;     ///< whom its rights notice names
    std::optional<QString> signingTeamID; ///< such as "FUV73783MZ"
    std::optional<QString> version;
    std::optional<QString> build;
    std::optional<Instant> installedDate;
    std::optional<Instant> firstSeenDate; ///< by the launcher
    std::optional<SmartFolderApplicationLocation> applicationLocation;
    std::optional<SmartFolderInstallSource> installSource;
    std::optional<SmartFolderDistributionChannel> distributionChannel;
    std::optional<SmartFolderPlatform> platform;
    std::optional<QStringList> architectures; ///< of the executable, in its order; never an empty list
    std::optional<QString> minimumMacOSVersion;
    std::optional<Instant> lastUsedDate;
    std::optional<qint64> launchCount;
    std::optional<bool> isNeverUsed;
    std::optional<SmartFolderUpdateState> updateStatus;
    std::optional<bool> hasCustomIcon;
    QList<SmartFolderPermission> declaredPermissions; ///< in the order of the vocabulary
    SmartFolderNeeds pending;                         ///< what is still being gathered; not in files

    bool operator==(const SmartFolderAppFacts&) const;
};

/// The facts of all applications, in the order of the scan. Records are shared and never change: lists
/// and evaluations copy as pointers.
using SmartFolderFactsList = QList<std::shared_ptr<const SmartFolderAppFacts>>;

/// What the launcher itself knows at an evaluation, by app key.
struct SmartFolderRuntimeFacts {
    QHash<QString, Instant> firstSeenDates;
    QHash<QString, Instant> lastUsedDates;
    QHash<QString, qint64> launchCounts;
    bool usageDataIsComplete = false; ///< enough is recorded to call an application never used
    QHash<QString, SmartFolderUpdateState> updateStatuses;
    bool updateCheckingEnabled = false;
    QSet<QString> customIconKeys;
    QHash<QString, SmartFolderDistributionChannel> distributionChannels;
    SmartFolderNeeds pending; ///< which of these are not known yet

    bool operator==(const SmartFolderRuntimeFacts&) const = default;
};

/// Dates as seconds since 2001; missing facts are left out.
template <>
struct json::Codec<SmartFolderAppFacts> {
    static Decoded<SmartFolderAppFacts> decode(const QJsonValue& value);
    static QJsonValue encode(const SmartFolderAppFacts& facts);
};

} // namespace tessellar
