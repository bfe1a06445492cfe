#pragma once

#include "model/json_losses.h"
#include "model/layout_document.h"
#include "platform/file_system.h"

#include <expected>

namespace tessellar {

/// What a list shows of a backup.
struct BackupSummary {
    QString name; ///< of its file, without "layout-" and ".json": "2026-11-14T21-05-40Z-0F3C9A61"
    Instant createdAt;
    QString reason;
    int pageCount = 0;
    int appCount = 0;
    int folderCount = 0;

    bool operator==(const BackupSummary&) const = default;
};

/// The folder of the layouts that were kept before they were replaced; any thread, for it reads whole
/// documents.
class LayoutBackups {
public:
    /// The latest are kept however old they are; of the others, so many, for so long.
    static constexpr qsizetype alwaysKept = 10;
    static constexpr qsizetype maximumCount = 100;
    static constexpr std::chrono::days maximumAge{365};

    /// `applicationFolder` is that of the layout store.
    LayoutBackups(const FileSystem& files, const QString& applicationFolder);

    /// Newest first. A file that is no backup is left out.
    QList<BackupSummary> list() const;
    std::expected<json::MaybeLossy<BackupDocument>, FileError> read(const QString& name) const;
    /// Keeps a working file as another program wrote it: as a backup, or where it cannot be read whole
    /// as "unreadable-layout-STAMP-TAG.json". Its path.
    std::expected<QString, FileError> keep(const QByteArray& bytes, const QString& reason,
                                           Instant now) const;
    /// Removes those that are over the bounds; what is no backup stays.
    void prune(Instant now) const;

private:
    QStringList names() const;
    QString path(const QString& name) const;

    const FileSystem& _files;
    QString _folder;
};

namespace json {

template <>
struct Fields<BackupSummary> {
    using S = BackupSummary;
    static constexpr auto list =
        fields(required("name", &S::name), required<Iso8601>("createdAt", &S::createdAt),
               required("reason", &S::reason), required("pageCount", &S::pageCount),
               required("appCount", &S::appCount), required("folderCount", &S::folderCount));
};

} // namespace json
} // namespace tessellar
