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
    QString path; ///< as the launcher speaks of it, not as the host does

    bool operator==(const FileError&) const = default;
};

/// One sentence for people, with the path.
QString message(const FileError& error);

/// What a system call's errno means for a path.
FileError fileError(int error, const QString& path);

class Descriptor;
struct Place;

enum class FileType { regular, directory, symbolicLink, other };

/// What `stat` tells. Device and inode identify a file while it exists.
struct FileStatus {
    FileType type = FileType::other;
    std::uint64_t size = 0;
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint32_t mode = 0; ///< permission bits
    std::uint32_t owner = 0;
    Instant modified;
    Instant changed;                ///< status change
    std::optional<Instant> created; ///< where the file system keeps it

    bool operator==(const FileStatus&) const = default;
};

/// One entry of a directory. `name` holds the bytes on the disk; they need not be UTF-8.
struct DirectoryEntry {
    QByteArray name;
    FileType type = FileType::other; ///< of the entry itself: links are not followed

    bool operator==(const DirectoryEntry&) const = default;
};

/// The machine's files under the paths of a Mac ("/Applications", "/System/Library").
///
/// On a Mac the root is "/"; elsewhere it may be any folder that holds a Mac's layout, as package
/// managers have it with --root. Every path given or returned here is absolute and relative to that
/// root; symbolic links, absolute ones too, resolve inside it and "..", wherever it stands, does not
/// lead out of it. What a tool or the system is to be told is mapped with `hostPath` at that moment.
///
/// Names on a disk are bytes. Those that are UTF-8 are their text; any other byte is one lone surrogate
/// (U+DC80 to U+DCFF) in a path, so that every file can be named and `fromHostBytes` and `toHostBytes`
/// undo one another.
///
/// A trailing slash means nothing. Holds no state but the root and whether it may be changed; any
/// thread may use it.
class FileSystem {
public:
    /// The root is made absolute; it need not exist yet.
    explicit FileSystem(const QString& hostRoot = QStringLiteral("/"));

    QString hostRoot() const { return _root.isEmpty() ? QStringLiteral("/") : _root; }
    /// Where `path` lies on the host, its bytes as the host takes them. Links are not resolved, and
    /// ".." goes by text. Empty for a path that is not absolute or cannot be written in bytes.
    QByteArray hostPath(const QString& path) const;
    /// The other way: the path under the root of a host path, or nothing for one outside it.
    std::optional<QString> pathFromHost(const QByteArray& hostPath) const;

    static QString fromHostBytes(QByteArrayView bytes);
    /// Nothing for text that no bytes stand for: a zero character or half a surrogate pair.
    static std::optional<QByteArray> toHostBytes(const QString& text);

    std::expected<FileStatus, FileError> status(const QString& path) const;     ///< follows links
    std::expected<FileStatus, FileError> linkStatus(const QString& path) const; ///< of the link itself
    bool exists(const QString& path) const; ///< these four follow links
    bool isDirectory(const QString& path) const;
    bool isRegularFile(const QString& path) const;
    bool isExecutableFile(const QString& path) const; ///< by this process

    /// The path with every link resolved; fails where something on the way is missing.
    std::expected<QString, FileError> resolved(const QString& path) const;
    std::expected<QByteArray, FileError> linkTarget(const QString& path) const;

    /// The entries in the order of their bytes, without "." and "..".
    std::expected<QList<DirectoryEntry>, FileError> entries(const QString& path) const;

    /// Opens a folder or regular file for reading, following links. A pipe, socket or device is
    /// `notARegularFile`; it is not opened, because that alone can wake or change something.
    std::expected<Descriptor, FileError> open(const QString& path) const;
    /// Opens a folder for listing; a link to one is `notADirectory`.
    std::expected<Descriptor, FileError> openFolder(const QString& path) const;
    /// The whole of a regular file. A larger one is `tooLarge`, even when it grows while it is read.
    std::expected<QByteArray, FileError> read(const QString& path, std::uint64_t maximumBytes) const;

    /// Replaces `path` by a file with these bytes, or leaves it as it was; see atomic_file.h.
    std::expected<void, FileError> writeAtomically(const QString& path, const QByteArray& bytes) const;
    /// Makes the folder and those on the way to it, where they are missing.
    std::expected<void, FileError> createDirectories(const QString& path) const;
    /// From now on every change fails with `why`, and nothing is written: for a program that may only
    /// look. To be called before other threads use it.
    void refuseChanges(const FileError& why) { _refusal = why; }
    // What these two did outlives a loss of power, as far as the volume can flush a folder.
    /// Renames within one volume and replaces nothing (`alreadyExists`).
    std::expected<void, FileError> move(const QString& from, const QString& to) const;
    /// Removes a file or link; a directory only when it is empty.
    std::expected<void, FileError> remove(const QString& path) const;

    /// Purely by text: absolute, "." and ".." taken out, no doubled or trailing slash.
    static QString standardized(const QString& path);
    /// True when `path` is `directory` or lies in it, compared by component.
    static bool isWithin(const QString& path, const QString& directory);
    static QString joined(const QString& directory, const QString& name);
    static QString fileName(const QString& path);
    static QString parent(const QString& path);
    /// The last extension without the dot, as written; empty when there is none or the name begins
    /// with its only dot.
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
    QString _canonicalRoot; ///< the same without links, as tools may answer with it
    std::optional<FileError> _refusal;
};

} // namespace tessellar
