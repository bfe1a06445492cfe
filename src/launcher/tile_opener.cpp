#include "launcher/tile_opener.h"

#include "launcher/installed_applications.h"
#include "launcher/launcher_messages.h"
#include "launcher/live_layout.h"
#include "launcher/smart_folder_library.h"
#include "platform/texts.h"

namespace tessellar {

TileOpener::TileOpener(Machine& machine, LiveLayouts& layouts, InstalledApplications& applications,
                       SmartFolderLibrary& smartFolders, LauncherMessages& messages)
    : _machine(machine)
    , _layouts(layouts)
    , _applications(applications)
    , _smartFolders(smartFolders)
    , _messages(messages)
    , _opener(machine) {}

void TileOpener::open(LauncherWindowMode mode, const LaunchpadItem& item) {
    if (const AppEntry* app = item.app())
        return launch(appKey(*app));
    const QUuid id = item.id();
    if (!_layouts[mode].navigation().openFolder(id) || !item.smartFolder())
        return;
    if (const QString notice = _smartFolders.notice(id, mode); !notice.isEmpty())
        _messages.showNotice(notice);
}

void TileOpener::launch(const QString& key, std::function<void(Outcome)> done) {
    if (!done)
        done = [this](const Outcome& outcome) { _messages.report(outcome); };
    const LauncherError unavailable{QStringLiteral("unavailable"), LiveLayout::unavailableNotice(), {}};
    const AppEntry* app = _applications.withKey(key);
    if (!app)
        return done(std::unexpected(_layouts.shown().unavailableAppKeys().contains(key)
                                        ? unavailable
                                        : InstalledApplications::unknown(key)));
    const auto task = _launches.insert(_launches.end(), Task());
    const auto opened = [this, task, key, name = app->name,
                         done](const std::expected<void, QString>& outcome) {
        // Kept until the end of this call: it owns the function that is running.
        const Task ended = std::move(*task);
        _launches.erase(task);
        if (!outcome)
            return done(std::unexpected(LauncherError{QStringLiteral("couldNotLaunch"), outcome.error(),
                                                      Texts::tr("Could not open “%1”").arg(name)}));
        _smartFolders.recordLaunch(key);
        launched.notify();
        done({});
    };
    // On a worker, because the volume may hang.
    *task = _machine.workers.run(
        Lane::actions,
        [&files = _machine.files, path = app->path](std::stop_token) { return files.exists(path); },
        [this, task, key, path = app->path, opened, unavailable, done](bool exists) {
            if (exists) {
                const Task looked = std::move(*task);
                *task = _opener.openApplication(path, opened);
                return;
            }
            const Task looked = std::move(*task);
            _launches.erase(task);
            _layouts.markUnavailable(key);
            _applications.rescan();
            done(std::unexpected(unavailable));
        });
}

} // namespace tessellar
