#pragma once

#include "model/layout_backups.h"

#include <QByteArray>
#include <QHashFunctions>

#include <mutex>

namespace tessellar {

/// Knows what a working file may hold: what was read from it and what was written to it last. What else
/// is found there is another program's, and is kept as a backup before it is written over. Any thread.
class OverwriteGuard {
public:
    OverwriteGuard(const FileSystem& files, QString path, LayoutBackups backups)
        : _files(files), _path(std::move(path)), _backups(std::move(backups)) {}

    /// The file was read; with nothing where it is not there.
    void wasRead(const QByteArray& bytes);
    /// `bytes` are to be written; an error where that would destroy what was not kept. Before anything
    /// was read, nothing is another program's.
    std::expected<void, FileError> beforeWriting(const QByteArray& bytes, Instant now);
    /// Where another program's version was kept since the last call.
    std::optional<QString> takeKept();

private:
    /// By which contents are known again: they are compared with few others, and nobody forges them.
    using Print = std::pair<qsizetype, std::size_t>;
    static Print printOf(const QByteArray& bytes) { return {bytes.size(), qHash(bytes)}; }

    const FileSystem& _files;
    const QString _path;
    const LayoutBackups _backups;
    std::mutex _mutex;
    bool _isWatching = false;
    QList<Print> _known; ///< two: a write that failed may have come to pass
    std::optional<QString> _kept;
};

} // namespace tessellar
