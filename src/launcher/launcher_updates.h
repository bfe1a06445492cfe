#pragma once

#include "launcher/app_update_view.h"
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

/// What the launcher knows about updates of installed applications, and how it installs them.
///
/// Loaded on demand:
/// - Nothing is read until needed: by the window, which starts the schedule; by a smart folder with
///   rules on updates; by a command. Then the cache and the bundles are read on workers.
/// - Nothing is contacted before `startSchedule`, except on request: for a check, an update, or the
///   channels. The command line never starts the schedule.
/// - Smart folders get the statuses if checking is enabled and something is known, and the channels
///   always; until then their rules cannot be decided.
/// - After a failed check, tiles keep the last known status; smart folders see the failure.
/// - After an update the application folders are scanned. Updates continue when the launcher quits, and
///   are resumed by the next `startSchedule`.
///
/// How a check runs: `check` here and in the coordinator, `AppUpdateCheck` with its checkers,
/// `KnownAppUpdates::recordVerdict`, which publishes, and back to `handle`.
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

    /// Checks regularly from now on, as often as the settings say, and shortly after the network
    /// returns. For the window.
    void startSchedule(std::unique_ptr<NetworkWatch> network = makeNetworkWatch());
    /// Calls `done` once the cache is loaded and the scanned applications have been read.
    void whenReady(std::function<void()> done);
    /// The same, once tools have also been asked which applications they own; they are asked only once.
    void whenChannelsKnown(std::function<void()> done);
    /// True if `whenReady` would call `done` immediately.
    bool isReady() const { return _isReady; }

    /// What is known of one application's updates, by its app key.
    AppUpdateView of(const QString& appKey) const;
    /// Opens the web page of the available update's release notes, if there is one.
    void openNotes(const QString& appKey);

    // Updates that the user ignores.
    /// Skips the available version, or every version. Saved after a delay; see `flush`.
    Outcome skip(const QString& appKey, bool everyVersion);
    Outcome unskip(const QString& appKey);
    /// Makes one of these changes and saves it, rolling it back if saving fails. Blocks.
    Outcome saved(const QString& appKey, const std::function<Outcome()>& change);

    // For all applications.
    /// The last known statuses, by app key; see `AppUpdateView`.
    AppUpdateStatuses knownStatuses() const;
    qsizetype availableCount() const;
    std::optional<Instant> lastCheck() const;
    QHash<QString, AppUpdateChannel> channels() const;
    /// Channels that could not be queried at all.
    QList<AppUpdateProblem> problems() const;
    /// True while updates are running or queued.
    bool isRunning() const { return _coordinator && _coordinator->runner().isBusy(); }
    /// True while an updater runs that may show its own windows, such as a password prompt, which ours
    /// must not cover.
    bool isExternalUpdaterRunning() const {
        return _coordinator && _coordinator->runner().isExternalUpdaterRunning();
    }

    /// False if the user switched checks off.
    bool isEnabled() const;
    /// For example "Checking your installed apps for updates…", "2 updates available.", "Last checked
    /// …"; empty before the first check.
    QString summary() const;

    // Checks.
    struct Watcher {
        std::function<void(const QString& appKey, const AppUpdateRecord&)> result; ///< per verdict
        std::function<void()> progress;
        /// Called at the end, or at once with an error. False if cancelled or disabled.
        std::function<void(std::expected<bool, LauncherError>)> done;
    };
    /// Starts a check, of all channels or one. Without a `done` it is the user's: nothing happens if a
    /// check is running, and an error is shown as a notice. The returned function cancels it, queued or
    /// running, and no other; it may be called late or never, but not after this object is destroyed.
    std::function<void()> check(std::optional<AppUpdateChannelKind> channel = {}, Watcher watcher = {});
    void cancelCheck();
    bool isChecking() const;
    AppUpdateProgress progress() const;

    // Updates.
    /// Updates an application interactively: asks the user and reports the result.
    void run(const QString& appKey);
    /// The same for all applications that are updated by commands, one at a time.
    void runAll();
    /// The applications that `runAll` updates.
    QStringList runnable() const;
    /// Asks through `asker`. `done` is called with the message for the user once all have ended and
    /// been verified; if the user declines, with the error "declined". The returned function cancels
    /// this update, as for `check`, or detaches from it, giving the error "left".
    enum class StopMode { cancel, detach };
    std::function<void(StopMode)> run(const QStringList& appKeys, LauncherAsker asker,
                                      std::function<void(std::expected<QString, LauncherError>)> done);
    /// Cancels all running and queued updates, whoever requested them.
    void cancelRun();

    /// Call after settings or the clock have changed.
    void settingsChanged();

    Signal<> changed;    ///< throttled to a quarter of a second
    Signal<QString> ran; ///< an update started, progressed or ended, unthrottled; by app key
    /// Another program comes to the front to continue the update; the window should hide.
    Signal<> opened;
    /// The running updater has started asking for a password, with or without a window.
    Signal<> passwordAsked;

    /// Saves pending changes at once.
    Outcome flush();

private:
    using RunDone = std::function<void(std::expected<QString, LauncherError>)>;
    enum class Stage { waiting, underWay, over }; ///< of a request
    struct RunRequest;

    void scanned();
    void changeKeys(const QHash<QString, QString>& changedKeys);
    void smartFoldersChanged();
    void requestLoad();
    void loaded(StoredUpdates stored);
    void handle(const AppUpdateEvent& event);
    void inspected();
    bool areSmartFoldersInterested() const;
    void feedSmartFolders();
    void learnChannelsForSmartFolders();
    void startRun(const std::shared_ptr<RunRequest>& request, const QStringList& appKeys,
                  const LauncherAsker& asker);
    std::expected<QString, LauncherError> outcome(const QStringList& appKeys) const;
    QString name(const QString& appKey) const;

    Machine& _machine;
    InstalledApplications& _applications;
    std::shared_ptr<void> _replacing; ///< held while a tool replaces bundles
    SmartFolderLibrary& _smartFolders;
    LauncherMessages& _messages;
    Opener _opener;
    Task _opening;
    bool _isWanted = false;
    bool _isLoading = false;
    bool _haveKeysChanged = false; ///< in the file, or about to
    bool _isScheduleWanted = false;
    bool _isReady = false;
    bool _wereChannelsAsked = false; ///< all tools were asked, whatever they answered
    bool _wasPasswordAsked = false;
    std::vector<std::function<void()>> _waiting;
    Watcher _watcher; ///< of the running check
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
