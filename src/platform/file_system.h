#pragma once

#include "platform/instant.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <cstdint>
#include <expected>
#include <optional>

namespace tessellar {

/// Why a file operation failed, and where. Compared by code and path.
struct FileError {
    enum class Code {
        notFound,
        permissionDenied,
        notADirectory,
        isADirectory,
        notARegularFile,
        tooLarge,
        noSpace,
        readOnly,
        alreadyExists,
        notEmpty,
        otherVolume,
        linkLoop,
        badPath, ///< not absolute, too long, or not representable on this machine
        damaged, ///< read whole, but not what it should be
        io,
    };
    Code code = Code::io;
    QString path; ///< the launcher's path, not the host's

    bool operator==(const FileError&) const = default;
};

/// One sentence for people, with the path.
QString message(const FileError& error);

/// What a system call's errno means for a path.
FileError fileError(int error, const QString& path);

class Descriptor;
struct Place;

enum class FileType { regular, directory, symbolicLink, other };

/// The result of `stat`. Device and inode identify a file while it exists.
struct FileStatus {
    FileType type = FileType::other;
    std::uint64_t size = 0;
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint32_t mode = 0; ///< permission bits
    std::uint32_t owner = 0;
    Instant modified;
    Instant changed;                ///< status change
    std::optional<Instant> created; ///< if the file system records it

    bool operator==(const FileStatus&) const = default;
};

/// One directory entry. `name` holds the raw bytes, which need not be UTF-8.
struct DirectoryEntry {
    QByteArray name;
    FileType type = FileType::other; ///< of the entry itself: links are not followed

    bool operator==(const DirectoryEntry&) const = default;
};

/// The machine's files, addressed by a Mac's paths ("/Applications", "/System/Library").
///
/// On macOS the root is "/"; elsewhere it may be any folder with a Mac's layout (--root). All paths,
/// given or returned, are absolute and relative to that root. Symbolic links, even absolute ones, and
/// ".." resolve inside it. Map paths with `hostPath` only when passing them to a tool or the system.
///
/// File names are bytes. Valid UTF-8 is decoded; any other byte becomes a lone surrogate (U+DC80 to
/// U+DCFF), so every file can be named and `fromHostBytes` and `toHostBytes` are inverses.
///
/// Trailing slashes are ignored. Immutable apart from `refuseChanges`, and thread-safe.
class FileSystem {
public:
    /// The root is made absolute; it need not exist.
    explicit FileSystem(const QString& hostRoot = QStringLiteral("/"));

    QString hostRoot() const { return _root.isEmpty() ? QStringLiteral("/") : _root; }
    /// The path on the host, in its bytes. Textual: resolves ".." but not links. Empty if `path` is not
    /// absolute or has no byte form.
    QByteArray hostPath(const QString& path) const;
    /// The inverse of `hostPath`; nullopt for a path outside the root.
    std::optional<QString> pathFromHost(const QByteArray& hostPath) const;

    static QString fromHostBytes(QByteArrayView bytes);
    /// nullopt for text that no bytes decode to: a null character or half a surrogate pair.
    static std::optional<QByteArray> toHostBytes(const QString& text);

    std::expected<FileStatus, FileError> status(const QString& path) const;     ///< follows links
    std::expected<FileStatus, FileError> linkStatus(const QString& path) const; ///< of the link itself
    bool exists(const QString& path) const; ///< these four follow links
    bool isDirectory(const QString& path) const;
    bool isRegularFile(const QString& path) const;
    bool isExecutableFile(const QString& path) const; ///< by this process

    /// Resolves every link; fails if any component is missing.
    std::expected<QString, FileError> resolved(const QString& path) const;
    std::expected<QByteArray, FileError> linkTarget(const QString& path) const;

    /// Sorted bytewise, without "." and "..".
    std::expected<QList<DirectoryEntry>, FileError> entries(const QString& path) const;

    /// Opens a folder or regular file for reading, following links. A pipe, socket or device gives
    /// `notARegularFile` and is never opened, as opening can have side effects.
    std::expected<Descriptor, FileError> open(const QString& path) const;
    /// Opens a folder for listing; a link to a folder gives `notADirectory`.
    std::expected<Descriptor, FileError> openFolder(const QString& path) const;
    /// The contents of a regular file; `tooLarge` beyond `maximumBytes`, even if it grows while being
    /// read.
    std::expected<QByteArray, FileError> read(const QString& path, std::uint64_t maximumBytes) const;

    /// Replaces the file at `path`, or leaves it untouched; see atomic_file.h.
    std::expected<void, FileError> writeAtomically(const QString& path, const QByteArray& bytes) const;
    /// Creates the folder and its missing parents.
    std::expected<void, FileError> createDirectories(const QString& path) const;
    /// Makes every change fail with `why` from now on: for read-only programs. Call before other
    /// threads use this object.
    void refuseChanges(const FileError& why) { _refusal = why; }
    // `move` and `remove` are flushed to the disk, as far as the volume supports flushing a folder.
    /// Renames within one volume; never replaces (`alreadyExists`).
    std::expected<void, FileError> move(const QString& from, const QString& to) const;
    /// Removes a file, a link or an empty directory.
    std::expected<void, FileError> remove(const QString& path) const;

    /// Textual: makes the path absolute, resolves "." and "..", drops doubled and trailing slashes.
    static QString standardized(const QString& path);
    /// True if `path` equals `directory` or lies in it, compared by component.
    static bool isWithin(const QString& path, const QString& directory);
    static QString joined(const QString& directory, const QString& name);
    static QString fileName(const QString& path);
    static QString parent(const QString& path);
    /// The last extension without the dot, as written; empty if there is none, or if the only dot is
    /// the first character.
    static QString extension(const QString& path);

private:
    std::expected<Descriptor, int> root() const;
    std::expected<QByteArray, int> hostBytes(const QString& path) const;
    std::expected<Place, int> place(const QString& path) const;
    std::expected<Descriptor, int> openBytes(const QByteArray& path, int flags) const;
    std::expected<Descriptor, int> openPath(const QString& path, int flags) const;
    std::expected<FileStatus, int> statusOf(const QString& path, bool followLink) const;

    QString _root; ///< host path without a trailing slash; empty for "/"
    QByteArray _rootBytes;
    QString _canonicalRoot; ///< with links resolved, as tools may return it
    std::optional<FileError> _refusal;
};

} // namespace tessellar
