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

/// What one edit changes, all of it or nothing. What it leaves out stays.
struct EditStep {
    QString name;                                ///< for history
    LauncherWindowMode mode;                     ///< that it is made in
    std::optional<LayoutDocument> document = {}; ///< of that mode
    /// Where an undo leads, when the user has gone on since the edit began, as with tiles in the hand.
    std::optional<Navigation> begunAt = {};
    std::optional<LayoutDocument> otherDocument = {};
    std::optional<QList<SmartFolderDefinition>> definitions = {};
    std::optional<ArrangementLayout> settings = {}; ///< of the grid in that mode
    QList<TrashedAppRecord> trashedApps = {};       ///< that it has moved to the Trash already
    bool isSavedAtOnce = false;                     ///< as a step of several files is in any case

    /// Another arrangement takes the place of the present one: a copy is kept first, and the result is
    /// on the disk when the step has been made.
    struct Replacement {
        QString reason;     ///< as the copy gives it, such as "arrangement-restore"
        QString title = {}; ///< of an alert about what failed
        /// Where an import brought it: kept in a file of its own, once it knows the copy's path.
        std::optional<LegacyLaunchpadImportMetadata> importRecord = {};
    };
    std::optional<Replacement> replacement = {};

    const std::optional<LayoutDocument>& documentOf(LauncherWindowMode which) const {
        return which == mode ? document : otherDocument;
    }
};

/// The one way in which arrangements, and the smart folders' definitions, are changed: every edit,
/// paste, import, removal, restore and reset is an `EditStep`, made here, and undone and redone here.
///
/// 1. The guard: the first load is complete, the mode's file is one that may be written, and no undo
///    waits for the Trash.
/// 2. A copy of the arrangement is kept, where another takes its place.
/// 3. A step of several files is noted in the journal, which makes it whole.
/// 4. Settings and definitions are saved.
/// 5. The documents are shown, and saved: at once where another arrangement took the place of the
///    present one, or with other files; else after the last of a burst.
/// 6. The step is kept for undo, which is whole in the same way; where it changes one document alone,
///    that is saved behind it, at once.
///
/// A step that fails has changed nothing. If the disk refuses to take back what was written, no other
/// step is made until it does; a step of several files is then taken back by the next start, too. One
/// that was saved later, or not, see `UnsavedEdits`. A mode whose file cannot be written is left alone
/// by the steps of the other one. Main thread only.
class LauncherHistory {
public:
    using Outcome = std::expected<void, LauncherError>;
    using Done = std::function<void(Outcome)>;
    /// The path of the copy that was kept, where one was.
    using Made = std::expected<std::optional<QString>, LauncherError>;

    LauncherHistory(Machine& machine, LayoutStore& store, LiveLayouts& layouts,
                    SmartFolderLibrary& smartFolders, InstalledApplications& applications,
                    LauncherMessages& messages);

    /// `layoutNotReady` before the first load is complete, `workingDocumentUnreadable` in a mode whose
    /// file must not be overwritten, `stepInProgress` while an undo or redo waits.
    Outcome guard(LauncherWindowMode mode) const;
    Made make(EditStep step);
    /// The same for most edits: a pure change of one document.
    Outcome edit(LauncherWindowMode mode, const QString& name,
                 const std::function<EditResult(const LayoutDocument&)>& change,
                 const std::optional<Navigation>& begunAt = {});

    /// Takes the next step of a mode. `done` is called at its end; a refusal says why.
    void undo(LauncherWindowMode mode, Done done = {});
    void redo(LauncherWindowMode mode, Done done = {});
    const LayoutUndoHistory& steps() const { return _steps; }
    /// The steps whose documents are not on the disk yet.
    UnsavedEdits& unsaved() { return _unsaved; }
    LayoutUndoState snapshot(LauncherWindowMode mode) const;

    /// Before the first load is shown: takes back a step in which the program was killed.
    void undoCutOff(std::array<LayoutStore::LoadResult, 2>& loaded);
    /// Tries again to take back what a step that failed has left on the disk.
    Outcome settle();
    /// How applications come into and out of the Trash.
    void setTrash(LayoutUndoActions::TrashMove restore, LayoutUndoActions::TrashMove trash);

    Signal<> changed; ///< what can be undone or redone, its notice, the grid's reflow

private:
    LayoutUndoActions actions();
    Outcome storeSettings(LauncherWindowMode mode, const ArrangementLayout& settings);
    static int filesOf(const EditStep& step);
    /// When its documents are on the disk.
    enum class Saved { now, soon };
    Outcome carryOut(const EditStep& step, const LayoutUndoState& before, Saved saved);
    StepJournal::Files filesBefore(const EditStep& step, const LayoutUndoState& before) const;
    Outcome beginWhole(const EditStep& step, const StepJournal::Files& before);
    void showBefore(const EditStep& step, const LayoutUndoState& before);
    /// The settings that `files` speaks of, as stored now; null for those that are not set.
    QMap<QString, QJsonValue> settingsNow(const StepJournal::Files& files) const;
    /// True when they are on the disk.
    bool putBack(const StepJournal::Files& files);
    void takeBack(const QList<UnsavedEdit>& edits);
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
    /// What a step that failed has left, and why it failed.
    struct Unsettled {
        StepJournal::Files before;
        QMap<QString, QJsonValue> settings; ///< as the step left them
        bool isNoted = false;
        LauncherError error;
    };
    std::optional<Unsettled> _unsettled;
    LayoutUndoHistory _steps;
    UnsavedEdits _unsaved;
};

LauncherError launcherError(EditRefusal refusal);

} // namespace tessellar
