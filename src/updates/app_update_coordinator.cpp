#include "updates/app_update_coordinator.h"

#include "updates/app_store_update_checker.h"
#include "updates/app_update_texts.h"
#include "updates/sparkle_update_checker.h"

#include <algorithm>

namespace tessellar {

using std::chrono::milliseconds;

QString message(AppUpdateError error) {
    switch (error) {
    case AppUpdateError::disabled:
        return QStringLiteral("Update checking is disabled.");
    case AppUpdateError::alreadyChecking:
        return update_texts::summary(true, 0, {});
    case AppUpdateError::unknownApp:
        break;
    }
    return QStringLiteral("There is no such application.");
}

/// Looks at bundles on several workers at once, for Spotlight is asked of some of them.
class AppUpdateCoordinator::Inspection {
public:
    using Done = std::function<void(const QList<AppUpdateCandidate>&)>;

    Inspection(Machine& machine, const QList<AppEntry>& apps,
               const QHash<QString, AppUpdateCandidate>& known, Done done)
        : _done(std::move(done)) {
        constexpr qsizetype atOnce = 64;
        _left = std::max<qsizetype>(1, (apps.size() + atOnce - 1) / atOnce);
        for (qsizetype begin = 0; begin == 0 || begin < apps.size(); begin += atOnce)
            _tasks.push_back(machine.workers.run(
                Lane::tools,
                [view = AppUpdateInspection{machine.files, machine.commands, machine.environment},
                 part = apps.mid(begin, atOnce), known](const std::stop_token& stop) {
                    QList<AppUpdateCandidate> found;
                    for (const AppEntry& app : part) {
                        if (stop.stop_requested())
                            break;
                        const auto before = known.constFind(appKey(app));
                        found.append(inspectForUpdates(
                            view, app, before == known.constEnd() ? nullptr : &*before, stop));
                    }
                    return found;
                },
                [this](const QList<AppUpdateCandidate>& found) {
                    _found += found;
                    if (--_left > 0)
                        return;
                    const Done tell = std::move(_done);
                    const QList<AppUpdateCandidate> all = std::move(_found);
                    tell(all); // may destroy this object
                }));
    }

private:
    Done _done;
    QList<AppUpdateCandidate> _found;
    qsizetype _left = 0;
    std::vector<Task> _tasks;
};

/// One group of checks that run together.
struct AppUpdateCoordinator::Check {
    Slot slot;
    CheckRequest request;
    std::function<void(bool)> done;
    /// What its results took the place of, to be put back when checking is switched off.
    QHash<QString, std::optional<AppUpdateRecord>> replaced;
    QHash<QString, AppUpdateCandidate> left; ///< without a verdict yet
    std::unique_ptr<Inspection> inspection;
    Timer prepared;
    std::vector<std::unique_ptr<AppUpdateWork>> works;

