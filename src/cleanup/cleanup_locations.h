#pragma once

#include "cleanup/related_file.h"

#include <span>

namespace tessellar {

/// One of the folders that are searched for what an application left.
struct CleanupLocation {
    const char* folder; ///< in its Library
    const char* label;
    CleanupDomain domain;
    /// To which depth entries are looked at: more than one where vendors keep a folder for each
    /// product.
    int depth;
    /// Only what an identifier ties is offered here.
    bool isForCertain = false;

    /// Under the user's home or in "/Library".
    QString path(const QString& home) const;
};

/// In the order in which they are searched and shown.
std::span<const CleanupLocation> cleanupLocations();

/// Where applications lie, and links to them.
QStringList applicationFolders(const QString& home);

/// The location that a path lies strictly below, by its text.
const CleanupLocation* cleanupLocationOf(const QString& path, const QString& home);

} // namespace tessellar
