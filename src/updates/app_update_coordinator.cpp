#include "updates/app_update_coordinator.h"

#include "platform/texts.h"

#include <algorithm>

namespace tessellar {

using std::chrono::milliseconds;

QString message(AppUpdateError error) {
    switch (error) {
    case AppUpdateError::disabled:
        return Texts::tr("Update checking is disabled.");
    case AppUpdateError::alreadyChecking:
        return update_texts::checking();
    case AppUpdateError::unknownApp:
        break;
    }
    return Texts::tr("There is no such application.");
}

AppUpdateCoordinator::AppUpdateCoordinator(Machine& machine, StoredUpdates stored)
    : _machine(machine)
    , _channels(machine, stored.cache)
    , _known(machine, _channels, std::move(stored.store), std::move(stored.cache))
    , _interruptedRun(std::move(stored.run))
    , _settings(readAppUpdateSettings(machine.settings))
    , _runner(machine, _channels, _known,
              [this](const QStringList& appKeys, std::function<void()> done) {
                  verify(appKeys, std::move(done));
              }) {}

AppUpdateCoordinator::~AppUpdateCoordinator() = default;

// ---- applications and their channels

void AppUpdateCoordinator::updateApps(const QList<AppEntry>& apps) {
    _apps = apps;
    _inspection.emplace(_machine, apps, [this](const QList<AppUpdateCandidate>& inspected) {
        const auto over = std::exchange(_inspection, std::nullopt);
        appsInspected(inspected);
    });
}

void AppUpdateCoordinator::appsInspected(const QList<AppUpdateCandidate>& inspected) {
    const bool haveNewcomers = _channels.setCandidates(inspected);
    _hasNewcomers = _hasNewcomers || (_areAppsInspected && haveNewcomers);
    _areAppsInspected = true;
    const auto alive = _lifetime.watch();
    _known.publish();
    if (!alive.expired())
        _known.events.notify({AppUpdateEvent::Kind::inspected, {}});
    if (alive.expired())
        return;
    if (_isStarted && _interruptedRun)
        _runner.resume(*std::exchange(_interruptedRun, std::nullopt));
    // Tools are slow. They are asked about new applications only if they are known to own any.
    if (!areChannelsKnown() &&
        (!_waitingForChannels.empty() || (_isStarted && isEnabled() && _channels.isHomebrewUsed())))
        askForChannels();
    else
        channelsAsked();
}

bool AppUpdateCoordinator::areChannelsKnown() const {
    return !_hasNewcomers && _channels.areDiscovered();
}

void AppUpdateCoordinator::learnChannels(std::function<void()> done) {
    _waitingForChannels.push_back(std::move(done));
    if (!_areAppsInspected || _inspection)
        return;
    if (areChannelsKnown())
        channelsAsked();
    else
        askForChannels();
}

void AppUpdateCoordinator::askForChannels() {
    if (std::exchange(_isAskingForChannels, true))
        return;
    begin({.appKeys = QStringList(), .asksAllTools = true}, [this](bool) {
        _isAskingForChannels = false;
        channelsAsked();
    });
}

void AppUpdateCoordinator::channelsAsked() {
    const auto alive = _lifetime.watch();
    for (const auto& done : std::exchange(_waitingForChannels, {})) {
        done();
        if (alive.expired())
            return;
    }
    schedule();
    recheckStale();
}

void AppUpdateCoordinator::recheckStale() {
    if (_isStarted && isEnabled() && !isChecking())
        recheck(_known.stale(), {});
}

/// Runs concurrently with other checks, but skips what another recheck is already checking.
void AppUpdateCoordinator::recheck(const QStringList& appKeys, std::function<void()> done) {
    QStringList wanted = appKeys;
    if (!done)
        for (const Running& running : _running)
            if (running.check->request().appKeys)
                wanted.removeIf([&](const QString& appKey) {
                    return running.check->request().appKeys->contains(appKey);
                });
    if (wanted.isEmpty() && !done)
        return;
    begin({.appKeys = wanted}, [done = std::move(done)](bool) {
        if (done)
            done();
    });
}

/// After an update.
void AppUpdateCoordinator::verify(const QStringList& appKeys, std::function<void()> done) {
    if (isEnabled())
        return recheck(appKeys, std::move(done));
    // Reinspected, but not checked.
    begin({.appKeys = QStringList()}, [done = std::move(done)](bool) { done(); });
}

// ---- schedule

void AppUpdateCoordinator::start() {
    _isStarted = true;
    if (_areAppsInspected && _interruptedRun)
        _runner.resume(*std::exchange(_interruptedRun, std::nullopt));
    schedule();
}

void AppUpdateCoordinator::settingsChanged() {
    _settings = readAppUpdateSettings(_machine.settings);
    if (!_settings.enabled)
        switchedOff();
    schedule();
}

void AppUpdateCoordinator::networkReturned() {
    if (!_retryAt)
        return;
    _retries = 0;
    _retryAt = _machine.clock.now();
    schedule();
}

void AppUpdateCoordinator::schedule() {
    _scheduleTask.cancel();
    _settings = readAppUpdateSettings(_machine.settings);
    // A running full check reschedules when it ends.
    const AppUpdateCheck* running = shown();
    if (!_isStarted || !_settings.enabled || !_areAppsInspected ||
        (running && running->request().isFull()))
        return;
    const Instant now = _machine.clock.now();
    const auto left = [&](const std::optional<Instant>& since) {
        return since ? _settings.period() - (now - *since) : std::chrono::duration<double>::zero();
    };
    auto wait = left(_known.lastCheck());
    if (!(wait.count() > 0))
        wait = left(_cancelledAt); // whoever cancelled a check does not want it again at once
    if (_retryAt) {
        const auto pause = *_retryAt - now;
        wait = wait.count() > 0 ? std::min<std::chrono::duration<double>>(wait, pause) : pause;
    }
    if (!(wait.count() > 0))
        return checkDue();
    // Timers stop while the machine sleeps, so the clock is checked again within the hour.
    constexpr std::chrono::duration<double> hop = std::chrono::hours(1);
    _scheduleTask = _machine.scheduler.after(std::chrono::ceil<milliseconds>(std::min(wait, hop)),
                                             [this, isLast = wait <= hop] {
                                                 if (isLast)
                                                     checkDue();
                                                 else
                                                     schedule();
                                             });
}

void AppUpdateCoordinator::checkDue() {
    const bool isRetry = _retryAt && _known.lastCheck() &&
                         _settings.period() - (_machine.clock.now() - *_known.lastCheck()) >
                             std::chrono::duration<double>::zero();
    if (isRetry) // the interval has not passed
        return retry();
    _isCheckDue = isChecking();
    if (!_isCheckDue)
        (void)check();
}

/// Retries only what failed: the applications, and the channels whose tools did.
void AppUpdateCoordinator::retry() {
    _retryAt.reset();
    const QList<AppUpdateProblem> problems = _known.problems();
    const auto left = std::make_shared<qsizetype>(problems.size() + 1);
    const auto over = [this, left] {
        if (--*left > 0)
            return;
        planRetry();
        schedule();
    };
    const QStringList failed = _known.transientlyFailed();
    for (const AppUpdateProblem& problem : problems)
        begin({.channel = problem.channel}, [over](bool) { over(); });
    recheck(failed, over);
}

/// With increasing delays, much shorter than the regular interval.
void AppUpdateCoordinator::planRetry() {
    using std::chrono::minutes;
    static constexpr std::array pauses{minutes(1), minutes(5), minutes(15), minutes(60), minutes(180)};
    const bool isProblem = std::ranges::any_of(
        _known.problems(), [](const AppUpdateProblem& problem) { return isTransient(problem.reason); });
    if (!isProblem && _known.transientlyFailed().isEmpty()) {
        _retries = 0;
        _retryAt.reset();
        return;
    }
    const auto pause = pauses[std::min(_retries++, pauses.size() - 1)];
    _retryAt = _machine.clock.now() + std::chrono::duration<double>(pause);
}

// ---- checks

AppUpdateCheck* AppUpdateCoordinator::shown() const {
    const auto found =
        std::ranges::find_if(_running, [](const Running& running) { return running.check->isShown(); });
    return found == _running.end() ? nullptr : found->check.get();
}

AppUpdateProgress AppUpdateCoordinator::progress() const {
    const AppUpdateCheck* running = shown();
    return running ? running->progress() : _lastProgress;
}

std::expected<void, AppUpdateError> AppUpdateCoordinator::check(const AppUpdateCheckRequest& request,
                                                                std::function<void(bool)> done) {
    if (!isEnabled())
        return std::unexpected(AppUpdateError::disabled);
    if (isChecking())
        return std::unexpected(AppUpdateError::alreadyChecking);
    if (request.appKeys)
        for (const QString& key : *request.appKeys)
            if (std::ranges::none_of(_apps, [&](const AppEntry& app) { return appKey(app) == key; }))
                return std::unexpected(AppUpdateError::unknownApp);
    if (request.isFull())
        _scheduleTask.cancel();
    begin(request, std::move(done), true);
    _known.events.notify({AppUpdateEvent::Kind::progressed, {}});
    return {};
}

void AppUpdateCoordinator::begin(const AppUpdateCheckRequest& request, std::function<void(bool)> done,
                                 bool isShown) {
    const auto ended = [this](AppUpdateCheck& check, bool isDisabled) {
        isDisabled ? switchedOff() : end(check, true);
    };
    _running.push_back(
        {std::make_unique<AppUpdateCheck>(_machine, _channels, _known, _apps, request, isShown, ended),
         std::move(done)});
}

void AppUpdateCoordinator::end(AppUpdateCheck& check, bool completed) {
    const auto place = std::ranges::find_if(
        _running, [&](const Running& running) { return running.check.get() == &check; });
    if (place == _running.end())
        return;
    RunningChecks over; // removed from the list before anyone is notified
    over.splice(over.begin(), _running, place);
    const AppUpdateCheckRequest& request = check.request();
    if (check.isShown())
        _lastProgress = check.progress();
    if (completed && (request.isFull() || request.asksAllTools))
        _hasNewcomers = false;
    if (completed)
        _known.conclude(request, check.problems());
    if (completed && request.isFull()) {
        // A check without any answer does not count: the next one need not wait for the interval.
        const AppUpdateTally& tally = _known.tally();
        const qsizetype answered =
            tally.upToDate + tally.unsupported + (tally.failed > 0 ? 0 : tally.available + tally.held);
        const bool wasUseless = answered == 0 && (tally.failed > 0 || !_known.problems().isEmpty());
        planRetry();
        // Permanent errors are not retried before the interval has passed.
        if (!wasUseless || !_retryAt)
            _known.setLastCheck(_machine.clock.now());
    }
    const std::function<void(bool)>& done = over.front().done;
    const auto alive = _lifetime.watch();
    _known.keepChannels();
    _known.publish(done != nullptr); // whoever waits for the end must see the results
    if (check.isShown() && !alive.expired())
        _known.events.notify({AppUpdateEvent::Kind::progressed, {}});
    if (done && !alive.expired())
        done(completed);
    if (alive.expired() || !check.isShown())
        return;
    if (std::exchange(_isCheckDue, false) && !isChecking() && isEnabled())
        (void)this->check();
    else
        schedule();
    if (completed && !alive.expired())
        recheckStale(); // what was updated during the check
}

void AppUpdateCoordinator::cancelCheck() {
    AppUpdateCheck* running = shown();
    if (!running)
        return;
    if (running->request().isFull())
        _cancelledAt = _machine.clock.now();
    end(*running, false);
}

void AppUpdateCoordinator::switchedOff() {
    _scheduleTask.cancel();
    _cancelledAt.reset();
    _retryAt.reset();
    _isCheckDue = false;
    const auto alive = _lifetime.watch();
    while (!alive.expired() && !_running.empty()) {
        AppUpdateCheck& check = *_running.front().check;
        check.revert();
        end(check, false);
    }
}

} // namespace tessellar
