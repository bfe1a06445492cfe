#pragma once

#include "model/items.h"
#include "platform/file_system.h"

namespace tessellar {

/// `appStore` for a bundle with a store receipt, and for a wrapped iPhone application with store
/// metadata.
AppInstallKind installKind(const FileSystem& files, const QString& bundlePath);

/// False only for an entry from a legacy import whose path does not exist.
bool isAvailable(const FileSystem& files, const AppEntry& entry);

} // namespace tessellar
