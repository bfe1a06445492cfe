#pragma once

#include "updates/app_update_checker.h"
#include "updates/homebrew_casks.h"
#include "updates/tool_lanes.h"

namespace tessellar {

/// Asks every brew on the machine which applications its casks own and which of them are outdated.
class HomebrewUpdateChecker final : public AppUpdateChecker {
public:
    HomebrewUpdateChecker(Machine& machine, ToolLanes& lanes) : _machine(machine), _lanes(lanes) {}

    /// A listing command: 90 seconds; a brew that does not heed its termination gets two periods of a
    /// second before it is killed, and its output is taken as it stands.
    static Command listing(const Machine& machine, const QString& brew, QList<QByteArray> arguments);

    AppUpdateChannelKind kind() const override { return AppUpdateChannelKind::homebrewCask; }
    std::unique_ptr<AppUpdateWork> prepare(const QList<AppUpdateCandidate>& candidates,
                                           const QMap<QString, AppUpdateRecord>& records, Depth depth,
                                           const std::function<void()>& done) override;
    bool isPrepared() const override { return _isPrepared; }
    /// The brews are to be asked again, for there are applications that they were not asked about; what
    /// is known of the others stays.
    void forget() { _isPrepared = false; }
    std::optional<AppUpdateChannel> channel(const AppUpdateCandidate& candidate) const override;
    QString fingerprint(const AppUpdateCandidate& candidate) const override;
    bool accepts(const QString& recordedFingerprint,
                 const AppUpdateCandidate& candidate) const override;
    [[nodiscard]] std::unique_ptr<AppUpdateWork> check(QList<AppUpdateCandidate> candidates,
                                                       AppUpdateObserver observer) override;

    /// By app key, as the brews last told.
    const QHash<QString, HomebrewCaskOwnership>& ownershipByAppKey() const { return _ownership; }

private:
    class Preparation;

    void learned(const Preparation& preparation, const HomebrewCaskCheckResult& result);

    Machine& _machine;
    ToolLanes& _lanes;
    QStringList _discoveredExecutablePaths;
    QHash<QString, HomebrewCaskOwnership> _ownership;
    bool _isPrepared = false;
};

} // namespace tessellar
