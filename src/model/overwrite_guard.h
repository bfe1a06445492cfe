#pragma once

#include "model/layout_backups.h"

#include <QByteArray>
#include <QHashFunctions>

#include <mutex>

namespace tessellar {

/// Knows the contents that a working file may have: those last read and last written. Anything else was
/// written by another program and is backed up before it is overwritten. Thread-safe.
class OverwriteGuard {
public:
    OverwriteGuard(const FileSystem& files, QString path, LayoutBackups backups)
        : _files(files), _path(std::move(path)), _backups(std::move(backups)) {}

    /// Call after reading; with empty bytes if there is no file.
    void wasRead(const QByteArray& bytes);
    /// Call before writing; an error if foreign contents could not be backed up. Nothing counts as
    /// foreign before the first read.
    std::expected<void, FileError> beforeWriting(const QByteArray& bytes, Instant now);
    /// The path of the backup made since the last call, if any.
    std::optional<QString> takeKept();

private:
    /// A fingerprint of contents. A weak hash suffices: few are compared, and nobody forges them.
    using Print = std::pair<qsizetype, std::size_t>;
    static Print printOf(const QByteArray& bytes) { return {bytes.size(), qHash(bytes)}; }

    const FileSystem& _files;
    const QString _path;
    const LayoutBackups _backups;
    std::mutex _mutex;
    bool _isWatching = false;
    QList<Print> _known; ///< two, as a failed write may have reached the disk
    std::optional<QString> _kept;
};

} // namespace tessellar
