#include "app/smart_folder_panel.h"

#include "launcher/launcher_messages.h"
#include "launcher/live_layout.h"
#include "launcher/smart_folder_editing.h"

#include "app/tile_art.h"

#include <algorithm>

namespace tessellar {

/// Nobody looks through more.
static constexpr qsizetype maximumMatches = 100;
/// In the folder's own icon.
static constexpr qsizetype maximumIcons = 9;

SmartFolderPanel::SmartFolderPanel(LauncherViewModel& viewModel)
    : _viewModel(viewModel), _popups(editing()) {}

// ---- properties

QString SmartFolderPanel::title() const {
    return editing().isNew() ? tr("New Smart Folder") : tr("Edit Smart Folder");
}

QString SmartFolderPanel::name() const {
    return isOpen() ? editing().draft()->definition().name : QString();
}

QString SmartFolderPanel::symbolName() const {
    return isOpen() ? editing().draft()->definition().customSymbolName.value_or(QString()) : QString();
}

QVariantList SmartFolderPanel::symbols() const {
    QVariantList result;
    const QString chosen = symbolName();
    QStringList names = QStringList{QString()} + drawnSymbols();
    const qsizetype drawn = names.size();
    const auto isChosen = [&](const QString& name) { return isSameSymbol(name, chosen); };
    // A symbol that cannot be drawn here is kept.
    if (std::ranges::none_of(names, isChosen))
        names.append(chosen);
    for (const QString& name : std::as_const(names))
        result.append(QVariantMap{{QStringLiteral("name"), name},
                                  {QStringLiteral("isChosen"), isChosen(name)},
                                  {QStringLiteral("isDrawn"), result.size() < drawn}});
    return result;
}

QString SmartFolderPanel::chosen(SmartFolderMenu::Kind menu) const {
    if (!isOpen())
        return {};
    const auto options = editing().draft()->options({menu});
    const auto chosen = std::ranges::find(options, true, &SmartFolderOption::isChosen);
    return chosen == options.end() ? QString() : chosen->title;
}

bool SmartFolderPanel::hasLimit() const { return isOpen() && editing().draft()->hasLimit(); }
QString SmartFolderPanel::limitText() const {
    return isOpen() ? editing().draft()->limitText() : QString();
}

static SmartFolderPreview previewOf(const SmartFolderEditing& editing) {
    SmartFolderPreview preview;
    preview.notice = editing.notice();
    if (!editing.preview())
        return preview;
    const SmartFolderFactsList& matches = editing.preview()->matches;
    const qsizetype count = matches.size();
    preview.summary = count == 0 ? SmartFolderPanel::tr("No apps match.")
                      : count == 1
                          ? SmartFolderPanel::tr("1 app matches.")
                          : SmartFolderPanel::tr("%n apps match.", nullptr, static_cast<int>(count));
    preview.icons = editing.preview()->appKeys().first(std::min(maximumIcons, count));
    for (const auto& facts : matches.first(std::min(maximumMatches, count)))
        preview.matches.append(QVariantMap{{QStringLiteral("appKey"), appKey(facts->entry)},
                                           {QStringLiteral("name"), facts->entry.name}});
    return preview;
}

void SmartFolderPanel::refresh() {
    _rules.clear();
    if (isOpen()) {
        static constexpr std::array kinds{"text", "number", "date", "choice", "choices"};
        for (qsizetype i = 0; i < editing().draft()->ruleCount(); ++i) {
            const SmartFolderRuleRow row = editing().draft()->row(i);
            QVariantList operands;
            for (const SmartFolderOperandRow& operand : row.operands)
                operands.append(
                    QVariantMap{{QStringLiteral("kind"),
                                 QLatin1StringView(kinds.at(static_cast<std::size_t>(operand.kind)))},
                                {QStringLiteral("text"), operand.text},
                                {QStringLiteral("needsInput"), operand.needsInput},
                                {QStringLiteral("hasSuggestions"),
                                 editing().hasSuggestions(static_cast<int>(i),
                                                          static_cast<int>(operands.size()))}});
            const bool isRange =
                row.operands.size() == 2 && row.operands[0].kind == row.operands[1].kind;
            _rules.append(QVariantMap{{QStringLiteral("field"), row.field},
                                      {QStringLiteral("predicate"), row.predicate},
                                      {QStringLiteral("joint"), isRange ? tr("and") : QString()},
                                      {QStringLiteral("operands"), operands}});
        }
    }
    _preview = previewOf(editing());
    Q_EMIT changed();
}

// ---- edits

void SmartFolderPanel::setName(const QString& name) {
    change([&](SmartFolderDraft& draft) { draft.setName(name); });
}

void SmartFolderPanel::setSymbolName(const QString& name) {
    change([&](SmartFolderDraft& draft) {
        draft.setSymbolName(name.isEmpty() ? std::nullopt : std::optional(name));
    });
}

void SmartFolderPanel::setHasLimit(bool hasLimit) {
    change([&](SmartFolderDraft& draft) { draft.setHasLimit(hasLimit); });
}

void SmartFolderPanel::typeLimit(const QString& text) {
    change([&](SmartFolderDraft& draft) { draft.typeLimit(text); });
}

void SmartFolderPanel::type(int rule, int operand, const QString& text) {
    change([&](SmartFolderDraft& draft) { draft.type(rule, operand, text); });
}

void SmartFolderPanel::removeRule(int rule) {
    change([&](SmartFolderDraft& draft) { draft.removeRule(rule); });
}

void SmartFolderPanel::save() {
    if (!issue().isEmpty())
        return;
    const auto saved = editing().save();
    if (saved)
        return;
    if (saved.error().code != u"changedElsewhere")
        return _viewModel.messages().report(saved.error());
    _viewModel.messages().ask({.title = saved.error().title,
                               .text = saved.error().message,
                               .accept = tr("Save Anyway"),
                               .isDestructive = true},
                              [this](bool accepted) {
                                  if (accepted)
                                      save();
                              });
}

void SmartFolderPanel::cancel() {
    _popups.close();
    editing().close();
}

void SmartFolderPanel::leave() {
    if (!isChanged())
        return cancel();
    const QString name = trimmed(editing().draft()->definition().name);
    _viewModel.messages().ask({.title = tr("Discard your changes?"),
                               .text = name.isEmpty()
                                           ? tr("This Smart Folder has not been saved.")
                                           : tr("“%1” has changes that have not been saved.").arg(name),
                               .accept = tr("Discard"),
                               .isDestructive = true},
                              [this](bool accepted) {
                                  if (accepted)
                                      cancel();
                              });
}

void SmartFolderPanel::step(int by, int rule, int operand) {
    change([&](SmartFolderDraft& draft) {
        if (rule < 0)
            draft.stepLimit(by);
        else
            draft.step(rule, operand, by);
    });
}

} // namespace tessellar
