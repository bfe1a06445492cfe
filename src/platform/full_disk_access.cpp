#include "platform/full_disk_access.h"

#include "platform/descriptor.h"

#include <cerrno>
#include <fcntl.h>

namespace tessellar {

FullDiskAccess fullDiskAccess(const FileSystem& files, const QString& home) {
    const QByteArray list =
        files.hostPath(home + QStringLiteral("/Library/Application Support/com.apple.TCC/TCC.db"));
    if (const Descriptor opened(::open(list.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)); opened)
        return FullDiskAccess::granted;
    return errno == EPERM || errno == EACCES ? FullDiskAccess::denied : FullDiskAccess::notGuarded;
}

} // namespace tessellar
