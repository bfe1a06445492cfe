#pragma once

#include "launcher/launcher_error.h"
#include "launcher/launcher_question.h"
#include "platform/signal.h"
#include "updates/app_update_coordinator.h"
#include "updates/app_update_texts.h"

#include <QMultiHash>

#include <functional>
#include <memory>
#include <vector>

namespace tessellar {

class InstalledApplications;
class LauncherMessages;
class SmartFolderLibrary;

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
/// - Where a check failed, what was known before stays on the tile and in the folders.
/// - After an update the application folders are looked at again.
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

    /// Checks from now on as often as the settings say; the window's.
    void startSchedule();
    /// Calls `done` once the cache is read and the applications of the last scan have been looked at.
    void whenKnown(std::function<void()> done);
    /// The same, and the brews have told which applications are theirs.
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
    std::optional<AppUpdateRecord> record(const QString& appKey) const;
    std::optional<AppUpdateChannel> channel(const QString& appKey) const;
    /// Which way its update would come; nothing while it is not known.
    std::optional<AppUpdateActionKind> actionKind(const QString& appKey) const;
    /// What a menu says of that, or empty.
    QString actionLabel(const QString& appKey) const;
    /// How its update runs or ended, until its next one begins.
    std::optional<AppUpdateActionState> actionState(const QString& appKey) const;
    /// Where its version and its updates come from, for the information panel.
    std::optional<AppUpdateSourceText> sourceText(const QString& appKey) const;

    // Of all.
    /// What is known, by app key; see `status`.
    AppUpdateStatuses statuses() const;
    qsizetype availableCount() const;
    std::optional<Instant> lastCheck() const;
    QHash<QString, AppUpdateChannel> channels() const;
    /// The application whose update runs.
    std::optional<QString> activeAppKey() const;
    /// True while an updater runs that may show windows of its own, such as a question for a password:
    /// nothing of ours is to lie over them.
    bool isExternalUpdaterRunning() const { return _externalUpdaters > 0; }

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
    /// Asks through `asker`. `done` is called with what is to be said when it has ended and the
    /// application was checked again; a refusal of the user is "declined". The returned call ends this
    /// update as that of `check` does; where it has come through, it is not waited for any further.
    std::function<void()> run(const QString& appKey, LauncherAsker asker,
                              std::function<void(std::expected<QString, LauncherError>)> done);
    /// Ends the update that runs, whoever asked for it.
    void cancelRun();

    /// To be called after a setting was changed.
    void settingsChanged();

    Signal<> changed;       ///< at most every quarter of a second while a check runs
    Signal<> settingStored; ///< by `setEnabled` or `setInterval`
    Signal<> opened;        ///< something else, where the update goes on: the window goes

    /// Saves at once what is unsaved.
    Outcome flush();

    /// Blocks until no external tool runs; for tests.
    void waitForTools() {
        if (_coordinator)
            _coordinator->waitForTools();
    }

private:
    using RunDone = std::function<void(std::expected<QString, LauncherError>)>;
    struct Wish;

    void scanned();
    void smartFoldersChanged();
    Outcome set(const QString& key, const QJsonValue& value);
    void want();
    void loaded(StoredUpdates stored);
    void known();
    bool areSmartFoldersInterested() const;
    void feedSmartFolders();
    void publish();
    void runKnown(const std::shared_ptr<Wish>& wish, const QString& appKey, const LauncherAsker& asker);
    void runEnded(const std::shared_ptr<Wish>& wish, const QString& appKey,
                  const std::optional<AppUpdateActionState>& state);

    Machine& _machine;
    InstalledApplications& _applications;
    SmartFolderLibrary& _smartFolders;
    LauncherMessages& _messages;
    bool _isWanted = false;
    bool _isLoading = false;
    bool _isScheduleWanted = false;
    bool _isKnown = false;
    int _externalUpdaters = 0;
    std::vector<std::function<void()>> _waiting;
    Watcher _watcher;     ///< of the check that runs
    LauncherAsker _asker; ///< of the update that is asked for
    /// By app key, what waits until an application that was updated is checked again.
    QMultiHash<QString, std::function<void()>> _verified;
    bool _isPublishWanted = false;
    Timer _publishTimer;
    Task _loading;
    std::unique_ptr<AppUpdateCoordinator> _coordinator;
    Subscription _scanned;
    Subscription _smartFoldersChanged;
};

} // namespace tessellar
