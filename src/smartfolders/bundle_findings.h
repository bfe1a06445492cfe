#pragma once

#include "platform/bundle.h"
#include "smartfolders/smart_folder_app_facts.h"

namespace tessellar {

/// What a bundle itself tells, without running a tool.
struct BundleFindings {
    bool exists = false;
    bool isFromStore = false; ///< carries a store's receipt or metadata
    bool hasSparkle = false;  ///< declares a feed or carries the framework
    bool hasKeystone = false;
    std::optional<QString> storeArtist; ///< who made a wrapped application
    std::optional<QString> publisher;
    std::optional<QString> version;
    std::optional<QString> build;
    std::optional<QString> minimumMacOSVersion;
    std::optional<Instant> installedDate;
    std::optional<SmartFolderPlatform> platform;
    QList<SmartFolderPermission> declaredPermissions;
    std::optional<QString> executablePath;
};

BundleFindings readBundleFindings(const FileSystem& files, const Bundle& bundle);

} // namespace tessellar
