#pragma once

#include "updates/app_update_checker.h"
#include "updates/homebrew_casks.h"
#include "updates/tool_lanes.h"

#include <list>

namespace tessellar {

/// Asks every brew on the machine which applications its casks own, and which of them are outdated. A
/// brew that does not answer owns what it owned when it last did, and holds up no other.
class HomebrewUpdateChecker final : public AppUpdateChecker {
public:
    HomebrewUpdateChecker(Machine& machine, ToolLanes& lanes) : _machine(machine), _lanes(lanes) {}

    /// A listing command: 90 seconds; a brew that does not heed its termination gets two periods of a
    /// second before it is killed, and its output is taken as it stands.
    static Command listing(const Machine& machine, const QString& brew, QList<QByteArray> arguments);

    AppUpdateChannelKind kind() const override { return AppUpdateChannelKind::homebrewCask; }
    std::optional<AppUpdateChannel> channel(const AppUpdateCandidate& candidate) const override;
    QString fingerprint(const AppUpdateCandidate& candidate) const override;
    [[nodiscard]] std::unique_ptr<AppUpdateWork> check(QList<AppUpdateCandidate> candidates,
                                                       Findings findings) override;
    bool isDiscovered() const override { return _isDiscovered; }
    [[nodiscard]] std::unique_ptr<AppUpdateWork> discover(const QList<AppUpdateCandidate>& candidates,
                                                          Findings findings) override;
    void restore(const AppUpdateCache& cache) override;
    void keep(AppUpdateCache& cache) const override;

    /// The cask that owns the application, if one does.
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
    // While casks are being asked for, nobody asks what is outdated: two questions become one.
    int _searches = 0;
    QHash<QString, int> _asked;              ///< discoveries that wait for this brew
    QHash<QString, AppUpdateReason> _silent; ///< brews that did not answer in time, when last asked
    std::list<Run*> _runs;
    QHash<QString, std::stop_source> _listings; ///< what is outdated, being asked; by brew
    Timer _asking;
    std::shared_ptr<HomebrewUpdateChecker*> _alive = std::make_shared<HomebrewUpdateChecker*>(this);
};

} // namespace tessellar
