#pragma once

#include "platform/bundle.h"
#include "smartfolders/smart_folder_app_facts.h"

namespace tessellar {

/// What a bundle's own files tell, without running tools.
struct BundleFindings {
    bool exists = false;
    bool isFromStore = false; ///< has a store receipt or store metadata
    bool hasSparkle = false;  ///< declares a feed or contains the framework
    bool hasKeystone = false;
    std::optional<QString> storeArtist; ///< developer of a wrapped application
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
