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

/// Asks first; if the answer is yes, does `work` and reports its error.
void confirm(const ActionContext& context, LauncherQuestion question, std::function<Outcome()> work) {
    question.isDestructive = true;
    context.launcher.messages().ask(question,
                                    [told = reporting(context), work = std::move(work)](bool accepted) {
                                        if (accepted)
                                            told(work());
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
