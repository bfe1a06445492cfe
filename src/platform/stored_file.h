#pragma once

#include "platform/clock.h"
#include "platform/file_system.h"
#include "platform/uuid_source.h"

#include <optional>

namespace tessellar {

/// A file in which the launcher keeps something of the user's: read whole or not at all, written whole,
/// and never overwritten while it holds what could not be read.
///
/// Seeing it has three outcomes here: there, certainly not there, or unreadable now (any error of
/// reading, too large, a link to nowhere). Whether what was read makes sense the reader says, and may
/// set the file aside when it does not: that alone, never a read error, moves it.
///
/// A link in the file's place stays a link; what it points to is written.
///
/// One thread at a time.
class StoredFile {
public:
    StoredFile(const FileSystem& files, QString path, std::uint64_t maximumBytes);

    const QString& path() const { return _path; }
    /// Why the file is not written while it stands: `read` failed the last time, or it could not be set
    /// aside.
    const std::optional<FileError>& blocked() const { return _blocked; }

    /// The bytes, or nothing where there is certainly no file.
    std::expected<std::optional<QByteArray>, FileError> read();
    /// Makes the folder, and writes unless the file holds these bytes already. Success means that they
    /// are on the disk.
    std::expected<void, FileError> write(const QByteArray& bytes);
    /// Moves the file away as "NAME.damaged-STAMP-TAG.json" for "NAME.json"; the new path. Where that
    /// fails the file stays and is not written.
    std::expected<QString, FileError> setAside(const Clock& clock, const QUuid& tag);
    /// The file has left its place, or was given up: it may be written again.
    void forget() { _blocked.reset(); }
    /// "PREFIX-STAMP-TAG.json", for what is kept beside others of its kind.
    static QString stampedName(const QString& prefix, const Clock& clock, const QUuid& tag);

private:
    std::expected<QString, FileError> target() const;

    const FileSystem* _files;
    QString _path;
    std::uint64_t _maximumBytes;
    std::optional<FileError> _blocked;
    bool _isUnsure = false; ///< a write failed: what stands there may not be safe on the disk
};

} // namespace tessellar
