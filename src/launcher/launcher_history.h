#pragma once

#include "discovery/launchpad_import.h"
#include "editing/edit_names.h"
#include "editing/layout_undo.h"
#include "launcher/launcher_error.h"
#include "launcher/step_journal.h"
#include "launcher/step_writer.h"
#include "launcher/unsaved_edits.h"
#include "platform/signal.h"

#include <functional>

namespace tessellar {

class InstalledApplications;
class LauncherMessages;
class LiveLayout;
class LiveLayouts;
class Settings;
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
    /// Called if the step is rolled back, after it was accepted.
    std::function<void()> takenBack = {};

    /// The step replaces the whole arrangement: a backup is made first, and the result is saved at
    /// once.
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
/// 2. The step is shown and pushed onto the undo stack.
/// 3. A step of one document is saved debounced. Any other is saved at once, as one job on the saving
///    lane:
///     a. back up the arrangement, if replacing;
///     b. finish earlier saves;
///     c. if several files change, write the journal, which makes that atomic;
///     d. write the files: settings, definitions, documents, the import's metadata.
///
/// Undo and redo are saved in the same way, but one document is not debounced.
///
/// The next step waits for such a job. If it fails, the step is rolled back and leaves the history, or
/// returns to the stack it came from, and the user is told; a command that made it gets the error. What
/// was to follow is refused. If the rollback fails as well, all further steps are refused until it
/// succeeds; the next start also rolls back steps of several files. For debounced saves that fail see
/// `UnsavedEdits`. Steps do not touch a mode whose file is not writable. Main thread only.
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
    /// Returns an error if the step is refused. `saved` is called later, if it was accepted: with it,
    /// the caller tells the user of failures. Only for steps that are saved at once.
    Made make(EditStep step, Done saved = {});
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
    /// Waits for a step that is being saved, and retries the rollback of a failed one.
    Outcome settle();
    /// Sets the settings as they will be once all changes have been written.
    void setExpectedSettings(const Settings& settings) { _expectedSettings = &settings; }
    /// Sets the functions that move applications into and out of the Trash.
    void setTrash(LayoutUndoActions::TrashMove restore, LayoutUndoActions::TrashMove trash);

    Signal<> changed; ///< the stacks, the notice, or the grid's reflow

private:
    using Direction = LayoutUndoHistory::Direction;

    LayoutUndoActions actions();
    /// A step that is shown while it is being saved.
    struct Underway {
        EditStep step;
        LayoutUndoState before;
        bool isUndoOrRedo = false;
        Done saved = {};
        std::function<void()> leaveHistory = {}; ///< to be called if it fails
    };
    /// `enterHistory` is called once the step is shown, and returns `leaveHistory`.
    Outcome begin(Underway underway, const std::function<std::function<void()>()>& enterHistory,
                  const std::optional<LayoutStore::Backup>& backup = {});
    void end(const StepWriter::Ended& ended);
    void tellUser(const LauncherError& error, bool isUndoOrRedo);
    void showBefore(const EditStep& step, const LayoutUndoState& before);
    /// The settings named in `files` as stored now; null if unset.
    QMap<QString, QJsonValue> settingsNow(const StepJournal::Files& files) const;
    /// True if all were saved.
    bool putBack(const StepJournal::Files& files);
    void rollBack(const QList<UnsavedEdit>& edits, bool areLeft);
    void show(LauncherWindowMode mode, const LayoutDocument& document, bool isReplacement);
    bool apply(Direction direction, const LayoutUndoEntry& entry, const LayoutUndoState& state,
               const std::function<void(bool)>& saved);
    void markUnavailable(LiveLayout& layout) const;
    bool differsFromInstalled(const LiveLayout& layout) const;
    LayoutUndoHistory::Next next(Direction direction, LauncherWindowMode mode) const;
    void step(Direction direction, LauncherWindowMode mode, Done done);
    void take(Direction direction, LauncherWindowMode mode, Done done);

    Machine& _machine;
    LayoutStore& _store;
    LiveLayouts& _layouts;
    SmartFolderLibrary& _smartFolders;
    InstalledApplications& _applications;
    LauncherMessages& _messages;
    LayoutUndoActions::TrashMove _restoreFromTrash;
    LayoutUndoActions::TrashMove _moveToTrash;
    StepJournal _journal;
    const Settings* _expectedSettings;
    std::optional<Underway> _underway; ///< while the writer is writing
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
    StepWriter _writer;
};

LauncherError launcherError(EditRefusal refusal);

} // namespace tessellar
