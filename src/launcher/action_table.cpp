#include "launcher/action_parts.h"
#include "launcher/smart_folder_editing.h"

namespace tessellar {

std::span<const ActionRow> actionRows() {
    static const std::vector<ActionRow> rows = [] {
        std::vector<ActionRow> all;
        for (const auto& half : {tileRows(), backgroundRows()})
            all.insert(all.end(), half.begin(), half.end());
        return all;
    }();
    return rows;
}

void confirm(const ActionContext& context, LauncherQuestion question, std::function<Outcome()> work) {
    question.isDestructive = true;
    LauncherMessages& messages = context.launcher.messages();
    messages.ask(question, [&messages, work = std::move(work)](bool accepted) {
        if (accepted)
            messages.report(work());
    });
}

ActionRequest editSmartFolder(const ActionContext& context, const QString&) {
    if (const SmartFolderDefinition* definition = context.definition())
        context.launcher.smartFolderEditing().open(context.mode(), *definition);
    else
        context.launcher.smartFolderEditing().openNew(context.mode());
    return ActionRequest::rules;
}

} // namespace tessellar
