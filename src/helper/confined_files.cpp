#include "helper/confined_files.h"

#include "platform/directory_reader.h"
#include "platform/mount_points.h"
#include "platform/rooted_path.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cstring>
#include <vector>

namespace tessellar {
namespace {

constexpr int forFolder = O_RDONLY | O_DIRECTORY | O_NONBLOCK;
constexpr int forItem = O_RDONLY | O_NONBLOCK | O_NOCTTY;
constexpr std::size_t deepest = 200'000;

const QString changed = QStringLiteral("It has changed since it was approved, and was left alone.");

QString words(int error) {
    switch (error) {
    case ELOOP:
        return QStringLiteral("A link stands on the way to it.");
    case EXDEV:
        return QStringLiteral("It lies on another volume.");
    case ENOENT:
        return QStringLiteral("It is no longer there.");
    case EEXIST:
        return QStringLiteral("Something else stands in its place.");
    case ECANCELED:
        return QStringLiteral("The removal was stopped.");
    default:
        return QString::fromLocal8Bit(std::strerror(error));
    }
}

std::unexpected<QString> failed(int error) { return std::unexpected(words(error)); }

FileType typeOf(mode_t mode) {
    return S_ISDIR(mode)   ? FileType::directory
           : S_ISREG(mode) ? FileType::regular
           : S_ISLNK(mode) ? FileType::symbolicLink
                           : FileType::other;
}

TakenItem takenOf(const struct stat& status) {
    return {.identity = {.device = static_cast<std::uint64_t>(status.st_dev),
                         .inode = static_cast<std::uint64_t>(status.st_ino),
                         .type = typeOf(status.st_mode)},
            .owner = status.st_uid,
            .mode = static_cast<std::uint32_t>(status.st_mode & 07777)};
}

bool isAt(int folder, const QByteArray& name, const FileIdentity& identity) {
    struct stat status {};
    return ::fstatat(folder, name.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           takenOf(status).identity == identity;
}

/// The inside of a folder, with one descriptor however deep it is: the way back up is "..", believed
/// only when it is the very folder that was left.
class Emptying {
public:
    Emptying(int folder, std::stop_token stop)
        : _stop(std::move(stop)), _current(::openat(folder, ".", forFolder | O_CLOEXEC)) {}

    /// 0 or an errno.
    int run() {
        if (!_current)
            return errno;
        while (true) {
            if (_stop.stop_requested())
                return ECANCELED;
            const auto subfolder = emptyOfFiles();
            if (!subfolder)
                return subfolder.error();
            const int error = subfolder->isEmpty() ? leave() : enter(*subfolder);
            if (error != 0 || _isDone)
                return error;
        }
    }

private:
    struct Left {
        FileIdentity folder;
        QByteArray child;
    };

    /// Removes all but folders; gives the first of those, or nothing.
    std::expected<QByteArray, int> emptyOfFiles() {
        if (::lseek(_current.get(), 0, SEEK_SET) < 0)
            return std::unexpected(errno);
        _reader.begin(_current.get());
        while (true) {
            const auto entries = _reader.next();
            if (!entries)
                return std::unexpected(entries.error());
            if (entries->empty())
                return QByteArray();
            for (const DirectoryReader::Entry& entry : *entries) {
                if (entry.type == FileType::directory)
                    return entry.view().toByteArray();
                if (::unlinkat(_current.get(), entry.name, 0) != 0 && errno != ENOENT)
                    return std::unexpected(errno);
            }
        }
    }

    int enter(const QByteArray& name) {
        auto next = openBelow(_current.get(), name, forFolder, false);
        struct stat status {};
        if (!next)
            return next.error();
        if (::fstat(_current.get(), &status) != 0)
            return errno;
        if (_left.size() >= deepest)
            return ELOOP;
        _left.push_back({takenOf(status).identity, name});
        _current = *std::move(next);
        return 0;
    }

    int leave() {
        if (_left.empty()) {
            _isDone = true;
            return 0;
        }
        Descriptor above(::openat(_current.get(), "..", forFolder | O_NOFOLLOW | O_CLOEXEC));
        struct stat status {};
        if (!above || ::fstat(above.get(), &status) != 0)
            return errno;
        if (takenOf(status).identity != _left.back().folder)
            return ELOOP;
        if (::unlinkat(above.get(), _left.back().child.constData(), AT_REMOVEDIR) != 0 &&
            errno != ENOENT)
            return errno;
        _left.pop_back();
        _current = std::move(above);
        return 0;
    }

    const std::stop_token _stop;
    Descriptor _current;
    DirectoryReader _reader;
    std::vector<Left> _left;
    bool _isDone = false;
};

} // namespace

ConfinedFiles::ConfinedFiles(const QByteArray& hostRoot)
    : _rootPath(hostRoot), _root(::open(hostRoot.constData(), forFolder | O_CLOEXEC)) {}

std::expected<Descriptor, QString> ConfinedFiles::folder(const QByteArray& relativePath,
                                                         std::optional<std::uint32_t> owner) const {
    // On a Mac "/Library" and "/Users" lie on another volume than the root does.
    const qsizetype slash = relativePath.indexOf('/');
    const QByteArray first = slash < 0 ? relativePath : relativePath.first(slash);
    auto opened = openBelow(_root.get(), first, forFolder, true);
    if (opened && slash >= 0)
        opened = openBelow(opened->get(), relativePath.sliced(slash + 1), forFolder, false);
    if (!opened)
        return failed(opened.error());
    struct stat status {};
    if (::fstat(opened->get(), &status) != 0)
        return failed(errno);
    if (owner && status.st_uid != *owner)
        return std::unexpected(QStringLiteral("Its folder belongs to someone else."));
    return *std::move(opened);
}

std::expected<HeldItem, QString> ConfinedFiles::hold(const NamedPlace& place,
                                                     const FileIdentity& approved) const {
    auto around = folder(place.folderPath());
    if (!around)
        return std::unexpected(around.error());
    struct stat status {};
    if (::fstatat(around->get(), place.name.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return failed(errno);
    const bool isPlain = S_ISDIR(status.st_mode) || S_ISREG(status.st_mode);
    if (!isPlain || takenOf(status).identity != approved)
        return std::unexpected(changed);
    auto item = openBelow(around->get(), place.name, forItem, false);
    if (!item)
        return failed(item.error());
    struct stat held {};
    if (::fstat(item->get(), &held) != 0)
        return failed(errno);
    if (takenOf(held).identity != approved)
        return std::unexpected(changed);
    if (S_ISDIR(held.st_mode) &&
        holdsMountPoint(_rootPath + '/' + place.folderPath() + '/' + place.name))
        return std::unexpected(QStringLiteral("A volume is mounted in it."));
    return HeldItem{*std::move(around), *std::move(item), place.name, takenOf(held)};
}

std::expected<void, ConfinedFiles::MoveError> ConfinedFiles::move(const HeldItem& item, int toFolder,
                                                                  const QByteArray& toName) {
    if (const int error = renameExclusively(item.folder.get(), item.name, toFolder, toName))
        return std::unexpected(MoveError{error == EEXIST, words(error)});
    if (isAt(toFolder, toName, item.taken.identity))
        return {};
    // Someone exchanged it in the last moment. What was taken instead goes back.
    if (renameExclusively(toFolder, toName, item.folder.get(), item.name) != 0)
        return std::unexpected(MoveError{
            false, QStringLiteral("It was exchanged while it was moved, and lies in the Trash.")});
    return std::unexpected(MoveError{false, changed});
}

std::expected<void, QString> ConfinedFiles::remove(const HeldItem& item, std::stop_token stop) {
    const bool isFolder = item.taken.identity.type == FileType::directory;
    if (isFolder)
        if (const int error = Emptying(item.item.get(), std::move(stop)).run())
            return failed(error);
    if (!isAt(item.folder.get(), item.name, item.taken.identity))
        return std::unexpected(changed);
    if (::unlinkat(item.folder.get(), item.name.constData(), isFolder ? AT_REMOVEDIR : 0) != 0)
        return failed(errno);
    return {};
}

} // namespace tessellar
