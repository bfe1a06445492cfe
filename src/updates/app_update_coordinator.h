#pragma once

#include "platform/lifetime.h"
#include "updates/app_update_check.h"
#include "updates/app_update_runner.h"
#include "updates/app_update_settings.h"
#include "updates/known_app_updates.h"

#include <list>

namespace tessellar {

/// Why a check could not start.
enum class AppUpdateError { disabled, alreadyChecking, unknownApp };
QString message(AppUpdateError error);

/// Checks installed applications for updates, on schedule and on request, and installs updates. Main
/// thread only; blocking work runs on workers.
///
/// Nothing is contacted before `start`, except by `check`, `learnChannels` and `update`, so the command
/// line can use it without `start`. The cache is read in the constructor or passed to it.
class AppUpdateCoordinator {
public:
    explicit AppUpdateCoordinator(Machine& machine)
        : AppUpdateCoordinator(machine, StoredUpdates::read(machine)) {}
    /// With a cache read earlier, possibly on a worker.
    AppUpdateCoordinator(Machine& machine, StoredUpdates stored);
    /// Cancels checks and saves changes; a running update continues.
    ~AppUpdateCoordinator();
    AppUpdateCoordinator(const AppUpdateCoordinator&) = delete;
    AppUpdateCoordinator& operator=(const AppUpdateCoordinator&) = delete;

    const AppUpdateChannels& channels() const { return _channels; }
    /// What has been found out, with all notifications.
    KnownAppUpdates& known() { return _known; }
    const KnownAppUpdates& known() const { return _known; }

    /// Starts the schedule, once there are applications, and resumes following an update started by an
    /// earlier run of the launcher.
    void start();
    /// Call after settings have changed.
    void settingsChanged();
    /// Call when the network is back: retries what failed without it.
    void networkReturned();
    /// Sets the installed applications; reads their bundles, then sends `inspected`.
    void updateApps(const QList<AppEntry>& apps);
    /// True once all tools have been asked about all applications.
    bool areChannelsKnown() const;
    /// Determines the channels of all applications, asking tools where necessary; calls `done` once
    /// they are known, or cannot be.
    void learnChannels(std::function<void()> done);

    // Checks.
    /// Starts a check. `done` is called at its end: false if it was cancelled or checking was disabled.
    std::expected<void, AppUpdateError> check(const AppUpdateCheckRequest& request = {},
                                              std::function<void(bool completed)> done = {});
    /// Cancels the running check, keeping the results so far. The next scheduled check is a full
    /// interval away.
    void cancelCheck();
    bool isChecking() const { return shown() != nullptr; }
    AppUpdateProgress progress() const;

    // Updates.
    AppUpdateRunner& runner() { return _runner; }
    const AppUpdateRunner& runner() const { return _runner; }

private:
    struct Running {
        std::unique_ptr<AppUpdateCheck> check;
        std::function<void(bool completed)> done;
    };
    using RunningChecks = std::list<Running>;

    bool isEnabled() const { return isUpdateCheckingEnabled(_machine.settings); }
    void appsInspected(const QList<AppUpdateCandidate>& inspected);
    void askForChannels();
    void channelsAsked();
    void recheckStale();
    void recheck(const QStringList& appKeys, std::function<void()> done);
    void verify(const QStringList& appKeys, std::function<void()> done);

    AppUpdateCheck* shown() const;
    void begin(const AppUpdateCheckRequest& request, std::function<void(bool)> done,
               bool isShown = false);
    void end(AppUpdateCheck& check, bool completed);
    void switchedOff();

    void schedule();
    void checkDue();
    void retry();
    void planRetry();

    Machine& _machine;
    AppUpdateChannels _channels;
    KnownAppUpdates _known;
    std::optional<AppUpdateRun> _interruptedRun; ///< left by an earlier run, until resumed
    AppUpdateSettings _settings;

    QList<AppEntry> _apps;
    AppUpdateProgress _lastProgress;
    bool _isStarted = false;
    bool _areAppsInspected = false;
    bool _hasNewcomers = false;          ///< that tools were not yet asked about
    bool _isCheckDue = false;            ///< once the running one has ended
    std::optional<Instant> _cancelledAt; ///< when the last full check was cancelled, if it was
    std::optional<Instant> _retryAt;     ///< for temporary failures
    std::size_t _retries = 0;            ///< consecutive
    std::vector<std::function<void()>> _waitingForChannels;
    bool _isAskingForChannels = false;

    // Running work; last, so that it is destroyed first.
    Timer _scheduleTask;
    std::optional<AppUpdateInspection> _inspection;
    RunningChecks _running;
    AppUpdateRunner _runner;
    Lifetime _lifetime;
};

} // namespace tessellar
