#pragma once

#include "launcher/action_table.h"
#include "launcher/launcher_editor.h"
#include "launcher/launcher_messages.h"
#include "model/json_unions.h"

namespace tessellar {

// Building blocks for the rows of the action table.

using Outcome = std::expected<void, LauncherError>;

/// Asks the question; if accepted, does `work` and reports its refusal to the user, who answered.
void confirm(const ActionContext& context, LauncherQuestion question, std::function<Outcome()> work);

template <typename Edit>
ActionRequest edit(const ActionContext& context, Edit change) {
    context.told(change(context.launcher.editor()));
    return ActionRequest::none;
}

/// Opens the editor for a smart folder's rules: an existing one's, or a new one's.
ActionRequest editSmartFolder(const ActionContext& context, const QString&);

inline bool isEditable(const ActionContext& context) { return context.isEditable; }
inline bool hasWritableRules(const ActionContext& context) {
    return context.isEditable && context.launcher.smartFolders().isWritable();
}

// The two parts of the table.
std::span<const ActionRow> tileRows();
std::span<const ActionRow> backgroundRows();

} // namespace tessellar
