#pragma once

#include "model/json_losses.h"
#include "model/layout_document.h"
#include "platform/file_system.h"

#include <expected>

namespace tessellar {

/// A backup as shown in a list.
struct BackupSummary {
    QString name; ///< the file name without "layout-" and ".json": "2026-11-14T21-05-40Z-0F3C9A61"
    Instant createdAt;
    QString reason;
    int pageCount = 0;
    int appCount = 0;
    int folderCount = 0;

    bool operator==(const BackupSummary&) const = default;
};

/// The folder of layouts backed up before they were replaced. Reads whole documents; callable from any
/// thread.
class LayoutBackups {
public:
    /// The newest `alwaysKept` stay at any age; the rest are limited in count and age.
    static constexpr qsizetype alwaysKept = 10;
    static constexpr qsizetype maximumCount = 100;
    static constexpr std::chrono::days maximumAge{365};

    /// The folder of the layout store.
    LayoutBackups(const FileSystem& files, const QString& applicationFolder);

    /// Newest first, without files that are not backups.
    QList<BackupSummary> list() const;
    std::expected<json::MaybeLossy<BackupDocument>, FileError> read(const QString& name) const;
    /// Backs up a working file written by another program; if it cannot be read completely, as
    /// "unreadable-layout-STAMP-TAG.json". Returns the path.
    std::expected<QString, FileError> keep(const QByteArray& bytes, const QString& reason,
                                           Instant now) const;
    /// Deletes backups beyond the limits; leaves other files alone.
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
