#pragma once

#include "platform/file_system.h"

namespace tessellar {

/// Whether a Mac lets this program see what it guards of the user's. Elsewhere there is no such guard.
enum class FullDiskAccess { granted, denied, notGuarded };

/// No call says so: the system's own list of such permissions is what the guard surely covers, so
/// whether it opens is the answer. Works on a folder that holds a Mac's layout as well, therefore here
/// and not in macos/. Touches the disk; for a worker.
FullDiskAccess fullDiskAccess(const FileSystem& files, const QString& home);

} // namespace tessellar
