#pragma once

#include "cleanup/related_file.h"

#include <span>

namespace tessellar {

/// A folder to search for an application's files.
struct CleanupLocation {
    const char* folder; ///< relative to its Library
    const char* label;
    CleanupDomain domain;
    /// How deep to look; more than one where vendors have a folder for each product.
    int depth;
    /// Only matches by identifier are offered here.
    bool isForCertain = false;

    /// Under `home` or in "/Library".
    QString path(const QString& home) const;
};

/// In search and display order.
std::span<const CleanupLocation> cleanupLocations();

/// Where applications and links to them are kept.
QStringList applicationFolders(const QString& home);

/// The location strictly containing a path, compared textually; null if none.
const CleanupLocation* cleanupLocationOf(const QString& path, const QString& home);

} // namespace tessellar
