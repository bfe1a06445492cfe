#include "launcher/launcher_view_model.h"

#include "launcher/launcher_icons.h"
#include "launcher/launcher_import.h"
#include "launcher/library_watch.h"
#include "launcher/smart_folder_editing.h"
#include "model/app_state.h"

#include <algorithm>

namespace tessellar {

using StorageCode = LayoutStore::StorageError::Code;

LauncherViewModel::LauncherViewModel(Machine& machine, LauncherWindowMode mode, Pasteboard* pasteboard)
    : _machine(machine)
    , _store(machine, LayoutStore::defaultDirectory(machine.places))
    , _mode(mode)
    , _smartFolders(machine, SmartFolderLibrary::defaultDirectory(machine.places),
                    [this] {
                        _editor->invalidateSearch();
                        changed(LauncherChange::smartFolders);
                    })
    , _opener(machine)
    , _editor(std::make_unique<LauncherEditor>(*this, pasteboard ? *pasteboard : _ownPasteboard))
    , _updates(std::make_unique<LauncherUpdates>(*this, machine))
    , _icons(std::make_unique<LauncherIcons>(*this, machine))
    , _launchpadImport(std::make_unique<LauncherImport>(*this, machine))
    , _libraryWatch(std::make_unique<LibraryWatch>(*this, machine))
    , _cleanup(std::make_unique<LauncherCleanup>(*this, machine))
    , _smartFolderEditing(std::make_unique<SmartFolderEditing>(*this, machine)) {}

LauncherViewModel::~LauncherViewModel() { (void)quit(); }

// ---- listeners

LauncherViewModel::Subscription LauncherViewModel::subscribe(Listener listener) {
    auto subscription = std::make_shared<Listener>(std::move(listener));
    _listeners.push_back(subscription);
    return subscription;
}

void LauncherViewModel::changed(LauncherChange change) {
    if (change == LauncherChange::layout) {
        if (_editor)
            _editor->invalidateSearch();
        _smartFolders.setCustomNames(customNames());
    }
    _listeners.remove_if([](const auto& listener) { return listener.expired(); });
    // A copy: a listener may subscribe, or end another's subscription.
    for (const auto& weak : std::list(_listeners))
        if (const auto listener = weak.lock())
            (*listener)(change);
}

// ---- start and end

void LauncherViewModel::start() {
    inEachMode([&] { _loaded[static_cast<std::size_t>(mode())] = _store.load(mode()); });
    _smartFolders.load();
    if (const auto& failure = _smartFolders.failure())
        alert({failure->code, SmartFolderLibrary::unavailableNotice(), failure->title});
    scan([this](std::optional<AppScanner::LibraryScan> scan) {
        if (!scan) // stopped: nothing is known, and nothing may be dropped on its account
            return;
        _lastScan = *std::move(scan);
        finishStartUp();
    });
}

void LauncherViewModel::startAndWait() {
    start();
    while (!_isBootstrapped)
        _machine.workers.mailbox().waitAndDrain();
}

void LauncherViewModel::finishStartUp() {
    inEachMode([&] {
        const LayoutStore::LoadResult loaded =
            std::exchange(_loaded[static_cast<std::size_t>(mode())], LayoutStore::Missing());
        if (const auto* document = std::get_if<LayoutDocument>(&loaded)) {
            applyLayout(document->pages, document->hiddenKeys, ApplyKind::startUp);
        } else {
            live().pages = defaultPages();
            if (const auto* failed = std::get_if<LayoutStore::Failed>(&loaded))
                alert(launcherError(failed->error, QStringLiteral("Reset the Launchpad layout?")));
        }
        if (!isWriteBlocked())
            if (const auto saved = saveNow(QStringLiteral("Could not save the layout")); !saved)
                alert(saved.error());
    });
    _isBootstrapped = true;
    changed(LauncherChange::bootstrapped);
    changed(LauncherChange::layout);
    // After the above: the workers are to decode the icons that are seen before they gather facts.
    _icons->merged();
    _smartFolders.setApps(lastScannedApps());
    changed(LauncherChange::scanned);
}

LauncherViewModel::Outcome LauncherViewModel::quit() {
    if (const auto flushed = _store.flush(); !flushed)
        return std::unexpected(
            launcherError(flushed.error(), QStringLiteral("Could not save the layout")));
    return {};
}

void LauncherViewModel::inEachMode(const std::function<void()>& step) {
    step();
    _mode = otherMode(_mode);
    step();
    _mode = otherMode(_mode);
}

// ---- scans and merges

ScanContext LauncherViewModel::scanContext(const Machine& machine) {
    const QString tag = QString(machine.locale.identifier()).replace(u'_', u'-');
    return {.files = machine.files,
            .settings = AppDiscoverySettings::read(machine.settings, machine.places.home),
            .home = machine.places.home,
            .languages = {tag, machine.locale.languageCode()},
            .locale = machine.locale,
            .uuids = machine.uuids,
            .now = machine.clock.now()};
}

void LauncherViewModel::scan(std::function<void(std::optional<AppScanner::LibraryScan>)> done) {
    struct Scanned {
        std::optional<AppScanner::LibraryScan> scan;
        ScanCache cache;
        QStringList replacedBundles;
    };
    const Instant startedAt = _machine.clock.now();
    _scanTask = _machine.workers.run(
        [scanner = AppScanner(scanContext(_machine)), before = _scanCache](std::stop_token stop) {
            Scanned result{.scan = {}, .cache = before, .replacedBundles = {}};
            result.scan = scanner.scan(result.cache, stop);
            result.replacedBundles = result.cache.replacedBundles(before);
            return result;
        },
        [this, startedAt, done = std::move(done)](Scanned result) {
            _scanCache = std::move(result.cache);
            if (result.scan) {
                _lastScanStart = startedAt;
                _replacedBundles = std::move(result.replacedBundles);
            }
            done(std::move(result.scan));
        });
}

void LauncherViewModel::rescan(std::function<void()> done) {
    if (!_isBootstrapped)
        return;
    if (done)
        _rescanCallbacks.append(std::move(done));
    if (_cleanup->isMoving()) // it ends with a scan
        return;
    // What changes while a scan runs may have been seen by it or not: it is looked at once more.
    if (std::exchange(_isRescanning, true)) {
        _rescanAgain = true;
        return;
    }
    scan([this, movements = _movements](std::optional<AppScanner::LibraryScan> scan) {
        _isRescanning = false;
        if (_cleanup->isMoving())
            return;
        if (scan && movements == _movements)
            finishRescan(*std::move(scan));
        if (std::exchange(_rescanAgain, false))
            return rescan();
        for (const auto& callback : std::exchange(_rescanCallbacks, {}))
            callback();
    });
}

void LauncherViewModel::finishRescan(AppScanner::LibraryScan scan) {
    _lastScan = std::move(scan);
    bool shownChanged = false;
    inEachMode([&] {
        const LayoutDocument before = document();
        const QSet<QString> unavailable = live().unavailableAppKeys;
        const bool differs = applyLayout(before.pages, before.hiddenKeys, ApplyKind::rescan);
        if (differs)
            _store.scheduleSave(mode(), document());
        shownChanged = shownChanged || differs || unavailable != live().unavailableAppKeys;
    });
    if (shownChanged)
        changed(LauncherChange::layout);
    _icons->merged(_replacedBundles);
    _smartFolders.setApps(lastScannedApps());
    changed(LauncherChange::scanned);
}

void LauncherViewModel::forgetApplication(const QString& path) {
    _lastScan.apps.removeIf([&](const AppEntry& app) { return FileSystem::isWithin(app.path, path); });
    _smartFolders.setApps(lastScannedApps());
}

void LauncherViewModel::scanAfterMoving(std::function<void()> done) {
    ++_movements;
    rescan(std::move(done));
}

Pages LauncherViewModel::defaultPages() const {
    return defaultLayout(lastScannedApps(), pageCapacity(layoutSettings()), _machine.locale);
}

bool LauncherViewModel::applyLayout(const Pages& pages, const QSet<QString>& hiddenKeys, ApplyKind kind,
                                    const QList<AppEntry>& apps) {
    const MergeContext context{
        .scannedApps = apps,
        .isOutOfReach = [this](const QString& path) { return _lastScan.isOutOfReach(path); },
        .pageCapacity = pageCapacity(layoutSettings()),
        .isRestore = kind == ApplyKind::restore};
    MergeResult merged = mergeLayout(pages, hiddenKeys, context, _machine.locale);
    const bool differs = merged.pages != pages || merged.hiddenKeys != hiddenKeys;
    LiveLayout& layout = live();
    layout.pages = std::move(merged.pages);
    layout.hiddenKeys = std::move(merged.hiddenKeys);
    layout.unavailableAppKeys = std::move(merged.unavailableAppKeys);
    _icons->changeKeys(merged.changedKeys);
    if (kind == ApplyKind::restore)
        _icons->merged();
    if (kind == ApplyKind::rescan)
        tidyNavigation();
    else
        layout.navigation = {};
    return differs;
}

LauncherViewModel::Outcome LauncherViewModel::saveNow(const QString& title) {
    if (const auto saved = _store.saveNow(mode(), document()); !saved)
        return std::unexpected(launcherError(saved.error(), title));
    return {};
}

void LauncherViewModel::markGone(const QString& path) {
    const auto app = std::ranges::find(_lastScan.apps, path, &AppEntry::path);
    if (app == _lastScan.apps.end())
        return;
    for (LiveLayout& layout : _layouts)
        layout.unavailableAppKeys.insert(appKey(*app));
    changed(LauncherChange::layout);
}

const AppEntry* LauncherViewModel::application(const QString& key) const {
    const auto found =
        std::ranges::find_if(_lastScan.apps, [&](const AppEntry& app) { return appKey(app) == key; });
    return found == _lastScan.apps.end() ? nullptr : &*found;
}

// ---- what the user does

void LauncherViewModel::launch(const QString& key, std::function<void(Outcome)> done) {
    const auto refuse = [&](LauncherError error) {
        showNotice(error.message);
        if (done)
            done(std::unexpected(std::move(error)));
    };
    const AppEntry* app = application(key);
    if (!app && !unavailableAppKeys().contains(key))
        return refuse(unknownApplication(key));
    if (!app || !_machine.files.exists(app->path)) {
        if (app && !unavailableAppKeys().contains(key)) {
            markGone(app->path);
            rescan();
        }
        return refuse({QStringLiteral("unavailable"), unavailableNotice(), {}});
    }
    _launch = _opener.openApplication(app->path, [this, key, name = app->name, done = std::move(done)](
                                                     const std::expected<void, QString>& opened) {
        Outcome outcome;
        if (!opened) {
            outcome = std::unexpected(LauncherError{QStringLiteral("couldNotLaunch"), opened.error(),
                                                    QStringLiteral("Could not open “%1”").arg(name)});
            alert(outcome.error());
        } else {
            _smartFolders.recordLaunch(key);
            changed(LauncherChange::launched);
        }
        if (done)
            done(std::move(outcome));
    });
}

LauncherError LauncherViewModel::unknownApplication(const QString& key) {
    return {QStringLiteral("unknownApplication"),
            QStringLiteral("No installed application is known by “%1”.").arg(key.left(200)),
            {}};
}

LauncherViewModel::Outcome LauncherViewModel::editGuard() const {
    if (!_isBootstrapped)
        return std::unexpected(launcherError(LayoutStore::StorageError{StorageCode::layoutNotReady}));
    if (isWriteBlocked())
        return std::unexpected(
            launcherError(LayoutStore::StorageError{StorageCode::workingDocumentUnreadable}));
    if (_editor->history().isInProgress())
        return std::unexpected(LauncherError{QStringLiteral("stepInProgress"),
                                             QStringLiteral("An undo or redo is still in progress."),
                                             {}});
    return {};
}

LauncherViewModel::Outcome LauncherViewModel::resetLayout() {
    const QString title = QStringLiteral("Could not reset layout");
    if (!_isBootstrapped)
        return std::unexpected(
            launcherError(LayoutStore::StorageError{StorageCode::layoutNotReady}, title));
    if (const auto reset = _store.reset(mode()); !reset)
        return std::unexpected(launcherError(reset.error(), title));
    live() = {.pages = defaultPages(), .hiddenKeys = {}, .unavailableAppKeys = {}, .navigation = {}};
    changed(LauncherChange::layout);
    changed(LauncherChange::navigation);
    if (const auto saved = saveNow(title); !saved)
        return saved;
    showNotice(QStringLiteral("Layout reset to the default alphabetical arrangement."));
    return {};
}

std::expected<ArrangementSummary, LauncherError>
LauncherViewModel::saveArrangement(const QString& name) {
    const QString title = QStringLiteral("Could not save arrangement");
    if (const auto guard = editGuard(); !guard)
        return std::unexpected(guard.error());
    if (trimmed(name).isEmpty())
        return std::unexpected(
            LauncherError{QStringLiteral("emptyName"),
                          QStringLiteral("Name this arrangement so it can be restored later."), title});
    const auto saved = _store.saveArrangement(mode(), trimmed(name), document(), layoutSettings());
    if (!saved)
        return std::unexpected(launcherError(saved.error(), title));
    return *saved;
}

LauncherViewModel::Outcome LauncherViewModel::restoreArrangement(const QUuid& id) {
    const QString title = QStringLiteral("Could not restore arrangement");
    if (const auto guard = editGuard(); !guard)
        return guard;
    const auto arrangement = _store.arrangement(mode(), id);
    if (!arrangement)
        return std::unexpected(launcherError(arrangement.error(), title));
    const auto backup = _store.makeBackup(QStringLiteral("arrangement-restore"), {}, document());
    if (!backup)
        return std::unexpected(launcherError(backup.error(), title));
    if (arrangement->layout) {
        if (const auto stored = writeLayoutSettings(_machine.settings, mode(), *arrangement->layout);
            !stored)
            return std::unexpected(launcherError(stored.error(), title));
        changed(LauncherChange::settings);
    }
    applyLayout(arrangement->document.pages, arrangement->document.hiddenKeys, ApplyKind::restore);
    changed(LauncherChange::layout);
    changed(LauncherChange::navigation);
    return saveNow(title);
}

LauncherViewModel::Outcome LauncherViewModel::deleteArrangement(const QUuid& id) {
    if (const auto deleted = _store.deleteArrangement(mode(), id); !deleted)
        return std::unexpected(
            launcherError(deleted.error(), QStringLiteral("Could not delete arrangement")));
    return {};
}

// ---- for the editor

LayoutDocument LauncherViewModel::otherDocument() const {
    const LiveLayout& other = _layouts[1 - static_cast<std::size_t>(mode())];
    return {.pages = other.pages, .hiddenKeys = other.hiddenKeys};
}

void LauncherViewModel::replaceDocument(LayoutDocument document) {
    live().pages = std::move(document.pages);
    live().hiddenKeys = std::move(document.hiddenKeys);
    tidyNavigation();
    // What could not be saved after an earlier edit is said now; this edit's save tries again.
    if (const auto& error = _store.lastSaveError(mode()))
        alert(launcherError(*error, QStringLiteral("Could not save the layout")));
    _store.scheduleSave(mode(), this->document());
    changed(LauncherChange::layout);
}

bool LauncherViewModel::restoreDocuments(const LayoutUndoState& state) {
    const std::array before = _layouts;
    bool isSaved = true;
    inEachMode([&] {
        const LayoutDocument* document = state.documentOf(mode());
        if (!document || (document->pages == pages() && document->hiddenKeys == hiddenKeys()) ||
            !isSaved)
            return;
        live().pages = document->pages;
        live().hiddenKeys = document->hiddenKeys;
        isSaved = saveNow({}).has_value();
    });
    if (!isSaved) {
        // The first mode may have been saved before the second failed: its file goes back too.
        _layouts = before;
        inEachMode([&] {
            if (state.documentOf(mode()) && !isWriteBlocked())
                _store.scheduleSave(mode(), document());
        });
        return false;
    }
    inEachMode([&] { markUnavailable(); });
    changed(LauncherChange::layout);
    return true;
}

void LauncherViewModel::replaceOtherDocument(LayoutDocument document) {
    const LauncherWindowMode shown = mode();
    inEachMode([&] {
        if (mode() == shown || (document.pages == pages() && document.hiddenKeys == hiddenKeys()))
            return;
        live().pages = document.pages;
        live().hiddenKeys = document.hiddenKeys;
        tidyNavigation();
        _store.scheduleSave(mode(), this->document());
    });
}

void LauncherViewModel::restoreNavigation(LauncherWindowMode which, const Navigation& navigation) {
    setMode(which);
    live().navigation = navigation;
    tidyNavigation();
    changed(LauncherChange::navigation);
    changed(LauncherChange::selection);
}

QHash<QString, QString> LauncherViewModel::customNames() const {
    QHash<QString, QString> names;
    forEachItem(pages(), [&](const LaunchpadItem& item) {
        if (const AppEntry* app = item.app(); app && !app->alias && app->name != app->originalName)
            names.insert(appKey(*app), app->name);
        return true;
    });
    return names;
}

void LauncherViewModel::markUnavailable() {
    QSet<QString> installed;
    for (const AppEntry& app : lastScannedApps())
        installed.insert(appKey(app));
    QSet<QString>& unavailable = live().unavailableAppKeys;
    unavailable.clear();
    forEachItem(pages(), [&](const LaunchpadItem& item) {
        if (const AppEntry* app = item.app(); app && !installed.contains(appKey(*app)))
            unavailable.insert(appKey(*app));
        return true;
    });
}

void LauncherViewModel::lookAgainAfterStep() {
    QSet<QString> tiles;
    forEachItem(pages(), [&](const LaunchpadItem& item) {
        if (const AppEntry* app = item.app())
            tiles.insert(appKey(*app));
        return true;
    });
    const bool isComplete = std::ranges::all_of(
        lastScannedApps(), [&](const AppEntry& app) { return tiles.contains(appKey(app)); });
    if (!isComplete || !unavailableAppKeys().isEmpty())
        rescan();
}

// ---- what the user is told

void LauncherViewModel::showNotice(const QString& text, const QString& symbolName,
                                   std::chrono::milliseconds duration) {
    _notice = LauncherNotice{text, symbolName, ++_noticeRevision};
    _noticeTimer = _machine.scheduler.after(duration, [this] {
        _notice.reset();
        changed(LauncherChange::notice);
    });
    changed(LauncherChange::notice);
}

void LauncherViewModel::alert(LauncherError error) {
    _alerts.append(std::move(error));
    changed(LauncherChange::alert);
}

QList<LauncherError> LauncherViewModel::takeAlerts() { return std::exchange(_alerts, {}); }

bool LauncherViewModel::present() {
    if (_present)
        _present();
    return _present != nullptr;
}

void LauncherViewModel::report(const LauncherError& error) {
    if (error.title.isEmpty())
        showNotice(error.message);
    else
        alert(error);
}

// ---- what the user is asked

void LauncherViewModel::ask(const LauncherQuestion& question, std::function<void(bool)> answer) {
    _questions.push_back({question, std::move(answer)});
    if (_questions.size() == 1)
        changed(LauncherChange::question);
}

LauncherAsker LauncherViewModel::asker() {
    return [this](const LauncherQuestion& question, std::function<void(bool)> answer) {
        ask(question, std::move(answer));
    };
}

const LauncherQuestion* LauncherViewModel::question() const {
    return _questions.empty() ? nullptr : &_questions.front().question;
}

void LauncherViewModel::answer(bool accepted) {
    if (_questions.empty())
        return;
    const auto answer = std::move(_questions.front().answer);
    _questions.pop_front();
    changed(LauncherChange::question);
    answer(accepted);
}

} // namespace tessellar
