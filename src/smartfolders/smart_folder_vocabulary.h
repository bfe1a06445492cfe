#pragma once

#include "model/json.h"

namespace tessellar {

// The fixed words of smart folders. In files each is its enumerator's name.

enum class SmartFolderMatchMode { all, any };

enum class SmartFolderApplicationLocation {
    system,
    applications,
    userApplications,
    nestedApplication,
    other
};
enum class SmartFolderInstallSource { macAppStore, manual };
enum class SmartFolderDistributionChannel {
    macAppStore,
    homebrew,
    sparkle,
    system,
    vendor,
    unsupported
};
enum class SmartFolderPlatform { macOS, iOSOnMac };
enum class SmartFolderUpdateState { upToDate, updateAvailable, unsupported, failed, notChecked };
enum class SmartFolderPermission {
    camera,
    microphone,
    location,
    photos,
    contacts,
    calendar,
    reminders,
    bluetooth,
    automation,
    speech,
    mediaLibrary,
    localNetwork,
    documents,
};

enum class SmartFolderRelativeDateUnit { days, weeks, months };
enum class SmartFolderSortDirection { ascending, descending };

/// Definitions to start from.
enum class SmartFolderTemplate {
    installedThisWeek,
    microsoftApps,
    recentlyUsed,
    updatesAvailable,
    games,
    macAppStoreApps,
};

/// What is costly to find out about a bundle: a tool has to run.
enum class SmartFolderInspection { none, architectures, signature };

namespace json {

template <>
struct RawValues<SmartFolderMatchMode> : EnumeratorNames<SmartFolderMatchMode::any> {};
template <>
struct RawValues<SmartFolderApplicationLocation>
    : EnumeratorNames<SmartFolderApplicationLocation::other> {};
template <>
struct RawValues<SmartFolderInstallSource> : EnumeratorNames<SmartFolderInstallSource::manual> {};
template <>
struct RawValues<SmartFolderDistributionChannel>
    : EnumeratorNames<SmartFolderDistributionChannel::unsupported> {};
template <>
struct RawValues<SmartFolderPlatform> : EnumeratorNames<SmartFolderPlatform::iOSOnMac> {};
template <>
struct RawValues<SmartFolderUpdateState> : EnumeratorNames<SmartFolderUpdateState::notChecked> {};
template <>
struct RawValues<SmartFolderPermission> : EnumeratorNames<SmartFolderPermission::documents> {};
template <>
struct RawValues<SmartFolderRelativeDateUnit> : EnumeratorNames<SmartFolderRelativeDateUnit::months> {};
template <>
struct RawValues<SmartFolderSortDirection> : EnumeratorNames<SmartFolderSortDirection::descending> {};
template <>
struct RawValues<SmartFolderTemplate> : EnumeratorNames<SmartFolderTemplate::macAppStoreApps> {};

} // namespace json
} // namespace tessellar
