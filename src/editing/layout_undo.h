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

/// Everything that an edit can change, and the user's navigation. Shares its tiles with the live
/// arrangement: a copy costs a few pointers.
struct LayoutUndoState {
    LauncherWindowMode mode = LauncherWindowMode::fullScreen; ///< of the edit
    LayoutDocument document;                                  ///< of that mode
    /// The other mode's. Set in snapshots; history drops it if the edit did not change it.
    std::optional<LayoutDocument> otherDocument;
    QList<SmartFolderDefinition> smartFolderDefinitions; ///< shared by both modes
    ArrangementLayout settings; ///< of the mode's grid; only restoring an arrangement changes them
    Navigation navigation;

    /// A mode's document; null if not included.
    const LayoutDocument* documentOf(LauncherWindowMode which) const;

    bool operator==(const LayoutUndoState&) const = default;
};

/// An application that an edit moved to the Trash.
struct TrashedAppRecord {
    QString name;
    QString originalURL; ///< the bundle's original path
    AppInstallKind installKind = AppInstallKind::manual;
    std::optional<QString> trashedURL; ///< its path in the Trash, if known
    QUuid removal;                     ///< identifies the removal's record

    bool operator==(const TrashedAppRecord&) const = default;
};

/// One step of history.
struct LayoutUndoEntry {
    QString name;
    LayoutUndoState before;
    LayoutUndoState after;
    QList<TrashedAppRecord> trashedApps;
    std::uint64_t number = 0; ///< unique in this history
};

/// The notice shown after an undo or redo.
struct UndoRedoFeedback {
    enum class Direction { undo, redo };
    Direction direction = Direction::undo;
    QString name;
    int revision = 0; ///< increases with every notice

    QString text() const; ///< "Undo Move Tiles"
    QString symbolName() const;

    bool operator==(const UndoRedoFeedback&) const = default;
};

/// The grid's animation for a step, on the page shown afterwards.
struct UndoRedoReflow {
    QUuid id;
    QHash<QUuid, int> movedOrder; ///< the moved tiles, numbered by their new slots
    QHash<QUuid, int> heldSlots;  ///< slots in which moved tiles of this page wait until released
    QSet<QUuid> appearing;        ///< tiles that are new in the arrangement
    bool released = false;        ///< true once the tiles may slide

    bool operator==(const UndoRedoReflow&) const = default;
};

/// `now`, with the definitions that the step changed set to their state in `target`; other definitions
/// are kept.
QList<SmartFolderDefinition> withDefinitionsOf(const LayoutUndoState& from,
                                               const LayoutUndoState& target,
                                               const QList<SmartFolderDefinition>& now);

UndoRedoReflow reflowBetween(const LayoutUndoState& before, const LayoutUndoState& after,
                             const GridCapacities& capacities, const QUuid& id);

/// The outcome of moving one application into or out of the Trash. The record has its current location.
struct TrashOutcome {
    TrashedAppRecord record;
    std::optional<QString> failure; ///< one sentence
};

/// The operations that a history needs.
struct LayoutUndoActions {
    using TrashDone = std::function<void(QList<TrashOutcome>)>;
    using TrashMove = std::function<void(QList<TrashedAppRecord>, TrashDone)>;

    using Direction = UndoRedoFeedback::Direction;

    /// The current state of a mode, including the other mode's document.
    std::function<LayoutUndoState(LauncherWindowMode)> snapshot;
    /// Shows the documents, settings and definitions in a state of the step, and saves them atomically
    /// behind that; false if it is refused. Unchanged parts are not written, so a layout step can be
    /// undone while smart folders cannot be saved. If saving fails, everything is restored. A step that
    /// moved applications learns the outcome from `saved`, after this has returned; of others `saved`
    /// is null, and the caller gets `giveBack` on failure.
    std::function<bool(Direction direction, const LayoutUndoEntry& step, const LayoutUndoState& state,
                       std::function<void(bool)> saved)>
        apply;
    /// Restores the mode's page, open folders and selection, as far as they still exist.
    std::function<void(const LayoutUndoState&)> applyNavigation;
    /// Move applications and report on each, in order, on the main thread, synchronously or later. An
    /// application already in place counts as moved.
    TrashMove restoreFromTrash;
    TrashMove moveToTrash;
    std::function<void(const QString& title, const QString& message)> alert;
    std::function<GridCapacities(LauncherWindowMode)> capacities;
    /// The stacks, the notice or the reflow have changed.
    std::function<void()> changed;
};

