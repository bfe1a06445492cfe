#include "model/saved_arrangements.h"

#include "platform/texts.h"

#include <algorithm>

namespace tessellar {

Arrangement makeArrangement(const QUuid& id, const QString& name, Instant createdAt,
                            LayoutDocument document, const std::optional<ArrangementLayout>& layout) {
    const ItemCounts counts = countItems(document.pages);
    document.version = LayoutDocument::currentVersion;
    return {.id = id,
            .name = name,
            .createdAt = createdAt,
            .document = std::move(document),
            .pageCount = static_cast<int>(counts.pages),
            .appCount = static_cast<int>(counts.applications),
            .folderCount = static_cast<int>(counts.folders),
            .layout = layout};
}

ArrangementSummary summaryOf(const Arrangement& arrangement) {
    return {arrangement.id,        arrangement.name,     arrangement.createdAt,
            arrangement.pageCount, arrangement.appCount, arrangement.folderCount};
}

SavedArrangements::SavedArrangements(const Machine& machine, const QString& applicationFolder,
                                     LauncherWindowMode mode)
    : _files(&machine.files)
    , _log(&machine.log)
    , _locale(machine.locale)
    , _folder(FileSystem::joined(applicationFolder, mode == LauncherWindowMode::fullScreen
                                                        ? QStringLiteral("Arrangements")
                                                        : QStringLiteral("Arrangements-Windowed"))) {}

QString SavedArrangements::path(const QUuid& id) const {
    return FileSystem::joined(_folder, toText(id) + QLatin1StringView(".json"));
}

static ListedArrangement listed(const Arrangement& arrangement) {
    ListedArrangement result{.summary = summaryOf(arrangement)};
    const LayoutDocument& document = arrangement.document;
    for (const LaunchpadItem& item : document.pages.value(0))
        if (const AppEntry* app = item.app(); !app || !document.hiddenKeys.contains(appKey(*app)))
            result.firstPage.append(item);
    if (arrangement.layout) {
        result.rows = arrangement.layout->rows;
        result.columns = arrangement.layout->columns;
    }
    return result;
}

QList<ListedArrangement> SavedArrangements::list() const {
    QList<ListedArrangement> result;
    const auto entries = _files->entries(_folder);
    if (!entries) {
        if (entries.error().code != FileError::Code::notFound)
            _log->warning(message(entries.error()));
        return result;
    }
    for (const DirectoryEntry& entry : *entries) {
        const QString path = FileSystem::joined(_folder, QString::fromUtf8(entry.name));
        if (FileSystem::extension(path) != u"json")
            continue;
        // Arrangements are restored and deleted by file name, whatever identifier the file contains.
        const auto id = json::decode<QUuid>(FileSystem::fileName(path).chopped(5));
        if (!id || path != this->path(*id) || !_files->isRegularFile(path))
            continue;
        const auto bytes = _files->read(path, maximumLayoutBytes);
        const auto arrangement =
            bytes ? json::decodeDocument<Arrangement>(*bytes) : json::fail(message(bytes.error()));
        if (!arrangement)
            _log->warning(QStringLiteral("The saved arrangement %1 cannot be read: %2")
                              .arg(path, json::message(arrangement.error())));
        result.append(arrangement ? listed(*arrangement) : ListedArrangement{.isReadable = false});
        result.last().summary.id = *id;
    }
    std::ranges::stable_sort(result, [&](const ListedArrangement& a, const ListedArrangement& b) {
        if (a.isReadable != b.isReadable)
            return a.isReadable;
        if (a.summary.createdAt != b.summary.createdAt)
            return a.summary.createdAt > b.summary.createdAt;
        return _locale.compareNames(a.summary.name, b.summary.name) < 0;
    });
    return result;
}

SavedArrangements::Read SavedArrangements::read(const QUuid& id) const {
    const auto found = bytes(id);
    if (!found)
        return std::unexpected(found.error());
    auto read = decode(*found, path(id));
    if (read)
        read->value.id = id;
    return read;
}

SavedArrangements::Read SavedArrangements::decode(const QByteArray& bytes, const QString& path) const {
    using Code = LayoutStore::StorageError::Code;
    const json::Losses losses;
    auto arrangement = json::decodeDocument<Arrangement>(bytes);
    if (!arrangement) {
        _log->warning(json::message(arrangement.error()));
        return std::unexpected(FileError{FileError::Code::damaged, path});
    }
    LayoutDocument& document = arrangement->document;
    if (!LayoutDocument::isSupported(document.version))
        return std::unexpected(
            LayoutStore::StorageError{Code::unsupportedWorkingDocumentVersion, document.version});
    if (folderDepth(document.pages) > maximumFolderDepth)
        return std::unexpected(FileError{FileError::Code::tooLarge, path});
    document.version = LayoutDocument::currentVersion;
    return json::MaybeLossy<Arrangement>{*std::move(arrangement), losses.count() > 0};
}

std::expected<QByteArray, FileError> SavedArrangements::encoded(const Arrangement& arrangement) const {
    if (folderDepth(arrangement.document.pages) > maximumFolderDepth)
        return std::unexpected(FileError{FileError::Code::tooLarge, path(arrangement.id)});
    return json::write(json::encode(arrangement));
}

std::expected<QByteArray, FileError> SavedArrangements::bytes(const QUuid& id) const {
    return _files->read(path(id), maximumLayoutBytes);
}

std::expected<void, FileError> SavedArrangements::writeBytes(const QUuid& id,
                                                             const QByteArray& bytes) const {
    return StoredFile(*_files, path(id), maximumLayoutBytes).write(bytes);
}

} // namespace tessellar
