#include "launcher/launcher_cleanup.h"

#include "launcher/cleanup_tools.h"
#include "launcher/launcher_view_model.h"
#include "model/app_state.h"

#include <algorithm>

namespace tessellar {

static LauncherError busy() {
    return {QStringLiteral("removalInProgress"), QStringLiteral("A removal is still in progress."), {}};
}

LauncherCleanup::LauncherCleanup(LauncherViewModel& launcher, Machine& machine)
    : _launcher(launcher), _machine(machine) {
    // The setup of the helper speaks from a worker, perhaps after this has gone.
    const auto present = [this, alive = std::weak_ptr(_alive), mailbox = &machine.workers.mailbox()](
                             const std::optional<HelperNotice>& notice) {
        mailbox->post([this, alive, notice] {
            if (alive.expired())
                return;
            _helperNotice = notice;
            changed();
        });
    };
    _tools = std::make_shared<CleanupTools>(machine, present);
    launcher.editor().setTrash(
        [this](QList<TrashedAppRecord> records, LayoutUndoActions::TrashDone done) {
            restoreApps(std::move(records), std::move(done));
        },
        [this](QList<TrashedAppRecord> records, LayoutUndoActions::TrashDone done) {
            trashApps(std::move(records), std::move(done));
        });
}

LauncherCleanup::~LauncherCleanup() { stop(); }

void LauncherCleanup::changed() { _launcher.changed(LauncherChange::cleanup); }

void LauncherCleanup::refuse(LauncherError error, const Done& done) {
    _error = error;
    changed();
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
    for (const AppEntry& app : _launcher.lastScannedApps())
        all.append(cleanupApplication(app));
    // What is being installed has a name already, and perhaps files.
    for (const auto& bundle : _launcher.lastScan().incompleteBundles)
        all.append({.names = {FileSystem::fileName(bundle.path)},
                    .bundleIdentifier = {},
                    .path = bundle.path,
                    .team = {}});
    return all;
}

void LauncherCleanup::open(const QString& key, Done done) {
    if (_isMoving)
        return refuse(busy(), done);
    const AppEntry* found = _launcher.application(key);
    if (!found)
        return refuse(LauncherViewModel::unknownApplication(key), done);
    if (FileSystem::isWithin(found->path, QStringLiteral("/System")))
        return refuse({QStringLiteral("protectedApplication"),
                       QStringLiteral("“%1” belongs to macOS and cannot be removed.").arg(found->name),
                       {}},
                      done);
    if (isNestedInAnotherApplication(found->path))
        return refuse(
            {QStringLiteral("protectedApplication"),
             QStringLiteral("“%1” is a part of another application and goes with it.").arg(found->name),
             {}},
            done);
    if (found->bundleIdentifier == applicationIdentifier)
        return refuse({QStringLiteral("protectedApplication"),
                       QStringLiteral("Tessellar cannot remove itself."),
                       {}},
                      done);
    reset();
    _phase = Phase::scanning;
    _app = *found;
    _review.application = cleanupApplication(_app);
    _scan = AppRelatedFilesScanner::start(
        _machine, _review.application, installedApplications(), _tools->teams(),
        [this](const RelatedFilesProgress& progress) {
            _review.progress = progress;
            changed();
        },
        [this, done = std::move(done)](const RelatedFilesScan& scan) {
            _review.show(scan);
            _phase = Phase::review;
            measure();
            changed();
            if (done)
                done({});
        });
    changed();
}

void LauncherCleanup::measure() {
    QStringList paths;
    for (const RelatedFile& file : std::as_const(_review.items))
        paths.append(file.path);
    _isMeasuring = !paths.isEmpty();
    _measuring = AppRelatedFilesScanner::startMeasuring(
        _machine, paths,
        [this](const QString& path, const MeasuredSize& size) {
            _review.setSize(path, size.bytes);
            changed();
        },
        [this] {
            _isMeasuring = false;
            changed();
        });
}

void LauncherCleanup::setSelected(const QString& path, bool selected) {
    if (_phase != Phase::review || _isAsking)
        return;
    _review.setSelected(path, selected);
    changed();
}

void LauncherCleanup::selectAllMatches() {
    if (_phase != Phase::review || _isAsking)
        return;
    _review.selectAllMatches();
    changed();
}

void LauncherCleanup::selectPreselected() {
    if (_phase != Phase::review || _isAsking)
        return;
    for (const RelatedFile& file : std::as_const(_review.items))
        _review.setSelected(file.path, CleanupReviewState::isPreselected(file));
    changed();
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
    changed();
}

// ---- removal

void LauncherCleanup::findRunning(std::function<void(bool)> done) {
    _looking =
        _machine.workers.run([tools = _tools, application = _review.application](
                                 std::stop_token) { return tools->running.isRunning(application); },
                             std::move(done));
}

void LauncherCleanup::checkHelper(std::function<void(std::expected<void, QString>)> done) {
    _checking = _machine.workers.run(
        [tools = _tools](std::stop_token stop) { return tools->helperHealth(stop); }, std::move(done));
}

void LauncherCleanup::remove(const LauncherAsker& asker, Done done) {
    if (_isMoving || _isAsking)
        return refuse(busy(), done);
    if (_phase != Phase::review || _review.selectedPaths.isEmpty())
        return refuse({QStringLiteral("nothingSelected"),
                       QStringLiteral("There is nothing chosen to remove."),
                       {}},
                      done);
    if (const auto guard = _launcher.editGuard(); !guard)
        return refuse(guard.error(), done);
    _isAsking = true;
    _error.reset();
    changed();
    findRunning([this, asker, done = std::move(done)](bool isRunning) {
        if (!isRunning)
            return startRemoval(done);
        asker({.title = QStringLiteral("“%1” is open").arg(_app.name),
               .text = QStringLiteral("It is asked to quit before it is moved to the Trash."),
               .accept = QStringLiteral("Quit and Remove"),
               .isDestructive = true},
              [this, alive = std::weak_ptr(_alive), round = _round, done](bool accepted) {
                  if (alive.expired() || round != _round)
                      return;
                  if (accepted)
                      return startRemoval(done);
                  _isAsking = false;
                  refuse(stillOpen(_app.name), done);
              });
    });
}

LauncherError LauncherCleanup::stillOpen(const QString& name) {
    return {QStringLiteral("stillOpen"),
            QStringLiteral("%1 is still open. Quit it, then try again.").arg(name),
            {}};
}

QList<RemovedTile> LauncherCleanup::tilesOf(const QString& key) const {
    const LauncherWindowMode shown = _launcher.mode();
    QList<RemovedTile> tiles;
    for (const auto& [mode, document] : {std::pair{shown, _launcher.document()},
                                         std::pair{otherMode(shown), _launcher.otherDocument()}}) {
        forEachItem(document.pages, [&](const LaunchpadItem& item) {
            if (item.app() && appKey(*item.app()) == key)
                if (const auto location = locate(document.pages, item.id()))
                    tiles.append({.mode = mode,
                                  .entry = *item.app(),
                                  .folder = location->owner(),
                                  .page = location->place.page,
                                  .index = location->place.index,
                                  .isHidden = document.hiddenKeys.contains(key)});
            return true;
        });
    }
    return tiles;
}

void LauncherCleanup::startRemoval(const Done& done) {
    _isAsking = false;
    if (const auto guard = _launcher.editGuard(); !guard)
        return refuse(guard.error(), done);
    _measuring.cancel();
    _isMeasuring = false;
    _phase = Phase::removing;
    _progress = {.done = 0, .total = _review.selectedPaths.size(), .name = {}};
    beginMoving();
    CleanupRecord record{.id = _machine.uuids.next(),
                         .name = _app.originalName,
                         .path = _app.path,
                         .bundleIdentifier = _app.bundleIdentifier,
                         .removedAt = _machine.clock.now(),
                         .items = {},
                         .tiles = tilesOf(appKey(_app))};
    struct Removed {
        CleanupRemovalResult result;
        CleanupRecord record;
        AppInstallKind kind = AppInstallKind::manual;
        std::optional<FileError> failure; ///< of writing the record
    };
    _moving = _machine.workers.run(
        [tools = _tools, application = _review.application, items = _review.selectedItems(), record,
         source = _stopMoving, progress = progressTeller()](std::stop_token stop) {
            const std::stop_callback ended(stop, [source]() mutable { source.request_stop(); });
            Removed removed{.record = record};
            removed.kind = installKind(tools->machine.files, application.path);
            // Before anything moves, so that even a launcher that is killed meanwhile loses nothing.
            const CleanupRecordStore store(tools->machine, toText(record.id));
            const auto note = [&](const QList<CleanupItemResult>& planned) {
                removed.record.items = planned;
                return store.put(removed.record);
            };
            removed.result =
                tools->remover(true).remove(application, items, source.get_token(), progress, note);
            removed.record.items.clear();
            std::ranges::copy_if(removed.result.items, std::back_inserter(removed.record.items),
                                 &CleanupItemResult::isMoved);
            if (const auto written = store.put(removed.record); !written)
                removed.failure = written.error();
            return removed;
        },
        [this, done](Removed removed) { // NOLINT: what is said to leak is the work's, and moved with it
            if (removed.failure)
                _machine.log.warning(message(*removed.failure));
            finishRemoval(removed.result, removed.record, removed.kind, done);
        });
    changed();
}

AppCleanupRemover::Progress LauncherCleanup::progressTeller() {
    return [this, alive = std::weak_ptr(_alive),
            mailbox = &_machine.workers.mailbox()](const CleanupRemovalProgress& progress) {
        mailbox->post([this, alive, progress] {
            if (alive.expired() || _phase != Phase::removing)
                return;
            _progress = progress;
            changed();
        });
    };
}

void LauncherCleanup::finishRemoval(const CleanupRemovalResult& result, const CleanupRecord& record,
                                    AppInstallKind kind, const Done& done) {
    _helperNotice.reset();
    _log = result.log;
    if (record.items.isEmpty()) {
        // Nothing has changed: the user may choose again, or try again.
        _phase = Phase::review;
        endMoving();
        const auto failed = std::ranges::find_if(
            result.items, [](const CleanupItemResult& item) { return !item.isMoved(); });
        return refuse(!result.stillRunning.isEmpty() ? stillOpen(result.stillRunning.first())
                      : failed == result.items.end()
                          ? LauncherError{QStringLiteral("notRemoved"),
                                          QStringLiteral("Nothing was moved to the Trash."),
                                          {}}
                          : LauncherError{QStringLiteral("notRemoved"), *failed->failure, {}},
                      done);
    }
    _phase = Phase::done;
    keepInHistory(record, kind);
    endMoving();
    changed();
    if (done)
        done({});
}

void LauncherCleanup::keepInHistory(const CleanupRecord& record, AppInstallKind kind) {
    LauncherEditor& editor = _launcher.editor();
    LayoutUndoState before = editor.snapshot();
    const CleanupItemResult* bundle = record.bundle();
    if (bundle) {
        const QSet<QString> keys{appKey(_app)};
        const LayoutDocument other = _launcher.otherDocument();
        _launcher.replaceDocument(removeApplications(before.document, keys));
        _launcher.replaceOtherDocument(removeApplications(other, keys));
        _launcher.forgetApplication(_app.path);
    }
    _taken.append(record);
    _lastRemoval = record.id;
    if (_taken.size() > LayoutUndoHistory::undoLimit)
        _taken.removeFirst();
    editor.record(EditKind::moveToTrash, 1, std::move(before),
                  {{.name = _app.name,
                    .originalURL = record.path,
                    .installKind = kind,
                    .trashedURL = bundle ? bundle->trashedPath : std::nullopt}});
}

void LauncherCleanup::stop() { _stopMoving.request_stop(); }

void LauncherCleanup::beginMoving() {
    _isMoving = true;
    _stopMoving = std::stop_source();
}

void LauncherCleanup::endMoving(std::function<void()> scanned) {
    _isMoving = false;
    _launcher.scanAfterMoving(std::move(scanned));
}

} // namespace tessellar
