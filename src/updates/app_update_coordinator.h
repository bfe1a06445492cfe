#pragma once

#include "platform/lifetime.h"
#include "platform/signal.h"
#include "updates/app_update_check.h"
#include "updates/app_update_runner.h"
#include "updates/app_update_settings.h"
#include "updates/app_update_store.h"
#include "updates/app_update_texts.h"
#include "updates/homebrew_update_checker.h"

#include <list>

namespace tessellar {

/// Why a check could not start.
enum class AppUpdateError { disabled, alreadyChecking, unknownApp };
QString message(AppUpdateError error);

/// A notification for user interfaces.
struct AppUpdateEvent {
    enum class Kind {
        inspected,     ///< the bundles of all applications have been read
        changed,       ///< statuses, channels, checks or actions; throttled to `publishInterval`
        progressed,    ///< the visible check, unthrottled
        recorded,      ///< a verdict, unthrottled
        actionChanged, ///< an update, unthrottled
        updated,       ///< an update has ended and its application was re-read
    };
    Kind kind = Kind::changed;
    QString appKey; ///< for the last three kinds

    bool operator==(const AppUpdateEvent&) const = default;
};

/// Knows which installed applications have updates, and installs them. Main thread only; blocking work
/// runs on workers.
///
/// Nothing is contacted before `start`, except by `check`, `learnChannels` and `update`, so the command
/// line can use it without `start`. The cache is read in the constructor or passed to it.
class AppUpdateCoordinator final : private AppUpdateCheck::Listener, private AppUpdateRunner::Owner {
public:
    static constexpr std::chrono::milliseconds saveDelay{1'000};
    static constexpr std::chrono::milliseconds publishInterval{250};

    explicit AppUpdateCoordinator(Machine& machine)
        : AppUpdateCoordinator(machine, StoredUpdates::read(machine)) {}
    /// With a cache read earlier, possibly on a worker.
    AppUpdateCoordinator(Machine& machine, StoredUpdates stored);
    /// Cancels checks and saves changes; a running update continues.
    ~AppUpdateCoordinator() override;
    AppUpdateCoordinator(const AppUpdateCoordinator&) = delete;
    AppUpdateCoordinator& operator=(const AppUpdateCoordinator&) = delete;

    /// All notifications.
    Signal<AppUpdateEvent> events;

    /// Starts the schedule, once there are applications, and resumes following an update started by an
    /// earlier run of the launcher.
    void start();
    /// Call after settings have changed.
    void settingsChanged();
    /// Call when the network is back: retries what failed without it.
    void networkReturned();
    bool isEnabled() const;
    /// Sets the installed applications; reads their bundles, then sends `inspected`.
    void updateApps(const QList<AppEntry>& apps);
    /// Applies changed app keys to records and skipped updates.
    void changeKeys(const QHash<QString, QString>& changedKeys);
    /// Saves pending changes at once.
    std::expected<void, FileError> flush();

    // Results, by app key.
    /// The published statuses: failed checks are `failed`; skipped and pinned updates are omitted.
    const AppUpdateStatuses& statuses() const { return _statuses; }
    /// The same, but with the last known status instead of a failure: for badges.
    const AppUpdateStatuses& knownStatuses() const { return _knownStatuses; }
    /// Counts `knownStatuses`.
    const AppUpdateTally& tally() const { return _tally; }
    const QList<AppUpdateProblem>& problems() const { return _cache.problems; }
    /// The record, if valid for the installed version; unthrottled.
    std::optional<AppUpdateRecord> record(const QString& appKey) const;
    std::optional<Instant> lastCheck() const { return _cache.lastCheck; }
    /// As far as known, including from earlier runs.
    std::optional<AppUpdateChannel> channel(const QString& appKey) const;
    QHash<QString, AppUpdateChannel> channels() const;
    /// True once all tools have been asked about all applications.
    bool areChannelsKnown() const;
    const AppUpdateCandidate* candidate(const QString& appKey) const override;
    /// Why an application has no plain status: it has no channel, its channel cannot tell, or its check
    /// failed.
    std::optional<AppUpdateReason> reason(const QString& appKey) const;
    /// Determines the channels of all applications, asking tools where necessary; calls `done` once
    /// they are known, or cannot be.
    void learnChannels(std::function<void()> done);

    // Updates that the user ignores.
    /// Without a version, skips all updates of the application.
    void skip(const QString& appKey, const std::optional<QString>& version);
    void unskip(const QString& appKey);
    /// The skipped version, or `AppUpdateCache::everyVersion`.
    std::optional<QString> skipped(const QString& appKey) const;
    /// True if the update is skipped or pinned.
    bool isHeld(const QString& appKey) const;

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
    /// nullopt for an unknown application.
    std::optional<AppUpdateAction> action(const QString& appKey) const override;
    AppUpdateRunner& runner() { return _runner; }
    const AppUpdateRunner& runner() const { return _runner; }

private:
    struct Running {
        std::unique_ptr<AppUpdateCheck> check;
        std::function<void(bool)> done;
        /// The records it replaced, to be restored if checking is disabled.
        QHash<QString, std::optional<AppUpdateRecord>> replaced;
        bool isShown = false;
    };
    using RunningChecks = std::list<Running>;

    // AppUpdateCheck::Listener
    void inspected(AppUpdateCheck& check, const QList<AppUpdateCandidate>& found) override;
    void channelsLearned(AppUpdateCheck& check) override;
    void progressed(AppUpdateCheck& check) override;
    void found(AppUpdateCheck& check, const AppUpdateCandidate& candidate,
               const AppUpdateChecker& checker, const AppUpdateVerdict& verdict) override;
    void ended(AppUpdateCheck& check) override;
    // AppUpdateRunner::Owner
    QStringList siblings(const QString& appKey) const override;
    bool hasUpdate(const QString& appKey) const override;
    void verify(const QStringList& appKeys, std::function<void()> done) override;
    void actionChanged(const QString& appKey) override;
    void updated(const QString& appKey) override;

    bool isHeld(const QString& appKey, const AppUpdateRecord& record) const;
    AppUpdateChecker* checkerOf(const AppUpdateCandidate& candidate) const;
    bool isValid(const AppUpdateRecord& record, const AppUpdateCandidate& candidate) const;
    void appsInspected(const QList<AppUpdateCandidate>& inspected);
    void askForChannels();
    void channelsAsked();
    void recheckStale();
    void recheck(const QStringList& appKeys, std::function<void()> done);

    const Running* shown() const;
    RunningChecks::iterator runningOf(const AppUpdateCheck& check);
    void begin(const AppUpdateCheckRequest& request, std::function<void(bool)> done, bool isShown);
    void end(RunningChecks::iterator running, bool completed);
    void switchedOff();

    void schedule();
    void checkDue();
    void retry();
    void planRetry();
    QStringList transientlyFailed() const;
    void publish();
    void refreshStatuses();
    void askForSave();
    void save();
    void keepChannels();

    Machine& _machine;
    AppUpdateStore _store;
    AppUpdateCache _cache;
    std::optional<AppUpdateRun> _interruptedRun; ///< left by an earlier run, until resumed
    AppUpdateSettings _settings;
    ToolLanes _lanes;
    HomebrewUpdateChecker* _homebrew = nullptr; ///< for its updates
    /// In the order in which they claim applications.
    AppUpdateCheck::Checkers _checkers;

    QList<AppEntry> _apps;
    QHash<QString, AppUpdateCandidate> _candidates;
    AppUpdateStatuses _statuses;
    AppUpdateStatuses _knownStatuses;
    AppUpdateTally _tally;
    AppUpdateProgress _lastProgress;
    bool _isStarted = false;
    bool _areAppsInspected = false;
    bool _hasNewcomers = false;          ///< that tools were not yet asked about
    bool _isCheckDue = false;            ///< once the running one has ended
    std::optional<Instant> _cancelledAt; ///< when the last full check was cancelled, if it was
    std::optional<Instant> _retryAt;     ///< for temporary failures
    std::size_t _retries = 0;            ///< consecutive
    bool _isPublishWanted = false;
    bool _isUnsaved = false;
    std::vector<std::function<void()>> _waitingForChannels;
    bool _isAskingForChannels = false;

    // Running work; last, so that it is destroyed first.
    Timer _scheduleTask;
    Timer _publishThrottleTask;
    Timer _saveTask;
    std::optional<AppUpdateInspection> _inspection;
    RunningChecks _running;
    AppUpdateRunner _runner;
    Lifetime _lifetime;
};

} // namespace tessellar
