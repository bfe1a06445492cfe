#pragma once

#include "platform/file_system.h"

#include <QByteArrayView>

#include <functional>
#include <stop_token>

namespace tessellar {

/// What the visitor wants done with an entry.
enum class WalkStep { descend, skip };

/// One entry, for as long as the visit lasts.
struct WalkEntry {
    const QString& directory; ///< under the file system's root
    QByteArrayView name;      ///< bytes on the disk; FileSystem::fromHostBytes makes text of them
    FileType type = FileType::other;
    int depth = 0;   ///< 1 for the entries of the folder where the walk began
    int folder = -1; ///< the directory's descriptor

    /// What the entry itself takes on the disk.
    struct Space {
        std::uint64_t allocated = 0; ///< bytes
        std::uint64_t links = 1;     ///< names that the file has
        std::uint64_t device = 0;
        std::uint64_t inode = 0;
    };
    /// Or an errno. However deep it lies, this costs one call, where a path would be looked up from the
    /// root.
    std::expected<Space, int> space() const { return spaceAt(folder, name.data()); }
    /// Of a name in an open folder, or, without one, of a path of the host.
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
    bool complete = true;        ///< false when stopped or when a limit kept it from an entry or folder
};

/// Walks a tree with several threads, by descriptors and large `getdents` reads; about a million
/// entries a second on two cores. Links are reported, never followed, not even one at `path` itself,
/// and so no loop can hold it. A mount point is reported but not entered, unless the options say so.
/// Entries that vanish during the walk are skipped. Any depth is walked with a hundred descriptors and
/// a small stack.
///
/// `visit` is called from several threads at once, this one among them, and decides for each directory
/// whether it is entered; for other entries its answer means nothing. It must not throw. Directories
/// are visited in no fixed order; a caller that needs one sorts. After a stop is requested each thread
/// finishes at most the visit that it is in.
WalkResult walkDirectory(const FileSystem& files, const QString& path, const WalkOptions& options,
                         std::stop_token stop, const std::function<WalkStep(const WalkEntry&)>& visit);

} // namespace tessellar
