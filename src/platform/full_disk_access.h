#pragma once

#include "platform/file_system.h"

namespace tessellar {

/// Whether macOS lets this program read the user's protected files. Other systems have no such
/// protection.
enum class FullDiskAccess { granted, denied, notGuarded };

/// Probes by opening the system's own database of such permissions, which is always protected; no API
/// reports it. Not in macos/, as it also works on a folder with a Mac's layout. Reads the disk; call on
/// a worker.
FullDiskAccess fullDiskAccess(const FileSystem& files, const QString& home);

} // namespace tessellar
