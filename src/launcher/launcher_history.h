#pragma once

#include "discovery/launchpad_import.h"
#include "editing/edit_names.h"
#include "editing/layout_undo.h"
#include "launcher/launcher_error.h"
#include "launcher/step_journal.h"
#include "launcher/unsaved_edits.h"
#include "platform/signal.h"

#include <functional>

namespace tessellar {

class InstalledApplications;
class LauncherMessages;
class LiveLayout;
class LiveLayouts;
class SmartFolderLibrary;
struct Machine;

/// The changes of one edit, made completely or not at all. Absent members stay as they are.
struct EditStep {
    QString name;                                ///< shown for undo
    LauncherWindowMode mode;                     ///< in which it is made
    std::optional<LayoutDocument> document = {}; ///< of that mode
    /// What undo navigates to, if the user has moved on since the edit began, as during a drag.
    std::optional<Navigation> initialNavigation = {};
    std::optional<LayoutDocument> otherDocument = {};
    std::optional<QList<SmartFolderDefinition>> definitions = {};
    std::optional<ArrangementLayout> settings = {}; ///< of that mode's grid
    QList<TrashedAppRecord> trashedApps = {};       ///< already moved to the Trash
    bool isSavedAtOnce = false;                     ///< always so for steps that change several files

    /// The step replaces the whole arrangement: a backup is made first, and the result is saved before
    /// the step completes.
    struct Replacement {
        QString reason;     ///< stored in the backup, for example "arrangement-restore"
        QString title = {}; ///< of the alert on failure
        /// Metadata of an import, stored in its own file together with the backup's path.
        std::optional<LegacyLaunchpadImportMetadata> importRecord = {};
    };
    std::optional<Replacement> replacement = {};

    const std::optional<LayoutDocument>& documentOf(LauncherWindowMode which) const {
        return which == mode ? document : otherDocument;
    }
};

/// All changes of arrangements and smart folder definitions go through here: every edit, paste, import,
/// removal, restore and reset is an `EditStep`, which can be undone and redone.
///
/// 1. Guard: the first load is complete, the mode's file is writable, and no undo is waiting for the
///    Trash.
/// 2. Replacements make a backup of the arrangement.
/// 3. Steps that change several files are recorded in the journal, which makes them atomic.
/// 4. Settings and definitions are saved.
/// 5. The documents are shown and saved: at once for replacements and steps of several files, otherwise
///    debounced.
/// 6. The step is pushed onto the undo stack. Undo is atomic in the same way, but where it changes one
///    document alone, that is saved on the worker while it is shown already; if the save fails, the
///    undo is rolled back.
///
/// A step that fails changes nothing. If its rollback fails as well, all further steps are refused
/// until the rollback succeeds; the next start also rolls back steps of several files. For debounced
/// saves that fail see `UnsavedEdits`. Steps do not touch a mode whose file is not writable. Main
/// thread only.
class LauncherHistory {
public:
    using Outcome = std::expected<void, LauncherError>;
    using Done = std::function<void(Outcome)>;
    /// The path of the backup, if one was made.
    using Made = std::expected<std::optional<QString>, LauncherError>;

    LauncherHistory(Machine& machine, LayoutStore& store, LiveLayouts& layouts,
                    SmartFolderLibrary& smartFolders, InstalledApplications& applications,
                    LauncherMessages& messages);

    /// `layoutNotReady` before the first load is complete, `workingDocumentUnreadable` if the mode's
    /// file must not be overwritten, `stepInProgress` during an undo or redo.
    Outcome guard(LauncherWindowMode mode) const;
    Made make(EditStep step);
    /// Makes a step that changes one document.
    Outcome edit(LauncherWindowMode mode, const QString& name,
                 const std::function<EditResult(const LayoutDocument&)>& change,
                 const std::optional<Navigation>& initialNavigation = {});

    /// Undoes or redoes the next step of a mode. `done` is called at the end.
    void undo(LauncherWindowMode mode, Done done = {});
    void redo(LauncherWindowMode mode, Done done = {});
    const LayoutUndoHistory& steps() const { return _steps; }
    /// The steps whose documents are not saved yet.
    UnsavedEdits& unsaved() { return _unsaved; }
    LayoutUndoState snapshot(LauncherWindowMode mode) const;

    /// Rolls back a step during which the program was killed. Call before the first load is shown.
    void undoInterrupted(std::array<LayoutStore::LoadResult, 2>& loaded);
    /// Retries the rollback of a failed step.
    Outcome settle();
    /// Sets the functions that move applications into and out of the Trash.
    void setTrash(LayoutUndoActions::TrashMove restore, LayoutUndoActions::TrashMove trash);

    Signal<> changed; ///< the stacks, the notice, or the grid's reflow

private:
    LayoutUndoActions actions();
    /// What was set before a step is on the disk, and is part of what the step replaces.
    void catchUpWithSettings();
    Outcome storeSettings(LauncherWindowMode mode, const ArrangementLayout& settings);
    static int filesOf(const EditStep& step);
    /// When a step's documents are saved.
    enum class Saved { now, soon };
    Outcome carryOut(const EditStep& step, const LayoutUndoState& before, Saved saved);
    StepJournal::Files filesBefore(const EditStep& step, const LayoutUndoState& before) const;
    Outcome beginWhole(const EditStep& step, const StepJournal::Files& before);
    void showBefore(const EditStep& step, const LayoutUndoState& before);
    /// The settings named in `files` as stored now; null if unset.
    QMap<QString, QJsonValue> settingsNow(const StepJournal::Files& files) const;
    /// True if all were saved.
    bool putBack(const StepJournal::Files& files);
    void rollBack(const QList<UnsavedEdit>& edits);
    void show(LauncherWindowMode mode, const LayoutDocument& document, bool isReplacement);
    Outcome save(LauncherWindowMode mode, Saved saved);
    Outcome storeImportRecord(const LegacyLaunchpadImportMetadata& record);
    bool apply(const LayoutUndoEntry& entry, const LayoutUndoState& state);
    void markUnavailable(LiveLayout& layout) const;
    bool differsFromInstalled(const LiveLayout& layout) const;
    void step(bool isUndo, LauncherWindowMode mode, Done done);

    Machine& _machine;
    LayoutStore& _store;
    LiveLayouts& _layouts;
    SmartFolderLibrary& _smartFolders;
    InstalledApplications& _applications;
    LauncherMessages& _messages;
    LayoutUndoActions::TrashMove _restoreFromTrash;
    LayoutUndoActions::TrashMove _moveToTrash;
    StepJournal _journal;
    /// A failed step whose rollback failed too.
    struct Unsettled {
        StepJournal::Files before;
        QMap<QString, QJsonValue> settings; ///< as left by the step
        bool isNoted = false;
        LauncherError error;
    };
    std::optional<Unsettled> _unsettled;
    LayoutUndoHistory _steps;
    UnsavedEdits _unsaved;
};

LauncherError launcherError(EditRefusal refusal);

} // namespace tessellar
