#include "smartfolders/smart_folder_notice.h"

#include "platform/texts.h"
#include "smartfolders/smart_folder_words.h"

namespace tessellar {

QString smartFolderNotice(const SmartFolderDefinition& definition,
                          const SmartFolderEvaluation& evaluation, const QString& checkingDisabled) {
    QStringList waiting;
    QStringList missing;
    bool wantsChecking = false;
    for (const SmartFolderRule& rule : definition.rules) {
        if (!evaluation.unknownRuleIDs.contains(rule.id()))
            continue;
        const QString title = smartFolderText(rule.fieldName());
        if (evaluation.waitingRuleIDs.contains(rule.id()))
            waiting.append(title);
        else if (!checkingDisabled.isEmpty() && rule.needs().testFlag(SmartFolderNeed::updates))
            wantsChecking = true;
        else
            missing.append(title);
    }
    const auto withNames = [](const QString& sentence, QStringList names) {
        names.removeDuplicates();
        return QStringLiteral("%1 (%2)").arg(sentence, names.join(QStringLiteral(", ")));
    };
    QStringList sentences;
    if (!waiting.isEmpty())
        sentences.append(withNames(Texts::tr("Still gathering…"), waiting));
    if (wantsChecking)
        sentences.append(checkingDisabled);
    if (!missing.isEmpty())
        sentences.append(withNames(
            Texts::tr("Some app details are unavailable, so those rules cannot be evaluated yet."),
            missing));
    return sentences.join(u' ');
}

} // namespace tessellar
