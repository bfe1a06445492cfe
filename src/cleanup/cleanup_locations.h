#pragma once

#include "cleanup/related_file.h"

#include <span>

namespace tessellar {

/// One of the folders that are searched for what an application left.
struct CleanupLocation {
    const char* folder; ///< in its Library
    const char* label;
    CleanupDomain domain;
    /// Off where vendors keep a folder for each product: these are looked through to some depth, the
    /// others at their own entries.
    bool isFlat;

    /// Under the user's home or in "/Library".
    QString path(const QString& home) const;
};

/// In the order in which they are searched and shown.
std::span<const CleanupLocation> cleanupLocations();

/// How deep the entries are looked at where a location is not flat.
inline constexpr int vendorFolderDepth = 3;

/// The location that a path lies strictly below, by its text.
const CleanupLocation* cleanupLocationOf(const QString& path, const QString& home);

} // namespace tessellar
