#pragma once

#include "launcher/launcher_error.h"
#include "model/launcher_window_mode.h"
#include "platform/machine.h"
#include "platform/signal.h"
#include "smartfolders/smart_folder_draft.h"
#include "smartfolders/smart_folder_evaluation.h"

#include <functional>

namespace tessellar {

class LauncherEditor;
class SmartFolderLibrary;

/// One smart folder while it is made or changed: its draft, and what that would show. Nothing is saved
/// before `save`, which is one step of history.
///
/// Main thread only.
class SmartFolderEditing {
public:
    using Outcome = std::expected<void, LauncherError>;

    SmartFolderEditing(Machine& machine, SmartFolderLibrary& library, LauncherEditor& editor);

    /// Begins with one rule that needs its text, in place of what was edited.
    void openNew(LauncherWindowMode mode);
    void open(LauncherWindowMode mode, const SmartFolderDefinition& definition);
    /// Leaves everything as it was saved.
    void close();

    /// Nothing while nothing is edited.
    const std::optional<SmartFolderDraft>& draft() const { return _draft; }
    bool isNew() const { return _isNew; }
    /// True when closing would lose something.
    bool isChanged() const {
        return _draft && (_draft->hasUnread() || _draft->definition() != _before);
    }
    void change(const std::function<void(SmartFolderDraft&)>& change);
    void insertRule(qsizetype place);

    /// What the editor says of the first issue; empty when the draft can be saved.
    QString issue() const;
    /// A new one gets its tile in the mode. A draft that is as it was saved is closed and leaves no
    /// step of history. Where somebody else has changed or deleted the definition meanwhile, the first
    /// attempt says so and saves nothing; another saves over it.
    Outcome save();

    /// What it would show, whatever its name; nothing where rules are missing or not complete, and
    /// before it is worked out. Between two drafts it is the former's.
    const std::optional<SmartFolderEvaluation>& preview() const { return _preview; }
    /// What stands beside it.
    QString notice() const;
    QStringList suggestions(qsizetype rule, qsizetype operand) const;
    bool hasSuggestions(qsizetype rule, qsizetype operand) const;

    Signal<> changed; ///< the draft, or what it would show

private:
    void begin(LauncherWindowMode mode, SmartFolderDefinition definition);
    std::optional<SmartFolderDefinition> saved() const;
    void renewPreview();

    Machine& _machine;
    SmartFolderLibrary& _library;
    LauncherEditor& _editor;
    std::optional<SmartFolderDraft> _draft;
    LauncherWindowMode _mode = LauncherWindowMode::fullScreen;
    SmartFolderDefinition _before;
    std::optional<SmartFolderDefinition> _saved; ///< as the user knows it
    bool _isNew = false;
    std::optional<SmartFolderEvaluation> _preview;
};

} // namespace tessellar
