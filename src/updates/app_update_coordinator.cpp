#include "updates/app_update_coordinator.h"

#include "platform/texts.h"
#include "updates/app_store_update_checker.h"
#include "updates/app_update_texts.h"
#include "updates/sparkle_update_checker.h"

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
    , _store(std::move(stored.store))
    , _cache(std::move(stored.cache))
    , _interruptedRun(std::move(stored.run))
    , _settings(readAppUpdateSettings(machine.settings))
    , _lanes(machine.workers)
    , _runner(machine, *this) {
    auto homebrew = std::make_unique<HomebrewUpdateChecker>(machine, _lanes);
    _homebrew = homebrew.get();
    _checkers.push_back(std::move(homebrew));
    _checkers.push_back(std::make_unique<AppStoreUpdateChecker>(machine, _lanes));
    _checkers.push_back(std::make_unique<SparkleUpdateChecker>(machine));
    for (const auto& checker : _checkers)
        checker->restore(_cache);
}

AppUpdateCoordinator::~AppUpdateCoordinator() { (void)flush(); }

// ---- applications and their channels

void AppUpdateCoordinator::updateApps(const QList<AppEntry>& apps) {
    _apps = apps;
    _inspection.emplace(_machine, apps, [this](const QList<AppUpdateCandidate>& inspected) {
        const auto over = std::exchange(_inspection, std::nullopt);
        appsInspected(inspected);
    });
}

void AppUpdateCoordinator::appsInspected(const QList<AppUpdateCandidate>& inspected) {
    _hasNewcomers =
        _hasNewcomers ||
        (_areAppsInspected && std::ranges::any_of(inspected, [this](const AppUpdateCandidate& found) {
             const AppUpdateCandidate* known = candidate(found.appKey);
             return !known || known->resolvedPath != found.resolvedPath;
         }));
    _candidates.clear();
    for (const AppUpdateCandidate& found : inspected)
        _candidates.insert(found.appKey, found);
    _areAppsInspected = true;
    const auto alive = _lifetime.watch();
    publish();
    if (!alive.expired())
        events.notify({AppUpdateEvent::Kind::inspected, {}});
    if (alive.expired())
        return;
    if (_isStarted && _interruptedRun)
        _runner.resume(*std::exchange(_interruptedRun, std::nullopt));
    // Tools are slow. They are asked about new applications only if they are known to own any.
    const bool isHomebrewUsed = std::ranges::any_of(
        _candidates, [this](const auto& known) { return _homebrew->channel(known).has_value(); });
    if (!areChannelsKnown() &&
        (!_waitingForChannels.empty() || (_isStarted && isEnabled() && isHomebrewUsed)))
        askForChannels();
    else
        channelsAsked();
}

