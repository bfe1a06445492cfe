#include "launcher/library_watch.h"

#include "launcher/installed_applications.h"
#include "launcher/launcher_messages.h"
#include "launcher/live_layout.h"
#include "platform/texts.h"

#include <algorithm>

namespace tessellar {

LibraryWatch::LibraryWatch(Machine& machine, InstalledApplications& applications, LiveLayouts& layouts,
                           LauncherMessages& messages)
    : _machine(machine), _installed(applications), _layouts(layouts), _messages(messages) {}

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
                                          _installed.rescan();
                                      },
                                  .applicationGone =
                                      [this](const QString& path) {
                                          if (const AppEntry* app = _installed.withPath(path))
                                              _layouts.markUnavailable(appKey(*app));
                                          notice(Kind::gone, {path});
                                      },
                                  .watching = [this] { watching(); }},
        std::move(events));
    _subscription = _installed.scanned.connect([this] { scanned(); });
    if (_installed.hasScanned())
        scanned();
}

/// The paths of applications that are in one scan but not in the other.
static QStringList pathsOnlyIn(const InstalledScan& one, const InstalledScan& other) {
    QStringList paths;
    for (auto it = one.byPath.cbegin(); it != one.byPath.cend(); ++it)
        if (!other.byPath.contains(it.key()))
            paths.append(it.key());
    return paths;
}

void LibraryWatch::scanned() {
    using Kind = LibraryNotice::Kind;
    const std::shared_ptr<const InstalledScan> found = _installed.latest();
    QSet<QString> incomplete;
    for (const AppScanner::IncompleteBundle& bundle : found->scan.incompleteBundles)
        incomplete.insert(bundle.path);
    const auto former = std::exchange(_former, found);
    const auto incompleteBefore = std::exchange(_incomplete, incomplete);
    // The first scan is the baseline.
    if (former) {
        notice(Kind::added, pathsOnlyIn(*found, *former));
        notice(Kind::removed, pathsOnlyIn(*former, *found));
        // Newly complete bundles count as added.
        const QStringList& replaced = _installed.replacedBundles();
        QStringList inBoth;
        std::ranges::copy_if(replaced, std::back_inserter(inBoth), [&](const QString& path) {
            return former->byPath.contains(path) && found->byPath.contains(path);
        });
        notice(Kind::replaced, inBoth);
    }
    notice(Kind::incomplete, (incomplete - incompleteBefore).values());
    _watcher->scanned(found->scan, _installed.scanStartedAt());
}

void LibraryWatch::watching() {
    const bool wasPolling = std::exchange(_isPolling, _watcher->isPolling());
    const QStringList before = std::exchange(_watched, _installed.scan().watchableDirectories);
    if (_watched == before && _isPolling == wasPolling)
        return;
    notice(LibraryNotice::Kind::watching, _watched);
    if (_isPolling && !wasPolling) {
        notice(LibraryNotice::Kind::polling, _watched);
        _messages.showNotice(Texts::tr("There are more application folders than this Mac can watch. "
                                       "New applications may take some seconds to appear."));
    }
    changed.notify();
}

void LibraryWatch::notice(LibraryNotice::Kind kind, QStringList paths) {
    if (paths.isEmpty())
        return;
    paths.sort();
    noticed.notify({kind, paths});
}

} // namespace tessellar
