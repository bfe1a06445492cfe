#include "launcher/library_watch.h"

#include "launcher/launcher_view_model.h"

namespace tessellar {

LibraryWatch::LibraryWatch(LauncherViewModel& launcher, Machine& machine)
    : _launcher(launcher), _machine(machine) {}

LibraryWatch::~LibraryWatch() = default;

void LibraryWatch::start(std::unique_ptr<DirectoryEvents> events) {
    using Kind = LibraryNotice::Kind;
    if (isStarted())
        return;
    _watcher = std::make_unique<LibraryWatcher>(
        _machine,
        LibraryWatcher::Callbacks{.rescan =
                                      [this](const QStringList& directories) {
                                          notice(Kind::changed, directories);
                                          _launcher.rescan();
                                      },
                                  .applicationGone =
                                      [this](const QString& path) {
                                          _launcher.markGone(path);
                                          notice(Kind::gone, {path});
                                      },
                                  .watching = [this] { watching(); }},
        std::move(events));
    _subscription = _launcher.subscribe([this](LauncherChange change) {
        if (change == LauncherChange::scanned)
            scanned();
    });
    if (_launcher.isBootstrapped())
        scanned();
}

void LibraryWatch::scanned() {
    using Kind = LibraryNotice::Kind;
    const AppScanner::LibraryScan& scan = _launcher.lastScan();
    QSet<QString> applications;
    for (const AppEntry& app : scan.apps)
        applications.insert(app.path);
    QSet<QString> incomplete;
    for (const AppScanner::IncompleteBundle& bundle : scan.incompleteBundles)
        incomplete.insert(bundle.path);
    const auto before = std::exchange(_applications, applications);
    const auto incompleteBefore = std::exchange(_incomplete, incomplete);
    // The first scan is where the watching begins.
    if (std::exchange(_hasScan, true)) {
        notice(Kind::added, (applications - before).values());
        notice(Kind::removed, (before - applications).values());
        // One that was incomplete until now is another bundle too, but one that nobody had yet.
        const auto& others = _launcher.replacedBundles();
        notice(Kind::replaced,
               (QSet<QString>(others.begin(), others.end()) & before & applications).values());
    }
    notice(Kind::incomplete, (incomplete - incompleteBefore).values());
    _watcher->scanned(scan, _launcher.lastScanStart());
}

void LibraryWatch::watching() {
    const bool wasPolling = std::exchange(_isPolling, _watcher->isPolling());
    const QStringList before = std::exchange(_watched, _launcher.lastScan().watchableDirectories);
    if (_watched == before && _isPolling == wasPolling)
        return;
    notice(LibraryNotice::Kind::watching, _watched);
    if (_isPolling && !wasPolling) {
        notice(LibraryNotice::Kind::polling, _watched);
        _launcher.showNotice(
            QStringLiteral("There are more application folders than this Mac can watch. "
                           "New applications may take some seconds to appear."));
    }
    _launcher.changed(LauncherChange::watching);
}

std::shared_ptr<void> LibraryWatch::observe(Listener listener) {
    auto subscription = std::make_shared<Listener>(std::move(listener));
    _listeners.push_back(subscription);
    return subscription;
}

void LibraryWatch::notice(LibraryNotice::Kind kind, QStringList paths) {
    _listeners.remove_if([](const auto& listener) { return listener.expired(); });
    if (paths.isEmpty() || _listeners.empty())
        return;
    paths.sort();
    for (const auto& weak : std::list(_listeners))
        if (const auto listener = weak.lock())
            (*listener)({kind, paths});
}

} // namespace tessellar
