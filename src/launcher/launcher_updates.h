#pragma once

#include "launcher/launcher_error.h"
#include "launcher/launcher_question.h"
#include "platform/network_watch.h"
#include "updates/app_update_coordinator.h"

#include <functional>
#include <memory>
#include <vector>

namespace tessellar {

class InstalledApplications;
class LauncherMessages;
class SmartFolderLibrary;
struct SmartFolderDefinition;

/// What the launcher knows of updates for the installed applications, and how it brings them.
///
/// Loaded on demand:
/// - Nothing is read and no bundle looked at before somebody wants to know: the window, which starts
///   the schedule; a smart folder whose rules speak of updates; a command. The cache is then read, and
///   the bundles looked at, on workers.
/// - Nothing is contacted before `startSchedule`, except for what is asked for: a check, an update, the
///   channels. The command line never starts the schedule.
/// - Smart folders get the statuses while checking is switched on and something is known, and the
///   channels always; until then rules on them cannot be decided.
/// - Where a check failed, what was known before stays on the tile; smart folders say that it failed.
/// - After an update the application folders are looked at again. An update goes on when the launcher
///   ends, and whoever starts the schedule next takes it up.
///
/// Main thread only.
class LauncherUpdates {
public:
    using Outcome = std::expected<void, LauncherError>;

    LauncherUpdates(Machine& machine, InstalledApplications& applications,
                    SmartFolderLibrary& smartFolders, LauncherMessages& messages);
    ~LauncherUpdates();
    LauncherUpdates(const LauncherUpdates&) = delete;
    LauncherUpdates& operator=(const LauncherUpdates&) = delete;

    /// Checks from now on as often as the settings say, and soon after the network has returned; the
    /// window's.
    void startSchedule(std::unique_ptr<NetworkWatch> network = makeNetworkWatch());
    /// Calls `done` once the cache is read and the applications of the last scan have been looked at.
    void whenKnown(std::function<void()> done);
    /// The same, and tools have told which applications are whose: once, it is known from then on.
    void whenChannelsKnown(std::function<void()> done);
    /// True once `whenKnown` would call at once.
    bool isKnown() const { return _isKnown; }

    // Of one application, by its app key.
    /// What stands at the corner of its tile: an arrow where there is an update, else empty.
    QString badge(const QString& appKey) const;
    /// "Update available: 1.0 → 1.1", or empty.
    QString statusText(const QString& appKey) const;
    /// What is known of it; a failed check leaves what was known before.
    std::optional<AppUpdateStatus> status(const QString& appKey) const;
    /// Its last check has failed.
    bool hasFailed(const QString& appKey) const;
    std::optional<AppUpdateRecord> record(const QString& appKey) const;
    std::optional<AppUpdateChannel> channel(const QString& appKey) const;
    /// Which way its update would come; nothing while it is not known.
    std::optional<AppUpdateActionKind> actionKind(const QString& appKey) const;
    /// What a menu says of that, or empty.
    QString actionLabel(const QString& appKey) const;
    /// How its update runs or ended, until its next one begins.
    std::optional<AppUpdateActionState> actionState(const QString& appKey) const;
    /// What is said of that while it runs: "Updating… Downloading."; else empty.
    QString runningText(const QString& appKey) const;
    /// The same in a word or two, for a tile: "Downloading…".
    QString tileText(const QString& appKey) const;
    /// Where its version and its updates come from, for the information panel.
    std::optional<AppUpdateSourceText> sourceText(const QString& appKey) const;
    /// Why there is no plain answer about it: no channel, one that cannot tell, or a failed check.
    std::optional<AppUpdateReason> reason(const QString& appKey) const;

    /// Opens the page about the update that is offered, where its maker has one.
    void openNotes(const QString& appKey);

    // What the user does not want to hear of.
    /// The offered version, or every version of the application. Saved before long; see `flush`.
    Outcome skip(const QString& appKey, bool everyVersion);
    Outcome unskip(const QString& appKey);
    /// Makes one of these changes so that it is on the disk, or has not been made. Blocks meanwhile.
    Outcome saved(const QString& appKey, const std::function<Outcome()>& change);
    /// True for an update that is skipped, or pinned in Homebrew.
    bool isHeld(const QString& appKey) const;
    std::optional<QString> skipped(const QString& appKey) const;

