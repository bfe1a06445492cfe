#pragma once

#include "platform/opener.h"
#include "platform/resume_once.h"
#include "updates/app_update_action.h"
#include "updates/app_update_checker.h"
#include "updates/app_update_settings.h"
#include "updates/app_update_store.h"
#include "updates/homebrew_update_checker.h"

#include <vector>

namespace tessellar {

/// Why a check or an update was not begun.
enum class AppUpdateError { disabled, alreadyChecking, unknownApp };
QString message(AppUpdateError error);

/// How far a check has come.
struct AppUpdateProgress {
    qsizetype checked = 0;
    qsizetype total = 0;   ///< 0 while channels are still being found out
    QString currentAppKey; ///< the application whose turn came last
    QString currentAppName;

    bool operator==(const AppUpdateProgress&) const = default;
};

/// A question or a message to the user.
struct AppUpdateAlert {
    QString title;
    QString text;
    bool isQuestion = false;

    bool operator==(const AppUpdateAlert&) const = default;
};

/// Knows which installed applications have newer versions, and runs their updates. Main thread; what
/// blocks runs on workers and posts its results back.
///
/// The cache is read when it is made, or was before. Nothing is contacted before `start`, except by
/// what is asked for (`check`, `learnChannels`, `runAction`), so that a command line may use it
/// without.
class AppUpdateCoordinator {
public:
    static constexpr std::chrono::milliseconds saveDelay{1'000};
    static constexpr std::chrono::milliseconds publishInterval{250};
    static constexpr std::chrono::hours commandTimeout{2};

    explicit AppUpdateCoordinator(Machine& machine)
        : AppUpdateCoordinator(machine, StoredUpdates::read(machine)) {}
    /// With a cache that was read before, possibly on a worker.
    AppUpdateCoordinator(Machine& machine, StoredUpdates stored);
    /// Ends what runs, and saves what is unsaved.
    ~AppUpdateCoordinator();
    AppUpdateCoordinator(const AppUpdateCoordinator&) = delete;
    AppUpdateCoordinator& operator=(const AppUpdateCoordinator&) = delete;

    // Callbacks; each may be left empty.
    std::function<void()> onStatusesChanged; ///< statuses, count; at most every `publishInterval`
    std::function<void()> onChannelsChanged;
    std::function<void()> onProgress; ///< progress, isChecking; at once
    /// A record was made by a check, at once.
    std::function<void(const QString& appKey, const AppUpdateRecord&)> onResult;
    std::function<void()> onActionStatesChanged;
    /// Shows an alert; a question is answered through `answer`, once. Without it, no.
    std::function<void(const AppUpdateAlert&, std::function<void(bool confirmed)> answer)> presentAlert;
    std::function<void()> prepareForExternalPresentation; ///< another program is about to come forward
    std::function<void()> beginExternalSystemUI; ///< an external updater runs, which may show windows
    std::function<void()> endExternalSystemUI;
    std::function<void(const QString& appKey)> onUpdateCompleted; ///< after its re-check

    /// Begins the schedule, once there are applications.
    void start();
    /// To be called when settings were changed, or the machine was woken.
    void settingsChanged();
    bool isEnabled() const;
    /// Takes the applications shown; what their bundles say follows, then `onChannelsChanged`.
    void updateApps(const QList<AppEntry>& apps);
    /// Applications are known by other keys now: their records go along.
    void changeKeys(const QHash<QString, QString>& changedKeys);
    /// Saves at once what is unsaved.
    std::expected<void, FileError> flush();

    // What is known, by app key.
    /// The published statuses; a failed check is `failed`.
    const AppUpdateStatuses& statuses() const { return _statuses; }
    /// The same, except that beside a failure what was known before counts: for badges and folders.
    const AppUpdateStatuses& knownStatuses() const { return _knownStatuses; }
    /// Of `knownStatuses`.
    qsizetype availableUpdateCount() const { return _availableUpdateCount; }
    std::optional<AppUpdateStatus> status(const QString& appKey) const;
    /// The record, if it is valid for what is installed now; not throttled.
    std::optional<AppUpdateRecord> record(const QString& appKey) const;
    std::optional<Instant> lastCheck() const { return _cache.lastCheck; }
    std::optional<AppUpdateChannel> channel(const QString& appKey) const;
    QHash<QString, AppUpdateChannel> channels() const;
    /// The same without what the channel carries; while the brews were not asked, a record of theirs
    /// speaks for them.
    std::optional<AppUpdateChannelKind> channelKind(const QString& appKey) const;
    /// True once the brews were asked.
    bool areChannelsKnown() const { return _homebrew->isPrepared(); }
    const AppUpdateCandidate* candidate(const QString& appKey) const;
    const QHash<QString, HomebrewCaskOwnership>& homebrewOwnershipByAppKey() const;
    /// Finds out the channels of all applications, asking the brews where they were not asked yet;
    /// `done` is called when they are known.
    void learnChannels(std::function<void()> done);

    // Checks.
    struct CheckRequest {
        std::optional<AppUpdateChannelKind> channel; ///< of this channel only; else it is a full check
        std::optional<QStringList> appKeys;          ///< of these only
    };
    /// Begins a check. `done` is called at its end with true, or with false when it was cancelled or
    /// switched off.
    std::expected<void, AppUpdateError> check(const CheckRequest& request = {},
                                              std::function<void(bool completed)> done = {});
    /// Ends the running check; the results so far stay. The schedule waits for an interval after it.
    void cancelCheck();
    bool isChecking() const { return _check != nullptr; }
    const AppUpdateProgress& progress() const { return _progress; }

    // Updates.
    /// Nothing for an application that is not known.
    std::optional<AppUpdateAction> action(const QString& appKey) const;
    /// Runs its action, asking the user first where a command is run. `done` is called with the state
    /// at its end, or with nothing when it was declined or another one runs.
    void runAction(const QString& appKey,
                   std::function<void(std::optional<AppUpdateActionState>)> done = {});
    /// Ends the command that runs.
    void cancelAction();
    const std::optional<QString>& activeUpdateAppKey() const { return _activeUpdateAppKey; }
    const QHash<QString, AppUpdateActionState>& actionStates() const { return _actionStates; }

    /// Blocks until no external tool runs; for tests.
    void waitForTools() { _lanes.waitIdle(); }

private:
    class Inspection;
    struct Check;
    using Done = std::function<void(std::optional<AppUpdateActionState>)>;

    AppUpdateChecker* checkerOf(const AppUpdateCandidate& candidate) const;
    bool isValid(const AppUpdateRecord& record, const AppUpdateCandidate& candidate) const;
    QList<AppUpdateCandidate> candidates() const;
    void appsInspected(const QList<AppUpdateCandidate>& inspected);
    void askForChannels();
    void channelsLearned();
    void recheckStale();
    void recheck(QStringList appKeys, std::function<void(bool)> done);

    using Slot = std::unique_ptr<Check> AppUpdateCoordinator::*;
    void begin(Slot slot, const CheckRequest& request, std::function<void(bool)> done);
    void prepare(Check& check, std::size_t checker);
    void checkPrepared(Check& check);
    void checked(Check& check, const QString& appKey, const AppUpdateStatus& status);
    void end(Slot slot, bool completed);
    void switchedOff();

    void schedule();
    void checkDue();
    void publish();
    void refreshStatuses();
    void askForSave();
    void save();

    void runCommand(const QString& appKey, const AppUpdateCommand& command, const Done& done);
    void commandEnded(const QString& appKey, const AppUpdateCommandResult& result, const Done& done);
    void open(const AppUpdateCandidate& known, const AppUpdateAction& action, const Done& done);
    void actionEnded(const QString& appKey, AppUpdateActionState state, const Done& done);
    void tell(const std::function<void()>& callback) const {
        if (callback)
            callback();
    }

    Machine& _machine;
    AppUpdateStore _store;
    AppUpdateCache _cache;
    AppUpdateSettings _settings;
    Opener _opener;
    ToolLanes _lanes;
    HomebrewUpdateChecker* _homebrew = nullptr;
    /// In the order in which channels are decided.
    std::vector<std::unique_ptr<AppUpdateChecker>> _checkers;

    QList<AppEntry> _apps;
    QHash<QString, AppUpdateCandidate> _candidates;
    AppUpdateStatuses _statuses;
    AppUpdateStatuses _knownStatuses;
    qsizetype _availableUpdateCount = 0;
    AppUpdateProgress _progress;
    bool _isStarted = false;
    bool _areAppsInspected = false;
    bool _isCheckDue = false;            ///< as soon as the running one is over
    std::optional<Instant> _cancelledAt; ///< the last full check, if it was
    bool _isPublishWanted = false;
    bool _isUnsaved = false;
    std::vector<std::function<void()>> _waitingForChannels;

    std::optional<QString> _activeUpdateAppKey;
    QHash<QString, AppUpdateActionState> _actionStates;
    std::optional<std::stop_source> _actionStop;
    std::shared_ptr<ResumeOnce<AppUpdateCommandResult>> _actionResult;

    // Work under way; last, so that it ends first.
    Timer _scheduleTask;
    Timer _publishThrottleTask;
    Timer _saveTask;
    Task _updateActionTask;
    std::unique_ptr<Inspection> _inspection;
    std::unique_ptr<AppUpdateWork> _channelWork;
    std::unique_ptr<Check> _check;
    std::unique_ptr<Check> _recheck;
    std::shared_ptr<bool> _alive = std::make_shared<bool>();
};

} // namespace tessellar
