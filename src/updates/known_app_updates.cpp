#include "updates/known_app_updates.h"

#include "updates/app_store_update_checker.h"
#include "updates/app_update_settings.h"
#include "updates/sparkle_update_checker.h"
#include "updates/untrusted_text.h"

#include <algorithm>

namespace tessellar {

KnownAppUpdates::KnownAppUpdates(Machine& machine, AppUpdateStore store, AppUpdateCache cache)
    : _machine(machine), _store(std::move(store)), _cache(std::move(cache)), _lanes(machine.workers) {
    auto homebrew = std::make_unique<HomebrewUpdateChecker>(machine, _lanes);
    _homebrew = homebrew.get();
    _checkers.push_back(std::move(homebrew));
    _checkers.push_back(std::make_unique<AppStoreUpdateChecker>(machine, _lanes));
    _checkers.push_back(std::make_unique<SparkleUpdateChecker>(machine));
    for (const auto& checker : _checkers)
        checker->restore(_cache);
}

KnownAppUpdates::~KnownAppUpdates() { (void)flush(); }

// ---- applications and their channels

bool KnownAppUpdates::setCandidates(const QList<AppUpdateCandidate>& inspected) {
    const bool haveNewcomers = std::ranges::any_of(inspected, [this](const AppUpdateCandidate& found) {
        const AppUpdateCandidate* known = candidate(found.appKey);
        return !known || known->resolvedPath != found.resolvedPath;
    });
    _candidates.clear();
    updateCandidates(inspected);
    return haveNewcomers;
}

void KnownAppUpdates::updateCandidates(const QList<AppUpdateCandidate>& inspected) {
    for (const AppUpdateCandidate& found : inspected)
        _candidates.insert(found.appKey, found);
}

bool KnownAppUpdates::isHomebrewUsed() const {
    return std::ranges::any_of(
        _candidates, [this](const auto& known) { return _homebrew->channel(known).has_value(); });
}

AppUpdateChecker* KnownAppUpdates::checkerOf(const AppUpdateCandidate& candidate) const {
    const auto found = std::ranges::find_if(
        _checkers, [&](const auto& checker) { return checker->channel(candidate).has_value(); });
    return found == _checkers.end() ? nullptr : found->get();
}

const AppUpdateCandidate* KnownAppUpdates::candidate(const QString& appKey) const {
    const auto found = _candidates.constFind(appKey);
    return found == _candidates.constEnd() ? nullptr : &*found;
}

std::optional<AppUpdateChannel> KnownAppUpdates::channel(const QString& appKey) const {
    const AppUpdateCandidate* known = candidate(appKey);
    const AppUpdateChecker* checker = known ? checkerOf(*known) : nullptr;
    return checker ? checker->channel(*known) : std::nullopt;
}

QHash<QString, AppUpdateChannel> KnownAppUpdates::channels() const {
    QHash<QString, AppUpdateChannel> result;
    for (auto it = _candidates.constBegin(); it != _candidates.constEnd(); ++it)
        if (const auto found = channel(it.key()))
            result.insert(it.key(), *found);
    return result;
}

std::optional<AppUpdateAction> KnownAppUpdates::action(const QString& appKey) const {
    const AppUpdateCandidate* known = candidate(appKey);
    if (!known)
        return std::nullopt;
    if (const auto found = channel(appKey)) {
        if (const HomebrewCaskOwnership* cask = _homebrew->owner(*known);
            cask && isCaskToken(cask->token))
            return HomebrewAction{cask->token, cask->brewExecutablePath};
        if (const auto* store = std::get_if<MacAppStoreChannel>(&*found))
            return AppStoreAction{
                AppStoreUpdateChecker::storePageUrl(
                    readAppUpdateSettings(_machine.settings).storePageBase, store->itemIdentifier)
                    .toString()};
        if (std::holds_alternative<SparkleChannel>(*found))
            return SparkleAction();
    }
    if (auto target = MicrosoftAutoUpdateTarget::find(_machine.files,
                                                      known->bundleIdentifier.value_or(QString())))
        return *std::move(target);
    if (isBuiltIn(known->path))
        return SystemSoftwareUpdateAction();
    if (known->hasKeystone)
        return VendorUpdaterAction();
    return OpenAppAction();
}

QStringList KnownAppUpdates::siblings(const QString& appKey) const {
    QStringList all{appKey};
    const AppUpdateCandidate* known = candidate(appKey);
    const HomebrewCaskOwnership* cask = known ? _homebrew->owner(*known) : nullptr;
    for (auto it = _candidates.constBegin(); cask && it != _candidates.constEnd(); ++it)
        if (const HomebrewCaskOwnership* other = _homebrew->owner(*it);
            other && it.key() != appKey && other->token == cask->token &&
            other->brewExecutablePath == cask->brewExecutablePath)
            all.append(it.key());
    return all;
}

// ---- records

bool KnownAppUpdates::isValid(const AppUpdateRecord& record,
                              const AppUpdateCandidate& candidate) const {
    const AppUpdateChecker* checker = checkerOf(candidate);
    return checker && record.installedVersion == candidate.version &&
           (!record.installedBuild || record.installedBuild == candidate.build) &&
           record.sourceFingerprint == checker->fingerprint(candidate);
}

std::optional<AppUpdateRecord> KnownAppUpdates::record(const QString& appKey) const {
    const auto found = _cache.records.constFind(appKey);
    const AppUpdateCandidate* known = candidate(appKey);
    if (found == _cache.records.constEnd() || !known || !isValid(*found, *known))
        return std::nullopt;
    return *found;
}

void KnownAppUpdates::recordVerdict(const AppUpdateCandidate& checked, const AppUpdateChecker& checker,
                                    const AppUpdateVerdict& verdict, Replaced& replaced) {
    const QString appKey = checked.appKey;
    const AppUpdateCandidate* known = candidate(appKey);
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
        if (it.value())
            _cache.records.insert(it.key(), *it.value());
        else
            _cache.records.remove(it.key());
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
        return !_candidates.contains(entry.key()) &&
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
    const AppUpdateCandidate* known = candidate(appKey);
    if (!known || channel(appKey))
        return std::nullopt;
    return AppUpdateReason{known->hasStoreReceipt ? noStoreItem : noChannel, {}};
}

QStringList KnownAppUpdates::stale() const {
    QStringList result;
    for (auto it = _cache.records.constBegin(); it != _cache.records.constEnd(); ++it) {
        const AppUpdateCandidate* known = candidate(it.key());
        if (known && checkerOf(*known) && !isValid(*it, *known))
            result.append(it.key());
    }
    return result;
}

QStringList KnownAppUpdates::transientlyFailed() const {
    QStringList failed;
    for (auto it = _candidates.constBegin(); it != _candidates.constEnd(); ++it)
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
        const AppUpdateCandidate* installed = candidate(it.key());
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
    for (const auto& checker : _checkers)
        checker->keep(_cache);
    if (_cache.owners)
        _cache.owners->removeIf([this](const auto& entry) {
            return !_candidates.contains(entry.key()) && !_cache.records.contains(entry.key());
        });
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
