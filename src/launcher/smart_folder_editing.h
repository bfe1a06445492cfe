#pragma once

#include "launcher/launcher_error.h"
#include "model/launcher_window_mode.h"
#include "platform/lifetime.h"
#include "platform/machine.h"
#include "platform/signal.h"
#include "smartfolders/smart_folder_draft.h"
#include "smartfolders/smart_folder_evaluation.h"

#include <functional>

namespace tessellar {

class LauncherEditor;
class SmartFolderLibrary;

/// A smart folder being created or edited: its draft and a preview. Nothing is saved before `save`,
/// which is one step of history.
///
/// Main thread only.
class SmartFolderEditing {
public:
    using Outcome = std::expected<void, LauncherError>;

    SmartFolderEditing(Machine& machine, SmartFolderLibrary& library, LauncherEditor& editor);

    /// Replaces the draft by a new one with a single rule that needs its text.
    void openNew(LauncherWindowMode mode);
    void open(LauncherWindowMode mode, const SmartFolderDefinition& definition);
    /// Discards the draft.
    void close();

    /// nullopt if nothing is being edited.
    const std::optional<SmartFolderDraft>& draft() const { return _draft; }
    bool isNew() const { return _isNew; }
    /// True if closing would lose changes.
    bool isChanged() const {
        return _draft && (_draft->hasUnread() || _draft->definition() != _before);
    }
    void change(const std::function<void(SmartFolderDraft&)>& change);
    void insertRule(qsizetype place);

    /// The message for the first issue; empty if the draft can be saved.
    QString issue() const;
    /// A new smart folder gets a tile in the mode. An unchanged draft is closed without a step of
    /// history. If it cannot be saved after all, the draft is opened again, unless another is open by
    /// then. If the definition was changed or deleted elsewhere meanwhile, the first attempt fails
    /// with a warning; the next one overwrites it.
    Outcome save();

    /// The matches, whatever the name. nullopt if rules are missing or incomplete, or before the first
    /// evaluation; while a changed draft is being evaluated, the previous result.
    const std::optional<SmartFolderEvaluation>& preview() const { return _preview; }
    /// The note beside the preview.
    QString notice() const;
    QStringList suggestions(qsizetype rule, qsizetype operand) const;
    bool hasSuggestions(qsizetype rule, qsizetype operand) const;

    Signal<> changed;  ///< the draft or the preview
    Signal<> reopened; ///< with a draft that could not be saved

private:
    void begin(LauncherWindowMode mode, SmartFolderDefinition definition);
    std::optional<SmartFolderDefinition> saved() const;
    std::function<void()> reopening();
    void renewPreview();

    Machine& _machine;
    SmartFolderLibrary& _library;
    LauncherEditor& _editor;
    std::optional<SmartFolderDraft> _draft;
    LauncherWindowMode _mode = LauncherWindowMode::fullScreen;
    SmartFolderDefinition _before;
    std::optional<SmartFolderDefinition> _saved; ///< as last known to the user
    bool _isNew = false;
    std::optional<SmartFolderEvaluation> _preview;
    Lifetime _lifetime;
};

} // namespace tessellar
