#include "platform/atomic_file.h"

#include "platform/descriptor.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cstdio>

namespace tessellar {
namespace {

/// The number of concurrent saves in one folder; each uses one temporary name.
constexpr int maximumSlots = 64;

/// A temporary file. It is locked while in use, and the lock is released with the process, so an
/// unlocked one was left by a process that is gone.
class TemporaryFile {
public:
    static std::expected<TemporaryFile, int> create(int directory) {
        for (int slot = 0; slot < maximumSlots; ++slot) {
            const QByteArray name = ".tessellar-save-" + QByteArray::number(slot);
            // Twice, because the first attempt may find a stale file to remove.
            for (int attempt = 0; attempt < 2; ++attempt) {
                Descriptor file(retrying([&] {
                    return ::openat(directory, name.constData(),
                                    O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
                }));
                if (file) {
                    if (isOurs(directory, name, file))
                        return TemporaryFile(directory, name, std::move(file));
                    break;
                }
                if (errno != EEXIST)
                    return std::unexpected(errno);
                if (!clearAway(directory, name))
                    break;
            }
        }
        return std::unexpected(EBUSY);
    }

    TemporaryFile(TemporaryFile&& other) noexcept
        : _directory(other._directory)
        , _name(std::exchange(other._name, {}))
        , _file(std::move(other._file)) {}
    TemporaryFile& operator=(TemporaryFile&&) = delete;
    ~TemporaryFile() {
        if (!_name.isEmpty())
            ::unlinkat(_directory, _name.constData(), 0);
    }

    int get() const { return _file.get(); }

    /// Afterwards the file is no longer temporary. The lock must still be held: otherwise another save
    /// could have put its own half-written file under this name.
    int renameTo(const QByteArray& name) {
        if (::renameat(_directory, _name.constData(), _directory, name.constData()) != 0)
            return errno;
        _name.clear();
        return 0;
    }

private:
    TemporaryFile(int directory, QByteArray name, Descriptor file)
        : _directory(directory), _name(std::move(name)), _file(std::move(file)) {}

    static bool isAt(int directory, const QByteArray& name, const Descriptor& file) {
        struct stat named {};
        struct stat open {};
        return ::fstatat(directory, name.constData(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
               ::fstat(file.get(), &open) == 0 && named.st_dev == open.st_dev &&
               named.st_ino == open.st_ino;
    }

    /// Locks a file that was just created. Before the lock, another save may have mistaken it for a
    /// stale one; then it is that save's to remove. On a file system without locks this cannot happen,
    /// because `clearAway` needs a lock.
    static bool isOurs(int directory, const QByteArray& name, const Descriptor& file) {
        if (retrying([&] { return ::flock(file.get(), LOCK_EX | LOCK_NB); }) != 0)
            return errno != EWOULDBLOCK;
        return isAt(directory, name, file);
    }

    /// Removes a stale file. Anything else with that name (a pipe, a folder) is left alone.
    static bool clearAway(int directory, const QByteArray& name) {
        const Descriptor file(retrying([&] {
            return ::openat(directory, name.constData(),
                            O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
        }));
        struct stat status {};
        return file && ::fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode) &&
               retrying([&] { return ::flock(file.get(), LOCK_EX | LOCK_NB); }) == 0 &&
               isAt(directory, name, file) && ::unlinkat(directory, name.constData(), 0) == 0;
    }

    int _directory;
    QByteArray _name; ///< empty once renamed
    Descriptor _file;
};

int writeAll(int file, const QByteArray& bytes) {
    const char* at = bytes.constData();
    auto left = static_cast<std::size_t>(bytes.size());
    while (left > 0) {
        const ssize_t written = retrying([&] { return ::write(file, at, left); });
        if (written <= 0)
            return written < 0 ? errno : EIO;
        at += written;
        left -= static_cast<std::size_t>(written);
    }
    return 0;
}

/// Copies the mode and owner of the file that is being replaced.
int adoptAttributes(int directory, const QByteArray& name, int file) {
    struct stat old {};
    if (::fstatat(directory, name.constData(), &old, AT_SYMLINK_NOFOLLOW) != 0)
        return errno == ENOENT ? 0 : errno;
    if (S_ISDIR(old.st_mode))
        return EISDIR;
    if (!S_ISREG(old.st_mode))
        return 0;
    // An administrator saving a user's file must not lock the user out of it.
    if (::geteuid() == 0 && old.st_uid != 0 && ::fchown(file, old.st_uid, old.st_gid) != 0)
        return errno;
    return ::fchmod(file, old.st_mode & 0777) == 0 ? 0 : errno;
}

} // namespace

int flushToDisk(int file) {
#ifdef F_FULLFSYNC
    // fsync alone leaves the bytes in the drive's cache on a Mac.
    if (retrying([&] { return ::fcntl(file, F_FULLFSYNC); }) == 0)
        return 0;
#endif
    return retrying([&] { return ::fsync(file); }) == 0 ? 0 : errno;
}

std::expected<void, int> replaceFileAt(int directory, const QByteArray& name, const QByteArray& bytes) {
    auto temporary = TemporaryFile::create(directory);
    if (!temporary)
        return std::unexpected(temporary.error());
    if (const int error = writeAll(temporary->get(), bytes))
        return std::unexpected(error);
    if (const int error = adoptAttributes(directory, name, temporary->get()))
        return std::unexpected(error);
    if (const int error = flushToDisk(temporary->get()))
        return std::unexpected(error);
    if (const int error = temporary->renameTo(name))
        return std::unexpected(error);
    // Some network volumes cannot flush a folder; the rename is then as durable as they make it.
    const int error = flushToDisk(directory);
    if (error != 0 && error != EINVAL && error != ENOTSUP)
        return std::unexpected(error);
    return {};
}

std::expected<void, int> replaceFile(const QByteArray& hostPath, const QByteArray& bytes) {
    const qsizetype slash = hostPath.lastIndexOf('/');
    const QByteArray name = hostPath.sliced(slash + 1);
    if (name.isEmpty() || name == "." || name == ".." || hostPath.contains('\0'))
        return std::unexpected(EINVAL);
    const QByteArray folder =
        slash < 0 ? QByteArray(".") : hostPath.first(std::max<qsizetype>(slash, 1));
    const Descriptor directory(
        retrying([&] { return ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (!directory)
        return std::unexpected(errno);
    return replaceFileAt(directory.get(), name, bytes);
}

} // namespace tessellar
