#include "launcher/launcher_search.h"

#include "launcher/installed_applications.h"
#include "launcher/live_layout.h"
#include "launcher/smart_folder_library.h"

namespace tessellar {

LauncherSearch::LauncherSearch(Machine& machine, const LiveLayouts& layouts,
                               const InstalledApplications& applications,
                               const SmartFolderLibrary& smartFolders)
    : _machine(machine), _layouts(layouts), _applications(applications), _smartFolders(smartFolders) {}

QList<SearchIndex::Hit> LauncherSearch::search(Mode mode, const QString& query) const {
    return _indices[std::size_t(mode)].index.search(query);
}

void LauncherSearch::whenReady(Mode mode, std::function<void()> done) {
    if (of(mode).isCurrent)
        return done();
    of(mode).waiting.push_back(std::move(done));
    make(mode);
}

void LauncherSearch::invalidate(Mode mode) {
    of(mode).isCurrent = false;
    of(mode).isOutdated = true;
    // Built before the first key is pressed, but only for the mode that is shown.
    if (mode == _layouts.shownMode() && _applications.hasScanned())
        make(mode);
}

void LauncherSearch::invalidate() {
    for (const Mode mode : LiveLayouts::modes)
        invalidate(mode);
}

void LauncherSearch::make(Mode mode) {
    Index& index = of(mode);
    if (std::exchange(index.isMaking, true))
        return;
    index.isOutdated = false;
    index.task = _machine.workers.run(
        Lane::computing,
        [layout = _layouts[mode].document(), apps = _applications.all(), locale = _machine.locale,
         definitions = _smartFolders.definitions(),
         evaluations = _smartFolders.evaluations(mode)](std::stop_token) {
            return SearchIndex(searchInput(layout, apps, namesByAppKey(definitions, evaluations)),
                               locale);
        },
        [this, mode, &index](SearchIndex made) {
            index.index = std::move(made);
            index.isMaking = false;
            index.isCurrent = !index.isOutdated;
            if (index.isOutdated)
                make(mode);
            else
                for (const auto& done : std::exchange(index.waiting, {}))
                    done();
            ready.notify(mode);
        });
}

} // namespace tessellar