    // Of all.
    /// What is known, by app key; see `status`.
    AppUpdateStatuses statuses() const;
    qsizetype availableCount() const;
    std::optional<Instant> lastCheck() const;
    QHash<QString, AppUpdateChannel> channels() const;
    /// Channels that could not be asked as a whole.
    QList<AppUpdateProblem> problems() const;
    /// The application whose update runs.
    std::optional<QString> activeAppKey() const;
    /// True while updates run or wait for their turn.
    bool isRunning() const { return activeAppKey().has_value(); }
    /// True while an updater runs that may show windows of its own, such as a question for a password:
    /// nothing of ours is to lie over them.
    bool isExternalUpdaterRunning() const {
        return _coordinator && _coordinator->runner().isExternalUpdaterRunning();
    }

    // The settings' page; its constant texts are in `update_texts`.
    bool isEnabled() const;
    Outcome setEnabled(bool enabled);
    AppUpdateInterval interval() const;
    Outcome setInterval(AppUpdateInterval interval);
    /// "Checking your installed apps for updates…", "2 updates available.", "Last checked …"; empty
    /// before the first check.
    QString summary() const;

    // Checks.
    struct Watcher {
        std::function<void(const QString& appKey, const AppUpdateRecord&)> result; ///< one by one
        std::function<void()> progress;
        /// At the end; a refusal comes at once. False when it was cancelled or switched off.
        std::function<void(std::expected<bool, LauncherError>)> done;
    };
    /// "Check My Installed Apps for Updates": one that runs goes on.
    void checkNow();
    /// The returned call ends this check, also one that still waits to begin, and no other; it may come
    /// too late, or never, but not after this object is gone.
    std::function<void()> check(std::optional<AppUpdateChannelKind> channel, Watcher watcher);
    void cancelCheck();
    bool isChecking() const;
    AppUpdateProgress progress() const;

    // Updates.
    /// Runs the application's update as the window does: asks the user, and says how it went.
    void run(const QString& appKey);
    /// The same of all that commands bring, one after the other.
    void runAll();
    /// Those that `runAll` updates.
    QStringList runnable() const;
    /// Asks through `asker`. `done` is called with what is to be said when all have ended and were
    /// checked again; a refusal of the user is "declined". The returned call ends this update as that
    /// of `check` does, or leaves what is under way to itself: "left".
    enum class GivingUp { ending, leaving };
    std::function<void(GivingUp)> run(const QStringList& appKeys, LauncherAsker asker,
                                      std::function<void(std::expected<QString, LauncherError>)> done);
    /// Ends the updates that run and wait, whoever asked for them.
    void cancelRun();

    /// To be called after a setting was changed, or the clock has leapt.
    void settingsChanged();

    Signal<> changed;       ///< at most every quarter of a second
    Signal<QString> ran;    ///< an update began, came on or ended, at once; by app key
    Signal<> settingStored; ///< by `setEnabled` or `setInterval`
    /// Something else comes to the front, where the update goes on: the window goes.
    Signal<> opened;
    /// The updater that runs has begun to ask for a password, in a window of its own or in none.
    Signal<> passwordAsked;

    /// Saves at once what is unsaved.
    Outcome flush();

private:
    using RunDone = std::function<void(std::expected<QString, LauncherError>)>;
    enum class Stage { waiting, underWay, over }; ///< of what somebody asked for
    struct Wish;

    void scanned();
    void changeKeys(const QHash<QString, QString>& changedKeys);
    void smartFoldersChanged();
    Outcome set(const QString& key, const QJsonValue& value);
    void want();
    void loaded(StoredUpdates stored);
    void heard(const AppUpdateEvent& event);
    void known();
    bool areSmartFoldersInterested() const;
    void feedSmartFolders();
    void learnChannelsForSmartFolders();
    void runKnown(const std::shared_ptr<Wish>& wish, const QStringList& appKeys,
                  const LauncherAsker& asker);
    std::expected<QString, LauncherError> outcome(const QStringList& appKeys);
    QString name(const QString& appKey) const;

    Machine& _machine;
    InstalledApplications& _applications;
    std::shared_ptr<void> _replacing; ///< while a tool replaces bundles
    SmartFolderLibrary& _smartFolders;
    LauncherMessages& _messages;
    Opener _opener;
    Task _opening;
    bool _isWanted = false;
    bool _isLoading = false;
    bool _haveKeysChanged = false; ///< in the file, or they are about to
    bool _isScheduleWanted = false;
    bool _isKnown = false;
    bool _wereChannelsAsked = false; ///< of all tools, whatever they answered
    bool _wasPasswordAsked = false;
    std::vector<std::function<void()>> _waiting;
    Watcher _watcher; ///< of the check that runs
    std::unique_ptr<NetworkWatch> _network;
    Subscription _networkReturned;
    Task _loading;
    std::unique_ptr<AppUpdateCoordinator> _coordinator;
    Subscription _events;
    Subscription _scanned;
    Subscription _keysChanged;
    Subscription _smartFoldersChanged;
};

} // namespace tessellar
