#pragma once

#include "editing/layout_edits.h"
#include "editing/navigation.h"
#include "model/launcher_window_mode.h"
#include "platform/scheduler.h"
#include "platform/uuid_source.h"
#include "smartfolders/smart_folder_definition.h"

#include <QHash>

#include <functional>
#include <memory>

namespace tessellar {

/// Everything that an edit can change, and where the user was. A copy shares its tiles with the live
/// arrangement: it costs a few pointers.
struct LayoutUndoState {
    LauncherWindowMode mode = LauncherWindowMode::fullScreen; ///< that was shown
    LayoutDocument document;                                  ///< of that mode
    /// Of the other mode. A snapshot has it; history drops it where the edit did not touch it.
    std::optional<LayoutDocument> otherDocument;
    QList<SmartFolderDefinition> smartFolderDefinitions; ///< both modes share them
    Navigation navigation;

    /// The document of a mode, as far as the state has it.
    const LayoutDocument* documentOf(LauncherWindowMode which) const;

    bool operator==(const LayoutUndoState&) const = default;
};

/// An application that an edit moved to the Trash.
struct TrashedAppRecord {
    QString name;
    QString originalURL; ///< where the bundle was, as a path
    AppInstallKind installKind = AppInstallKind::manual;
    std::optional<QString> trashedURL; ///< where it lies in the Trash, when that is known

    bool operator==(const TrashedAppRecord&) const = default;
};

/// One step of history.
struct LayoutUndoEntry {
    QString name;
    LayoutUndoState before;
    LayoutUndoState after;
    QList<TrashedAppRecord> trashedApps;
};

/// The notice that confirms a step.
struct UndoRedoFeedback {
    enum class Direction { undo, redo };
    Direction direction = Direction::undo;
    QString name;
    int revision = 0; ///< higher with every notice

    QString text() const; ///< "Undo Move Tiles"
    QString symbolName() const;

    bool operator==(const UndoRedoFeedback&) const = default;
};

/// How the grid animates a step, for the tiles of the page that is shown after it.
struct UndoRedoReflow {
    QUuid id;
    QHash<QUuid, int> movedOrder; ///< tiles that come to another place, numbered by their new slots
    QHash<QUuid, int> heldSlots;  ///< where those of them that were on the page stay until released
    QSet<QUuid> appearing;        ///< tiles that the arrangement did not have
    bool released = false;        ///< true when the tiles are to slide

    bool operator==(const UndoRedoReflow&) const = default;
};

UndoRedoReflow reflowBetween(const LayoutUndoState& before, const LayoutUndoState& after,
                             const GridCapacities& capacities, const QUuid& id);

/// What became of one application that was to go into or out of the Trash. The record says where it
/// lies now.
struct TrashOutcome {
    TrashedAppRecord record;
    std::optional<QString> failure; ///< the reason, one sentence
};

/// What a history acts on.
struct LayoutUndoActions {
    using TrashDone = std::function<void(QList<TrashOutcome>)>;
    using TrashMove = std::function<void(QList<TrashedAppRecord>, TrashDone)>;

    /// The present state, with both modes' documents.
    std::function<LayoutUndoState()> snapshot;
    /// Replaces the documents that a state has and saves them; false when they could not be saved.
    std::function<bool(const LayoutUndoState&)> applyLayout;
    /// The same for the smart folder definitions.
    std::function<bool(const QList<SmartFolderDefinition>&)> applyDefinitions;
    /// Puts the mode, the page, the open folders and the selection back, as far as they still exist.
    std::function<void(const LayoutUndoState&)> applyNavigation;
    /// Both move applications and tell of each, in order, on the main thread, at once or later. One
    /// that is already where it should be counts as moved.
    TrashMove restoreFromTrash;
    TrashMove moveToTrash;
    std::function<void(const QString& title, const QString& message)> alert;
    std::function<GridCapacities(LauncherWindowMode)> capacities;
    /// The stacks, the notice or the reflow are others now.
    std::function<void()> changed;
};

/// Undo and redo: two stacks of whole states. Both display modes share one history, in the order of
/// time, for their smart folders are the same; undoing an edit of the other mode brings that mode back.
///
/// While a step waits for the Trash, no other begins and edits must be refused (`isInProgress`). A step
/// that fails leaves everything as it was: what was already applied, or moved into or out of the Trash,
/// is put back. Main thread only; may be destroyed while a step waits.
class LayoutUndoHistory {
public:
    static constexpr qsizetype undoLimit = 50;
    static constexpr std::chrono::milliseconds noticeDuration{1400};
    /// Tiles are held for a frame, so that the grid has drawn them, and slide after it.
    static constexpr std::chrono::milliseconds reflowHold{16};
    static constexpr std::chrono::milliseconds reflowDuration{450};

    enum class Result {
        done,
        refused,     ///< nothing to undo or redo, or a step is in progress
        trashFailed, ///< an application could not be moved
        notApplied,  ///< the state could not be saved
    };
    using Done = std::function<void(Result)>;

    LayoutUndoHistory(Scheduler& scheduler, UuidSource& uuids, LayoutUndoActions actions);

    /// Keeps an edit that was just made. One that changed neither a document nor the definitions and
    /// moved nothing to the Trash leaves no history; false then.
    bool record(const QString& name, LayoutUndoState before,
                const QList<TrashedAppRecord>& trashedApps = {});

    /// `done` is called at the end of the step, which may be before the call returns.
    void undo(const Done& done = {});
    void redo(const Done& done = {});

    bool isInProgress() const { return _isUndoRedoOperationInProgress; }
    bool canUndo() const { return !_undoStack.isEmpty() && !isInProgress(); }
    bool canRedo() const { return !_redoStack.isEmpty() && !isInProgress(); }
    const QList<LayoutUndoEntry>& undoStack() const { return _undoStack; } ///< newest last
    const QList<LayoutUndoEntry>& redoStack() const { return _redoStack; }
    const std::optional<UndoRedoFeedback>& feedback() const { return _undoFeedback; }
    const std::optional<UndoRedoReflow>& reflow() const { return _undoReflow; }

private:
    using Direction = UndoRedoFeedback::Direction;

    void step(Direction direction, const Done& done);
    void finish(Direction direction, LayoutUndoEntry entry, Result result, const Done& done);
    void afterTrash(Direction direction, LayoutUndoEntry entry, const QList<TrashOutcome>& outcomes,
                    const Done& done);
    void moveBack(Direction direction, LayoutUndoEntry entry, const QList<bool>& moved, Result result,
                  const Done& done);
    void moveApps(bool intoTrash, const QList<TrashedAppRecord>& records,
                  std::function<void(QList<TrashOutcome>)> then);
    bool apply(const LayoutUndoState& state, bool withDefinitions);
    void push(LayoutUndoEntry entry);
    void showNotice(Direction direction, const QString& name);
    void showReflow(UndoRedoReflow reflow);
    void changed() const;

    Scheduler& _scheduler;
    UuidSource& _uuids;
    LayoutUndoActions _actions;
    QList<LayoutUndoEntry> _undoStack;
    QList<LayoutUndoEntry> _redoStack;
    bool _isUndoRedoOperationInProgress = false;
    std::optional<UndoRedoFeedback> _undoFeedback;
    int _undoFeedbackRevision = 0;
    Timer _undoFeedbackTask;
    std::optional<UndoRedoReflow> _undoReflow;
    Timer _undoReflowTask;
    std::shared_ptr<char> _alive = std::make_shared<char>();
};

} // namespace tessellar
