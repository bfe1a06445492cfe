#include "helper/staging.h"

#include "helper/emptying.h"
#include "platform/rooted_path.h"
#include "platform/texts.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tessellar {
namespace {

constexpr int forFolder = O_RDONLY | O_DIRECTORY | O_NONBLOCK;
const QByteArray folderName = ".com.tessellar.app.removal-helper";

} // namespace

std::expected<Staging, QString> Staging::open(const ConfinedFiles& files, const NamedPlace& place) {
    auto around = files.folder(place.folders.value(0));
    if (!around)
        return std::unexpected(fileSentence(around.error()));
    if (::mkdirat(around->get(), folderName.constData(), 0700) != 0 && errno != EEXIST)
        return std::unexpected(fileSentence(errno));
    auto folder = openBelow(around->get(), folderName, forFolder, false);
    if (!folder)
        return std::unexpected(fileSentence(folder.error()));
    struct stat status {};
    if (::fstat(folder->get(), &status) != 0)
        return std::unexpected(fileSentence(errno));
    if (status.st_uid != ::geteuid() || (status.st_mode & 077) != 0)
        return std::unexpected(QString::fromLatin1(
            Texts::noop("Someone else has access to the administrator helper's folder.")));
    return Staging(*std::move(around), *std::move(folder));
}

QString Staging::path(const NamedPlace& place, const QByteArray& name) {
    return FileSystem::fromHostBytes('/' + place.folders.value(0) + '/' + folderName + '/' + name);
}

std::expected<void, Staging::Refusal> Staging::take(const HeldItem& item,
                                                    const QByteArray& name) const {
    if (const int error = renameExclusively(item.folder.get(), item.name, _folder.get(), name))
        return std::unexpected(Refusal{.sentence = fileSentence(error)});
    if (statusOf(name) == item.taken)
        return {};
    return std::unexpected(Refusal{.isKept = true,
                                   .sentence = QLatin1StringView(Texts::noop(
                                       "It was exchanged while it was moved. What stood in its place "
                                       "is kept for an administrator to look at."))});
}

int Staging::give(const QByteArray& name, int toFolder, const QByteArray& toName) const {
    return renameExclusively(_folder.get(), name, toFolder, toName);
}

std::expected<void, QString> Staging::destroy(const QByteArray& name, const ItemStatus& taken,
                                              std::stop_token stop) const {
    const bool isFolder = taken.identity.type == FileType::directory;
    if (isFolder) {
        const auto item = openBelow(_folder.get(), name, forFolder, false);
        const int error = item ? emptyFolder(item->get(), std::move(stop)) : item.error();
        if (error != 0)
            return std::unexpected(fileSentence(error));
    }
    if (::unlinkat(_folder.get(), name.constData(), isFolder ? AT_REMOVEDIR : 0) != 0)
        return std::unexpected(fileSentence(errno));
    return {};
}

void Staging::tidy() const { (void)::unlinkat(_around.get(), folderName.constData(), AT_REMOVEDIR); }

} // namespace tessellar
