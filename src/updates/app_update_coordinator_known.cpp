// What the coordinator knows, and how it tells of it.

#include "updates/app_update_coordinator.h"

#include <algorithm>

namespace tessellar {

bool AppUpdateCoordinator::isEnabled() const {
    // Asked at each result: no reason to read all the settings.
    return _machine.settings.boolean(AppUpdateSettings::enabledKey).value_or(true);
}

AppUpdateChecker* AppUpdateCoordinator::checkerOf(const AppUpdateCandidate& candidate) const {
    const auto found = std::ranges::find_if(
        _checkers, [&](const auto& checker) { return checker->channel(candidate).has_value(); });
    return found == _checkers.end() ? nullptr : found->get();
}

bool AppUpdateCoordinator::isValid(const AppUpdateRecord& record,
                                   const AppUpdateCandidate& candidate) const {
    if (record.installedVersion != candidate.version || !record.sourceFingerprint)
        return false;
    for (const auto& checker : _checkers) {
        const bool isItsOwn = checker->channel(candidate).has_value();
        const bool accepted = (isItsOwn || !checker->isPrepared()) &&
                              checker->accepts(*record.sourceFingerprint, candidate);
        if (accepted || isItsOwn)
            return accepted;
    }
    return false;
}

const AppUpdateCandidate* AppUpdateCoordinator::candidate(const QString& appKey) const {
    const auto found = _candidates.constFind(appKey);
    return found == _candidates.constEnd() ? nullptr : &*found;
}

QList<AppUpdateCandidate> AppUpdateCoordinator::candidates() const {
    QList<AppUpdateCandidate> list;
    for (const AppEntry& app : _apps)
        if (const AppUpdateCandidate* known = candidate(appKey(app)))
            list.append(*known);
    return list;
}

std::optional<AppUpdateRecord> AppUpdateCoordinator::record(const QString& appKey) const {
    const auto found = _cache.records.constFind(appKey);
    const AppUpdateCandidate* known = candidate(appKey);
    if (found == _cache.records.constEnd() || !known || !isValid(*found, *known))
        return std::nullopt;
    return *found;
}

std::optional<AppUpdateStatus> AppUpdateCoordinator::status(const QString& appKey) const {
    const auto found = _statuses.constFind(appKey);
    return found == _statuses.constEnd() ? std::nullopt : std::optional(*found);
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

std::optional<AppUpdateChannelKind> AppUpdateCoordinator::channelKind(const QString& appKey) const {
    if (!areChannelsKnown())
        if (const auto known = record(appKey);
            known && isHomebrewFingerprint(known->sourceFingerprint.value_or(QString()), {}))
            return AppUpdateChannelKind::homebrewCask;
    const auto found = channel(appKey);
    return found ? std::optional(kindOf(*found)) : std::nullopt;
}

const QHash<QString, HomebrewCaskOwnership>& AppUpdateCoordinator::homebrewOwnershipByAppKey() const {
    return _homebrew->ownershipByAppKey();
}

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
}

void AppUpdateCoordinator::refreshStatuses() {
    AppUpdateStatuses statuses;
    AppUpdateStatuses known;
    qsizetype available = 0;
    for (auto it = _cache.records.constBegin(); it != _cache.records.constEnd(); ++it) {
        const AppUpdateCandidate* installed = candidate(it.key());
        if (!installed || !isValid(*it, *installed))
            continue;
        statuses.insert(it.key(), it->status);
        known.insert(it.key(), it->knownStatus());
        available += std::holds_alternative<UpdateAvailable>(it->knownStatus()) ? 1 : 0;
    }
    if (statuses == _statuses && known == _knownStatuses)
        return;
    _statuses = std::move(statuses);
    _knownStatuses = std::move(known);
    _availableUpdateCount = available;
    tell(onStatusesChanged);
}

} // namespace tessellar
