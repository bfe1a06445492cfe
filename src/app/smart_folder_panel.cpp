#include "app/smart_folder_panel.h"

#include "launcher/launcher_messages.h"
#include "launcher/live_layout.h"
#include "launcher/smart_folder_editing.h"

#include "app/tile_art.h"

#include <algorithm>

namespace tessellar {

/// Nobody looks through more.
static constexpr qsizetype maximumMatches = 100;

SmartFolderPanel::SmartFolderPanel(LauncherViewModel& viewModel) : _viewModel(viewModel) {
    connect(&_choices, &MenuModel::chosen, this, &SmartFolderPanel::choose);
}

static QString chosenOf(const QList<SmartFolderOption>& words) {
    const auto chosen = std::ranges::find(words, true, &SmartFolderOption::isChosen);
    return chosen == words.end() ? QString() : chosen->title;
}

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

QString SmartFolderPanel::matchMode() const {
    return isOpen() ? chosenOf(editing().draft()->matchModes()) : QString();
}
QString SmartFolderPanel::sortField() const {
    return isOpen() ? chosenOf(editing().draft()->sortFields()) : QString();
}
QString SmartFolderPanel::sortDirection() const {
    return isOpen() ? chosenOf(editing().draft()->sortDirections()) : QString();
}
bool SmartFolderPanel::hasLimit() const { return isOpen() && editing().draft()->hasLimit(); }
QString SmartFolderPanel::limitText() const {
    return isOpen() ? editing().draft()->limitText() : QString();
}

QString SmartFolderPanel::summary() const {
    if (!editing().preview())
        return {};
    const qsizetype count = editing().preview()->matches.size();
    return count == 0   ? tr("No apps match.")
           : count == 1 ? tr("1 app matches.")
                        : tr("%n apps match.", nullptr, static_cast<int>(count));
}

QStringList SmartFolderPanel::matchKeys() const {
    return editing().preview() ? editing().preview()->appKeys().first(
                                     std::min<qsizetype>(9, editing().preview()->matches.size()))
                               : QStringList();
}

void SmartFolderPanel::refresh() {
    _rules.clear();
    _matches.clear();
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
    if (editing().preview())
        for (const auto& facts : editing().preview()->matches.first(
                 std::min(maximumMatches, editing().preview()->matches.size())))
            _matches.append(QVariantMap{{QStringLiteral("appKey"), appKey(facts->entry)},
                                        {QStringLiteral("name"), facts->entry.name}});
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
    closePopups();
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

void SmartFolderPanel::closePopups() {
    _choices.close();
    _days.close();
}

// ---- numbers and days

void SmartFolderPanel::step(int by, int rule, int operand) {
    change([&](SmartFolderDraft& draft) {
        if (rule < 0)
            draft.stepLimit(by);
        else
            draft.step(rule, operand, by);
    });
}

void SmartFolderPanel::openDays(QPointF point, int rule, int operand) {
    const auto day = isOpen() ? editing().draft()->day(rule, operand) : std::nullopt;
    if (!day)
        return;
    _days.open(
        point, *day,
        [this, rule, operand](QDate page) {
            return isOpen() ? editing().draft()->month(rule, operand, page) : SmartFolderMonth();
        },
        [this, rule, operand](QDate chosen) {
            change([&](SmartFolderDraft& draft) { draft.chooseDay(rule, operand, chosen); });
        });
}

// ---- pop-up menus

namespace {

/// A button's menu: its words, and what choosing one does.
struct Menu {
    const char* button;
    QList<SmartFolderOption> (*words)(const SmartFolderDraft&, int rule, int operand);
    void (*choose)(SmartFolderDraft&, int rule, int operand, const QString& word);
};

using Draft = SmartFolderDraft;
constexpr std::array menus = std::to_array<Menu>({
    {"matchMode", [](const Draft& d, int, int) { return d.matchModes(); },
     [](Draft& d, int, int, const QString& word) { d.setMatchMode(word); }},
    {"sortField", [](const Draft& d, int, int) { return d.sortFields(); },
     [](Draft& d, int, int, const QString& word) { d.setSortField(word); }},
    {"sortDirection", [](const Draft& d, int, int) { return d.sortDirections(); },
     [](Draft& d, int, int, const QString& word) { d.setSortDirection(word); }},
    {"field", [](const Draft& d, int rule, int) { return d.fields(rule); },
     [](Draft& d, int rule, int, const QString& word) { d.setField(rule, word); }},
    {"predicate", [](const Draft& d, int rule, int) { return d.predicates(rule); },
     [](Draft& d, int rule, int, const QString& word) { d.setPredicate(rule, word); }},
    {"operand", [](const Draft& d, int rule, int operand) { return d.choices(rule, operand); },
     [](Draft& d, int rule, int operand, const QString& word) { d.choose(rule, operand, word); }},
    {"suggestion", nullptr,
     [](Draft& d, int rule, int operand, const QString& word) { d.type(rule, operand, word); }},
});

const Menu* menuOf(const QString& button) {
    const auto found = std::ranges::find_if(
        menus, [&](const Menu& menu) { return button == QLatin1StringView(menu.button); });
    return found == menus.end() ? nullptr : &*found;
}

} // namespace

QList<SmartFolderOption> SmartFolderPanel::words(const Button& button) const {
    const Menu* menu = menuOf(button.name);
    if (!menu || !isOpen())
        return {};
    if (menu->words)
        return menu->words(*editing().draft(), button.rule, button.operand);
    QList<SmartFolderOption> words;
    const QString typed = editing().draft()->row(button.rule).operands.value(button.operand).text;
    const QStringList all = editing().suggestions(button.rule, button.operand);
    // Filtered by what has been typed, unless nothing matches.
    const QStringList begun = all.contains(typed) ? all : all.filter(typed, Qt::CaseInsensitive);
    for (const QString& value : begun.isEmpty() ? all : begun)
        words.append({value, value, value == typed});
    return words;
}

void SmartFolderPanel::openChoices(const QString& button, QPointF point, int rule, int operand) {
    _button = {button, point, rule, operand};
    const auto offered = words(_button);
    openMenu(static_cast<int>(std::ranges::find(offered, true, &SmartFolderOption::isChosen) -
                              offered.begin()));
}

void SmartFolderPanel::openMenu(int current) {
    QList<MenuEntry> entries;
    for (const SmartFolderOption& word : words(_button))
        entries.append({.id = word.word, .title = word.title, .isChosen = word.isChosen});
    _choices.open(entries, _button.point, current < entries.size() ? current : -1);
}

/// Menus with multiple choice stay open.
bool SmartFolderPanel::staysOpen() const {
    return _button.name == u"operand" && isOpen() &&
           editing().draft()->row(_button.rule).operands.value(_button.operand).kind ==
               SmartFolderOperandRow::Kind::choices;
}

void SmartFolderPanel::choose(const QString& word) {
    const Menu* menu = menuOf(_button.name);
    if (!menu)
        return;
    change([&](Draft& draft) { menu->choose(draft, _button.rule, _button.operand, word); });
    if (!staysOpen())
        return;
    const auto offered = words(_button);
    openMenu(
        static_cast<int>(std::ranges::find(offered, word, &SmartFolderOption::word) - offered.begin()));
}

} // namespace tessellar
