#include "launcher/launcher_updates.h"

#include "launcher/installed_applications.h"
#include "launcher/launcher_messages.h"
#include "launcher/smart_folder_library.h"

#include <QDateTime>
#include <QLocale>
#include <QTimeZone>

#include <algorithm>

namespace tessellar {

static const QString badgeOfUpdate = QStringLiteral("↓");

static LauncherError launcherError(AppUpdateError error) {
    static constexpr std::array codes{"updatesDisabled", "alreadyChecking", "unknownApplication"};
    return {QString::fromLatin1(codes[static_cast<std::size_t>(error)]), message(error), {}};
}

/// What one caller asked for: told of its end once, whatever ends it.
struct LauncherUpdates::Wish {
    enum class Stage { waiting, underWay, verifying, over };
    Stage stage = Stage::waiting;
    RunDone done;
    QString text; ///< what is to be said of an update that has come through

    void end(const std::expected<QString, LauncherError>& outcome) {
        if (std::exchange(stage, Stage::over) != Stage::over && done)
            std::exchange(done, nullptr)(outcome);
    }
};

LauncherUpdates::LauncherUpdates(Machine& machine, InstalledApplications& applications,
                                 SmartFolderLibrary& smartFolders, LauncherMessages& messages)
    : _machine(machine)
    , _applications(applications)
    , _smartFolders(smartFolders)
    , _messages(messages)
    , _scanned(applications.scanned.connect([this] { scanned(); }))
    , _smartFoldersChanged(smartFolders.changed.connect([this] { smartFoldersChanged(); })) {}

LauncherUpdates::~LauncherUpdates() = default;

// ---- what begins and ends its work

void LauncherUpdates::scanned() {
    if (_coordinator)
        _coordinator->updateApps(_applications.all());
    else if (_isWanted || areSmartFoldersInterested())
        want();
}

void LauncherUpdates::smartFoldersChanged() {
    if (!_isWanted && areSmartFoldersInterested())
        want();
}

void LauncherUpdates::settingsChanged() {
    if (!_coordinator)
        return;
    _coordinator->settingsChanged();
    feedSmartFolders();
    publish();
}

void LauncherUpdates::want() {
    _isWanted = true;
    if (_coordinator || _isLoading || !_applications.isKnown())
        return;
    _isLoading = true;
    _loading = _machine.workers.run(
        [&machine = _machine](std::stop_token) { return StoredUpdates::read(machine); },
        [this](StoredUpdates stored) { loaded(std::move(stored)); });
}

void LauncherUpdates::loaded(StoredUpdates stored) {
    _isLoading = false;
    _coordinator = std::make_unique<AppUpdateCoordinator>(_machine, std::move(stored));
    AppUpdateCoordinator& updates = *_coordinator;
    updates.onStatusesChanged = [this] {
        feedSmartFolders();
        publish();
    };
    updates.onChannelsChanged = [this] { known(); };
    updates.onProgress = [this] {
        if (_watcher.progress)
            _watcher.progress();
        publish();
    };
    updates.onResult = [this](const QString& appKey, const AppUpdateRecord& record) {
        if (_watcher.result)
            _watcher.result(appKey, record);
    };
    updates.onActionStatesChanged = [this] { publish(); };
    updates.presentAlert = [this](const AppUpdateAlert& alert, std::function<void(bool)> answer) {
        if (!alert.isQuestion)
            return _messages.alert({QStringLiteral("updateInProgress"), alert.title, {}});
        _asker({.title = alert.title, .text = alert.text, .accept = QStringLiteral("Update")},
               std::move(answer));
    };
    updates.beginExternalSystemUI = [this] {
        ++_externalUpdaters;
        publish();
    };
    updates.endExternalSystemUI = [this] {
        --_externalUpdaters;
        publish();
    };
    updates.onUpdateCompleted = [this](const QString& appKey) {
        _applications.look();
        const auto verified = _verified.values(appKey);
        _verified.remove(appKey);
        for (const auto& told : verified)
            told();
    };
    if (_isScheduleWanted)
        updates.start();
    updates.updateApps(_applications.all());
}

/// What the bundles say is known, or what the brews say.
void LauncherUpdates::known() {
    _isKnown = true;
    feedSmartFolders();
    publish();
    for (const auto& done : std::exchange(_waiting, {}))
        done();
}

void LauncherUpdates::startSchedule() {
    _isScheduleWanted = true;
    want();
    if (_coordinator)
        _coordinator->start();
}

void LauncherUpdates::whenKnown(std::function<void()> done) {
    if (_isKnown)
        return done();
    _waiting.push_back(std::move(done));
    want();
}

void LauncherUpdates::whenChannelsKnown(std::function<void()> done) {
    whenKnown([this, done = std::move(done)] { _coordinator->learnChannels(done); });
}

// ---- smart folders

bool LauncherUpdates::areSmartFoldersInterested() const {
    return bool(_smartFolders.needs() & (SmartFolderNeed::updates | SmartFolderNeed::channels));
}

void LauncherUpdates::feedSmartFolders() {
    if (!_isKnown)
        return;
    SmartFolderRuntimeFacts facts = _smartFolders.runtimeFacts();
    facts.pending = {};
    facts.updateCheckingEnabled = isEnabled();
    facts.updateStatuses.clear();
    facts.distributionChannels.clear();
    const AppUpdateStatuses& statuses = _coordinator->knownStatuses();
    if (facts.updateCheckingEnabled)
        for (auto it = statuses.constBegin(); it != statuses.constEnd(); ++it)
            facts.updateStatuses.insert(it.key(), static_cast<SmartFolderUpdateState>(it->index()));
    static constexpr std::array channels{SmartFolderDistributionChannel::homebrew,
                                         SmartFolderDistributionChannel::macAppStore,
                                         SmartFolderDistributionChannel::sparkle};
    for (const AppEntry& app : _applications.all())
        if (const auto kind = _coordinator->channelKind(appKey(app)))
            facts.distributionChannels.insert(appKey(app), channels[static_cast<std::size_t>(*kind)]);
    _smartFolders.setRuntimeFacts(std::move(facts));
}

void LauncherUpdates::publish() {
    _isPublishWanted = true;
    if (_publishTimer.isActive())
        return;
    _isPublishWanted = false;
    _publishTimer = _machine.scheduler.after(AppUpdateCoordinator::publishInterval, [this] {
        if (_isPublishWanted)
            publish();
    });
    changed.notify();
}

// ---- of one application

std::optional<AppUpdateStatus> LauncherUpdates::status(const QString& appKey) const {
    if (!_coordinator)
        return std::nullopt;
    const auto found = _coordinator->knownStatuses().constFind(appKey);
    return found == _coordinator->knownStatuses().constEnd() ? std::nullopt : std::optional(*found);
}

QString LauncherUpdates::badge(const QString& appKey) const {
    const auto known = status(appKey);
    return known && std::holds_alternative<UpdateAvailable>(*known) ? badgeOfUpdate : QString();
}

QString LauncherUpdates::statusText(const QString& appKey) const {
    const auto known = status(appKey);
    const auto* update = known ? std::get_if<UpdateAvailable>(&*known) : nullptr;
    if (!update)
        return {};
    const AppUpdateCandidate* installed = _coordinator->candidate(appKey);
    return update_texts::available(installed ? installed->version : std::nullopt,
                                   update->latestVersion);
}

std::optional<AppUpdateRecord> LauncherUpdates::record(const QString& appKey) const {
    return _coordinator ? _coordinator->record(appKey) : std::nullopt;
}

std::optional<AppUpdateChannel> LauncherUpdates::channel(const QString& appKey) const {
    return _coordinator ? _coordinator->channel(appKey) : std::nullopt;
}

std::optional<AppUpdateActionKind> LauncherUpdates::actionKind(const QString& appKey) const {
    const auto action = _coordinator ? _coordinator->action(appKey) : std::nullopt;
    if (!action)
        return std::nullopt;
    // A cask's update runs through its brew, also while that one was not asked for its casks.
    if (!_coordinator->areChannelsKnown() &&
        _coordinator->channelKind(appKey) == AppUpdateChannelKind::homebrewCask)
        return AppUpdateActionKind::homebrew;
    return kindOf(*action);
}

QString LauncherUpdates::actionLabel(const QString& appKey) const {
    const auto kind = actionKind(appKey);
    return kind ? label(*kind) : QString();
}

std::optional<AppUpdateActionState> LauncherUpdates::actionState(const QString& appKey) const {
    if (!_coordinator || !_coordinator->actionStates().contains(appKey))
        return std::nullopt;
    return _coordinator->actionStates()[appKey];
}

std::optional<AppUpdateSourceText> LauncherUpdates::sourceText(const QString& appKey) const {
    const AppUpdateCandidate* installed = _coordinator ? _coordinator->candidate(appKey) : nullptr;
    if (!installed)
        return std::nullopt;
    auto from = _coordinator->channel(appKey);
    if (_coordinator->channelKind(appKey) == AppUpdateChannelKind::homebrewCask)
        from = HomebrewCaskChannel();
    return tessellar::sourceText(from, *installed);
}

// ---- of all

AppUpdateStatuses LauncherUpdates::statuses() const {
    return _coordinator ? _coordinator->knownStatuses() : AppUpdateStatuses();
}

qsizetype LauncherUpdates::availableCount() const {
    return _coordinator ? _coordinator->availableUpdateCount() : 0;
}

std::optional<Instant> LauncherUpdates::lastCheck() const {
    return _coordinator ? _coordinator->lastCheck() : std::nullopt;
}

QHash<QString, AppUpdateChannel> LauncherUpdates::channels() const {
    return _coordinator ? _coordinator->channels() : QHash<QString, AppUpdateChannel>();
}

std::optional<QString> LauncherUpdates::activeAppKey() const {
    return _coordinator ? _coordinator->activeUpdateAppKey() : std::nullopt;
}

// ---- settings

bool LauncherUpdates::isEnabled() const { return readAppUpdateSettings(_machine.settings).enabled; }

LauncherUpdates::Outcome LauncherUpdates::setEnabled(bool enabled) {
    return set(AppUpdateSettings::enabledKey, enabled);
}

AppUpdateInterval LauncherUpdates::interval() const {
    return readAppUpdateSettings(_machine.settings).interval;
}

LauncherUpdates::Outcome LauncherUpdates::setInterval(AppUpdateInterval interval) {
    return set(AppUpdateSettings::intervalKey, qToUnderlying(interval));
}

LauncherUpdates::Outcome LauncherUpdates::set(const QString& key, const QJsonValue& value) {
    if (const auto stored = _machine.settings.set(key, value); !stored)
        return std::unexpected(
            launcherError(stored.error(), QStringLiteral("Could not save the settings")));
    settingStored.notify();
    return {};
}

QString LauncherUpdates::summary() const {
    QString last;
    if (const auto date = lastCheck()) {
        const Locale& locale = _machine.locale;
        const QTimeZone zone(Calendar::system(locale).timeZone().toUtf8());
        last = QLocale(locale.identifier())
                   .toString(QDateTime::fromMSecsSinceEpoch(
                                 static_cast<qint64>(date->unixSeconds() * 1'000), zone),
                             QLocale::ShortFormat);
    }
    return update_texts::summary(isChecking(), availableCount(), last);
}

// ---- checks

void LauncherUpdates::checkNow() {
    if (isChecking())
        return;
    check({}, {.done = [this](const std::expected<bool, LauncherError>& outcome) {
              if (!outcome && outcome.error().code != u"alreadyChecking")
                  _messages.showNotice(outcome.error().message);
          }});
}

std::function<void()> LauncherUpdates::check(std::optional<AppUpdateChannelKind> channel,
                                             Watcher watcher) {
    using Stage = Wish::Stage;
    const auto stage = std::make_shared<Stage>(Stage::waiting);
    const auto told = std::make_shared<Watcher>(std::move(watcher));
    whenKnown([this, channel, stage, told] {
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

void LauncherUpdates::cancelRun() {
    if (_coordinator)
        _coordinator->cancelAction();
}

void LauncherUpdates::cancelCheck() {
    if (_coordinator)
        _coordinator->cancelCheck();
}

bool LauncherUpdates::isChecking() const { return _coordinator && _coordinator->isChecking(); }

AppUpdateProgress LauncherUpdates::progress() const {
    return _coordinator ? _coordinator->progress() : AppUpdateProgress();
}

// ---- updates

void LauncherUpdates::run(const QString& appKey) {
    if (activeAppKey() == appKey)
        return;
    run(appKey, _messages.asker(), [this](const std::expected<QString, LauncherError>& outcome) {
        if (!outcome && outcome.error().code != u"declined")
            _messages.alert(outcome.error());
    });
}

std::function<void()> LauncherUpdates::run(const QString& appKey, LauncherAsker asker, RunDone done) {
    using Stage = Wish::Stage;
    const auto wish = std::make_shared<Wish>(Wish{.done = std::move(done)});
    whenChannelsKnown([this, wish, appKey, asker = std::move(asker)] {
        if (wish->stage == Stage::waiting)
            runKnown(wish, appKey, asker);
    });
    return [this, waiting = std::weak_ptr(wish)] {
        const auto ended = waiting.lock();
        if (!ended)
            return;
        if (ended->stage == Stage::underWay)
            _coordinator->cancelAction();
        else if (ended->stage == Stage::verifying)
            ended->end(ended->text);
        else
            ended->end(std::unexpected(
                LauncherError{QStringLiteral("cancelled"),
                              message({.outcome = AppUpdateCommandResult::Outcome::cancelled}),
                              {}}));
    };
}

void LauncherUpdates::runKnown(const std::shared_ptr<Wish>& wish, const QString& appKey,
                               const LauncherAsker& asker) {
    if (!_coordinator->candidate(appKey))
        return wish->end(std::unexpected(InstalledApplications::unknown(appKey)));
    if (_coordinator->activeUpdateAppKey())
        return wish->end(std::unexpected(
            LauncherError{QStringLiteral("updateInProgress"), update_texts::alreadyRunning, {}}));
    _asker = asker;
    wish->stage = Wish::Stage::underWay;
    _coordinator->runAction(appKey,
                            [this, appKey, wish](const std::optional<AppUpdateActionState>& state) {
                                runEnded(wish, appKey, state);
                            });
}

void LauncherUpdates::runEnded(const std::shared_ptr<Wish>& wish, const QString& appKey,
                               const std::optional<AppUpdateActionState>& state) {
    if (!state)
        return wish->end(std::unexpected(LauncherError{QStringLiteral("declined"), {}, {}}));
    if (state->kind == AppUpdateActionState::Kind::failed) {
        const AppUpdateCandidate* installed = _coordinator->candidate(appKey);
        return wish->end(std::unexpected(LauncherError{
            QStringLiteral("updateFailed"), state->message,
            QStringLiteral("Could not update “%1”").arg(installed ? installed->name : appKey)}));
    }
    if (state->message.isEmpty()) { // opened: the rest is the user's
        // Not before: with its window the launcher may go, and what it was to open would stay closed.
        opened.notify();
        return wish->end(QString());
    }
    _messages.showNotice(state->message);
    wish->text = state->message;
    wish->stage = Wish::Stage::verifying;
    _verified.insert(appKey, [wish] { wish->end(wish->text); });
}

LauncherUpdates::Outcome LauncherUpdates::flush() {
    if (_coordinator)
        if (const auto saved = _coordinator->flush(); !saved)
            return std::unexpected(launcherError(saved.error()));
    return {};
}

} // namespace tessellar