/// Undo and redo, as two stacks of whole states. Both display modes share one chronological history,
/// because they share the smart folders. A mode's next step is the newest that was made in it or
/// changed its document. Later steps of the other mode stay, unless they changed the same document or
/// definition; then they block it.
///
/// While a step waits for the Trash, and while one that moved applications is being saved, no other
/// step begins and edits must be refused (`isInProgress`). A failed step is rolled back, including
/// moves into or out of the Trash. Main thread only; may be destroyed while a step waits.
class LayoutUndoHistory {
public:
    static constexpr qsizetype undoLimit = 50;
    static constexpr std::chrono::milliseconds noticeDuration{1400};
    /// Tiles are held for one frame, so that the grid draws them, and then slide.
    static constexpr std::chrono::milliseconds reflowHold{16};
    static constexpr std::chrono::milliseconds reflowDuration{450};

    enum class Result {
        done,
        refused,     ///< nothing to undo or redo, or another step is in progress
        blocked,     ///< a later step of the other mode changed the same thing
        trashFailed, ///< an application could not be moved
        notApplied,  ///< the state could not be saved
    };
    using Done = std::function<void(Result)>;

    LayoutUndoHistory(Scheduler& scheduler, UuidSource& uuids, LayoutUndoActions actions);

    /// Records an edit. Returns false, recording nothing, if it changed neither documents nor
    /// definitions and moved nothing to the Trash.
    bool record(const QString& name, LayoutUndoState before,
                const QList<TrashedAppRecord>& trashedApps = {});

    /// Removes a step that is to be forgotten, and restores the redo stack that it cleared, unless
    /// later steps exist.
    void withdraw(std::uint64_t number, const QList<LayoutUndoEntry>& redoStack);

    using Direction = UndoRedoFeedback::Direction;
    /// Returns an undone or redone step to its stack, after its result could not be saved and was
    /// rolled back.
    void giveBack(Direction direction, const LayoutUndoEntry& step);

    /// Performs a mode's next step. `done` is called when it has finished, possibly before this
    /// returns.
    void undo(LauncherWindowMode mode, const Done& done = {});
    void redo(LauncherWindowMode mode, const Done& done = {});

    /// The step that undo or redo would perform in a mode, and the one blocking it. Null if there is
    /// none.
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
    void step(Direction direction, LauncherWindowMode mode, const Done& done);
    void finish(Direction direction, LayoutUndoEntry entry, Result result, const Done& done);
    bool can(const Next& next) const { return next.entry && !next.blockedBy && !isInProgress(); }
    void afterTrash(Direction direction, LayoutUndoEntry entry, const QList<TrashOutcome>& outcomes,
                    const Done& done);
    void moveBack(Direction direction, LayoutUndoEntry entry, const QList<bool>& moved, Result result,
                  const Done& done);
    void moveApps(bool intoTrash, const QList<TrashedAppRecord>& records,
                  std::function<void(QList<TrashOutcome>)> then);
    bool apply(Direction direction, const LayoutUndoEntry& entry, std::function<void(bool)> saved);
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
    qsizetype _placeOfStep = 0; ///< its index in the stack, to restore it to on failure
    std::optional<UndoRedoFeedback> _undoFeedback;
    int _undoFeedbackRevision = 0;
    Timer _undoFeedbackTask;
    std::optional<UndoRedoReflow> _undoReflow;
    Timer _undoReflowTask;
    Lifetime _lifetime;
};

} // namespace tessellar
