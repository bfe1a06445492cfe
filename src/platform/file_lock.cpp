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

std::expected<std::optional<FileLock>, FileError>
FileLock::tryLock(const FileSystem& files, const QString& path, const QString& name) {
    const QByteArray host = files.hostPath(path);
    FileLock lock(::open(host.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (lock._descriptor < 0)
        return std::unexpected(fileError(errno, path));
    if (::flock(lock._descriptor, LOCK_EX | LOCK_NB) == 0) {
        QByteArray text = name.toUtf8();
        text.truncate(maximumName);
        if (::ftruncate(lock._descriptor, 0) == 0)
            (void)!::write(lock._descriptor, text.constData(), static_cast<std::size_t>(text.size()));
        return std::optional(std::move(lock));
    }
    if (errno == EWOULDBLOCK)
        return std::optional<FileLock>();
    return std::unexpected(fileError(errno, path));
}

QString FileLock::holder(const FileSystem& files, const QString& path) {
    return QString::fromUtf8(files.read(path, maximumName).value_or(QByteArray()));
}

} // namespace tessellar
