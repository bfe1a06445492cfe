#include "platform/file_system.h"

#include "platform/atomic_file.h"
#include "platform/directory_reader.h"
#include "platform/rooted_path.h"

#include <QDir>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>

#ifdef __linux__
#include <sys/sysmacros.h>
#endif

namespace tessellar {
namespace {

#ifdef O_PATH
constexpr int lookOnly = O_PATH;
#else
constexpr int lookOnly = O_RDONLY | O_NONBLOCK;
#endif
constexpr int readOnly = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

template <typename Seconds, typename Nanoseconds>
Instant instant(Seconds seconds, Nanoseconds nanoseconds) {
    return {static_cast<double>(seconds) - Instant::unixEpochOffset +
            static_cast<double>(nanoseconds) / 1e9};
}

FileType fileType(std::uint32_t mode) {
    switch (mode & S_IFMT) {
    case S_IFREG:
        return FileType::regular;
    case S_IFDIR:
        return FileType::directory;
    case S_IFLNK:
        return FileType::symbolicLink;
    default:
        return FileType::other;
    }
}

/// `flags` are those of fstatat. An empty name means the descriptor itself.
std::expected<FileStatus, int> statusAt(int directory, const char* name, int flags) {
#ifdef __linux__
    struct statx raw {};
    if (::statx(directory, name, flags | AT_EMPTY_PATH | AT_NO_AUTOMOUNT,
                STATX_BASIC_STATS | STATX_BTIME, &raw) != 0)
        return std::unexpected(errno);
    FileStatus status{.type = fileType(raw.stx_mode),
                      .size = raw.stx_size,
                      .device = ::makedev(raw.stx_dev_major, raw.stx_dev_minor),
                      .inode = raw.stx_ino,
                      .mode = raw.stx_mode & 07777u,
                      .owner = raw.stx_uid,
                      .modified = instant(raw.stx_mtime.tv_sec, raw.stx_mtime.tv_nsec),
                      .changed = instant(raw.stx_ctime.tv_sec, raw.stx_ctime.tv_nsec)};
    if (raw.stx_mask & STATX_BTIME)
        status.created = instant(raw.stx_btime.tv_sec, raw.stx_btime.tv_nsec);
#else
    struct stat raw {};
    if ((*name ? ::fstatat(directory, name, &raw, flags) : ::fstat(directory, &raw)) != 0)
        return std::unexpected(errno);
    FileStatus status{.type = fileType(raw.st_mode),
                      .size = static_cast<std::uint64_t>(raw.st_size),
                      .device = static_cast<std::uint64_t>(raw.st_dev),
                      .inode = raw.st_ino,
                      .mode = raw.st_mode & 07777u,
                      .owner = raw.st_uid,
                      .modified = instant(raw.st_mtimespec.tv_sec, raw.st_mtimespec.tv_nsec),
                      .changed = instant(raw.st_ctimespec.tv_sec, raw.st_ctimespec.tv_nsec),
                      .created = instant(raw.st_birthtimespec.tv_sec, raw.st_birthtimespec.tv_nsec)};
#endif
    return status;
}

/// Errors are ignored: the change in the folder has been made.
void flushFolder(const Place& place) {
    // A new descriptor: an O_PATH one cannot be flushed.
    const Descriptor folder(::openat(place.directory.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder)
        ::fsync(folder.get());
}

int renameWithoutReplacing(const Place& from, const Place& to) {
    const int error = renameExclusively(from.directory.get(), from.name, to.directory.get(), to.name);
#ifdef __linux__
    // Some file systems do not support it.
    if (error != EINVAL && error != ENOSYS)
        return error;
    struct stat status {};
    const char* target = to.name.constData();
    if (::fstatat(to.directory.get(), target, &status, AT_SYMLINK_NOFOLLOW) == 0)
        return EEXIST;
    return ::renameat(from.directory.get(), from.name.constData(), to.directory.get(), target) == 0
               ? 0
               : errno;
#else
    return error;
#endif
}

} // namespace

FileSystem::FileSystem(const QString& hostRoot) {
    const QString root = QDir::cleanPath(QDir::current().absoluteFilePath(hostRoot));
    if (root == u"/")
        return;
    _root = root;
    _rootBytes = toHostBytes(root).value_or(QByteArray());
    if (char* canonical = ::realpath(_rootBytes.constData(), nullptr)) {
        _canonicalRoot = fromHostBytes(canonical);
        std::free(canonical); // NOLINT: allocated by realpath
    }
}

QByteArray FileSystem::hostPath(const QString& path) const {
    if (!path.startsWith(u'/'))
        return {};
    const bool climbs = path.contains(u"..");
    QString host = _root + (climbs ? standardized(path) : path);
    while (host.size() > 1 && host.endsWith(u'/'))
        host.chop(1);
    return toHostBytes(host).value_or(QByteArray());
}

std::optional<QString> FileSystem::pathFromHost(const QByteArray& hostPath) const {
    if (!hostPath.startsWith('/'))
        return std::nullopt;
    const QString path = standardized(fromHostBytes(hostPath));
    if (_root.isEmpty())
        return path;
    for (const QString& root : {_root, _canonicalRoot}) {
        if (!root.isEmpty() && isWithin(path, root))
            return path.size() == root.size() ? QStringLiteral("/") : path.sliced(root.size());
    }
    return std::nullopt;
}

/// Opened each time: if the folder is replaced by another, that is the root from then on.
std::expected<Descriptor, int> FileSystem::root() const {
    Descriptor opened(::open(_rootBytes.constData(), lookOnly | O_DIRECTORY | O_CLOEXEC));
    if (!opened)
        return std::unexpected(errno);
    return opened;
}

/// The bytes of a valid path, without trailing slashes.
std::expected<QByteArray, int> FileSystem::hostBytes(const QString& path) const {
    if (!path.startsWith(u'/'))
        return std::unexpected(EINVAL);
    auto bytes = toHostBytes(path);
    if (!bytes)
        return std::unexpected(EINVAL);
    while (bytes->size() > 1 && bytes->endsWith('/'))
        bytes->chop(1);
    return *std::move(bytes);
}

std::expected<Descriptor, int> FileSystem::openBytes(const QByteArray& path, int flags) const {
    if (!_root.isEmpty()) {
        const auto directory = root();
        if (!directory)
            return std::unexpected(directory.error());
        return openInRoot(directory->get(), path, flags);
    }
    Descriptor opened(retrying([&] { return ::open(path.constData(), flags | O_CLOEXEC); }));
    if (!opened)
        return std::unexpected(errno);
    return opened;
}

std::expected<Descriptor, int> FileSystem::openPath(const QString& path, int flags) const {
    const auto bytes = hostBytes(path);
    if (!bytes)
        return std::unexpected(bytes.error());
    return openBytes(*bytes, flags);
}

/// The folder and name of the path's last component, which must not be "." or "..", unfollowed.
std::expected<Place, int> FileSystem::place(const QString& path) const {
    const auto bytes = hostBytes(path);
    if (!bytes)
        return std::unexpected(bytes.error());
    const qsizetype slash = bytes->lastIndexOf('/');
    const QByteArray name = bytes->sliced(slash + 1);
    if (name.isEmpty() || name == "." || name == "..")
        return std::unexpected(EINVAL);
    auto directory = openBytes(bytes->first(std::max<qsizetype>(slash, 1)), lookOnly | O_DIRECTORY);
    if (!directory)
        return std::unexpected(directory.error());
    return Place{*std::move(directory), name, {}};
}

std::expected<FileStatus, int> FileSystem::statusOf(const QString& path, bool followLink) const {
    const auto bytes = hostBytes(path);
    if (!bytes)
        return std::unexpected(bytes.error());
    if (_root.isEmpty())
        return statusAt(AT_FDCWD, bytes->constData(), followLink ? 0 : AT_SYMLINK_NOFOLLOW);
#ifdef O_PATH
    const auto entry = openBytes(*bytes, O_PATH | (followLink ? 0 : O_NOFOLLOW));
    if (!entry)
        return std::unexpected(entry.error());
    return statusAt(entry->get(), "", 0);
#else
    const auto directory = root();
    if (!directory)
        return std::unexpected(directory.error());
    const auto entry = locate(directory->get(), *bytes, followLink ? LastLink::follow : LastLink::keep);
    if (!entry)
        return std::unexpected(entry.error());
    return statusAt(entry->directory.get(), entry->name.constData(), AT_SYMLINK_NOFOLLOW);
#endif
}

std::expected<FileStatus, FileError> FileSystem::status(const QString& path) const {
    auto status = statusOf(path, true);
    if (!status)
        return std::unexpected(fileError(status.error(), path));
    return *status;
}

std::expected<FileStatus, FileError> FileSystem::linkStatus(const QString& path) const {
    auto status = statusOf(path, false);
    if (!status)
        return std::unexpected(fileError(status.error(), path));
    return *status;
}

bool FileSystem::exists(const QString& path) const { return statusOf(path, true).has_value(); }

bool FileSystem::isDirectory(const QString& path) const {
    const auto status = statusOf(path, true);
    return status && status->type == FileType::directory;
}

bool FileSystem::isRegularFile(const QString& path) const {
    const auto status = statusOf(path, true);
    return status && status->type == FileType::regular;
}

bool FileSystem::isExecutableFile(const QString& path) const {
    if (!isRegularFile(path))
        return false;
    const auto real = resolved(path);
    if (!real)
        return false;
    const auto entry = place(*real);
    return entry && ::faccessat(entry->directory.get(), entry->name.constData(), X_OK, AT_EACCESS) == 0;
}

std::expected<QString, FileError> FileSystem::resolved(const QString& path) const {
    const auto bytes = hostBytes(path);
    if (!bytes)
        return std::unexpected(fileError(bytes.error(), path));
    if (_root.isEmpty()) {
        const std::unique_ptr<char, void (*)(void*)> real(::realpath(bytes->constData(), nullptr),
                                                          std::free);
        if (!real)
            return std::unexpected(fileError(errno, path));
        return fromHostBytes(real.get());
    }
    const auto directory = root();
    if (!directory)
        return std::unexpected(fileError(directory.error(), path));
    auto entry = locate(directory->get(), *bytes, LastLink::follow);
    if (!entry)
        return std::unexpected(fileError(entry.error(), path));
    struct stat status {};
    if (::fstatat(entry->directory.get(), entry->name.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return std::unexpected(fileError(errno, path));
    if (entry->name != ".")
        entry->trail.append(entry->name);
    return fromHostBytes('/' + entry->trail.join('/'));
}

std::expected<QByteArray, FileError> FileSystem::linkTarget(const QString& path) const {
    const auto entry = place(path);
    if (!entry)
        return std::unexpected(fileError(entry.error(), path));
    auto target = readLink(entry->directory.get(), entry->name);
    if (!target)
        return std::unexpected(fileError(target.error(), path));
    return *std::move(target);
}

std::expected<QList<DirectoryEntry>, FileError> FileSystem::entries(const QString& path) const {
    const auto directory = openPath(path, readOnly | O_DIRECTORY);
    if (!directory)
        return std::unexpected(fileError(directory.error(), path));
    DirectoryReader reader;
    reader.begin(directory->get());
    QList<DirectoryEntry> entries;
    while (true) {
        const auto piece = reader.next();
        if (!piece)
            return std::unexpected(fileError(piece.error(), path));
        if (piece->empty())
            break;
        for (const DirectoryReader::Entry& entry : *piece)
            entries.append({entry.view().toByteArray(), entry.type});
    }
    std::sort(entries.begin(), entries.end(),
              [](const DirectoryEntry& a, const DirectoryEntry& b) { return a.name < b.name; });
    return entries;
}

std::expected<Descriptor, FileError> FileSystem::open(const QString& path) const {
    const auto before = status(path);
    if (!before)
        return std::unexpected(before.error());
    if (before->type != FileType::regular && before->type != FileType::directory)
        return std::unexpected(FileError{FileError::Code::notARegularFile, path});
    auto opened = openPath(path, readOnly);
    if (!opened)
        return std::unexpected(fileError(opened.error(), path));
    // Checked again, in case the file was replaced meanwhile; O_NONBLOCK kept a pipe from blocking.
    struct stat status {};
    if (::fstat(opened->get(), &status) != 0)
        return std::unexpected(fileError(errno, path));
    if (!S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode))
        return std::unexpected(FileError{FileError::Code::notARegularFile, path});
    return *std::move(opened);
}

std::expected<Descriptor, FileError> FileSystem::openFolder(const QString& path) const {
    const auto bytes = hostBytes(path);
    auto opened =
        bytes ? openBytes(*bytes, readOnly | O_DIRECTORY | O_NOFOLLOW) : std::unexpected(bytes.error());
    if (!opened)
        return std::unexpected(fileError(opened.error(), path));
    return *std::move(opened);
}

std::expected<QByteArray, FileError> FileSystem::read(const QString& path,
                                                      std::uint64_t maximumBytes) const {
    const auto file = open(path);
    if (!file)
        return std::unexpected(file.error());
    struct stat status {};
    if (::fstat(file->get(), &status) != 0)
        return std::unexpected(fileError(errno, path));
    if (S_ISDIR(status.st_mode))
        return std::unexpected(FileError{FileError::Code::isADirectory, path});
    const auto limit = static_cast<qsizetype>(
        std::min<std::uint64_t>(maximumBytes, std::numeric_limits<qsizetype>::max() / 2));
    if (status.st_size > limit)
        return std::unexpected(FileError{FileError::Code::tooLarge, path});
    // One byte more than the size, so that the end is seen without growing the buffer.
    QByteArray bytes(static_cast<qsizetype>(status.st_size) + 1, Qt::Uninitialized);
    qsizetype filled = 0;
    while (true) {
        const ssize_t size = retrying([&] {
            return ::read(file->get(), bytes.data() + filled,
                          static_cast<std::size_t>(bytes.size() - filled));
        });
        if (size < 0)
            return std::unexpected(fileError(errno, path));
        if (size == 0)
            break;
        filled += size;
        if (filled > limit)
            return std::unexpected(FileError{FileError::Code::tooLarge, path});
        // A short read at the announced size is the end. Files in /proc announce 0.
        if (filled == status.st_size)
            break;
        if (filled == bytes.size())
            bytes.resize(std::min(limit + 1, std::max<qsizetype>(2 * filled, 4096)));
    }
    bytes.truncate(filled);
    return bytes;
}

std::expected<void, FileError> FileSystem::writeAtomically(const QString& path,
                                                           const QByteArray& bytes) const {
    if (_refusal)
        return std::unexpected(*_refusal);
    const auto fail = [&](int error) { return std::unexpected(fileError(error, path)); };
    const auto entry = place(path);
    if (!entry)
        return fail(entry.error());
    // A new descriptor of the folder: an O_PATH one cannot be flushed.
    const Descriptor directory(
        ::openat(entry->directory.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!directory)
        return fail(errno);
    const auto done = replaceFileAt(directory.get(), entry->name, bytes);
    if (!done)
        return fail(done.error());
    return {};
}

std::expected<void, FileError> FileSystem::createDirectories(const QString& path) const {
    if (isDirectory(path))
        return {};
    if (_refusal)
        return std::unexpected(*_refusal);
    const auto all = hostBytes(path);
    if (!all)
        return std::unexpected(fileError(all.error(), path));
    for (qsizetype end = 0; end < path.size();) {
        end = path.indexOf(u'/', end + 1);
        if (end < 0)
            end = path.size();
        const QString step = path.first(end);
        const auto entry = place(step);
        const int made = entry ? ::mkdirat(entry->directory.get(), entry->name.constData(), 0777) : -1;
        const int error = entry ? errno : entry.error();
        if (made == 0) {
            flushFolder(*entry); // so that a file saved in it survives a loss of power
            continue;
        }
        const auto there = status(step);
        if (there && there->type == FileType::directory)
            continue;
        if (error != EEXIST)
            return std::unexpected(fileError(error, step));
        // A dangling link is in the way as much as a file is.
        const bool isKnown = there || there.error().code == FileError::Code::notFound;
        return std::unexpected(isKnown ? FileError{FileError::Code::notADirectory, step}
                                       : there.error());
    }
    return {};
}

std::expected<void, FileError> FileSystem::move(const QString& from, const QString& to) const {
    if (_refusal)
        return std::unexpected(*_refusal);
    const auto source = place(from);
    if (!source)
        return std::unexpected(fileError(source.error(), from));
    const auto target = place(to);
    if (!target)
        return std::unexpected(fileError(target.error(), to));
    const int error = renameWithoutReplacing(*source, *target);
    if (error == 0) {
        // The new name first: a loss of power in between leaves two rather than none.
        flushFolder(*target);
        flushFolder(*source);
        return {};
    }
    const bool isOfTarget = error == EEXIST || error == EXDEV || error == ENOSPC || error == EDQUOT;
    return std::unexpected(fileError(error, isOfTarget ? to : from));
}

std::expected<void, FileError> FileSystem::remove(const QString& path) const {
    if (_refusal)
        return std::unexpected(*_refusal);
    const auto entry = place(path);
    if (!entry)
        return std::unexpected(fileError(entry.error(), path));
    if (::unlinkat(entry->directory.get(), entry->name.constData(), 0) == 0) {
        flushFolder(*entry);
        return {};
    }
    const int error = errno;
    // For a directory, Linux gives EISDIR, POSIX EPERM.
    if (error == EISDIR || error == EPERM) {
        if (::unlinkat(entry->directory.get(), entry->name.constData(), AT_REMOVEDIR) == 0) {
            flushFolder(*entry);
            return {};
        }
        if (errno != ENOTDIR)
            return std::unexpected(fileError(errno, path));
    }
    return std::unexpected(fileError(error, path));
}

} // namespace tessellar