bool AppUpdateCoordinator::areChannelsKnown() const {
    return !_hasNewcomers && std::ranges::all_of(_checkers, &AppUpdateChecker::isDiscovered);
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
    begin(
        {.appKeys = QStringList(), .asksAllTools = true},
        [this](bool) {
            _isAskingForChannels = false;
            channelsAsked();
        },
        false);
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

/// Rechecks applications whose record is of another version, or of a checker that has changed.
void AppUpdateCoordinator::recheckStale() {
    if (!_isStarted || !isEnabled() || isChecking())
        return;
    QStringList stale;
    for (auto it = _cache.records.constBegin(); it != _cache.records.constEnd(); ++it) {
        const AppUpdateCandidate* known = candidate(it.key());
        if (known && checkerOf(*known) && !isValid(*it, *known))
            stale.append(it.key());
    }
    recheck(stale, {});
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
    begin(
        {.appKeys = wanted},
        [done = std::move(done)](bool) {
            if (done)
                done();
        },
        false);
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
    const Running* running = shown();
    if (!_isStarted || !_settings.enabled || !_areAppsInspected ||
        (running && running->check->request().isFull()))
        return;
    const Instant now = _machine.clock.now();
    const auto left = [&](const std::optional<Instant>& since) {
        return since ? _settings.period() - (now - *since) : std::chrono::duration<double>::zero();
    };
    auto wait = left(_cache.lastCheck);
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
    const bool isRetry = _retryAt && _cache.lastCheck &&
                         _settings.period() - (_machine.clock.now() - *_cache.lastCheck) >
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
    const auto left = std::make_shared<qsizetype>(_cache.problems.size() + 1);
    const auto over = [this, left] {
        if (--*left > 0)
            return;
        planRetry();
        schedule();
    };
    const QStringList failed = transientlyFailed();
    for (const AppUpdateProblem& problem : QList<AppUpdateProblem>(_cache.problems))
        begin(
            {.channel = problem.channel}, [over](bool) { over(); }, false);
    recheck(failed, over);
}

QStringList AppUpdateCoordinator::transientlyFailed() const {
    QStringList failed;
    for (auto it = _candidates.constBegin(); it != _candidates.constEnd(); ++it)
        if (const auto known = record(it.key());
            known && hasFailed(known->status) && known->reason && isTransient(*known->reason))
            failed.append(it.key());
    return failed;
}

/// With increasing delays, much shorter than the regular interval.
void AppUpdateCoordinator::planRetry() {
    using std::chrono::minutes;
    static constexpr std::array pauses{minutes(1), minutes(5), minutes(15), minutes(60), minutes(180)};
    const bool isProblem = std::ranges::any_of(
        _cache.problems, [](const AppUpdateProblem& problem) { return isTransient(problem.reason); });
    if (!isProblem && transientlyFailed().isEmpty()) {
        _retries = 0;
        _retryAt.reset();
        return;
    }
    const auto pause = pauses[std::min(_retries++, pauses.size() - 1)];
    _retryAt = _machine.clock.now() + std::chrono::duration<double>(pause);
}

// ---- checks

const AppUpdateCoordinator::Running* AppUpdateCoordinator::shown() const {
    const auto found = std::ranges::find(_running, true, &Running::isShown);
    return found == _running.end() ? nullptr : &*found;
}

AppUpdateCoordinator::RunningChecks::iterator
AppUpdateCoordinator::runningOf(const AppUpdateCheck& check) {
    return std::ranges::find_if(_running,
                                [&](const Running& running) { return running.check.get() == &check; });
}

AppUpdateProgress AppUpdateCoordinator::progress() const {
    const Running* running = shown();
    return running ? running->check->progress() : _lastProgress;
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
    events.notify({AppUpdateEvent::Kind::progressed, {}});
    return {};
}

void AppUpdateCoordinator::begin(const AppUpdateCheckRequest& request, std::function<void(bool)> done,
                                 bool isShown) {
    AppUpdateCheck::Listener& listener = *this;
    _running.push_back({std::make_unique<AppUpdateCheck>(_machine, _checkers, _apps, request, listener),
                        std::move(done),
                        {},
                        isShown});
}

void AppUpdateCoordinator::inspected(AppUpdateCheck&, const QList<AppUpdateCandidate>& found) {
    for (const AppUpdateCandidate& candidate : found)
        _candidates.insert(candidate.appKey, candidate);
}

void AppUpdateCoordinator::channelsLearned(AppUpdateCheck&) {
    keepChannels();
    publish();
}

void AppUpdateCoordinator::progressed(AppUpdateCheck& check) {
    const auto running = runningOf(check);
    if (running == _running.end() || !running->isShown)
        return;
    const auto alive = _lifetime.watch();
    events.notify({AppUpdateEvent::Kind::progressed, {}});
    if (!alive.expired())
        publish();
}

void AppUpdateCoordinator::found(AppUpdateCheck& check, const AppUpdateCandidate& checked,
                                 const AppUpdateChecker& checker, const AppUpdateVerdict& verdict) {
    if (!isEnabled())
        return switchedOff();
    const auto running = runningOf(check);
    const QString& appKey = checked.appKey;
    const AppUpdateCandidate* known = candidate(appKey);
    // If it was removed or updated meanwhile, it is checked again anyway.
    if (running == _running.end() || !known || !known->isSameRelease(checked))
        return;
    AppUpdateRecord record{.status = verdict.status,
                           .checkedAt = _machine.clock.now(),
                           .installedVersion = checked.version,
                           .installedBuild = checked.build,
                           .sourceFingerprint = checker.fingerprint(checked),
                           .reason = verdict.reason,
                           .notes = verdict.notes};
    const auto before = _cache.records.constFind(appKey);
    const bool isFirst = before == _cache.records.constEnd();
    if (!isFirst && hasFailed(verdict.status) && before->installedVersion == checked.version &&
        !hasFailed(before->knownStatus())) {
        record.lastKnownStatus = before->knownStatus();
        record.notes = before->notes;
    }
    if (!running->replaced.contains(appKey))
        running->replaced.insert(appKey, isFirst ? std::nullopt : std::optional(*before));
    _cache.records.insert(appKey, record);
    askForSave();
    const auto alive = _lifetime.watch();
    publish();
    if (!alive.expired())
        events.notify({AppUpdateEvent::Kind::recorded, appKey});
}

void AppUpdateCoordinator::ended(AppUpdateCheck& check) {
    if (const auto running = runningOf(check); running != _running.end())
        end(running, true);
}

void AppUpdateCoordinator::end(RunningChecks::iterator place, bool completed) {
    RunningChecks over; // removed from the list before anyone is notified
    over.splice(over.begin(), _running, place);
    const Running& running = over.front();
    const AppUpdateCheckRequest request = running.check->request();
    if (running.isShown)
        _lastProgress = running.check->progress();
    if (completed && (request.isFull() || request.asksAllTools))
        _hasNewcomers = false;
    if (completed && (request.isFull() || request.channel)) {
        _cache.problems.removeIf([&](const AppUpdateProblem& problem) {
            return !request.channel || problem.channel == *request.channel;
        });
        for (const AppUpdateProblem& problem : running.check->problems())
            if (!_cache.problems.contains(problem))
                _cache.problems.append(problem);
    }
    if (completed && request.isFull()) {
        // Applications that are not there now may only be out of sight.
        static constexpr std::chrono::duration<double> patience = std::chrono::days(90);
        _cache.records.removeIf([this](const auto& entry) {
            return !_candidates.contains(entry.key()) &&
                   _machine.clock.now() - entry.value().checkedAt > patience;
        });
        // A check without any answer does not count: the next one need not wait for the interval.
        refreshStatuses();
        const qsizetype answered = _tally.upToDate + _tally.unsupported +
                                   (_tally.failed > 0 ? 0 : _tally.available + _tally.held);
        const bool wasUseless = answered == 0 && (_tally.failed > 0 || !_cache.problems.isEmpty());
        planRetry();
        // Permanent errors are not retried before the interval has passed.
        if (!wasUseless || !_retryAt)
            _cache.lastCheck = _machine.clock.now();
    }
    keepChannels();
    askForSave();
    const auto alive = _lifetime.watch();
    if (running.done) // whoever waits for the end must see the results
        _publishThrottleTask.cancel();
    publish();
    if (running.isShown && !alive.expired())
        events.notify({AppUpdateEvent::Kind::progressed, {}});
    if (running.done && !alive.expired())
        running.done(completed);
    if (alive.expired() || !running.isShown)
        return;
    if (std::exchange(_isCheckDue, false) && !isChecking() && isEnabled())
        (void)this->check();
    else
        schedule();
    if (completed && !alive.expired())
        recheckStale(); // what was updated during the check
}

void AppUpdateCoordinator::cancelCheck() {
    const auto found = std::ranges::find(_running, true, &Running::isShown);
    if (found == _running.end())
        return;
    if (found->check->request().isFull())
        _cancelledAt = _machine.clock.now();
    end(found, false);
}

void AppUpdateCoordinator::switchedOff() {
    _scheduleTask.cancel();
    _cancelledAt.reset();
    _retryAt.reset();
    _isCheckDue = false;
    const auto alive = _lifetime.watch();
    while (!alive.expired() && !_running.empty()) {
        const auto replaced = _running.front().replaced;
        for (auto it = replaced.constBegin(); it != replaced.constEnd(); ++it) {
            if (it.value())
                _cache.records.insert(it.key(), *it.value());
            else
                _cache.records.remove(it.key());
        }
        end(_running.begin(), false);
    }
}

// ---- saving

void AppUpdateCoordinator::changeKeys(const QHash<QString, QString>& changedKeys) {
    if (!_cache.changeKeys(changedKeys))
        return;
    // At once: the arrangement is about to be saved with the new keys.
    _isUnsaved = true;
    save();
}

void AppUpdateCoordinator::keepChannels() {
    for (const auto& checker : _checkers)
        checker->keep(_cache);
    if (_cache.owners)
        _cache.owners->removeIf([this](const auto& entry) {
            return !_candidates.contains(entry.key()) && !_cache.records.contains(entry.key());
        });
    askForSave();
}

void AppUpdateCoordinator::askForSave() {
    _isUnsaved = true;
    _saveTask = _machine.scheduler.after(saveDelay, [this] { save(); });
}

void AppUpdateCoordinator::save() {
    _saveTask.cancel();
    if (!std::exchange(_isUnsaved, false))
        return;
    _store.save(_cache, [this](const std::expected<void, FileError>& saved) {
        if (saved)
            return;
        _isUnsaved = true;
        _machine.log.warning(
            QStringLiteral("The cache of updates could not be saved: %1").arg(message(saved.error())));
    });
}

std::expected<void, FileError> AppUpdateCoordinator::flush() {
    save();
    return _store.wait();
}

} // namespace tessellar
