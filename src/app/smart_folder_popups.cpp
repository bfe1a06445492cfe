#include "app/smart_folder_popups.h"

#include "launcher/actions.h"

#include <algorithm>

namespace tessellar {

SmartFolderPopups::SmartFolderPopups(SmartFolderEditing& editing) : _editing(editing) {
    connect(&_choices, &MenuModel::chosen, this, &SmartFolderPopups::choose);
}

// ---- menus

QList<SmartFolderOption> SmartFolderPopups::options() const {
    if (!_editing.draft())
        return {};
    return _button.menu ? _editing.draft()->options({*_button.menu, _button.rule, _button.operand})
                        : suggestions();
}

/// Filtered by what has been typed, unless nothing matches.
QList<SmartFolderOption> SmartFolderPopups::suggestions() const {
    QList<SmartFolderOption> options;
    const QString typed = _editing.draft()->row(_button.rule).operands.value(_button.operand).text;
    const QStringList all = _editing.suggestions(_button.rule, _button.operand);
    const QStringList begun = all.contains(typed) ? all : all.filter(typed, Qt::CaseInsensitive);
    for (const QString& value : begun.isEmpty() ? all : begun)
        options.append({value, value, value == typed});
    return options;
}

void SmartFolderPopups::openChoices(const QString& button, QPointF point, int rule, int operand) {
    _button = {json::fromRawValue<SmartFolderMenu::Kind>(button), point, rule, operand};
    const auto offered = options();
    openMenu(std::ranges::find(offered, true, &SmartFolderOption::isChosen) - offered.begin());
}

void SmartFolderPopups::openMenu(qsizetype current) {
    QList<MenuEntry> entries;
    for (const SmartFolderOption& option : options())
        entries.append({.id = option.word, .title = option.title, .isChosen = option.isChosen});
    _choices.open(entries, _button.point, current < entries.size() ? static_cast<int>(current) : -1);
}

/// Menus with multiple choice stay open.
bool SmartFolderPopups::staysOpen() const {
    return _button.menu == SmartFolderMenu::Kind::operand && _editing.draft() &&
           _editing.draft()->row(_button.rule).operands.value(_button.operand).kind ==
               SmartFolderOperandRow::Kind::choices;
}

void SmartFolderPopups::choose(const QString& word) {
    _editing.change([&](SmartFolderDraft& draft) {
        if (_button.menu)
            draft.choose({*_button.menu, _button.rule, _button.operand}, word);
        else
            draft.type(_button.rule, _button.operand, word);
    });
    if (!staysOpen())
        return;
    const auto offered = options();
    openMenu(std::ranges::find(offered, word, &SmartFolderOption::word) - offered.begin());
}

// ---- days

void SmartFolderPopups::openDays(QPointF point, int rule, int operand) {
    const auto day = _editing.draft() ? _editing.draft()->day(rule, operand) : std::nullopt;
    if (!day)
        return;
    _days.open(
        point, *day,
        [this, rule, operand](QDate page) {
            return _editing.draft() ? _editing.draft()->month(rule, operand, page) : SmartFolderMonth();
        },
        [this, rule, operand](QDate chosen) {
            _editing.change([&](SmartFolderDraft& draft) { draft.chooseDay(rule, operand, chosen); });
        });
}

void SmartFolderPopups::close() {
    _choices.close();
    _days.close();
}

} // namespace tessellar
