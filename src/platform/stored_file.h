#pragma once

#include "platform/clock.h"
#include "platform/file_system.h"
#include "platform/uuid_source.h"

#include <optional>

namespace tessellar {

/// A file of the user's data: read whole or not at all, written whole, and never overwritten while its
/// contents could not be read.
///
/// Reading has three outcomes: the bytes, certainly no file, or unreadable for now (any read error, too
/// large, a dangling link). Callers judge the contents and may set a damaged file aside; read errors
/// never move it.
///
/// A link in the file's place is kept; its target is written.
///
/// Not thread-safe.
class StoredFile {
public:
    StoredFile(const FileSystem& files, QString path, std::uint64_t maximumBytes);

    const QString& path() const { return _path; }
    /// Why the file must not be overwritten: the last `read` failed, or setting it aside did.
    const std::optional<FileError>& blocked() const { return _blocked; }

    /// nullopt if there is certainly no file.
    std::expected<std::optional<QByteArray>, FileError> read();
    /// Creates the folder if needed; does nothing if the file already has these bytes. Success means
    /// that they are on the disk.
    std::expected<void, FileError> write(const QByteArray& bytes);
    /// Renames "NAME.json" to "NAME.damaged-STAMP-TAG.json" and returns the new path. If that fails,
    /// the file stays and writing is blocked.
    std::expected<QString, FileError> setAside(const Clock& clock, const QUuid& tag);
    /// Unblocks writing: the file was moved away or given up.
    void forget() { _blocked.reset(); }
    /// "PREFIX-STAMP-TAG.json", for files kept beside others of their kind.
    static QString stampedName(const QString& prefix, const Clock& clock, const QUuid& tag);

private:
    std::expected<QString, FileError> target() const;

    const FileSystem* _files;
    QString _path;
    std::uint64_t _maximumBytes;
    std::optional<FileError> _blocked;
    bool _isUnsure = false; ///< a write failed: the file may not be safely on the disk
};

} // namespace tessellar
