#pragma once

#include "discovery/app_scanner.h"
#include "platform/directory_watcher.h"

#include <QHash>
#include <QSet>

namespace tessellar {

/// Watches the installed applications between scans, and requests the next scan.
///
/// - Changes in watched folders are debounced: half a second after the last, at most five seconds after
///   the first.
/// - A missing application is reported at once. While one is missing, the full five seconds pass unless
///   it returns, so that an updater that removes the old bundle before installing the new one does not
///   cost the tile its place.
/// - Incomplete bundles are also rechecked after 1, 2, 4, ... seconds, up to every hour, as folder
///   watches do not report writes to files or changes deep inside. Once one is ready, replaced or gone,
///   a scan is requested.
///
/// Main thread only; reads disks on workers.
class LibraryWatcher {
public:
    struct Callbacks {
        /// Answer by scanning, then calling `scanned`.
        std::function<void(const QStringList& changedDirectories)> rescan;
        std::function<void(const QString& path)> applicationGone;
        std::function<void()> watching = {}; ///< the watches for the last scan are active
    };
    static constexpr std::chrono::milliseconds quietTime{500};
    static constexpr std::chrono::milliseconds longestWait{5'000};
    static constexpr std::chrono::milliseconds shortestRecheck{1'000};
    static constexpr std::chrono::milliseconds longestRecheck{3'600'000};
    static constexpr std::chrono::milliseconds checkInterval{100};

    LibraryWatcher(Machine& machine, Callbacks callbacks,
                   std::unique_ptr<DirectoryEvents> events = makeDirectoryEvents());

    /// Watches what the scan found. `startedAt` is when it began: new folders that changed since then
    /// trigger another scan.
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
    QHash<QString, QStringList> _applications; ///< paths by parent folder
    QList<IncompleteBundle> _incomplete;

    QSet<QString> _changed; ///< since the last request for a scan
    QSet<QString> _gone;    ///< reported and not returned
    Timer _quiet;
    Timer _latest;

    QSet<QString> _toCheck;
    Timer _nextCheck;
    Task _check;
    bool _isChecking = false;

    std::chrono::milliseconds _recheckDelay = shortestRecheck;
    Timer _recheck;
    Task _recheckTask;

    DirectoryWatcher _directories; // last, because it calls back
};

} // namespace tessellar
