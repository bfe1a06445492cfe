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
#include <memory>

namespace tessellar {

class InstalledApplications;
class LauncherHistory;
class LauncherMessages;
class LiveLayouts;
class PlaceMemory;
class RemovalSteps;
struct CleanupTools;
struct RemovalStep;

/// The removal of an application with what it left on the machine, one application at a time:
///
/// 1. Review: a worker looks through the Libraries and tells how far it is; then the sizes of what it
///    found are measured, one after the other. Closing ends both at once.
/// 2. Choosing: what is surely the application's own is chosen beforehand, the rest is offered.
/// 3. Removal: an application that is open is named, and goes on only after a yes; it is asked to quit.
///    A worker writes down what is about to go, moves it to the Trash, and writes down where it lies
///    before it reports.
/// 4. Result: a line for each item. When the bundle has gone, its tiles leave both modes as one step of
///    history, whose undo brings all back that this removal took; then the machine is scanned again.
///
/// While 3 runs, no scan is merged: the tiles are to leave by the step of history.
///
/// Main thread only.
class LauncherCleanup {
public:
    using Outcome = std::expected<void, LauncherError>;
    using Done = std::function<void(Outcome)>;

    enum class Phase {
        idle,
        scanning, ///< `review().progress` says how far
        review,
        removing, ///< `progress()` says how far
        done,     ///< `log()` says what became of each item
    };

    LauncherCleanup(Machine& machine, LiveLayouts& layouts, InstalledApplications& applications,
                    PlaceMemory& places, LauncherHistory& history, LauncherMessages& messages);
    ~LauncherCleanup();

    // What is shown.
    Phase phase() const { return _phase; }
    /// The application that is reviewed, as it was scanned; good unless idle.
    const AppEntry& app() const { return _app; }
    const CleanupReviewState& review() const { return _review; }
    /// True while sizes are still missing.
    bool isMeasuring() const { return _isMeasuring; }
    const CleanupRemovalProgress& progress() const { return _progress; }
    const QList<CleanupLogLine>& log() const { return _log; }
    /// Why the last request came to nothing, such as an application that stays open; nothing after one
    /// that was carried out.
    const std::optional<LauncherError>& error() const { return _error; }
    /// What the user has to do elsewhere meanwhile.
    const std::optional<HelperNotice>& helperNotice() const { return _helperNotice; }
    /// True while items are moved, into the Trash or out of it.
    bool isMoving() const { return _isMoving; }
    /// True from `stop` until what is being moved has arrived.
    bool isStopping() const { return _isMoving && _stopMoving.stop_requested(); }
    /// Done, and the user may have it all back with one step: the removal moved something.
    bool canRestore() const;
    /// Of this process, as long as it was not brought back.
    std::optional<QUuid> lastRemoval() const {
        return _lastRemoval.isNull() ? std::nullopt : std::optional(_lastRemoval);
    }

    // Review and choosing.
    /// Begins to look for an application's files, in place of any other review. Refused while items
    /// are moved, for an application that nobody knows, one that the system protects, one that is a
    /// part of another, and this one. `done` is called when there is something to choose from, or with
    /// the refusal.
    void open(const QString& appKey, Done done = {});
    void setSelected(const QString& path, bool selected);
    void selectAllMatches();
    void selectNothing();
    /// Back to idle; while items are moved it does nothing, see `stop`.
    void close();

    // Removal.
    /// Moves what is chosen to the Trash. `done` is called at the end, with a refusal when nothing was
    /// moved because of one; what became of each item is in the log. Who is asked and says no goes on
    /// choosing.
    void remove(const LauncherAsker& asker, Done done = {});
    /// What has not been moved by then stays.
    void stop();

    // Bringing back.
    /// The past removals, also those of another process, the last first.
    using Past = std::expected<QList<CleanupRecord>, LauncherError>;
    void listPast(std::function<void(Past)> done);
    /// When it was, as the user writes dates.
    QString dateText(const CleanupRecord& removal) const;
    /// Brings back the removal of an identifier, or the last one of which something lies in the Trash.
    /// Where it is the last step of history, that step is undone; else the tiles come back as a step of
    /// their own. `done` gets a line for each item.
    using Restored = std::expected<QList<CleanupLogLine>, LauncherError>;
    void restore(std::function<void(Restored)> done = {});
    void restore(const std::optional<QUuid>& removal, std::function<void(Restored)> done);

    /// Shows an item where it lies; `done` gets the refusal of the system.
    void reveal(const QString& path, Done done = {});
    /// Whether the application that is reviewed is open now: a removal would ask about it.
    void findRunning(std::function<void(bool isRunning)> done);
    /// Whether the removal helper answers, or the sentence why not.
    void checkHelper(std::function<void(std::expected<void, QString>)> done);

    Signal<> changed;

private:
    static CleanupApplication cleanupApplication(const AppEntry& app);
    static LauncherError stillOpen(const QString& name);
    QList<CleanupApplication> installedApplications() const;
    QList<RemovedTile> tilesOf(const QString& key) const;
    void measure();
    void reset();
    void startRemoval(const Done& done);
    AppCleanupRemover::Progress progressTeller();
    void finishRemoval(const RemovalStep& step, AppInstallKind kind, const Done& done);
    void keepInHistory(const CleanupRecord& record, AppInstallKind kind);
    void restore(const CleanupRecord& record, const std::function<void(Restored)>& done);
    void bringBack(const CleanupRecord& record, const std::function<void(Restored)>& done);
    void putTilesBack(const CleanupRecord& record);
    /// They are not on the disk as the removal, or its taking back, has them.
    void reportTiles(const CleanupRecord& record, const LauncherError& error);
    void recall(LayoutDocument& document, const RemovedTile& tile) const;
    void insert(LayoutDocument& document, const RemovedTile& tile) const;
    void moveForHistory(bool intoTrash, const QList<TrashedAppRecord>& records,
                        const LayoutUndoActions::TrashDone& done);
    void tellOfFailures(const QStringList& lines, const QString& title);
    /// Has a worker move items; `stop` ends that early. Whoever is called then ends the moving.
    template <typename Result>
    void move(std::function<Result(const RemovalSteps&, std::stop_token)> work,
              std::function<void(Result)> done);
    void beginMoving();
    void endMoving(std::function<void()> scanned = {});
    void refuse(LauncherError error, const Done& done);

    Machine& _machine;
    LiveLayouts& _layouts;
    InstalledApplications& _applications;
    PlaceMemory& _places;
    LauncherHistory& _history;
    LauncherMessages& _messages;
    std::shared_ptr<CleanupTools> _tools; ///< shared with workers that still use them at the end
    Phase _phase = Phase::idle;
    AppEntry _app;
    CleanupReviewState _review;
    CleanupRemovalProgress _progress;
    QList<CleanupLogLine> _log;
    std::optional<LauncherError> _error;
    std::optional<HelperNotice> _helperNotice;
    bool _isMeasuring = false;
    bool _isMoving = false;
    std::shared_ptr<void> _hold; ///< on scans, while bundles are moved
    bool _isAsking = false;
    QUuid _lastRemoval; ///< as long as it was not brought back
    quint64 _round = 0; ///< answers to an earlier review's question are too late
    std::stop_source _stopMoving;
    Task _scan;
    Task _measuring;
    Task _moving;
    Task _looking;
    Task _checking;
    Task _listing;
    Task _revealing;
    QList<std::function<void(Past)>> _askedForPast;
    Lifetime _lifetime;
};

} // namespace tessellar
