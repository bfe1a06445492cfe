#include "platform/file_lock.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace tessellar {

FileLock::~FileLock() {
    if (_descriptor >= 0)
        ::close(_descriptor);
}

std::expected<std::optional<FileLock>, FileError> FileLock::tryLock(const FileSystem& files,
                                                                    const QString& path) {
    const QByteArray host = files.hostPath(path);
    FileLock lock(::open(host.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (lock._descriptor < 0)
        return std::unexpected(fileError(errno, path));
    if (::flock(lock._descriptor, LOCK_EX | LOCK_NB) == 0)
        return std::optional(std::move(lock));
    if (errno == EWOULDBLOCK)
        return std::optional<FileLock>();
    return std::unexpected(fileError(errno, path));
}

} // namespace tessellar
