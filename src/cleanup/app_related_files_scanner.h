#pragma once

#include "cleanup/related_file.h"
#include "platform/machine.h"

#include <functional>

namespace tessellar {

struct RelatedFilesProgress {
    int locationsDone = 0;
    int locationCount = 0;
    QString path; ///< of the location that is searched next; empty at the end
    qsizetype found = 0;

    bool operator==(const RelatedFilesProgress&) const = default;
};

struct RelatedFilesScan {
    QList<RelatedFile> files; ///< the bundle first, then by location, then by path
    QList<FileError> unreadable;
    bool isComplete = true; ///< false where something kept it from looking everywhere

    bool operator==(const RelatedFilesScan&) const = default;
};

/// The space that a file takes on the disk, or a folder with all in it; links not followed, mounts not
/// crossed.
struct MeasuredSize {
    std::uint64_t bytes = 0;
    bool isComplete = true; ///< else it is at least so much

    bool operator==(const MeasuredSize&) const = default;
};

/// Looks through the Libraries for what belongs to an application.
///
/// Locations that are links, or are reached through one below the home, are left out; links are neither
/// listed nor followed, packages and mount points are not entered, and what matches is not searched
/// further. Not listed is what another installed application claims at least as strongly, what is or
/// extends the longer identifier of another, and Apple's own files unless the application says that it
/// is Apple's. A folder that another application owns is not looked into.
class AppRelatedFilesScanner {
public:
    using Progress = std::function<void(const RelatedFilesProgress&)>;
    /// Whether this process may move an item away from its folder.
    using MayMove = std::function<bool(const FileSystem&, const QString& path)>;
    /// The team of an application that does not say it, when a scan has to know: empty for none,
    /// nothing where it cannot be found out. Called by one thread at a time.
    using TeamOf = std::function<std::optional<QString>(const CleanupApplication&, std::stop_token)>;

    AppRelatedFilesScanner(const FileSystem& files, QString home, MayMove mayMove = {},
                           TeamOf teamOf = {});

    /// Blocks, with threads of its own; for a worker. `others` are the installed applications, the
    /// one at hand may be among them. Nothing when it was asked to stop. `progress` is called on this
    /// thread.
    std::optional<RelatedFilesScan> scan(const CleanupApplication& application,
                                         const QList<CleanupApplication>& others, std::stop_token stop,
                                         const Progress& progress = {}) const;

    /// Blocks as well; incomplete when it was asked to stop.
    static MeasuredSize measure(const FileSystem& files, const QString& path, std::stop_token stop);

    /// The scan on a worker: `progress` and `done` are called on the main thread.
    [[nodiscard]] static Task start(Machine& machine, CleanupApplication application,
                                    QList<CleanupApplication> others, TeamOf teamOf, Progress progress,
                                    std::function<void(RelatedFilesScan)> done);
    /// Sizes on a worker, one after the other, each posted to the main thread when it is known.
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
