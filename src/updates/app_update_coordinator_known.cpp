// What the coordinator knows, its notifications, and what the runner of updates needs from it.

#include "updates/app_store_update_checker.h"
#include "updates/app_update_coordinator.h"
#include "updates/app_update_texts.h"
#include "updates/untrusted_text.h"

#include <algorithm>

namespace tessellar {

bool AppUpdateCoordinator::isEnabled() const {
    // Called for each result, so not all of the settings are read.
    return _machine.settings.boolean(AppUpdateSettings::enabledKey).value_or(true);
}

AppUpdateChecker* AppUpdateCoordinator::checkerOf(const AppUpdateCandidate& candidate) const {
    const auto found = std::ranges::find_if(
        _checkers, [&](const auto& checker) { return checker->channel(candidate).has_value(); });
    return found == _checkers.end() ? nullptr : found->get();
}

bool AppUpdateCoordinator::isValid(const AppUpdateRecord& record,
                                   const AppUpdateCandidate& candidate) const {
    const AppUpdateChecker* checker = checkerOf(candidate);
    return checker && record.installedVersion == candidate.version &&
           (!record.installedBuild || record.installedBuild == candidate.build) &&
           record.sourceFingerprint == checker->fingerprint(candidate);
}

const AppUpdateCandidate* AppUpdateCoordinator::candidate(const QString& appKey) const {
    const auto found = _candidates.constFind(appKey);
    return found == _candidates.constEnd() ? nullptr : &*found;
}

std::optional<AppUpdateRecord> AppUpdateCoordinator::record(const QString& appKey) const {
    const auto found = _cache.records.constFind(appKey);
    const AppUpdateCandidate* known = candidate(appKey);
    if (found == _cache.records.constEnd() || !known || !isValid(*found, *known))
        return std::nullopt;
    return *found;
}

std::optional<AppUpdateChannel> AppUpdateCoordinator::channel(const QString& appKey) const {
    const AppUpdateCandidate* known = candidate(appKey);
    const AppUpdateChecker* checker = known ? checkerOf(*known) : nullptr;
    return checker ? checker->channel(*known) : std::nullopt;
}

QHash<QString, AppUpdateChannel> AppUpdateCoordinator::channels() const {
    QHash<QString, AppUpdateChannel> result;
    for (auto it = _candidates.constBegin(); it != _candidates.constEnd(); ++it)
        if (const auto found = channel(it.key()))
            result.insert(it.key(), *found);
    return result;
}

std::optional<AppUpdateReason> AppUpdateCoordinator::reason(const QString& appKey) const {
    using enum AppUpdateReason::Code;
    if (const auto known = record(appKey))
        return known->reason;
    const AppUpdateCandidate* known = candidate(appKey);
    if (!known || channel(appKey))
        return std::nullopt;
    return AppUpdateReason{known->hasStoreReceipt ? noStoreItem : noChannel, {}};
}

// ---- skipped versions

void AppUpdateCoordinator::skip(const QString& appKey, const std::optional<QString>& version) {
    _cache.skipped.insert(appKey, version.value_or(AppUpdateCache::everyVersion));
    askForSave();
    publish();
}

void AppUpdateCoordinator::unskip(const QString& appKey) {
    _cache.skipped.remove(appKey);
    askForSave();
    publish();
}

std::optional<QString> AppUpdateCoordinator::skipped(const QString& appKey) const {
    const auto found = _cache.skipped.constFind(appKey);
    return found == _cache.skipped.constEnd() ? std::nullopt : std::optional(*found);
}

bool AppUpdateCoordinator::isHeld(const QString& appKey) const {
    const auto known = record(appKey);
    return known && isHeld(appKey, *known);
}

bool AppUpdateCoordinator::isHeld(const QString& appKey, const AppUpdateRecord& record) const {
    const auto* update = std::get_if<UpdateAvailable>(&record.knownStatus());
    if (!update)
        return false;
    const auto wish = skipped(appKey);
    return wish == AppUpdateCache::everyVersion || wish == update->latestVersion ||
           (record.reason && record.reason->code == AppUpdateReason::Code::pinned);
}

// ---- notifications

void AppUpdateCoordinator::publish() {
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

/// True for reasons about one application, which do not suit a sentence about several.
static bool isAboutOne(const AppUpdateReason& reason) {
    using enum AppUpdateReason::Code;
    return reason.code == notListed || reason.code == otherApplication;
}

void AppUpdateCoordinator::refreshStatuses() {
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

// ---- for the runner

std::optional<AppUpdateAction> AppUpdateCoordinator::action(const QString& appKey) const {
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

QStringList AppUpdateCoordinator::siblings(const QString& appKey) const {
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

bool AppUpdateCoordinator::hasUpdate(const QString& appKey) const {
    const auto known = record(appKey);
    return known && std::holds_alternative<UpdateAvailable>(known->knownStatus());
}

void AppUpdateCoordinator::verify(const QStringList& appKeys, std::function<void()> done) {
    if (isEnabled())
        return recheck(appKeys, std::move(done));
    // Reinspected, but not checked.
    begin(
        {.appKeys = QStringList()}, [done = std::move(done)](bool) { done(); }, false);
}

void AppUpdateCoordinator::actionChanged(const QString& appKey) {
    const auto alive = _lifetime.watch();
    events.notify({AppUpdateEvent::Kind::actionChanged, appKey});
    if (!alive.expired())
        publish();
}

void AppUpdateCoordinator::updated(const QString& appKey) {
    events.notify({AppUpdateEvent::Kind::updated, appKey});
}

} // namespace tessellar
