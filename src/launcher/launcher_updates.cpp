#include "launcher/launcher_updates.h"

#include "launcher/date_text.h"
#include "launcher/installed_applications.h"
#include "launcher/launcher_messages.h"
#include "launcher/smart_folder_library.h"
#include "platform/texts.h"

#include <algorithm>

namespace tessellar {

static LauncherError launcherError(AppUpdateError error) {
    static constexpr std::array codes{"updatesDisabled", "alreadyChecking", "unknownApplication"};
    return {QString::fromLatin1(codes[static_cast<std::size_t>(error)]), message(error), {}};
}

LauncherUpdates::LauncherUpdates(Machine& machine, InstalledApplications& applications,
                                 SmartFolderLibrary& smartFolders, LauncherMessages& messages)
    : _machine(machine)
    , _applications(applications)
    , _smartFolders(smartFolders)
    , _messages(messages)
    , _opener(machine)
    , _scanned(applications.scanned.connect([this] { scanned(); }))
    , _keysChanged(applications.keysChanged.connect(
          [this](const QHash<QString, QString>& changedKeys) { changeKeys(changedKeys); }))
    , _smartFoldersChanged(smartFolders.changed.connect([this] { smartFoldersChanged(); })) {}

LauncherUpdates::~LauncherUpdates() = default;

// ---- loading

void LauncherUpdates::scanned() {
    if (_coordinator)
        _coordinator->updateApps(_applications.all());
    else if (_isWanted || areSmartFoldersInterested())
        requestLoad();
}

void LauncherUpdates::changeKeys(const QHash<QString, QString>& changedKeys) {
    if (_coordinator)
        return _coordinator->known().changeKeys(changedKeys);
    // Changes the file, because the coordinator may not be loaded before the launcher ends. A load in
    // progress is outdated.
    _haveKeysChanged = true;
    _machine.workers.submit(Lane::saving, {}, [&machine = _machine, changedKeys](std::stop_token) {
        AppUpdateStore::changeKeys(machine, changedKeys);
    });
    if (std::exchange(_isLoading, false))
        requestLoad();
}

void LauncherUpdates::smartFoldersChanged() {
    if (!_isWanted && areSmartFoldersInterested())
        requestLoad();
    else if (_isReady)
        learnChannelsForSmartFolders();
}

void LauncherUpdates::settingsChanged() {
    if (!_coordinator)
        return;
    _coordinator->settingsChanged();
    feedSmartFolders();
    changed.notify();
}

void LauncherUpdates::requestLoad() {
    _isWanted = true;
    if (_coordinator || _isLoading || !_applications.hasScanned())
        return;
    _isLoading = true;
    _loading = _machine.workers.run(
        _haveKeysChanged ? Lane::saving : Lane::files, // after the change
        [&machine = _machine](std::stop_token) { return StoredUpdates::read(machine); },
        [this](StoredUpdates stored) { loaded(std::move(stored)); });
}

void LauncherUpdates::loaded(StoredUpdates stored) {
    _isLoading = false;
    _coordinator = std::make_unique<AppUpdateCoordinator>(_machine, std::move(stored));
    _events =
        _coordinator->known().events.connect([this](const AppUpdateEvent& event) { handle(event); });
    if (_isScheduleWanted)
        _coordinator->start();
    _coordinator->updateApps(_applications.all());
}

/// Handles all of the coordinator's events.
void LauncherUpdates::handle(const AppUpdateEvent& event) {
    using Kind = AppUpdateEvent::Kind;
    switch (event.kind) {
    case Kind::inspected:
        return inspected();
    case Kind::changed:
        feedSmartFolders();
        return changed.notify();
    case Kind::progressed:
        if (_watcher.progress)
            _watcher.progress();
        return;
    case Kind::recorded:
        if (const auto found = of(event.appKey).record(); found && _watcher.result)
            _watcher.result(event.appKey, *found);
        return;
    case Kind::actionChanged: {
        // While a tool replaces bundles, none of them counts as removed.
        _replacing = isRunning() ? _applications.replacing() : nullptr;
        const auto state = of(event.appKey).actionState();
        using enum AppUpdateActionState::Phase;
        const bool isPasswordAsked = state && state->phase == password && !state->isOver();
        if (isPasswordAsked && !_wasPasswordAsked)
            passwordAsked.notify();
        // An update resumed from an earlier launcher may have asked long ago: it must not close this
        // launcher.
        _wasPasswordAsked = isPasswordAsked ||
                            (state && state->phase == starting && _coordinator->runner().isResumed());
        return ran.notify(event.appKey);
    }
    case Kind::updated:
        return _applications.rescan();
    }
}

/// The bundles have been inspected.
void LauncherUpdates::inspected() {
    _isReady = true;
    feedSmartFolders();
    for (const auto& done : std::exchange(_waiting, {}))
        done();
    learnChannelsForSmartFolders();
}

/// The bundles do not tell which applications are Homebrew's, and smart folders must not guess.
void LauncherUpdates::learnChannelsForSmartFolders() {
    if (_coordinator->areChannelsKnown() ||
        !(needsOf(_smartFolders.definitions()) & SmartFolderNeed::channels))
        return;
    _coordinator->learnChannels([this] {
        _wereChannelsAsked = true;
        feedSmartFolders();
    });
}

void LauncherUpdates::startSchedule(std::unique_ptr<NetworkWatch> network) {
    _isScheduleWanted = true;
    _network = std::move(network);
    if (_network)
        _networkReturned = _network->returned.connect([this] {
            if (_coordinator)
                _coordinator->networkReturned();
        });
    requestLoad();
    if (_coordinator)
        _coordinator->start();
}

void LauncherUpdates::whenReady(std::function<void()> done) {
    if (_isReady)
        return done();
    _waiting.push_back(std::move(done));
    requestLoad();
}

void LauncherUpdates::whenChannelsKnown(std::function<void()> done) {
    whenReady([this, done = std::move(done)] { _coordinator->learnChannels(done); });
}

// ---- smart folders

bool LauncherUpdates::areSmartFoldersInterested() const {
    return bool(needsOf(_smartFolders.definitions()) &
                (SmartFolderNeed::updates | SmartFolderNeed::channels));
}

void LauncherUpdates::feedSmartFolders() {
    if (!_isReady)
        return;
    SmartFolderRuntimeFacts facts = _smartFolders.runtimeFacts();
    // A failed tool will not report more for now.
    facts.pending = _coordinator->areChannelsKnown() || _wereChannelsAsked
                        ? SmartFolderNeeds()
                        : SmartFolderNeeds(SmartFolderNeed::channels);
    facts.updateCheckingEnabled = isEnabled();
    facts.updateStatuses.clear();
    facts.distributionChannels.clear();
    const AppUpdateStatuses& statuses = _coordinator->known().statuses();
    if (facts.updateCheckingEnabled)
        for (auto it = statuses.constBegin(); it != statuses.constEnd(); ++it)
            facts.updateStatuses.insert(it.key(), static_cast<SmartFolderUpdateState>(it->index()));
    static constexpr std::array channels{SmartFolderDistributionChannel::homebrew,
                                         SmartFolderDistributionChannel::macAppStore,
                                         SmartFolderDistributionChannel::sparkle};
    for (const AppEntry& app : _applications.all())
        if (const auto channel = _coordinator->channels().channel(appKey(app)))
            facts.distributionChannels.insert(appKey(app), channels[channel->index()]);
    _smartFolders.setRuntimeFacts(std::move(facts));
}

AppUpdateView LauncherUpdates::of(const QString& appKey) const { return {_coordinator.get(), appKey}; }

// ---- all applications

AppUpdateStatuses LauncherUpdates::knownStatuses() const {
    return _coordinator ? _coordinator->known().knownStatuses() : AppUpdateStatuses();
}

qsizetype LauncherUpdates::availableCount() const {
    return _coordinator ? _coordinator->known().tally().available : 0;
}

std::optional<Instant> LauncherUpdates::lastCheck() const {
    return _coordinator ? _coordinator->known().lastCheck() : std::nullopt;
}

QHash<QString, AppUpdateChannel> LauncherUpdates::channels() const {
    return _coordinator ? _coordinator->channels().all() : QHash<QString, AppUpdateChannel>();
}

QList<AppUpdateProblem> LauncherUpdates::problems() const {
    return _coordinator ? _coordinator->known().problems() : QList<AppUpdateProblem>();
}

// ---- settings

bool LauncherUpdates::isEnabled() const { return readAppUpdateSettings(_machine.settings).enabled; }

QString LauncherUpdates::summary() const {
    const auto date = lastCheck();
    const QString last = date ? dateText(*date, _machine.locale) : QString();
    if (isChecking())
        return update_texts::checking();
    return update_texts::summary(_coordinator ? _coordinator->known().tally() : AppUpdateTally(),
                                 problems(), last);
}

// ---- checks

std::function<void()> LauncherUpdates::check(std::optional<AppUpdateChannelKind> channel,
                                             Watcher watcher) {
    const auto stage = std::make_shared<Stage>(Stage::waiting);
    const auto told = std::make_shared<Watcher>(std::move(watcher));
    whenReady([this, channel, stage, told] {
        if (*stage == Stage::over)
            return;
        const auto begun = _coordinator->check({.channel = channel}, [this, stage](bool completed) {
            *stage = Stage::over;
            if (const auto done = std::exchange(_watcher, {}).done)
                done(completed);
        });
        *stage = begun ? Stage::underWay : Stage::over;
        if (!begun) {
            if (told->done)
                told->done(std::unexpected(launcherError(begun.error())));
            else if (begun.error() != AppUpdateError::alreadyChecking)
                _messages.showNotice(message(begun.error()));
            return;
        }
        _watcher = *told;
        if (told->progress)
            told->progress();
    });
    return [this, stage, waiting = std::weak_ptr(told)] {
        if (*stage == Stage::underWay)
            return cancelCheck();
        const auto left = waiting.lock();
        if (std::exchange(*stage, Stage::over) == Stage::waiting && left && left->done)
            left->done(false);
    };
}

void LauncherUpdates::cancelCheck() {
    if (_coordinator)
        _coordinator->cancelCheck();
}

bool LauncherUpdates::isChecking() const { return _coordinator && _coordinator->isChecking(); }

AppUpdateProgress LauncherUpdates::progress() const {
    return _coordinator ? _coordinator->progress() : AppUpdateProgress();
}

// ---- the cache

LauncherUpdates::Outcome LauncherUpdates::flush() {
    if (_coordinator)
        if (const auto saved = _coordinator->known().flush(); !saved)
            return std::unexpected(launcherError(saved.error()));
    return {};
}

} // namespace tessellar
