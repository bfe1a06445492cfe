#include "discovery/library_watcher.h"

namespace tessellar {

using namespace Qt::Literals::StringLiterals;

LibraryWatcher::LibraryWatcher(Machine& machine, Callbacks callbacks,
                               std::unique_ptr<DirectoryEvents> events)
    : _machine(machine)
    , _callbacks(std::move(callbacks))
    , _directories(
          machine, [this](const QStringList& directories) { changed(directories); },
          std::move(events)) {}

void LibraryWatcher::scanned(const AppScanner::LibraryScan& scan, Instant startedAt) {
    _applications.clear();
    _gone.clear();
    for (const AppEntry& app : scan.apps)
        _applications[FileSystem::parent(app.path)].append(app.path);
    QStringList directories = scan.watchableDirectories;
    // The targets of links and aliases can be removed where they are.
    const QSet<QString> listed(directories.begin(), directories.end());
    for (const QString& folder : _applications.keys())
        if (!listed.contains(folder))
            directories += folder;
    directories += u"/Volumes"_s;
    for (const auto& unreadable : scan.unreadableDirectories)
        if (unreadable.reason == AppScanner::UnreadableDirectory::Reason::absent ||
            unreadable.reason == AppScanner::UnreadableDirectory::Reason::volumeNotMounted)
            directories += unreadable.path;
    for (const IncompleteBundle& bundle : scan.incompleteBundles)
        for (const QString& part : {u""_s, u"/Contents"_s, u"/Contents/MacOS"_s, u"/Wrapper"_s})
            directories += bundle.path + part;
    if (scan.incompleteBundles != _incomplete) {
        _incomplete = scan.incompleteBundles;
        _recheckDelay = shortestRecheck;
        recheckLater();
    }
    _directories.watch(directories, startedAt, _callbacks.watching);
}

void LibraryWatcher::changed(const QStringList& directories) {
    QStringList outside;
    bool inIncomplete = false;
    for (const QString& directory : directories) {
        const bool isInside =
            std::ranges::any_of(std::as_const(_incomplete), [&](const IncompleteBundle& bundle) {
                return FileSystem::isWithin(directory, bundle.path);
            });
        inIncomplete = inIncomplete || isInside;
        if (!isInside)
            outside += directory;
    }
    if (inIncomplete) {
        _recheckDelay = shortestRecheck;
        if (!_recheck.isActive())
            recheckLater();
    }
    if (outside.isEmpty())
        return;
    for (const QString& directory : std::as_const(outside))
        if (_applications.contains(directory))
            _toCheck.insert(directory);
    checkApplications();
    gather(outside);
}

void LibraryWatcher::gather(const QStringList& directories) {
    for (const QString& directory : directories)
        _changed.insert(directory);
    if (!_latest.isActive())
        _latest = _machine.scheduler.after(longestWait, [this] { askForScan(); });
    restartQuiet();
}

void LibraryWatcher::restartQuiet() {
    _quiet.cancel();
    if (_gone.isEmpty() && _latest.isActive())
        _quiet = _machine.scheduler.after(quietTime, [this] { askForScan(); });
}

void LibraryWatcher::askForScan() {
    _quiet.cancel();
    _latest.cancel();
    QStringList directories = std::exchange(_changed, {}).values();
    directories.sort();
    _callbacks.rescan(directories);
}

void LibraryWatcher::checkApplications() {
    if (_isChecking || _nextCheck.isActive() || _toCheck.isEmpty())
        return;
    QStringList paths;
    for (const QString& directory : std::exchange(_toCheck, {}))
        paths += _applications.value(directory);
    _isChecking = true;
    _check = _machine.workers.run(
        [&files = _machine.files, paths](std::stop_token stop) {
            QSet<QString> gone;
            for (const QString& path : paths)
                if (!stop.stop_requested() && !files.linkStatus(path))
                    gone.insert(path);
            return gone;
        },
        [this, paths](const QSet<QString>& gone) {
            _isChecking = false;
            QStringList news;
            for (const QString& path : paths) {
                if (!gone.contains(path))
                    _gone.remove(path);
                else if (!_gone.contains(path) &&
                         _applications.value(FileSystem::parent(path)).contains(path))
                    news += path;
            }
            for (const QString& path : std::as_const(news))
                _gone.insert(path);
            if (_latest.isActive() && (!_gone.isEmpty() || !_quiet.isActive()))
                restartQuiet();
            // Changes that arrived meanwhile are checked after a delay, not at every event of a burst.
            if (!_toCheck.isEmpty())
                _nextCheck = _machine.scheduler.after(checkInterval, [this] {
                    _nextCheck.cancel();
                    checkApplications();
                });
            for (const QString& path : std::as_const(news))
                _callbacks.applicationGone(path);
        });
}

void LibraryWatcher::recheckLater() {
    _recheck.cancel();
    if (_incomplete.isEmpty())
        return;
    _recheck = _machine.scheduler.after(_recheckDelay, [this] {
        _recheckDelay = std::min(2 * _recheckDelay, longestRecheck);
        recheckIncomplete();
    });
}

void LibraryWatcher::recheckIncomplete() {
    _recheckTask = _machine.workers.run(
        [&files = _machine.files, bundles = _incomplete](std::stop_token stop) {
            QStringList different;
            for (const IncompleteBundle& bundle : bundles) {
                if (stop.stop_requested())
                    break;
                const auto status = files.status(bundle.path);
                const bool isAnother =
                    status && bundle.fileIdentifier &&
                    static_cast<std::uint64_t>(*bundle.fileIdentifier) != status->inode;
                const auto state = AppScanner::installState(files, bundle.path);
                if (isAnother || state == AppScanner::InstallState::ready ||
                    state == AppScanner::InstallState::missing)
                    different += FileSystem::parent(bundle.path);
            }
            return different;
        },
        [this](const QStringList& different) {
            if (!different.isEmpty())
                gather(different);
            recheckLater();
        });
}

} // namespace tessellar
