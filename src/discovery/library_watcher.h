#pragma once

#include "discovery/app_scanner.h"
#include "platform/directory_watcher.h"

#include <QHash>
#include <QSet>

namespace tessellar {

/// Notices what happens to the installed applications between scans, and asks for the next scan.
///
/// - Changes in the watched folders are gathered into one: half a second after the last of them, five
///   seconds after the first at the latest.
/// - An application that is gone is told of at once. While one is, the full five seconds are waited,
///   unless it comes back: an updater that takes the old bundle away before it puts the new one in its
///   place does not cost the tile its place.
/// - An incomplete bundle is looked at when something in it changes, and after 1, 2, 4, ... seconds,
///   in the end every hour: what is written into a file, or comes deep inside, no watched folder tells
///   of. When it is ready, another one or gone, a scan is asked for.
///
/// Main thread only; looks at disks on workers.
class LibraryWatcher {
public:
    struct Callbacks {
        /// To be followed, once the scan is done, by `scanned`.
        std::function<void(const QStringList& changedDirectories)> rescan;
        std::function<void(const QString& path)> applicationGone;
        std::function<void()> watching = {}; ///< the watches that the last scan asked for stand
    };
    static constexpr std::chrono::milliseconds quietTime{500};
    static constexpr std::chrono::milliseconds longestWait{5'000};
    static constexpr std::chrono::milliseconds shortestRecheck{1'000};
    static constexpr std::chrono::milliseconds longestRecheck{3'600'000};
    static constexpr std::chrono::milliseconds checkInterval{100};

    LibraryWatcher(Machine& machine, Callbacks callbacks,
                   std::unique_ptr<DirectoryEvents> events = makeDirectoryEvents());

    /// What a scan found is what is watched from now on. `startedAt` is when the scan was begun:
    /// folders that are new in it and changed since lead to another.
    void scanned(const AppScanner::LibraryScan& scan, Instant startedAt);
    bool isPolling() const { return _directories.isPolling(); }

private:
    using IncompleteBundle = AppScanner::IncompleteBundle;

    void changed(const QStringList& directories);
    void gather(const QStringList& directories);
    void restartQuiet();
    void askForScan();
    void checkApplications();
    void recheckLater();
    void recheckIncomplete();

    Machine& _machine;
    Callbacks _callbacks;
    QHash<QString, QStringList> _applications; ///< paths by the folder that they lie in
    QList<IncompleteBundle> _incomplete;

    QSet<QString> _changed; ///< since the last scan was asked for
    QSet<QString> _gone;    ///< told of, and not back
    Timer _quiet;
    Timer _latest;

    QSet<QString> _toCheck;
    Timer _nextCheck;
    Task _check;
    bool _isChecking = false;

    std::chrono::milliseconds _recheckDelay = shortestRecheck;
    Timer _recheck;
    Task _recheckTask;

    DirectoryWatcher _directories; // last: it calls back
};

} // namespace tessellar
