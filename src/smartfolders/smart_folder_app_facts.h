#pragma once

#include "model/items.h"
#include "smartfolders/smart_folder_vocabulary.h"

#include <QHash>
#include <QSet>

#include <memory>

namespace tessellar {

/// What is known of one application. A fact that is missing is unknown: rules on it cannot be decided.
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

    bool operator==(const SmartFolderAppFacts&) const = default;
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

    bool operator==(const SmartFolderRuntimeFacts&) const = default;
};

namespace json {

/// Dates as seconds since 2001; missing facts are left out.
template <>
struct Fields<SmartFolderAppFacts> {
    using F = SmartFolderAppFacts;
    static constexpr auto list = fields(
        required("entry", &F::entry), optional("developer", &F::developer),
        optional("publisher", &F::publisher), optional("signingTeamID", &F::signingTeamID),
        optional("version", &F::version), optional("build", &F::build),
        optional("installedDate", &F::installedDate), optional("firstSeenDate", &F::firstSeenDate),
        optional("applicationLocation", &F::applicationLocation),
        optional("installSource", &F::installSource),
        optional("distributionChannel", &F::distributionChannel), optional("platform", &F::platform),
        optional("architectures", &F::architectures),
        optional("minimumMacOSVersion", &F::minimumMacOSVersion),
        optional("lastUsedDate", &F::lastUsedDate), optional("launchCount", &F::launchCount),
        optional("isNeverUsed", &F::isNeverUsed), optional("updateStatus", &F::updateStatus),
        optional("hasCustomIcon", &F::hasCustomIcon),
        required("declaredPermissions", &F::declaredPermissions));
};

} // namespace json
} // namespace tessellar
