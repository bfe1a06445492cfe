#pragma once

#include "platform/file_system.h"

#include <QByteArrayView>

#include <functional>
#include <stop_token>

namespace tessellar {

/// What to do with the visited entry.
enum class WalkStep { descend, skip };

/// One entry; valid only during the visit.
struct WalkEntry {
    const QString& directory; ///< under the file system's root
    QByteArrayView name;      ///< raw bytes; FileSystem::fromHostBytes decodes them
    FileType type = FileType::other;
    int depth = 0;   ///< 1 for entries of the starting folder
    int folder = -1; ///< the directory's descriptor

    /// The disk space of the entry itself, contents excluded.
    struct Space {
        std::uint64_t allocated = 0; ///< bytes
        std::uint64_t links = 1;     ///< hard links
        std::uint64_t device = 0;
        std::uint64_t inode = 0;
    };
    /// The error is an errno. One call at any depth: no path is resolved.
    std::expected<Space, int> space() const { return spaceAt(folder, name.data()); }
    /// `name` is in the open `folder`, or a host path if there is none.
    static std::expected<Space, int> spaceAt(int folder, const char* name);
    QString path() const { return FileSystem::joined(directory, FileSystem::fromHostBytes(name)); }
};

struct WalkOptions {
    int maximumDepth = 64;
    unsigned threads = 2;
    std::uint64_t maximumEntries = 50'000'000;
    bool crossMounts = false;
};

struct WalkResult {
    std::uint64_t entries = 0;
    QList<FileError> unreadable; ///< folders that could not be listed, at most 1,000 of them
    bool complete = true;        ///< false if stopped, or if a limit cut it short
};

/// Walks a tree with several threads through descriptors and large `getdents` reads; about a million
/// entries a second on two cores. Reports links, never follows them, not even at `path` itself, so
/// cycles are impossible. Reports mount points but enters them only if the options say so. Skips
/// entries that vanish meanwhile. Any depth takes at most a hundred descriptors and a small stack.
///
/// `visit` is called concurrently from several threads, including the calling one. Its result decides
/// whether a directory is entered and is ignored for other entries. It must not throw. The order is
/// unspecified; sort if you need one. After a stop request each thread finishes only its current visit.
WalkResult walkDirectory(const FileSystem& files, const QString& path, const WalkOptions& options,
                         std::stop_token stop, const std::function<WalkStep(const WalkEntry&)>& visit);

} // namespace tessellar
