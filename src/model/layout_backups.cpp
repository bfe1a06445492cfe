#include "model/layout_backups.h"

#include <QCryptographicHash>

#include <algorithm>

namespace tessellar {

static const QString prefix = QStringLiteral("layout-");
static const QString suffix = QStringLiteral(".json");

/// Parses the date at the start of a backup's name: "2026-11-14T21-05-40Z".
static std::optional<Instant> dateOf(const QString& name) {
    static constexpr qsizetype size = 20;
    static constexpr qsizetype hours = 11;
    if (name.size() <= size)
        return std::nullopt;
    QString stamp = name.first(size);
    return Instant::fromIso8601(
        stamp.replace(hours, size - hours, stamp.sliced(hours).replace(u'-', u':')));
}

LayoutBackups::LayoutBackups(const FileSystem& files, const QString& applicationFolder)
    : _files(files), _folder(FileSystem::joined(applicationFolder, QStringLiteral("Backups"))) {}

QString LayoutBackups::path(const QString& name) const {
    return FileSystem::joined(_folder, prefix + name + suffix);
}

/// Newest first, by the dates in the names.
QStringList LayoutBackups::names() const {
    QStringList result;
    for (const DirectoryEntry& entry : _files.entries(_folder).value_or(QList<DirectoryEntry>())) {
        const QString file = FileSystem::fromHostBytes(entry.name);
        if (entry.type != FileType::regular || !file.startsWith(prefix) || !file.endsWith(suffix))
            continue;
        if (const QString name = file.sliced(prefix.size()).chopped(suffix.size()); dateOf(name))
            result.append(name);
    }
    std::ranges::sort(result, std::ranges::greater());
    return result;
}

QList<BackupSummary> LayoutBackups::list() const {
    QList<BackupSummary> result;
    for (const QString& name : names()) {
        const auto backup = read(name);
        if (!backup)
            continue;
        const ItemCounts counts = countItems(backup->value.document.pages);
        result.append({name, backup->value.createdAt, backup->value.reason,
                       static_cast<int>(counts.pages), static_cast<int>(counts.applications),
                       static_cast<int>(counts.folders)});
    }
    return result;
}

std::expected<json::MaybeLossy<BackupDocument>, FileError>
LayoutBackups::read(const QString& name) const {
    if (name.contains(u'/') || !dateOf(name))
        return std::unexpected(FileError{FileError::Code::notFound, name.left(100)});
    const auto bytes = _files.read(path(name), maximumLayoutBytes);
    if (!bytes)
        return std::unexpected(bytes.error());
    const json::Losses losses;
    auto backup = json::decodeDocument<BackupDocument>(*bytes);
    if (!backup || !LayoutDocument::isSupported(backup->document.version) ||
        folderDepth(backup->document.pages) > maximumFolderDepth)
        return std::unexpected(FileError{FileError::Code::damaged, path(name)});
    backup->document.version = LayoutDocument::currentVersion;
    return json::MaybeLossy<BackupDocument>{*std::move(backup), losses.count() > 0};
}

std::expected<QString, FileError> LayoutBackups::keep(const QByteArray& bytes, const QString& reason,
                                                      Instant now) const {
    const json::Losses losses;
    const auto document = json::decodeDocument<LayoutDocument>(bytes);
    const bool isLayout = document && losses.count() == 0 &&
                          LayoutDocument::isSupported(document->version) &&
                          folderDepth(document->pages) <= maximumFolderDepth;
    const QByteArray tag =
        QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex().first(8).toUpper();
    const QString file =
        QStringLiteral("%1%2%3-%4%5")
            .arg(isLayout ? QString() : QStringLiteral("unreadable-"), prefix,
                 now.toIso8601().replace(u':', u'-'), QString::fromLatin1(tag), suffix);
    const QString path = FileSystem::joined(_folder, file);
    auto kept = _files.createDirectories(_folder);
    if (kept)
        kept = _files.writeAtomically(
            path,
            isLayout ? json::write(json::encode(BackupDocument{now, reason, {}, *document})) : bytes);
    if (!kept)
        return std::unexpected(kept.error());
    return path;
}

void LayoutBackups::prune(Instant now) const {
    const QStringList all = names();
    for (qsizetype i = alwaysKept; i < all.size(); ++i)
        if (i >= maximumCount || *dateOf(all[i]) < now - maximumAge)
            (void)_files.remove(path(all[i]));
}

} // namespace tessellar
