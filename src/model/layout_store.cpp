#include "model/layout_store.h"

#include "model/json_losses.h"
#include "model/overwrite_guard.h"
#include "model/saved_arrangements.h"
#include "platform/texts.h"

#include <algorithm>

namespace tessellar {

using Code = LayoutStore::StorageError::Code;

QString message(const LayoutStore::StorageError& error) {
    if (error.code == Code::layoutNotReady)
        return Texts::tr("The launcher layout is still loading. Try again in a moment.");
    // An unknown version deliberately reads like damage: either way the file must be reset.
    return Texts::tr(
        "The current layout file could not be read. Reset the layout before saving changes.");
}

QString message(const LayoutStore::Error& error) {
    return std::visit([](const auto& e) { return message(e); }, error);
}

static constexpr std::array modes{LauncherWindowMode::fullScreen, LauncherWindowMode::windowed};

/// Documents are always written in the current version.
static LayoutDocument current(LayoutDocument document) {
    document.version = LayoutDocument::currentVersion;
    return document;
}

QString LayoutStore::defaultDirectory(const Places& places, const std::optional<QString>& identifier) {
    return FileSystem::joined(places.applicationSupport,
                              identifier.value_or(QStringLiteral("com.quillane.app")));
}

QString LayoutStore::workingPath(const QString& directory, LauncherWindowMode mode) {
    return FileSystem::joined(directory, mode == LauncherWindowMode::fullScreen
                                             ? QStringLiteral("layout.json")
                                             : QStringLiteral("layout-windowed.json"));
}

LayoutStore::LayoutStore(const Machine& machine, QString directory)
    : _machine(machine)
    , _directory(std::move(directory))
    , _working{{{machine, _directory, modes[0]}, {machine, _directory, modes[1]}}} {
    (void)_machine.files.createDirectories(_directory);
}

/// The contents of a working file, decoded on the worker because that takes longer than reading.
struct LayoutStore::Read {
    std::expected<std::optional<QByteArray>, FileError> bytes;
    std::expected<Document, Failed> document;
    bool isLossy = false;
};

LayoutStore::Read LayoutStore::read(BackgroundFile& file) {
    Read read{.bytes = file.read(), .document = {}};
    const auto fail = [&](const StorageError& error, const QString& detail) {
        read.document = std::unexpected(Failed{error, detail, !read.bytes});
    };
    if (!read.bytes) {
        fail({Code::workingDocumentUnreadable}, message(read.bytes.error()));
    } else if (*read.bytes) {
        const json::Losses losses;
        auto document = json::decodeDocument<Document>(**read.bytes);
        if (!document) {
            fail({Code::workingDocumentUnreadable}, json::message(document.error()));
        } else if (!Document::isSupported(document->version)) {
            fail({Code::unsupportedWorkingDocumentVersion, document->version},
                 Texts::tr("version %1 is not supported").arg(document->version));
        } else if (folderDepth(document->pages) > maximumFolderDepth) {
            fail({Code::workingDocumentUnreadable},
                 Texts::tr("folders are nested more than %1 deep").arg(maximumFolderDepth));
        } else {
            read.document = current(*std::move(document));
            read.isLossy = losses.count() > 0;
        }
    }
    return read;
}

LayoutStore::LoadResult LayoutStore::load(LauncherWindowMode mode) {
    return accept(mode, read(*working(mode).file));
}

Task LayoutStore::loadInBackground(LauncherWindowMode mode, std::function<void(LoadResult)> done) {
    return _machine.workers.run(
        [file = working(mode).file](std::stop_token) { return read(*file); },
        [this, mode, wasBlocked = isWriteBlocked(mode), done = std::move(done)](Read read) {
            const bool isReset = wasBlocked && !isWriteBlocked(mode);
            done(isReset ? Failed{StorageError{Code::workingDocumentUnreadable}, {}}
                         : accept(mode, std::move(read)));
        });
}

LayoutStore::LoadResult LayoutStore::accept(LauncherWindowMode mode, Read read) {
    Working& file = working(mode);
    const auto fail = [&](Failed failed) -> LoadResult {
        file.pendingSave.cancel();
        file.unsaved.reset();
        file.isBlocked = true;
        _machine.log.warning(QStringLiteral("The layout of the mode %1 failed to load: %2")
                                 .arg(json::rawValue(mode), failed.detail));
        return failed;
    };

    if (read.bytes)
        file.guard->wasRead(read.bytes->value_or(QByteArray()));
    if (!read.document)
        return fail(read.document.error());
    file.isBlocked = false;
    if (!*read.bytes) {
        _machine.log.info(
            QStringLiteral("The layout of the mode %1 is missing.").arg(json::rawValue(mode)));
        return Missing();
    }
    file.lossyCopy.reset();
    if (read.isLossy) {
        // What was dropped exists only in the file, which the next save overwrites.
        const QString copy =
            FileSystem::joined(FileSystem::joined(_directory, QStringLiteral("Backups")),
                               stampedName(QStringLiteral("unreadable-layout")));
        auto kept = _machine.files.createDirectories(FileSystem::parent(copy));
        if (kept)
            kept = _machine.files.writeAtomically(copy, **read.bytes);
        if (!kept)
            return fail({StorageError{Code::workingDocumentUnreadable}, message(kept.error()), true});
        file.lossyCopy = copy;
    }
    return *std::move(read.document);
}

/// Thread-safe. Takes some 60 ms for 5,000 tiles.
template <typename Kept>
static std::expected<QByteArray, FileError> encoded(const QString& path, const Kept& kept,
                                                    const LayoutDocument& document) {
    if (folderDepth(document.pages) > maximumFolderDepth)
        return std::unexpected(FileError{FileError::Code::tooLarge, path});
    return json::write(json::encode(kept));
}

// ---- the working layouts

LayoutStore::Working::Working(const Machine& machine, const QString& directory, LauncherWindowMode mode)
    : file(std::make_shared<BackgroundFile>(
          machine.workers, StoredFile(machine.files, workingPath(directory, mode), maximumLayoutBytes)))
    , guard(std::make_shared<OverwriteGuard>(machine.files, workingPath(directory, mode),
                                             LayoutBackups(machine.files, directory))) {}

std::optional<BackgroundFile::Result> LayoutStore::Working::outcome() const {
    if (!unsaved)
        return BackgroundFile::Result();
    return unsaved->ticket ? file->result(*unsaved->ticket) : std::nullopt;
}

void LayoutStore::setUnsaved(LauncherWindowMode mode, const Document& document, bool isEdit) {
    working(mode).unsaved = Unsaved{document, isEdit, {}};
    ++working(mode).revision;
}

void LayoutStore::scheduleSave(LauncherWindowMode mode, const Document& document) {
    Working& file = working(mode);
    if (file.isBlocked)
        return;
    setUnsaved(mode, document, true);
    file.pendingSave = _machine.scheduler.after(saveDelay, [this, mode] { handOver(mode); });
}

BackgroundFile::Encode LayoutStore::encoding(LauncherWindowMode mode, const Document& document) {
    Working& file = working(mode);
    return [path = file.file->path(), document = current(document), guard = file.guard,
            now = _machine.clock.now(),
            precondition = _precondition ? _precondition(mode)
                                         : nullptr]() -> std::expected<QByteArray, FileError> {
        if (precondition)
            if (const auto met = precondition(); !met)
                return std::unexpected(met.error());
        auto bytes = encoded(path, document, document);
        if (bytes)
            if (const auto guarded = guard->beforeWriting(*bytes, now); !guarded)
                bytes = std::unexpected(guarded.error());
        return bytes;
    };
}

void LayoutStore::tellForeignVersion(LauncherWindowMode mode) {
    if (const auto kept = working(mode).guard->takeKept())
        foreignVersionKept.notify(mode, *kept);
}

/// Starts saving what is unsaved, unless that is already under way or done, or has to wait.
void LayoutStore::handOver(LauncherWindowMode mode) {
    Working& file = working(mode);
    file.pendingSave.cancel();
    file.isDue = file.part.has_value();
    if (file.isDue)
        return;
    if (!file.unsaved || (file.unsaved->ticket && (!file.outcome() || file.isSaved())))
        return;
    file.handedOver = file.file->write(encoding(mode, file.unsaved->document));
    file.unsaved->ticket = file.handedOver;
    file.file->whenWritten([this, mode, revision = file.revision,
                            ticket = file.handedOver](const BackgroundFile::Result& written) {
        Working& saved = working(mode);
        if (!written) {
            _machine.log.warning(message(written.error()));
            if (ticket == saved.handedOver)
                saveEnded.notify(mode, revision, written);
            return;
        }
        if (saved.isSaved())
            saved.unsaved.reset();
        tellForeignVersion(mode);
        saveEnded.notify(mode, revision, written);
    });
}

void LayoutStore::saveInBackground(LauncherWindowMode mode, const Document& document,
                                   BackgroundFile::Done done) {
    Working& file = working(mode);
    if (file.isBlocked)
        return;
    setUnsaved(mode, document, false);
    handOver(mode);
    file.file->whenWritten(std::move(done));
}

LayoutStore::Part LayoutStore::beginPart(LauncherWindowMode mode, const Document& document) {
    handOver(mode);
    Working& file = working(mode);
    file.part = ++file.revision;
    // Called once: shared, because a std::function is copied.
    const auto encode = std::make_shared<BackgroundFile::Encode>(encoding(mode, document));
    return {.earlier = file.unsaved ? file.file->written() : [] { return BackgroundFile::Result(); },
            .write = [encode, write = file.file->writer()]() -> BackgroundFile::Result {
                const auto bytes = (*encode)();
                return bytes ? write(*bytes) : std::unexpected(bytes.error());
            }};
}

void LayoutStore::endParts(const std::map<LauncherWindowMode, Document>& parts, bool areWritten) {
    std::map<LauncherWindowMode, Revision> ended;
    for (const auto& [mode, document] : parts) {
        Working& file = working(mode);
        const Revision revision = *std::exchange(file.part, {});
        const bool isLatest = file.revision == revision;
        if (areWritten && isLatest)
            file.unsaved.reset();
        else if (!areWritten && !isLatest)
            setUnsaved(mode, document, true);
        if (file.isDue)
            handOver(mode);
        ended[mode] = revision;
    }
    // Last: whoever hears of it may begin the next job.
    for (const auto& [mode, revision] : ended) {
        tellForeignVersion(mode);
        if (areWritten)
            saveEnded.notify(mode, revision, BackgroundFile::Result());
    }
}

std::expected<void, LayoutStore::Error> LayoutStore::saveNow(LauncherWindowMode mode,
                                                             const Document& document, bool isEdit) {
    Working& file = working(mode);
    if (file.isBlocked)
        return std::unexpected(StorageError{Code::workingDocumentUnreadable});
    setUnsaved(mode, document, isEdit);
    handOver(mode);
    if (const auto written = file.file->wait(); !written)
        return std::unexpected(written.error());
    return {};
}

std::expected<void, LayoutStore::Error> LayoutStore::flush() {
    std::ranges::for_each(modes, [this](LauncherWindowMode mode) { handOver(mode); });
    std::expected<void, Error> result;
    for (const Working& file : _working) {
        (void)file.file->wait();
        if (const auto outcome = file.outcome(); result && outcome && !*outcome)
            result = std::unexpected(outcome->error());
    }
    return result;
}

bool LayoutStore::hasUnsavedEdits() const {
    return std::ranges::any_of(_working, [](const Working& file) {
        return file.unsaved && file.unsaved->isEdit && !file.isSaved();
    });
}

std::expected<void, FileError> LayoutStore::reset(LauncherWindowMode mode) {
    Working& file = working(mode);
    file.pendingSave.cancel();
    file.unsaved.reset();
    (void)file.file->wait();
    // An unreadable file may hold years of work: it is moved away, not deleted.
    const QString backups = FileSystem::joined(_directory, QStringLiteral("Backups"));
    auto moved = _machine.files.createDirectories(backups);
    if (moved)
        moved = _machine.files.move(
            file.file->path(),
            FileSystem::joined(backups, stampedName(QStringLiteral("unreadable-layout"))));
    if (!moved && moved.error().code != FileError::Code::notFound)
        return moved;
    file.isBlocked = false;
    file.file->forget();
    return {};
}

QString LayoutStore::stampedName(const QString& prefix) {
    return StoredFile::stampedName(prefix, _machine.clock, _machine.uuids.next());
}

LayoutStore::Backup LayoutStore::backup(const QString& reason,
                                        const std::optional<QString>& sourceDatabasePath,
                                        const Document& document) {
    const QString path = FileSystem::joined(FileSystem::joined(_directory, QStringLiteral("Backups")),
                                            stampedName(QStringLiteral("layout")));
    return {.path = path,
            .write = [path, &files = _machine.files,
                      kept = BackupDocument{_machine.clock.now(), reason, sourceDatabasePath,
                                            current(document)}]() -> BackgroundFile::Result {
                const auto bytes = encoded(path, kept, kept.document);
                return bytes ? StoredFile(files, path, maximumLayoutBytes).write(*bytes)
                             : std::unexpected(bytes.error());
            }};
}

SavedArrangements LayoutStore::arrangements(LauncherWindowMode mode) const {
    return {_machine, _directory, mode};
}

} // namespace tessellar
