#pragma once

#include "updates/app_update_checker.h"
#include "updates/homebrew_casks.h"
#include "updates/tool_lanes.h"

#include <list>

namespace tessellar {

/// Asks every brew on the machine which applications its casks own, and which are outdated. A brew that
/// does not answer keeps what it owned before, and delays no other.
class HomebrewUpdateChecker final : public AppUpdateChecker {
public:
    HomebrewUpdateChecker(Machine& machine, ToolLanes& lanes) : _machine(machine), _lanes(lanes) {}

    /// A listing command: times out after 90 seconds and is killed if it ignores termination for two
    /// more.
    static Command listing(const Machine& machine, const QString& brew, QList<QByteArray> arguments);

    AppUpdateChannelKind kind() const override { return AppUpdateChannelKind::homebrewCask; }
    std::optional<AppUpdateChannel> channel(const AppUpdateCandidate& candidate) const override;
    QString fingerprint(const AppUpdateCandidate& candidate) const override;
    [[nodiscard]] std::unique_ptr<AppUpdateWork> check(QList<AppUpdateCandidate> candidates,
                                                       AppUpdateSink sink) override;
    bool isDiscovered() const override { return _isDiscovered; }
    [[nodiscard]] std::unique_ptr<AppUpdateWork> discover(const QList<AppUpdateCandidate>& candidates,
                                                          AppUpdateSink sink) override;
    void restore(const AppUpdateCache& cache) override;
    void keep(AppUpdateCache& cache) const override;

    /// The cask that owns the application; null if none.
    const HomebrewCaskOwnership* owner(const AppUpdateCandidate& candidate) const;

private:
    class Discovery;
    class Run;

    void learn(const QList<AppUpdateCandidate>& candidates, const HomebrewCaskCheckResult& result);
    bool isBusy(const QString& brew) const;
    void askSoon();
    void ask();

    Machine& _machine;
    ToolLanes& _lanes;
    QMap<QString, HomebrewCaskOwnership> _owners; ///< by app key
    bool _isDiscovered = false;
    // Listings of outdated casks wait for discoveries to end, so that all checks share one.
    int _searches = 0;
    QHash<QString, int> _asked;              ///< number of discoveries waiting for each brew
    QHash<QString, AppUpdateReason> _silent; ///< brews that last failed to answer, with the reason
    std::list<Run*> _runs;
    QHash<QString, std::stop_source> _listings; ///< running listings of outdated casks, by brew
    Timer _asking;
    std::shared_ptr<HomebrewUpdateChecker*> _alive = std::make_shared<HomebrewUpdateChecker*>(this);
};

} // namespace tessellar
