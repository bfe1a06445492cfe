#pragma once

#include "editing/layout_undo.h"
#include "launcher/launcher_error.h"

#include <array>
#include <list>

namespace tessellar {

/// An edit that is shown, and is to be saved soon.
struct UnsavedEdit {
    LauncherWindowMode mode = LauncherWindowMode::fullScreen; ///< whose document it changed
    LayoutDocument before;                                    ///< that document
    std::uint64_t step = 0;                                   ///< of history
    QList<LayoutUndoEntry> redoStack;                         ///< that it kept from being redone
};

/// Follows edits until they are on the disk.
///
/// What the user edits by hand and cannot be saved stays in the window, and is tried again with what is
/// edited later. What a command edits is taken back when it cannot be saved: that it failed is then the
/// last word. Where edits that nobody waits for stand on top of it, it stays as one of theirs, and the
/// command's answer says so. Those who wait at the same time share a save.
///
/// Main thread only.
class UnsavedEdits {
public:
    using Outcome = std::expected<void, LauncherError>;
    using Done = std::function<void(Outcome)>;
    /// Stands for a command, or for the lines of a batch. Null is the user's hand.
    using Editor = std::shared_ptr<const void>;
    /// Makes edits undone, the newest first, all of one mode, and saves what was before them.
    using TakeBack = std::function<void(const QList<UnsavedEdit>&)>;

    UnsavedEdits(LayoutStore& store, TakeBack takeBack);

    /// What is edited until `call` returns is the editor's.
    void editAs(const Editor& editor, const std::function<void()>& call);
    /// To be called when the document with the edit is the last that the store was given.
    void add(UnsavedEdit edit);

    enum class Whose { own, all };
    /// Saves at once, and calls `done` when an editor's edits, or all, are on the disk, or when it is
    /// sure what has become of those that could not be saved. At once where there are none.
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
        std::array<LayoutStore::Revision, 2> until{}; ///< of each mode; 0 where nothing is waited for
        Outcome outcome;
    };

    void saveEnded(LauncherWindowMode mode, LayoutStore::Revision revision,
                   const BackgroundFile::Result& saved);
    void fail(LauncherWindowMode mode, const LauncherError& error);
    void tell();

    LayoutStore& _store;
    TakeBack _takeBack;
    Editor _editor;
    std::array<QList<Unsaved>, 2> _edits; ///< of each mode, newest last
    std::list<Waiting> _waiting;
    Subscription _saveEnded;
};

} // namespace tessellar
