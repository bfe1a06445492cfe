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

/// Why a check was not begun.
enum class AppUpdateError { disabled, alreadyChecking, unknownApp };
QString message(AppUpdateError error);

/// Something that happened, for those who show it.
struct AppUpdateEvent {
    enum class Kind {
        inspected,     ///< what the bundles of all applications say is known
        changed,       ///< statuses, channels, checks, actions: at most every `publishInterval`
        progressed,    ///< the check that is shown, at once
        recorded,      ///< a verdict, at once
        actionChanged, ///< an update, at once
        updated,       ///< an update has ended and its application was looked at again
    };
    Kind kind = Kind::changed;
    QString appKey; ///< of the last three

    bool operator==(const AppUpdateEvent&) const = default;
};

/// Knows which installed applications have newer versions, and has them brought. Main thread; what
/// blocks runs on workers and posts its results back.
///
/// The cache is read when it is made, or was before. Nothing is contacted before `start`, except by
/// what is asked for (`check`, `learnChannels`, `update`), so that a command line may use it without.
class AppUpdateCoordinator final : private AppUpdateCheck::Listener, private AppUpdateRunner::Owner {
public:
    static constexpr std::chrono::milliseconds saveDelay{1'000};
    static constexpr std::chrono::milliseconds publishInterval{250};

    explicit AppUpdateCoordinator(Machine& machine)
        : AppUpdateCoordinator(machine, StoredUpdates::read(machine)) {}
    /// With a cache that was read before, possibly on a worker.
    AppUpdateCoordinator(Machine& machine, StoredUpdates stored);
    /// Ends checks, and saves what is unsaved; an update that runs goes on.
    ~AppUpdateCoordinator() override;
    AppUpdateCoordinator(const AppUpdateCoordinator&) = delete;
    AppUpdateCoordinator& operator=(const AppUpdateCoordinator&) = delete;

    /// The one way to hear of what happens here.
    Signal<AppUpdateEvent> events;

    /// Begins the schedule, once there are applications, and takes up an update that an earlier run of
    /// the launcher began.
    void start();
    /// To be called when settings were changed.
    void settingsChanged();
    /// To be called when there is a network again: what failed without it is tried again.
    void networkReturned();
    bool isEnabled() const;
    /// Takes the applications shown; what their bundles say follows, then `inspected`.
    void updateApps(const QList<AppEntry>& apps);
    /// Applications are known by other keys now: their records go along, and what is skipped of them.
    void changeKeys(const QHash<QString, QString>& changedKeys);
    /// Saves at once what is unsaved.
    std::expected<void, FileError> flush();

    // What is known, by app key.
    /// The published statuses: a failed check is `failed`; an update that the user skips, or that is
    /// pinned, is none.
    const AppUpdateStatuses& statuses() const { return _statuses; }
    /// The same, except that beside a failure what was known before counts: for badges.
    const AppUpdateStatuses& knownStatuses() const { return _knownStatuses; }
    /// Of `knownStatuses`.
    qsizetype availableUpdateCount() const { return _tally.available; }
    const AppUpdateTally& tally() const { return _tally; }
    const QList<AppUpdateProblem>& problems() const { return _cache.problems; }
    /// The record, if it is valid for what is installed now; not throttled.
    std::optional<AppUpdateRecord> record(const QString& appKey) const;
    std::optional<Instant> lastCheck() const { return _cache.lastCheck; }
    /// As far as it is known, also from earlier runs.
    std::optional<AppUpdateChannel> channel(const QString& appKey) const;
    QHash<QString, AppUpdateChannel> channels() const;
    /// True once all tools were asked whose applications they are, since the last one came.
    bool areChannelsKnown() const;
    const AppUpdateCandidate* candidate(const QString& appKey) const override;
    /// Why there is no plain answer about an application: it has no channel, its channel cannot tell,
    /// or its check failed.
    std::optional<AppUpdateReason> reason(const QString& appKey) const;
    /// Finds out the channels of all applications, asking tools where they were not asked yet; `done`
    /// is called when they are known, or cannot be.
    void learnChannels(std::function<void()> done);

    // What the user does not want to hear of.
    /// Without a version, of the application at all.
    void skip(const QString& appKey, const std::optional<QString>& version);
    void unskip(const QString& appKey);
    /// The version that is skipped, or `AppUpdateCache::everyVersion`.
    std::optional<QString> skipped(const QString& appKey) const;
    /// True for an update that is skipped or pinned.
    bool isHeld(const QString& appKey) const;

    // Checks.
    /// Begins a check. `done` is called at its end with true, or with false when it was cancelled or
    /// switched off.
    std::expected<void, AppUpdateError> check(const AppUpdateCheckRequest& request = {},
                                              std::function<void(bool completed)> done = {});
    /// Ends the running check; the results so far stay. The schedule waits for an interval after it.
    void cancelCheck();
    bool isChecking() const { return shown() != nullptr; }
    AppUpdateProgress progress() const;

    // Updates.
    /// Nothing for an application that is not known.
    std::optional<AppUpdateAction> action(const QString& appKey) const override;
    AppUpdateRunner& runner() { return _runner; }
    const AppUpdateRunner& runner() const { return _runner; }

private:
    struct Running {
        std::unique_ptr<AppUpdateCheck> check;
        std::function<void(bool)> done;
        /// What its results took the place of, to be put back when checking is switched off.
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
    QStringList failedForNow() const;
    void publish();
    void refreshStatuses();
    void askForSave();
    void save();
    void keepChannels();

    Machine& _machine;
    AppUpdateStore _store;
    AppUpdateCache _cache;
    std::optional<AppUpdateRun> _leftRun; ///< by an earlier launcher, until it is taken up
    AppUpdateSettings _settings;
    ToolLanes _lanes;
    HomebrewUpdateChecker* _homebrew = nullptr; ///< for updates through it
    /// In the order in which channels are decided.
    AppUpdateCheck::Checkers _checkers;

    QList<AppEntry> _apps;
    QHash<QString, AppUpdateCandidate> _candidates;
    AppUpdateStatuses _statuses;
    AppUpdateStatuses _knownStatuses;
    AppUpdateTally _tally;
    AppUpdateProgress _lastProgress;
    bool _isStarted = false;
    bool _areAppsInspected = false;
    bool _hasNewcomers = false;          ///< that tools were not asked about
    bool _isCheckDue = false;            ///< as soon as the running one is over
    std::optional<Instant> _cancelledAt; ///< the last full check, if it was
    std::optional<Instant> _retryAt;     ///< what failed for now
    std::size_t _retries = 0;            ///< in a row
    bool _isPublishWanted = false;
    bool _isUnsaved = false;
    std::vector<std::function<void()>> _waitingForChannels;
    bool _isAskingForChannels = false;

    // Work under way; last, so that it ends first.
    Timer _scheduleTask;
    Timer _publishThrottleTask;
    Timer _saveTask;
    std::optional<AppUpdateInspection> _inspection;
    RunningChecks _running;
    AppUpdateRunner _runner;
    Lifetime _lifetime;
};

} // namespace tessellar
