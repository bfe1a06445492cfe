#pragma once

#include "editing/layout_undo.h"
#include "launcher/launcher_error.h"

#include <array>
#include <functional>
#include <list>

namespace tessellar {

/// An edit that is shown, but not yet saved.
struct UnsavedEdit {
    LauncherWindowMode mode = LauncherWindowMode::fullScreen; ///< of the changed document
    LayoutDocument before;                                    ///< the document before the edit
    std::function<void()> rollBack;                           ///< from history
    bool isStepOfHistory = false;                             ///< an undo or redo
};

/// Tracks edits until they are on the disk.
///
/// If saving fails, edits by hand stay and are retried. A command's edits, and an undo or redo by hand,
/// are rolled back, unless later edits by hand lie on top; then they stay too, and the command reports
/// it. Concurrent waits share a save.
///
/// Replacements and steps of several files are saved as a unit; the next step begins once that has
/// ended.
///
/// Main thread only.
class UnsavedEdits {
public:
    using Outcome = std::expected<void, LauncherError>;
    using Done = std::function<void(Outcome)>;
    /// Identifies a command, or a batch of commands. Null for edits by hand.
    using Editor = std::shared_ptr<const void>;
    /// Undoes edits of one mode, newest first, and saves the result; with `areLeft`, there are unsaved
    /// ones below them.
    using RollBack = std::function<void(const QList<UnsavedEdit>&, bool areLeft)>;
    /// What the user is told of a failed save: edits stay, or an undo or redo was rolled back.
    enum class Told { editsKept, undoTakenBack };
    using Tell = std::function<void(const LauncherError&, Told)>;

    UnsavedEdits(LayoutStore& store, RollBack rollBack, Tell tellUser);

    /// Attributes all edits made during `call` to `editor`.
    void editAs(const Editor& editor, const std::function<void()>& call);
    /// Call right after passing the edited document to the store.
    void add(UnsavedEdit edit);

    /// Call around saving a step as a unit.
    void beginStep();
    /// Returns true if its editor learns of the outcome: when `tell` is called, or when it asks.
    bool endStep(const Outcome& outcome);
    /// Tells those whose edits are on the disk or have failed for good.
    void tell();

    /// `all` includes other editors'; `step` is only the editor's step that is saved as a unit.
    enum class Whose { step, own, all };
    /// Calls `done` once these edits are on the disk or have failed for good; they are saved at once.
    /// Synchronous if there are none.
    void whenSaved(const Editor& editor, Whose whose, Done done);

private:
    struct Unsaved {
        UnsavedEdit edit;
        Editor editor;
        LayoutStore::Revision revision = 0;
    };
    struct Waiting {
        Editor editor;
        Done done;
        std::array<LayoutStore::Revision, 2> until{}; ///< per mode; 0 if not waiting
        bool isForStep = false;
        Outcome outcome;
    };

    void saveEnded(LauncherWindowMode mode, LayoutStore::Revision revision,
                   const BackgroundFile::Result& saved);
    void fail(LauncherWindowMode mode, LayoutStore::Revision revision, const LauncherError& error);

    LayoutStore& _store;
    RollBack _rollBack;
    Tell _tellUser;
    Editor _editor;
    std::array<QList<Unsaved>, 2> _edits; ///< per mode, newest last
    /// Per mode, the state that the last rollback saved: that this failed too is not told again.
    std::array<LayoutStore::Revision, 2> _rolledBackTo{};
    std::optional<Editor> _step; ///< the editor of the one that is being saved
    /// Failures of steps whose editor has not asked yet.
    QList<std::pair<std::weak_ptr<const void>, LauncherError>> _failedSteps;
    std::list<Waiting> _waiting;
    Subscription _saveEnded;
};

} // namespace tessellar
