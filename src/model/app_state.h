#pragma once

#include "model/items.h"
#include "platform/file_system.h"

namespace tessellar {

/// `appStore` for a bundle with a store receipt, or a wrapped iPhone application with its metadata.
AppInstallKind installKind(const FileSystem& files, const QString& bundlePath);

/// False only for an entry that came from a legacy import and whose path holds no file.
bool isAvailable(const FileSystem& files, const AppEntry& entry);

} // namespace tessellar
