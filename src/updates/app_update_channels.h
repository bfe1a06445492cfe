#pragma once

#include "updates/app_update_action.h"
#include "updates/app_update_checker.h"
#include "updates/homebrew_update_checker.h"

namespace tessellar {

/// The installed applications and the channels that update them. Everything by app key. Main thread
/// only.
class AppUpdateChannels {
public:
    using Checkers = std::vector<std::unique_ptr<AppUpdateChecker>>;

    /// `cache` holds what checkers learned in earlier runs.
    AppUpdateChannels(Machine& machine, const AppUpdateCache& cache);

    /// Replaces all applications; true if some are new, or elsewhere.
    bool setCandidates(const QList<AppUpdateCandidate>& inspected);
    void updateCandidates(const QList<AppUpdateCandidate>& inspected);
    /// nullptr for an unknown application.
    const AppUpdateCandidate* candidate(const QString& appKey) const;

    /// As far as known, including from earlier runs.
    std::optional<AppUpdateChannel> channel(const QString& appKey) const;
    QHash<QString, AppUpdateChannel> all() const;
    /// True once all tools have been asked.
    bool areDiscovered() const;
    bool isHomebrewUsed() const;

    /// nullopt for an unknown application.
    std::optional<AppUpdateAction> action(const QString& appKey) const;
    /// The applications updated by the same command, `appKey` first.
    QStringList siblings(const QString& appKey) const;

    /// In the order in which they claim applications.
    const Checkers& checkers() const { return _checkers; }
    /// The one that claims an application, or nullptr.
    const AppUpdateChecker* checker(const AppUpdateCandidate& candidate) const;
    /// Writes what checkers have learned to the cache.
    void keep(AppUpdateCache& cache) const;

private:
    Machine& _machine;
    ToolLanes _lanes;
    HomebrewUpdateChecker* _homebrew = nullptr; ///< for its updates
    Checkers _checkers;
    QHash<QString, AppUpdateCandidate> _candidates;
};

} // namespace tessellar
