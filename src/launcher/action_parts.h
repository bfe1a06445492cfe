#pragma once

#include "launcher/action_table.h"
#include "launcher/launcher_editor.h"
#include "launcher/launcher_messages.h"
#include "model/json_unions.h"

namespace tessellar {

// What the rows of the action table are made of.

using Outcome = std::expected<void, LauncherError>;

/// For what is told when it is done: a refusal is told to the user.
inline auto reporting(const ActionContext& context) {
    return
        [&messages = context.launcher.messages()](const Outcome& outcome) { messages.report(outcome); };
}

/// Asks first; `work` is done after a yes, and a refusal of it told.
void confirm(const ActionContext& context, LauncherQuestion question, std::function<Outcome()> work);

template <typename Edit>
ActionRequest edit(const ActionContext& context, Edit change) {
    context.launcher.messages().report(change(context.launcher.editor()));
    return ActionRequest::none;
}

/// Opens the editor of a smart folder's rules: of one that is there, or of a new one.
ActionRequest editSmartFolder(const ActionContext& context, const QString&);

inline bool isEditable(const ActionContext& context) { return context.isEditable; }
inline bool hasWritableRules(const ActionContext& context) {
    return context.isEditable && context.launcher.smartFolders().isWritable();
}

// The two halves of the table.
std::span<const ActionRow> tileRows();
std::span<const ActionRow> backgroundRows();

} // namespace tessellar
