#pragma once

#include "cleanup/related_file.h"
#include "platform/machine.h"

#include <functional>

namespace tessellar {

struct RelatedFilesProgress {
    int locationsDone = 0;
    int locationCount = 0;
    QString path; ///< of the location searched next; empty at the end
    qsizetype found = 0;

    bool operator==(const RelatedFilesProgress&) const = default;
};

struct RelatedFilesScan {
    QList<RelatedFile> files; ///< the bundle first, then by location and path
    QList<FileError> unreadable;
    bool isComplete = true; ///< false if something could not be searched

    bool operator==(const RelatedFilesScan&) const = default;
};

/// The disk space of a file, or a folder with its contents, without following links or crossing mounts.
struct MeasuredSize {
    std::uint64_t bytes = 0;
    bool isComplete = true; ///< if false, `bytes` is a minimum

    bool operator==(const MeasuredSize&) const = default;
};

/// Searches the Libraries for files of an application.
///
/// Skips locations that are links or, below the home, reached through links. Never lists or follows
/// links, never enters packages or mount points, and does not descend into matches. Excludes files that
/// another installed application claims at least as strongly, those that match or extend another's
/// longer identifier, and Apple's own unless the application identifies itself as Apple's. Does not
/// search folders that another application owns.
class AppRelatedFilesScanner {
public:
    using Progress = std::function<void(const RelatedFilesProgress&)>;
    /// Whether this process has permission to move an item.
    using MayMove = std::function<bool(const FileSystem&, const QString& path)>;
    /// Looks up an application's signing team when a scan needs it: empty if unsigned, nullopt if
    /// unknown. Calls are serialized.
    using TeamOf = std::function<std::optional<QString>(const CleanupApplication&, std::stop_token)>;

    AppRelatedFilesScanner(const FileSystem& files, QString home, MayMove mayMove = {},
                           TeamOf teamOf = {});

    /// Blocks and uses its own threads; call on a worker. `others` are the installed applications and
    /// may include this one. nullopt if stopped. `progress` is called on the calling thread.
    std::optional<RelatedFilesScan> scan(const CleanupApplication& application,
                                         const QList<CleanupApplication>& others, std::stop_token stop,
                                         const Progress& progress = {}) const;

    /// Blocks; incomplete if stopped.
    static MeasuredSize measure(const FileSystem& files, const QString& path, std::stop_token stop);

    /// Scans on a worker; `progress` and `done` are called on the main thread.
    [[nodiscard]] static Task start(Machine& machine, CleanupApplication application,
                                    QList<CleanupApplication> others, TeamOf teamOf, Progress progress,
                                    std::function<void(RelatedFilesScan)> done);
    /// Measures on a worker, one path at a time; `measured` and `done` are called on the main thread.
    [[nodiscard]] static Task startMeasuring(Machine& machine, QStringList paths,
                                             std::function<void(QString, MeasuredSize)> measured,
                                             std::function<void()> done);

private:
    const FileSystem& _files;
    QString _home;
    MayMove _mayMove;
    TeamOf _teamOf;
};

} // namespace tessellar
