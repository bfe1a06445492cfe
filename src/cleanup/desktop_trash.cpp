#include "cleanup/desktop_trash.h"

#include "platform/texts.h"
#include "privileged/numbered_name.h"

namespace tessellar {
namespace {

constexpr int mostNames = 10'000;

const QString noteSuffix = QStringLiteral(".trashinfo");

/// Short enough that the info file may have the same name plus its suffix.
QString numbered(const QString& name, int number) {
    return FileSystem::fromHostBytes(numberedName(FileSystem::toHostBytes(name).value_or(QByteArray()),
                                                  number, longestName - noteSuffix.size()));
}

QString dataFolder(const Machine& machine) {
    const auto named = machine.environment.find("XDG_DATA_HOME");
    if (named != machine.environment.end())
        if (const auto inside = machine.files.pathFromHost(named->second))
            return *inside;
    return FileSystem::joined(machine.places.home, QStringLiteral(".local/share"));
}

} // namespace

DesktopTrash::DesktopTrash(const Machine& machine)
    : _files(machine.files)
    , _clock(machine.clock)
    , _folder(FileSystem::joined(dataFolder(machine), QStringLiteral("Trash"))) {}

QList<TrashResult> DesktopTrash::moveToTrash(const QStringList& paths, std::stop_token stop) {
    QList<TrashResult> results;
    for (const QString& path : paths)
        results.append(stop.stop_requested()
                           ? TrashResult{.failure = Texts::tr("The removal was stopped.")}
                           : moveOne(path));
    return results;
}

TrashResult DesktopTrash::moveOne(const QString& path) {
    const auto failed = [](const FileError& error) { return TrashResult{.failure = message(error)}; };
    const auto source = FileSystem::toHostBytes(path);
    if (!source)
        return failed({FileError::Code::badPath, path});
    for (const QString& part : {QStringLiteral("files"), QStringLiteral("info")})
        if (const auto made = _files.createDirectories(FileSystem::joined(_folder, part)); !made)
            return failed(made.error());
    QString when = _clock.now().toIso8601();
    when.chop(1); // without the zone, as the format requires
    const QByteArray info = "[Trash Info]\nPath=" + _files.hostPath(path).toPercentEncoding("/") +
                            "\nDeletionDate=" + when.toLatin1() + '\n';
    // The info file first: renaming it without replacing claims a name that is free.
    const QString note = _folder + QStringLiteral("/info/.tessellar-note");
    if (const auto written = _files.writeAtomically(note, info); !written)
        return failed(written.error());
    const QString name = FileSystem::fileName(path);
    for (int number = 1; number <= mostNames; ++number) {
        const QString free = numbered(name, number);
        const QString trashed = _folder + QStringLiteral("/files/") + free;
        const QString noted = _folder + QStringLiteral("/info/") + free + noteSuffix;
        auto moved = _files.move(note, noted);
        if (moved) {
            moved = _files.move(path, trashed);
            if (moved)
                return {.trashedPath = trashed};
            (void)_files.move(noted, note);
        }
        if (moved.error().code != FileError::Code::alreadyExists) {
            (void)_files.remove(note);
            return failed(moved.error());
        }
    }
    (void)_files.remove(note);
    return failed({FileError::Code::alreadyExists, path});
}

std::expected<void, FileError> restoreFromTrash(const FileSystem& files, const QString& trashedPath,
                                                const QString& originalPath,
                                                const std::optional<FileIdentity>& identity) {
    const auto status = files.linkStatus(trashedPath);
    if (!status)
        return std::unexpected(status.error());
    if (identity && !isSameOnItsVolume(identityOf(*status), *identity))
        return std::unexpected(FileError{FileError::Code::notFound, trashedPath});
    if (const auto made = files.createDirectories(FileSystem::parent(originalPath)); !made)
        return made;
    if (const auto moved = files.move(trashedPath, originalPath); !moved)
        return moved;
    // A desktop's Trash has an info file beside it.
    const QString folder = FileSystem::parent(trashedPath);
    if (folder.endsWith(u"/Trash/files"))
        (void)files.remove(FileSystem::parent(folder) + QStringLiteral("/info/") +
                           FileSystem::fileName(trashedPath) + noteSuffix);
    return {};
}

} // namespace tessellar
