#include "helper/confined_files.h"

#include "platform/mount_points.h"
#include "platform/rooted_path.h"
#include "platform/texts.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cstring>

namespace tessellar {
namespace {

constexpr int forFolder = O_RDONLY | O_DIRECTORY | O_NONBLOCK;
constexpr int forItem = O_RDONLY | O_NONBLOCK | O_NOCTTY;

const QString changed =
    QLatin1StringView(Texts::noop("It has changed since it was approved, and was left alone."));

std::unexpected<QString> failed(int error) { return std::unexpected(fileSentence(error)); }

FileType typeOf(mode_t mode) {
    return S_ISDIR(mode)   ? FileType::directory
           : S_ISREG(mode) ? FileType::regular
           : S_ISLNK(mode) ? FileType::symbolicLink
                           : FileType::other;
}

} // namespace

QString fileSentence(int error) {
    switch (error) {
    case EPERM:
        return QLatin1StringView(Texts::noop("Its folder belongs to someone else."));
    case ELOOP:
        return QLatin1StringView(Texts::noop("A link stands on the way to it."));
    case EXDEV:
        return QLatin1StringView(Texts::noop("It lies on another volume."));
    case ENOENT:
        return QLatin1StringView(Texts::noop("It is no longer there."));
    case EEXIST:
        return QLatin1StringView(Texts::noop("Something else stands in its place."));
    case ECANCELED:
        return QLatin1StringView(Texts::noop("The removal was stopped."));
    default:
        return QString::fromLocal8Bit(std::strerror(error));
    }
}

ItemStatus itemStatus(const struct stat& status) {
    return {.identity = {.device = static_cast<std::uint64_t>(status.st_dev),
                         .inode = static_cast<std::uint64_t>(status.st_ino),
                         .type = typeOf(status.st_mode)},
            .owner = status.st_uid,
            .mode = static_cast<std::uint32_t>(status.st_mode & 07777)};
}

std::expected<ItemStatus, int> itemStatusAt(int folder, const QByteArray& name) {
    struct stat status {};
    if (::fstatat(folder, name.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return std::unexpected(errno);
    return itemStatus(status);
}

ConfinedFiles::ConfinedFiles(const QByteArray& hostRoot)
    : _rootPath(hostRoot), _root(::open(hostRoot.constData(), forFolder | O_CLOEXEC)) {}

std::expected<Descriptor, int> ConfinedFiles::folder(const QByteArray& relativePath,
                                                     std::optional<std::uint32_t> owner) const {
    // On a Mac, "/Library" and "/Users" are on a different volume than the root.
    const qsizetype slash = relativePath.indexOf('/');
    const QByteArray first = slash < 0 ? relativePath : relativePath.first(slash);
    auto opened = openBelow(_root.get(), first, forFolder, true);
    if (opened && slash >= 0)
        opened = openBelow(opened->get(), relativePath.sliced(slash + 1), forFolder, false);
    struct stat status {};
    if (opened && owner && ::fstat(opened->get(), &status) != 0)
        return std::unexpected(errno);
    if (opened && owner && status.st_uid != *owner)
        return std::unexpected(EPERM);
    return opened;
}

std::expected<HeldItem, QString> ConfinedFiles::hold(const NamedPlace& place,
                                                     const FileIdentity& approved) const {
    auto around = folder(place.folderPath());
    if (!around)
        return failed(around.error());
    struct stat status {};
    if (::fstatat(around->get(), place.name.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return failed(errno);
    const bool isPlain = S_ISDIR(status.st_mode) || S_ISREG(status.st_mode);
    if (!isPlain || itemStatus(status).identity != approved)
        return std::unexpected(changed);
    auto item = openBelow(around->get(), place.name, forItem, false);
    if (!item)
        return failed(item.error());
    struct stat held {};
    if (::fstat(item->get(), &held) != 0)
        return failed(errno);
    if (itemStatus(held).identity != approved)
        return std::unexpected(changed);
    if (S_ISDIR(held.st_mode) &&
        holdsMountPoint(_rootPath + '/' + place.folderPath() + '/' + place.name))
        return std::unexpected(QString::fromLatin1(Texts::noop("A volume is mounted in it.")));
    return HeldItem{*std::move(around), *std::move(item), place.name, itemStatus(held)};
}

} // namespace tessellar
