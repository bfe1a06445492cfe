#include "updates/known_app_updates.h"

namespace tessellar {

KnownAppUpdates::KnownAppUpdates(Machine& machine, const AppUpdateChannels& channels,
                                 AppUpdateStore store, AppUpdateCache cache)
    : _machine(machine), _channels(channels), _store(std::move(store)), _cache(std::move(cache)) {}

KnownAppUpdates::~KnownAppUpdates() { (void)flush(); }

// ---- records

bool KnownAppUpdates::isValid(const AppUpdateRecord& record,
                              const AppUpdateCandidate& candidate) const {
    const AppUpdateChecker* checker = _channels.checker(candidate);
    return checker && record.installedVersion == candidate.version &&
           (!record.installedBuild || record.installedBuild == candidate.build) &&
           record.sourceFingerprint == checker->fingerprint(candidate);
}

std::optional<AppUpdateRecord> KnownAppUpdates::record(const QString& appKey) const {
    const auto found = _cache.records.constFind(appKey);
    const AppUpdateCandidate* known = _channels.candidate(appKey);
    if (found == _cache.records.constEnd() || !known || !isValid(*found, *known))
        return std::nullopt;
    return *found;
}

void KnownAppUpdates::recordVerdict(const AppUpdateCandidate& checked, const AppUpdateChecker& checker,
                                    const AppUpdateVerdict& verdict, Replaced& replaced) {
    const QString appKey = checked.appKey;
    const AppUpdateCandidate* known = _channels.candidate(appKey);
    // If it was removed or updated meanwhile, it is checked again anyway.
    if (!known || !known->isSameRelease(checked))
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
    if (!replaced.contains(appKey))
        replaced.insert(appKey, isFirst ? std::nullopt : std::optional(*before));
    _cache.records.insert(appKey, record);
    askForSave();
    notify(AppUpdateEvent::Kind::recorded, appKey);
}

void KnownAppUpdates::revert(const Replaced& replaced) {
    for (auto it = replaced.constBegin(); it != replaced.constEnd(); ++it) {
        const auto present = _cache.records.find(it.key());
        if (present == _cache.records.end())
            continue;
        if (!it.value())
            _cache.records.erase(present);
        else if (it.value()->checkedAt <= present->checkedAt) // else an older one is back already
            *present = *it.value();
    }
}

void KnownAppUpdates::conclude(const AppUpdateCheckRequest& request,
                               const QList<AppUpdateProblem>& problems) {
    if (request.isFull() || request.channel) {
        _cache.problems.removeIf([&](const AppUpdateProblem& problem) {
            return !request.channel || problem.channel == *request.channel;
        });
        for (const AppUpdateProblem& problem : problems)
            if (!_cache.problems.contains(problem))
                _cache.problems.append(problem);
    }
    if (!request.isFull())
        return;
    // Applications that are not there now may only be out of sight.
    static constexpr std::chrono::duration<double> patience = std::chrono::days(90);
    _cache.records.removeIf([this](const auto& entry) {
        return !_channels.candidate(entry.key()) &&
               _machine.clock.now() - entry.value().checkedAt > patience;
    });
    refreshStatuses();
}

bool KnownAppUpdates::hasUpdate(const QString& appKey) const {
    const auto known = record(appKey);
    return known && std::holds_alternative<UpdateAvailable>(known->knownStatus());
}

std::optional<AppUpdateReason> KnownAppUpdates::reason(const QString& appKey) const {
    using enum AppUpdateReason::Code;
    if (const auto known = record(appKey))
        return known->reason;
    const AppUpdateCandidate* known = _channels.candidate(appKey);
    if (!known || _channels.channel(appKey))
        return std::nullopt;
    return AppUpdateReason{known->hasStoreReceipt ? noStoreItem : noChannel, {}};
}

QStringList KnownAppUpdates::stale() const {
    QStringList result;
    for (auto it = _cache.records.constBegin(); it != _cache.records.constEnd(); ++it) {
        const AppUpdateCandidate* known = _channels.candidate(it.key());
        if (known && _channels.checker(*known) && !isValid(*it, *known))
            result.append(it.key());
    }
    return result;
}

QStringList KnownAppUpdates::transientlyFailed() const {
    QStringList failed;
    for (auto it = _cache.records.constBegin(); it != _cache.records.constEnd(); ++it)
        if (const auto known = record(it.key());
            known && hasFailed(known->status) && known->reason && isTransient(*known->reason))
            failed.append(it.key());
    return failed;
}

// ---- skipped versions

void KnownAppUpdates::skip(const QString& appKey, const std::optional<QString>& version) {
    _cache.skipped.insert(appKey, version.value_or(AppUpdateCache::everyVersion));
    askForSave();
    publish();
}

void KnownAppUpdates::unskip(const QString& appKey) {
    _cache.skipped.remove(appKey);
    askForSave();
    publish();
}

std::optional<QString> KnownAppUpdates::skipped(const QString& appKey) const {
    const auto found = _cache.skipped.constFind(appKey);
    return found == _cache.skipped.constEnd() ? std::nullopt : std::optional(*found);
}

bool KnownAppUpdates::isHeld(const QString& appKey) const {
    const auto known = record(appKey);
    return known && isHeld(appKey, *known);
}

bool KnownAppUpdates::isHeld(const QString& appKey, const AppUpdateRecord& record) const {
    const auto* update = std::get_if<UpdateAvailable>(&record.knownStatus());
    if (!update)
        return false;
    const auto wish = skipped(appKey);
    return wish == AppUpdateCache::everyVersion || wish == update->latestVersion ||
           (record.reason && record.reason->code == AppUpdateReason::Code::pinned);
}

// ---- notifications

void KnownAppUpdates::publish(bool atOnce) {
    if (atOnce)
        _publishThrottleTask.cancel();
    _isPublishWanted = true;
    if (_publishThrottleTask.isActive())
        return;
    _isPublishWanted = false;
    _publishThrottleTask = _machine.scheduler.after(publishInterval, [this] {
        if (_isPublishWanted)
            publish();
    });
    refreshStatuses();
    events.notify({AppUpdateEvent::Kind::changed, {}});
}

void KnownAppUpdates::notify(AppUpdateEvent::Kind kind, const QString& appKey) {
    const auto alive = _lifetime.watch();
    events.notify({kind, appKey});
    if (!alive.expired())
        publish();
}

/// True for reasons about one application, which do not suit a sentence about several.
static bool isAboutOne(const AppUpdateReason& reason) {
    using enum AppUpdateReason::Code;
    return reason.code == notListed || reason.code == otherApplication;
}

void KnownAppUpdates::refreshStatuses() {
    _statuses.clear();
    _knownStatuses.clear();
    _tally = {};
    QMap<AppUpdateReason::Code, std::pair<qsizetype, AppUpdateReason>> reasons;
    for (auto it = _cache.records.constBegin(); it != _cache.records.constEnd(); ++it) {
        const AppUpdateCandidate* installed = _channels.candidate(it.key());
        if (!installed || !isValid(*it, *installed))
            continue;
        const bool isKeptBack = isHeld(it.key(), *it);
        const auto shown = [&](const AppUpdateStatus& status) -> AppUpdateStatus {
            return isKeptBack && std::holds_alternative<UpdateAvailable>(status) ? UpToDate() : status;
        };
        _statuses.insert(it.key(), shown(it->status));
        _knownStatuses.insert(it.key(), shown(it->knownStatus()));
        if (std::holds_alternative<UpdateAvailable>(it->knownStatus()))
            ++(isKeptBack ? _tally.held : _tally.available);
        else if (std::holds_alternative<UpToDate>(it->status))
            ++_tally.upToDate;
        else if (std::holds_alternative<UpdateUnsupported>(it->status))
            ++_tally.unsupported;
        if (!hasFailed(it->status))
            continue;
        ++_tally.failed;
        if (it->reason) {
            auto& [count, reason] = reasons[it->reason->code];
            reason = *it->reason;
            ++count;
        }
    }
    if (reasons.size() == 1 && reasons.first().first == _tally.failed &&
        (_tally.failed == 1 || !isAboutOne(reasons.first().second)))
        _tally.reason = reasons.first().second;
}

// ---- saving

void KnownAppUpdates::changeKeys(const QHash<QString, QString>& changedKeys) {
    if (!_cache.changeKeys(changedKeys))
        return;
    // At once: the arrangement is about to be saved with the new keys.
    _isUnsaved = true;
    save();
}

void KnownAppUpdates::keepChannels() {
    _channels.keep(_cache);
    askForSave();
}

void KnownAppUpdates::askForSave() {
    _isUnsaved = true;
    _saveTask = _machine.scheduler.after(saveDelay, [this] { save(); });
}

void KnownAppUpdates::save() {
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

std::expected<void, FileError> KnownAppUpdates::flush() {
    save();
    return _store.wait();
}

} // namespace tessellar