    bool isFull() const { return !request.channel && !request.appKeys; }
    bool includes(const QString& appKey) const {
        return !request.appKeys || request.appKeys->contains(appKey);
    }
};

AppUpdateCoordinator::AppUpdateCoordinator(Machine& machine, StoredUpdates stored)
    : _machine(machine)
    , _store(std::move(stored.store))
    , _cache(std::move(stored.cache))
    , _settings(readAppUpdateSettings(machine.settings))
    , _opener(machine)
    , _lanes(machine.workers.mailbox()) {
    auto homebrew = std::make_unique<HomebrewUpdateChecker>(machine, _lanes);
    _homebrew = homebrew.get();
    _checkers.push_back(std::move(homebrew));
    _checkers.push_back(std::make_unique<AppStoreUpdateChecker>(machine));
    _checkers.push_back(std::make_unique<SparkleUpdateChecker>(machine));
}

AppUpdateCoordinator::~AppUpdateCoordinator() {
    if (_actionStop)
        _actionStop->request_stop();
    (void)flush();
}

// ---- applications and their channels

void AppUpdateCoordinator::updateApps(const QList<AppEntry>& apps) {
    _apps = apps;
    _inspection = std::make_unique<Inspection>(_machine, apps, _candidates,
                                               [this](const QList<AppUpdateCandidate>& inspected) {
                                                   _inspection.reset();
                                                   appsInspected(inspected);
                                               });
}

void AppUpdateCoordinator::appsInspected(const QList<AppUpdateCandidate>& inspected) {
    const bool hasNewcomers =
        _areAppsInspected && std::ranges::any_of(inspected, [this](const AppUpdateCandidate& found) {
            const AppUpdateCandidate* known = candidate(found.appKey);
            return !known || known->resolvedPath != found.resolvedPath;
        });
    if (hasNewcomers) { // which may be casks
        _channelWork.reset();
        _homebrew->forget();
    }
    _candidates.clear();
    for (const AppUpdateCandidate& candidate : inspected)
        _candidates.insert(candidate.appKey, candidate);
    _areAppsInspected = true;
    publish();
    tell(onChannelsChanged);

    // Brews are slow. They are asked at the start only where their applications are known to be there.
    const bool hasHomebrewRecords =
        std::ranges::any_of(_cache.records, [](const AppUpdateRecord& record) {
            return isHomebrewFingerprint(record.sourceFingerprint.value_or(QString()), {});
        });
    if (!_homebrew->isPrepared() &&
        (!_waitingForChannels.empty() || (_isStarted && isEnabled() && hasHomebrewRecords)))
        askForChannels();
    else
        channelsLearned();
}

void AppUpdateCoordinator::learnChannels(std::function<void()> done) {
    _waitingForChannels.push_back(std::move(done));
    if (!_areAppsInspected || _inspection)
        return;
    if (_homebrew->isPrepared())
        channelsLearned();
    else
        askForChannels();
}

void AppUpdateCoordinator::askForChannels() {
    if (_channelWork)
        return;
    _channelWork =
        _homebrew->prepare(candidates(), _cache.records, AppUpdateChecker::Depth::channels, [this] {
            _channelWork.reset();
            publish();
            tell(onChannelsChanged);
            channelsLearned();
        });
}

void AppUpdateCoordinator::channelsLearned() {
    const auto waiting = std::exchange(_waitingForChannels, {});
    const std::weak_ptr<bool> alive = _alive;
    for (const auto& done : waiting) {
        done();
        if (alive.expired())
            return;
    }
    schedule();
    recheckStale();
}

/// Applications whose record is of another version, or of a checker that has changed.
void AppUpdateCoordinator::recheckStale() {
    if (!_isStarted || !isEnabled() || _check)
        return;
    QStringList stale;
    for (auto it = _cache.records.constBegin(); it != _cache.records.constEnd(); ++it) {
        const AppUpdateCandidate* known = candidate(it.key());
        if (known && checkerOf(*known) && !isValid(*it, *known))
            stale.append(it.key());
    }
    if (!stale.isEmpty())
        recheck(stale, {});
}

void AppUpdateCoordinator::recheck(QStringList appKeys, std::function<void(bool)> done) {
    if (_recheck) {
        appKeys += *_recheck->request.appKeys;
        appKeys.removeDuplicates();
        // Who waits for the one before waits for both.
        if (auto first = std::exchange(_recheck->done, nullptr))
            done = [first = std::move(first), second = std::move(done)](bool completed) {
                first(completed);
                if (second)
                    second(completed);
            };
        end(&AppUpdateCoordinator::_recheck, false);
    }
    begin(&AppUpdateCoordinator::_recheck, {.appKeys = appKeys}, std::move(done));
}

// ---- schedule

void AppUpdateCoordinator::start() {
    _isStarted = true;
    schedule();
}

void AppUpdateCoordinator::settingsChanged() {
    _settings = readAppUpdateSettings(_machine.settings);
    if (!_settings.enabled)
        switchedOff();
    schedule();
}

void AppUpdateCoordinator::schedule() {
    _scheduleTask.cancel();
    _settings = readAppUpdateSettings(_machine.settings);
    // A full check that runs begins the schedule anew at its end.
    if (!_isStarted || !_settings.enabled || !_areAppsInspected || (_check && _check->isFull()))
        return;
    const auto left = [&](const std::optional<Instant>& since) {
        return since ? _settings.period() - (_machine.clock.now() - *since)
                     : std::chrono::duration<double>::zero();
    };
    auto wait = left(_cache.lastCheck);
    if (!(wait.count() > 0))
        wait = left(_cancelledAt); // whoever cancels a check does not want it at once again
    if (!(wait.count() > 0))
        return checkDue();
    constexpr std::chrono::duration<double> longest = std::chrono::hours(24 * 365 * 100);
    _scheduleTask = _machine.scheduler.after(std::chrono::ceil<milliseconds>(std::min(wait, longest)),
                                             [this] { checkDue(); });
}

void AppUpdateCoordinator::checkDue() {
    _isCheckDue = _check != nullptr;
    if (!_isCheckDue)
        (void)check();
}

// ---- checks

std::expected<void, AppUpdateError> AppUpdateCoordinator::check(const CheckRequest& request,
                                                                std::function<void(bool)> done) {
    if (!isEnabled())
        return std::unexpected(AppUpdateError::disabled);
    if (_check)
        return std::unexpected(AppUpdateError::alreadyChecking);
    if (request.appKeys)
        for (const QString& key : *request.appKeys)
            if (std::ranges::none_of(_apps, [&](const AppEntry& app) { return appKey(app) == key; }))
                return std::unexpected(AppUpdateError::unknownApp);
    if (!request.channel && !request.appKeys)
        _scheduleTask.cancel();
    begin(&AppUpdateCoordinator::_check, request, std::move(done));
    tell(onProgress);
    return {};
}

void AppUpdateCoordinator::begin(Slot slot, const CheckRequest& request,
                                 std::function<void(bool)> done) {
    this->*slot =
        std::make_unique<Check>(Check{.slot = slot, .request = request, .done = std::move(done)});
    Check& check = *(this->*slot);
    if (slot == &AppUpdateCoordinator::_check)
        _progress = {};
    QList<AppEntry> apps;
    for (const AppEntry& app : std::as_const(_apps))
        if (check.includes(appKey(app)))
            apps.append(app);
    check.inspection = std::make_unique<Inspection>(
        _machine, apps, _candidates, [this, &check](const QList<AppUpdateCandidate>& inspected) {
            check.inspection.reset();
            for (const AppUpdateCandidate& candidate : inspected)
                _candidates.insert(candidate.appKey, candidate);
            prepare(check, 0);
        });
}

void AppUpdateCoordinator::prepare(Check& check, std::size_t index) {
    using Depth = AppUpdateChecker::Depth;
    if (index == _checkers.size()) {
        check.prepared =
            _machine.scheduler.after(milliseconds(0), [this, &check] { checkPrepared(check); });
        return;
    }
    AppUpdateChecker& checker = *_checkers[index];
    const auto isOwn = [&](const QString& key) {
        const AppUpdateCandidate* known = candidate(key);
        return known && checker.channel(*known);
    };
    std::optional<Depth> depth;
    if (check.request.channel ? *check.request.channel == checker.kind()
                              : !check.request.appKeys || !checker.isPrepared() ||
                                    std::ranges::any_of(*check.request.appKeys, isOwn))
        depth = Depth::statuses;
    else if (!checker.isPrepared())
        depth = Depth::channels;
    if (!depth)
        return prepare(check, index + 1);
    check.works.push_back(checker.prepare(candidates(), _cache.records, *depth,
                                          [this, &check, index] { prepare(check, index + 1); }));
}

void AppUpdateCoordinator::checkPrepared(Check& check) {
    std::vector<QList<AppUpdateCandidate>> shares(_checkers.size());
    for (const AppUpdateCandidate& candidate : candidates())
        for (std::size_t i = 0; i < _checkers.size() && check.includes(candidate.appKey); ++i)
            if (_checkers[i]->channel(candidate)) {
                if (check.request.channel.value_or(_checkers[i]->kind()) == _checkers[i]->kind()) {
                    shares[i].append(candidate);
                    check.left.insert(candidate.appKey, candidate);
                }
                break;
            }
    check.works.clear();
    const bool isShown = check.slot == &AppUpdateCoordinator::_check;
    for (std::size_t i = 0; i < _checkers.size(); ++i)
        if (!shares[i].isEmpty())
            check.works.push_back(_checkers[i]->check(
                shares[i], {.began =
                                [this, isShown](const QString& appKey) {
                                    const AppUpdateCandidate* known = candidate(appKey);
                                    if (!isShown || !known)
                                        return;
                                    _progress.currentAppKey = appKey;
                                    _progress.currentAppName = known->name;
                                    tell(onProgress);
                                },
                            .ended =
                                [this, &check](const QString& appKey, const AppUpdateStatus& status) {
                                    checked(check, appKey, status);
                                }}));
    if (isShown)
        _progress.total = check.left.size();
    if (check.left.isEmpty())
        return end(check.slot, true);
    publish();
    tell(onChannelsChanged);
    tell(isShown ? onProgress : std::function<void()>());
}

void AppUpdateCoordinator::checked(Check& check, const QString& appKey, const AppUpdateStatus& status) {
    if (!isEnabled())
        return switchedOff();
    if (!check.left.contains(appKey))
        return;
    const AppUpdateCandidate candidate = check.left.take(appKey);
    const Slot slot = check.slot;
    const std::weak_ptr<bool> alive = _alive;
    const Check* const running = &check;
    const auto isOver = [&] { return alive.expired() || (this->*slot).get() != running; };
    if (_candidates.contains(appKey)) { // it has not left meanwhile
        const AppUpdateChecker* checker = checkerOf(candidate);
        AppUpdateRecord record{.status = status,
                               .checkedAt = _machine.clock.now(),
                               .installedVersion = candidate.version,
                               .sourceFingerprint =
                                   checker ? checker->fingerprint(candidate) : QString()};
        const auto before = _cache.records.constFind(appKey);
        const bool isFirst = before == _cache.records.constEnd();
        if (!isFirst && hasFailed(status) && before->installedVersion == candidate.version &&
            !hasFailed(before->knownStatus()))
            record.lastKnownStatus = before->knownStatus();
        check.replaced.insert(appKey, isFirst ? std::nullopt : std::optional(*before));
        _cache.records.insert(appKey, record);
        askForSave();
        publish();
        if (isOver())
            return;
        if (onResult)
            onResult(appKey, record);
    }
    if (isOver())
        return;
    if (slot == &AppUpdateCoordinator::_check) {
        ++_progress.checked;
        tell(onProgress);
    }
    if (!isOver() && check.left.isEmpty())
        end(slot, true);
}

void AppUpdateCoordinator::end(Slot slot, bool completed) {
    const std::unique_ptr<Check> check = std::exchange(this->*slot, nullptr);
    if (!check)
        return;
    if (completed && check->isFull()) {
        _cache.lastCheck = _machine.clock.now();
        _cache.records.removeIf(
            [this](const auto& entry) { return !_candidates.contains(entry.key()); });
        askForSave();
    }
    const std::weak_ptr<bool> alive = _alive;
    if (check->done) // who waits for the end sees then what came of it
        _publishThrottleTask.cancel();
    publish();
    if (slot == &AppUpdateCoordinator::_check)
        tell(onProgress);
    if (check->done)
        check->done(completed);
    if (alive.expired() || slot != &AppUpdateCoordinator::_check)
        return;
    if (std::exchange(_isCheckDue, false) && !_check && isEnabled())
        (void)this->check();
    else
        schedule();
    if (completed && !alive.expired())
        recheckStale(); // what was brought up to date while it ran
}

void AppUpdateCoordinator::cancelCheck() {
    if (_check && _check->isFull())
        _cancelledAt = _machine.clock.now();
    end(&AppUpdateCoordinator::_check, false);
}

void AppUpdateCoordinator::switchedOff() {
    _scheduleTask.cancel();
    _cancelledAt.reset();
    _isCheckDue = false;
    for (const Slot slot : {&AppUpdateCoordinator::_check, &AppUpdateCoordinator::_recheck}) {
        if (!(this->*slot))
            continue;
        const auto replaced = (this->*slot)->replaced;
        for (auto it = replaced.constBegin(); it != replaced.constEnd(); ++it) {
            if (it.value())
                _cache.records.insert(it.key(), *it.value());
            else
                _cache.records.remove(it.key());
        }
        if (!replaced.isEmpty())
            askForSave();
        end(slot, false);
    }
}

// ---- saving

void AppUpdateCoordinator::changeKeys(const QHash<QString, QString>& changedKeys) {
    QMap<QString, AppUpdateRecord> moved;
    for (auto it = changedKeys.cbegin(); it != changedKeys.cend(); ++it)
        if (const auto found = _cache.records.constFind(it.key()); found != _cache.records.constEnd()) {
            moved.insert(it.value(), *found);
            _cache.records.erase(found);
        }
    if (moved.isEmpty())
        return;
    _cache.records.insert(moved);
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
