#pragma once

#include "cleanup/app_cleanup_remover.h"
#include "cleanup/cleanup_review_state.h"
#include "cleanup/privileged/helper_setup_broker.h"
#include "editing/layout_undo.h"
#include "launcher/cleanup_record.h"
#include "launcher/launcher_error.h"
#include "launcher/launcher_question.h"
#include "platform/machine.h"
#include "platform/signal.h"

#include <functional>
#include <list>
#include <memory>

namespace tessellar {

class InstalledApplications;
class LauncherHistory;
class LauncherMessages;
class LiveLayouts;
class PlaceMemory;
class RemovalSteps;
struct CleanupTools;
struct EditStep;
struct RemovalStep;

/// Removes an application and its related files, one application at a time:
///
/// 1. Scan: a worker searches the Libraries for related files and reports its progress; then their
///    sizes are measured one by one. Closing cancels both at once.
/// 2. Review: files that certainly belong to the application are preselected, the others are offered.
/// 3. Removal: if the application is running, the user is asked first, and then it is asked to quit. A
///    worker records what it is about to move, moves it to the Trash, and records where each item ended
///    up before it reports.
/// 4. Result: one log line per item. If the bundle was moved, its tiles are removed from both modes in
///    one undo step, which restores everything that this removal moved; then the machine is rescanned.
///
/// Scans are not merged during step 3, so that the tiles disappear in that undo step.
///
/// Main thread only.
class LauncherCleanup {
public:
    using Outcome = std::expected<void, LauncherError>;
    using Done = std::function<void(Outcome)>;

    enum class Phase {
        idle,
        scanning, ///< see `review().progress`
        review,
        removing, ///< see `progress()`
        done,     ///< see `log()`
    };

    LauncherCleanup(Machine& machine, LiveLayouts& layouts, InstalledApplications& applications,
                    PlaceMemory& places, LauncherHistory& history, LauncherMessages& messages);
    ~LauncherCleanup();

    // State.
    Phase phase() const { return _phase; }
    /// The application under review, as scanned; valid unless idle.
    const AppEntry& app() const { return _app; }
    const CleanupReviewState& review() const { return _review; }
    /// True while sizes are being measured.
    bool isMeasuring() const { return _isMeasuring; }
    const CleanupRemovalProgress& progress() const { return _progress; }
    const QList<CleanupLogLine>& log() const { return _log; }
    /// Why the last request failed, for example because the application did not quit; nullopt after a
    /// success.
    const std::optional<LauncherError>& error() const { return _error; }
    /// What the user has to do outside the launcher for the removal to continue.
    const std::optional<HelperNotice>& helperNotice() const { return _helperNotice; }
    /// True while items are being moved into or out of the Trash.
    bool isMoving() const { return _isMoving; }
    /// True from `stop` until the move in progress has completed.
    bool isStopping() const { return _isMoving && _stopMoving.stop_requested(); }
    /// True if done and the removal moved something that can be restored.
    bool canRestore() const;
    /// The last removal of this process, until it is restored.
    std::optional<QUuid> lastRemoval() const {
        return _lastRemoval.isNull() ? std::nullopt : std::optional(_lastRemoval);
    }

    // Review.
    /// Starts scanning for an application's files, replacing any other review. Refused while items are
    /// being moved, and for applications that are unknown, protected by the system, nested in another,
    /// or Tessellar itself. `done` is called when the review is ready, or with the refusal.
    void open(const QString& appKey, Done done = {});
    void setSelected(const QString& path, bool selected);
    void selectAllMatches();
    void selectNothing();
    /// Returns to idle. Does nothing while items are being moved; see `stop`.
    void close();

    // Removal.
    /// Moves the selected items to the Trash. `done` is called at the end, with an error if the removal
    /// was refused as a whole; the results of single items are in the log. If the user declines, the
    /// review goes on.
    void remove(const LauncherAsker& asker, Done done = {});
    /// Cancels the removal. Items already moved stay in the Trash.
    void stop();

    // Restoring.
    /// All recorded removals, including other processes', newest first.
    using Past = std::expected<QList<CleanupRecord>, LauncherError>;
    void listPast(std::function<void(Past)> done);
    /// The date of a removal in the user's format.
    QString dateText(const CleanupRecord& removal) const;
    /// Restores the given removal, or the last one with items in the Trash. If it is the newest undo
    /// step, that step is undone; otherwise the tiles are restored in a step of their own. `done` gets
    /// one line per item.
    using Restored = std::expected<QList<CleanupLogLine>, LauncherError>;
    void restore(const std::optional<QUuid>& removal, const std::function<void(Restored)>& done);

    /// Reveals an item in the file manager; `done` gets the system's error.
    void reveal(const QString& path, Done done = {});
    /// Finds out whether the application under review is running, so that a removal would ask first.
    void findRunning(std::function<void(bool isRunning)> done);
    /// Checks whether the removal helper responds; otherwise `done` gets the reason.
    void checkHelper(std::function<void(std::expected<void, QString>)> done);

    Signal<> changed;

private:
    static CleanupApplication cleanupApplication(const AppEntry& app);
    QList<CleanupApplication> installedApplications() const;
    void measure();
    void reset();
    void startRemoval(const Done& done);
    void finishRemoval(const RemovalStep& taken, AppInstallKind kind, const Done& done);
    /// Makes the step of a removal or a restore; `done` is called once it is saved, or its failure
    /// has been reported.
    void makeStep(EditStep step, const CleanupRecord& record, std::function<void()> done);
    void restore(const CleanupRecord& record, const std::function<void(Restored)>& done);
    void bringBack(const CleanupRecord& record, const std::function<void(Restored)>& done);
    void putTilesBack(const CleanupRecord& record, std::function<void()> done);
    void recall(LayoutDocument& document, const RemovedTile& tile) const;
    void insert(LayoutDocument& document, const RemovedTile& tile) const;
    void moveForHistory(bool intoTrash, const QList<TrashedAppRecord>& records,
                        const LayoutUndoActions::TrashDone& done);
    void reportFailures(const QStringList& lines, const QString& title);
    /// Looks for items or moves them, on a worker; `stop` cancels it. `done` must call `endMoving`.
    template <typename Result>
    void move(std::function<Result(const RemovalSteps&, std::stop_token)> work,
              std::function<void(Result)> done);
    void endMoving(std::function<void()> scanned = {});
    void refuse(LauncherError error, const Done& done);

    Machine& _machine;
    LiveLayouts& _layouts;
    InstalledApplications& _applications;
    PlaceMemory& _places;
    LauncherHistory& _history;
    LauncherMessages& _messages;
    std::shared_ptr<CleanupTools> _tools; ///< shared with workers, which may outlive this object
    Phase _phase = Phase::idle;
    AppEntry _app;
    CleanupReviewState _review;
    CleanupRemovalProgress _progress;
    QList<CleanupLogLine> _log;
    std::optional<LauncherError> _error;
    std::optional<HelperNotice> _helperNotice;
    bool _isMeasuring = false;
    bool _isMoving = false;
    std::shared_ptr<void> _hold; ///< pauses scans while bundles are moved
    bool _isAsking = false;
    QUuid _lastRemoval; ///< until it is restored
    quint64 _round = 0; ///< answers to an earlier review's question are ignored
    std::stop_source _stopMoving;
    Task _scan;
    Task _measuring;
    Task _moving;
    Task _looking;
    Task _checking;
    Task _listing;
    std::list<Task> _revealing;
    QList<std::function<void(Past)>> _askedForPast;
    QList<std::function<void(std::expected<void, QString>)>> _askedForHelper;
    Lifetime _lifetime;
};

} // namespace tessellar
