#pragma once

#include "editing/layout_edits.h"
#include "editing/navigation.h"
#include "model/launcher_window_mode.h"
#include "platform/lifetime.h"
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
    LauncherWindowMode mode = LauncherWindowMode::fullScreen; ///< that the edit was made in
    LayoutDocument document;                                  ///< of that mode
    /// Of the other mode. A snapshot has it; history drops it where the edit did not touch it.
    std::optional<LayoutDocument> otherDocument;
    QList<SmartFolderDefinition> smartFolderDefinitions; ///< both modes share them
    ArrangementLayout settings; ///< of the grid in that mode; only a restore changes them with an edit
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
    QUuid removal;                     ///< under which it was written down

    bool operator==(const TrashedAppRecord&) const = default;
};

/// One step of history.
struct LayoutUndoEntry {
    QString name;
    LayoutUndoState before;
    LayoutUndoState after;
    QList<TrashedAppRecord> trashedApps;
    std::uint64_t number = 0; ///< of its own, in this history
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

/// The definitions of now with those that a step changed put back as `target` has them; those that
/// other steps changed stay.
QList<SmartFolderDefinition> withDefinitionsOf(const LayoutUndoState& from,
                                               const LayoutUndoState& target,
                                               const QList<SmartFolderDefinition>& now);

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

    /// The present state of a mode, with the other mode's document.
    std::function<LayoutUndoState(LauncherWindowMode)> snapshot;
    /// Shows and saves the documents, settings and definitions that a state has, as one step: when a
    /// part of it cannot be saved, it leaves all as it was, and gives false. A part that is as it
    /// should be is not written: a layout step can be undone while the smart folders cannot be saved.
    std::function<bool(const LayoutUndoState&)> apply;
    /// Puts the mode's page, open folders and selection back, as far as they still exist.
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
/// time, for their smart folders are the same. A step is taken in one mode: the newest that changed
/// something of that mode or of the smart folders. It may lie below steps of the other mode as long as
/// none of these changed the same document or definition; else it has to wait for them.
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
        blocked,     ///< a later step of the other mode changed the same
        trashFailed, ///< an application could not be moved
        notApplied,  ///< the state could not be saved
    };
    using Done = std::function<void(Result)>;

    LayoutUndoHistory(Scheduler& scheduler, UuidSource& uuids, LayoutUndoActions actions);

    /// Keeps an edit that was just made. One that changed neither a document nor the definitions and
    /// moved nothing to the Trash leaves no history; false then.
    bool record(const QString& name, LayoutUndoState before,
                const QList<TrashedAppRecord>& trashedApps = {});

    /// Takes out a step that was not to be after all, and puts back those that it kept from being
    /// redone, unless others came after it.
    void withdraw(std::uint64_t number, const QList<LayoutUndoEntry>& redoStack);

    /// Takes the next step of a mode. `done` is called at the end of the step, which may be before the
    /// call returns.
    void undo(LauncherWindowMode mode, const Done& done = {});
    void redo(LauncherWindowMode mode, const Done& done = {});

    /// The step that an undo or redo in a mode would take, and the one that stands before it, which has
    /// to be taken first. Null where there is none.
    struct Next {
        const LayoutUndoEntry* entry = nullptr;
        const LayoutUndoEntry* blockedBy = nullptr;
    };
    Next nextUndo(LauncherWindowMode mode) const;
    Next nextRedo(LauncherWindowMode mode) const;

    bool isInProgress() const { return _isUndoRedoOperationInProgress; }
    bool canUndo(LauncherWindowMode mode) const;
    bool canRedo(LauncherWindowMode mode) const;
    const QList<LayoutUndoEntry>& undoStack() const { return _undoStack; } ///< newest last
    const QList<LayoutUndoEntry>& redoStack() const { return _redoStack; }
    const std::optional<UndoRedoFeedback>& feedback() const { return _undoFeedback; }
    const std::optional<UndoRedoReflow>& reflow() const { return _undoReflow; }

private:
    using Direction = UndoRedoFeedback::Direction;

    void step(Direction direction, LauncherWindowMode mode, const Done& done);
    void finish(Direction direction, LayoutUndoEntry entry, Result result, const Done& done);
    bool can(const Next& next) const { return next.entry && !next.blockedBy && !isInProgress(); }
    void afterTrash(Direction direction, LayoutUndoEntry entry, const QList<TrashOutcome>& outcomes,
                    const Done& done);
    void moveBack(Direction direction, LayoutUndoEntry entry, const QList<bool>& moved, Result result,
                  const Done& done);
    void moveApps(bool intoTrash, const QList<TrashedAppRecord>& records,
                  std::function<void(QList<TrashOutcome>)> then);
    bool apply(const LayoutUndoState& from, const LayoutUndoState& state);
    void push(LayoutUndoEntry entry, qsizetype place);
    void showNotice(Direction direction, const QString& name);
    void showReflow(UndoRedoReflow reflow);
    void changed() const;

    Scheduler& _scheduler;
    UuidSource& _uuids;
    LayoutUndoActions _actions;
    QList<LayoutUndoEntry> _undoStack;
    QList<LayoutUndoEntry> _redoStack;
    std::uint64_t _lastNumber = 0;
    bool _isUndoRedoOperationInProgress = false;
    qsizetype _placeOfStep = 0; ///< in its stack, where a step that fails goes back to
    std::optional<UndoRedoFeedback> _undoFeedback;
    int _undoFeedbackRevision = 0;
    Timer _undoFeedbackTask;
    std::optional<UndoRedoReflow> _undoReflow;
    Timer _undoReflowTask;
    Lifetime _lifetime;
};

} // namespace tessellar
