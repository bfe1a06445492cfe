#pragma once

namespace tessellar {

// The fixed words of smart folders. Their raw values in files are the enumerators' names
// (smart_folder_raw_values.h).

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

/// Definitions offered as a starting point.
enum class SmartFolderTemplate {
    installedThisWeek,
    microsoftApps,
    recentlyUsed,
    updatesAvailable,
    games,
    macAppStoreApps,
};

} // namespace tessellar
