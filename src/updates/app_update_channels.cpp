#include "updates/app_update_channels.h"

#include "updates/app_store_update_checker.h"
#include "updates/app_update_settings.h"
#include "updates/app_update_texts.h"
#include "updates/sparkle_update_checker.h"
#include "updates/untrusted_text.h"

#include <algorithm>

namespace tessellar {

AppUpdateChannels::AppUpdateChannels(Machine& machine, const AppUpdateCache& cache)
    : _machine(machine), _lanes(machine.workers) {
    auto homebrew = std::make_unique<HomebrewUpdateChecker>(machine, _lanes);
    _homebrew = homebrew.get();
    _checkers.push_back(std::move(homebrew));
    _checkers.push_back(std::make_unique<AppStoreUpdateChecker>(machine, _lanes));
    _checkers.push_back(std::make_unique<SparkleUpdateChecker>(machine));
    for (const auto& checker : _checkers)
        checker->restore(cache);
}

bool AppUpdateChannels::setCandidates(const QList<AppUpdateCandidate>& inspected) {
    const bool haveNewcomers = std::ranges::any_of(inspected, [this](const AppUpdateCandidate& found) {
        const AppUpdateCandidate* known = candidate(found.appKey);
        return !known || known->resolvedPath != found.resolvedPath;
    });
    _candidates.clear();
    updateCandidates(inspected);
    return haveNewcomers;
}

void AppUpdateChannels::updateCandidates(const QList<AppUpdateCandidate>& inspected) {
    _candidates.reserve(std::max(_candidates.size(), inspected.size()));
    for (const AppUpdateCandidate& found : inspected)
        _candidates.insert(found.appKey, found);
}

bool AppUpdateChannels::isHomebrewUsed() const {
    return std::ranges::any_of(
        _candidates, [this](const auto& known) { return _homebrew->channel(known).has_value(); });
}

const AppUpdateChecker* AppUpdateChannels::checker(const AppUpdateCandidate& candidate) const {
    const auto found = std::ranges::find_if(
        _checkers, [&](const auto& checker) { return checker->channel(candidate).has_value(); });
    return found == _checkers.end() ? nullptr : found->get();
}

const AppUpdateCandidate* AppUpdateChannels::candidate(const QString& appKey) const {
    const auto found = _candidates.constFind(appKey);
    return found == _candidates.constEnd() ? nullptr : &*found;
}

std::optional<AppUpdateChannel> AppUpdateChannels::channel(const QString& appKey) const {
    const AppUpdateCandidate* known = candidate(appKey);
    const AppUpdateChecker* owner = known ? checker(*known) : nullptr;
    return owner ? owner->channel(*known) : std::nullopt;
}

QHash<QString, AppUpdateChannel> AppUpdateChannels::all() const {
    QHash<QString, AppUpdateChannel> result;
    for (auto it = _candidates.constBegin(); it != _candidates.constEnd(); ++it)
        if (const auto found = channel(it.key()))
            result.insert(it.key(), *found);
    return result;
}

std::optional<AppUpdateAction> AppUpdateChannels::action(const QString& appKey) const {
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

QStringList AppUpdateChannels::siblings(const QString& appKey) const {
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

bool AppUpdateChannels::areDiscovered() const {
    return std::ranges::all_of(_checkers, &AppUpdateChecker::isDiscovered);
}

void AppUpdateChannels::keep(AppUpdateCache& cache) const {
    for (const auto& checker : _checkers)
        checker->keep(cache);
    if (cache.owners)
        cache.owners->removeIf([&](const auto& entry) {
            return !_candidates.contains(entry.key()) && !cache.records.contains(entry.key());
        });
}

} // namespace tessellar
