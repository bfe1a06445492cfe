#include "launcher/launcher_cleanup_moving.h"

#include "launcher/installed_applications.h"
#include "launcher/launcher_history.h"
#include "launcher/launcher_messages.h"
#include "launcher/live_layout.h"
#include "launcher/place_memory.h"
#include "model/app_state.h"
#include "platform/opener.h"
#include "platform/texts.h"

#include <algorithm>

namespace tessellar {

static LauncherError busy() {
    return {QStringLiteral("removalInProgress"), Texts::tr("A removal is still in progress."), {}};
}

LauncherCleanup::LauncherCleanup(Machine& machine, LiveLayouts& layouts,
                                 InstalledApplications& applications, PlaceMemory& places,
                                 LauncherHistory& history, LauncherMessages& messages)
    : _machine(machine)
    , _layouts(layouts)
    , _applications(applications)
    , _places(places)
    , _history(history)
    , _messages(messages) {
    // The helper's setup calls this from a worker, perhaps after this object is destroyed.
    const auto present = [this, alive = _lifetime.watch(), mailbox = &machine.workers.mailbox()](
                             const std::optional<HelperNotice>& notice) {
        mailbox->post([this, alive, notice] {
            if (alive.expired())
                return;
            _helperNotice = notice;
            changed.notify();
        });
    };
    _tools = std::make_shared<CleanupTools>(machine, present);
    _history.setTrash(
        [this](const auto& records, const auto& done) { moveForHistory(false, records, done); },
        [this](const auto& records, const auto& done) { moveForHistory(true, records, done); });
}

LauncherCleanup::~LauncherCleanup() { _stopMoving.request_stop(); }

void LauncherCleanup::refuse(LauncherError error, const Done& done) {
    _error = error;
    changed.notify();
    if (done)
        done(std::unexpected(std::move(error)));
}

// ---- review

CleanupApplication LauncherCleanup::cleanupApplication(const AppEntry& app) {
    CleanupApplication application{.names = {app.originalName, FileSystem::fileName(app.path)},
                                   .bundleIdentifier = app.bundleIdentifier,
                                   .path = app.path,
                                   .team = {}};
    application.names.removeAll(QString());
    return application;
}

QList<CleanupApplication> LauncherCleanup::installedApplications() const {
    QList<CleanupApplication> all;
    for (const AppEntry& app : _applications.all())
        all.append(cleanupApplication(app));
    // Applications that are out of sight, on a volume that is not mounted, still own their files; and
    // so may removed ones.
    const auto add = [&](const AppEntry& app) {
        if (!app.alias && !_applications.withKey(appKey(app)) && !_applications.withPath(app.path) &&
            std::ranges::find(all, app.path, &CleanupApplication::path) == all.end())
            all.append(cleanupApplication(app));
    };
    _layouts.forEachApplication([&](LauncherWindowMode, const AppEntry& app) { add(app); });
    for (const LauncherWindowMode mode : LiveLayouts::modes)
        forEachItem(_places[mode].pages, [&](const LaunchpadItem& item) {
            if (const AppEntry* app = item.app())
                add(*app);
            return true;
        });
    // An application that is being installed already has a name, and perhaps files.
    for (const auto& bundle : _applications.scan().incompleteBundles)
        all.append({.names = {FileSystem::fileName(bundle.path)},
                    .bundleIdentifier = {},
                    .path = bundle.path,
                    .team = {}});
    return all;
}

void LauncherCleanup::open(const QString& key, Done done) {
    if (_isMoving)
        return refuse(busy(), done);
    const AppEntry* found = _applications.withKey(key);
    if (!found)
        return refuse(InstalledApplications::unknown(key), done);
    if (auto protection = InstalledApplications::protection(*found))
        return refuse(*std::move(protection), done);
    reset();
    _phase = Phase::scanning;
    _app = *found;
    _review.application = cleanupApplication(_app);
    _scan = AppRelatedFilesScanner::start(
        _machine, _review.application, installedApplications(), _tools->teams(),
        [this](const RelatedFilesProgress& progress) {
            _review.progress = progress;
            changed.notify();
        },
        [this, done = std::move(done)](const RelatedFilesScan& scan) {
            _review.show(scan);
            _phase = Phase::review;
            measure();
            changed.notify();
            if (done)
                done({});
        });
    changed.notify();
}

void LauncherCleanup::measure() {
    QStringList paths;
    for (const RelatedFile& file : std::as_const(_review.items))
        paths.append(file.path);
    _isMeasuring = !paths.isEmpty();
    _measuring = AppRelatedFilesScanner::startMeasuring(
        _machine, paths,
        [this](const QString& path, const MeasuredSize& size) {
            _review.setSize(path, size);
            changed.notify();
        },
        [this] {
            _isMeasuring = false;
            changed.notify();
        });
}

void LauncherCleanup::setSelected(const QString& path, bool selected) {
    if (_phase != Phase::review || _isAsking)
        return;
    _review.setSelected(path, selected);
    changed.notify();
}

void LauncherCleanup::selectAllMatches() {
    if (_phase != Phase::review || _isAsking)
        return;
    _review.selectAllMatches();
    changed.notify();
}

void LauncherCleanup::selectNothing() {
    if (_phase != Phase::review || _isAsking)
        return;
    _review.selectedPaths.clear();
    changed.notify();
}

void LauncherCleanup::reveal(const QString& path, Done done) {
    const auto task = _revealing.insert(_revealing.end(), Task());
    *task = Opener(_machine).reveal(
        path, [this, task, done = std::move(done)](const std::expected<void, QString>& shown) {
            const Task ended = std::move(*task); // kept until the end of this call
            _revealing.erase(task);
            if (!done)
                return;
            if (shown)
                done({});
            else
                done(std::unexpected(LauncherError{QStringLiteral("notShown"), shown.error(), {}}));
        });
}

void LauncherCleanup::reset() {
    ++_round;
    _scan.cancel();
    _measuring.cancel();
    _looking.cancel();
    _phase = Phase::idle;
    _app = {};
    _review = {};
    _progress = {};
    _log.clear();
    _error.reset();
    _isMeasuring = _isAsking = false;
}

void LauncherCleanup::close() {
    if (_isMoving || _phase == Phase::idle)
        return;
    reset();
    changed.notify();
}

// ---- removal

void LauncherCleanup::findRunning(std::function<void(bool)> done) {
    _looking = _machine.workers.run(
        Lane::actions,
        [tools = _tools, application = _review.application](std::stop_token) {
            return tools->running.state(application) == RunningApplications::State::open;
        },
        std::move(done));
}

void LauncherCleanup::checkHelper(std::function<void(std::expected<void, QString>)> done) {
    _askedForHelper.append(std::move(done));
    _checking = _machine.workers.run(
        Lane::actions, [tools = _tools](std::stop_token stop) { return tools->helperHealth(stop); },
        [this](const std::expected<void, QString>& health) {
            for (const auto& tell : std::exchange(_askedForHelper, {}))
                tell(health);
        });
}

void LauncherCleanup::remove(const LauncherAsker& asker, Done done) {
    if (_isMoving || _isAsking)
        return refuse(busy(), done);
    if (_phase != Phase::review || _review.selectedPaths.isEmpty())
        return refuse(
            {QStringLiteral("nothingSelected"), Texts::tr("Nothing is selected for removal."), {}},
            done);
    if (const auto guard = _history.guard(_layouts.shownMode()); !guard)
        return refuse(guard.error(), done);
    _isAsking = true;
    _error.reset();
    changed.notify();
    findRunning([this, asker, done = std::move(done)](bool isRunning) {
        if (!isRunning)
            return startRemoval(done);
        asker({.title = Texts::tr("“%1” is open").arg(_app.name),
               .text = Texts::tr("It will be asked to quit before it is moved to the Trash."),
               .accept = Texts::tr("Quit and Remove"),
               .isDestructive = true},
              [this, alive = _lifetime.watch(), round = _round, done](bool accepted) {
                  if (alive.expired() || round != _round)
                      return;
                  if (accepted)
                      return startRemoval(done);
                  _isAsking = false;
                  refuse({QStringLiteral("stillOpen"),
                          Texts::tr("%1 is still open. Quit it, then try again.").arg(_app.name),
                          {}},
                         done);
              });
    });
}

void LauncherCleanup::startRemoval(const Done& done) {
    _isAsking = false;
    if (const auto guard = _history.guard(_layouts.shownMode()); !guard)
        return refuse(guard.error(), done);
    _measuring.cancel();
    _isMeasuring = false;
    _phase = Phase::removing;
    _progress = {.done = 0, .total = _review.selectedPaths.size(), .name = {}};
    CleanupRecord record{.id = _machine.uuids.next(),
                         .name = _app.originalName,
                         .path = _app.path,
                         .bundleIdentifier = _app.bundleIdentifier,
                         .removedAt = _machine.clock.now(),
                         .items = {},
                         .restored = {},
                         .tiles = {}};
    const QString key = appKey(_app);
    _layouts.forEachApplication([&](LauncherWindowMode mode, const AppEntry& app) {
        if (appKey(app) != key)
            return;
        const LayoutDocument& document = _layouts[mode].document();
        if (const auto location = locate(document.pages, app.id))
            record.tiles.append({.mode = mode,
                                 .entry = app,
                                 .folder = location->owner(),
                                 .page = location->place.page,
                                 .index = location->place.index,
                                 .isHidden = document.hiddenKeys.contains(key)});
    });
    const auto report = [this, alive = _lifetime.watch(), mailbox = &_machine.workers.mailbox()](
                            const CleanupRemovalProgress& progress) {
        mailbox->post([this, alive, progress] {
            if (alive.expired() || _phase != Phase::removing)
                return;
            _progress = progress;
            changed.notify();
        });
    };
    struct Taken {
        RemovalStep step;
        AppInstallKind kind = AppInstallKind::manual;
    };
    move<Taken>(
        [record, items = _review.selectedItems(), report,
         &files = _machine.files](const RemovalSteps& steps, std::stop_token stop) {
            const AppInstallKind kind = installKind(files, record.path);
            return Taken{steps.take(record, items, true, stop, report), kind};
        },
        [this, done](const Taken& taken) { finishRemoval(taken.step, taken.kind, done); });
}

void LauncherCleanup::finishRemoval(const RemovalStep& taken, AppInstallKind kind, const Done& done) {
    _helperNotice.reset();
    _log = taken.log;
    const CleanupRecord& record = taken.record;
    if (record.items.isEmpty()) {
        // Nothing was moved: the user can choose or try again.
        _phase = Phase::review;
        endMoving();
        return refuse(
            !taken.stillOpen.isEmpty()
                ? LauncherError{QStringLiteral("stillOpen"), taken.failure.value_or(QString()), {}}
                : LauncherError{QStringLiteral("notRemoved"),
                                taken.failure.value_or(Texts::tr("Nothing was moved to the Trash.")),
                                {}},
            done);
    }
    _phase = Phase::done;
    const CleanupItemResult* bundle = record.bundle();
    EditStep step{.name = editName(EditKind::moveToTrash),
                  .mode = _layouts.shownMode(),
                  .trashedApps = {{.name = _app.name,
                                   .originalURL = record.path,
                                   .installKind = kind,
                                   .trashedURL = bundle ? bundle->trashedPath : std::nullopt,
                                   .removal = record.id}},
                  .isSavedAtOnce = true};
    if (bundle) {
        const QSet<QString> keys{appKey(_app)};
        _places.rememberRemoved(_layouts, _app.path);
        step.document = removeApplications(_layouts[step.mode].document(), keys);
        step.otherDocument = removeApplications(_layouts[otherMode(step.mode)].document(), keys);
        _applications.forget(_app.path);
    }
    _lastRemoval = record.id;
    makeStep(std::move(step), record, [this, done] {
        endMoving();
        changed.notify();
        if (done)
            done({});
    });
}

void LauncherCleanup::makeStep(EditStep step, const CleanupRecord& record, std::function<void()> done) {
    const auto ended = [this, record, done = std::move(done)](const Outcome& saved) {
        if (!saved) {
            _log.append({CleanupLogLine::Kind::failed, record.path,
                         record.name + QStringLiteral(": ") + saved.error().message});
            _messages.report(saved.error());
        }
        done();
    };
    if (const auto made = _history.make(std::move(step), ended); !made)
        ended(std::unexpected(made.error()));
}

void LauncherCleanup::stop() {
    _stopMoving.request_stop();
    changed.notify();
}

void LauncherCleanup::endMoving(std::function<void()> scanned) {
    _isMoving = false;
    _hold.reset();
    _applications.rescan(std::move(scanned));
}

} // namespace tessellar
