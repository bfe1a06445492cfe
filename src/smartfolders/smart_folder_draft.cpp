#include "smartfolders/smart_folder_draft.h"

#include "smartfolders/smart_folder_fields.h"
#include "smartfolders/smart_folder_rule_parts.h"
#include "smartfolders/smart_folder_words.h"

namespace tessellar {
namespace {

using Edge = SmartFolderInputFormat::Edge;
using Unit = SmartFolderRelativeDateUnit;

using Operand = SmartFolderOperand;

constexpr qint64 usualLimit = 25;
constexpr qsizetype maximumSuggestions = 200;

/// Which edge of a day a predicate's date means.
Edge edgeOf(QStringView predicate, qsizetype operand) {
    return predicate == u"isAfter" || (predicate == u"isBetween" && operand == 1) ? Edge::end
                                                                                  : Edge::start;
}

// ---- words

QString titleOf(const QStringList& words, const QString& word) {
    // Words outside the vocabulary are shown verbatim.
    return words.contains(word) ? smartFolderText(word) : word;
}

QList<SmartFolderOption> menuOf(const QStringList& words, const QString& chosen) {
    QList<SmartFolderOption> result;
    for (const QString& word : words)
        result.append({word, smartFolderText(word), word == chosen});
    return result;
}

QList<SmartFolderOption> fieldMenu(const QString& chosen) {
    QList<SmartFolderOption> result;
    for (const QStringList& names : smartFolderFieldNames()) {
        if (!result.isEmpty())
            result.append(SmartFolderOption());
        result.append(menuOf(names, chosen));
    }
    return result;
}

QList<SmartFolderOption> sortFieldMenu(const QString& chosen) {
    QStringList names;
    for (const auto field : SmartFolderSortField::all())
        names.append(field.rawValue());
    return menuOf(names, chosen);
}

template <typename E>
QList<SmartFolderOption> menuOf(E chosen) {
    QStringList words;
    for (const auto& [value, name] : json::RawValues<E>::values)
        words.append(QLatin1StringView(name));
    return menuOf(words, json::rawValue(chosen));
}

} // namespace

SmartFolderDraft::SmartFolderDraft(SmartFolderDefinition definition, SmartFolderInputFormat inputFormat,
                                   Instant now)
    : _definition(std::move(definition))
    , _inputFormat(std::move(inputFormat))
    , _today(_inputFormat.instant(_inputFormat.day(now), Edge::start).value_or(now)) {}

void SmartFolderDraft::setInputFormat(SmartFolderInputFormat inputFormat, Instant now) {
    _inputFormat = std::move(inputFormat);
    _today = _inputFormat.instant(_inputFormat.day(now), Edge::start).value_or(now);
}

QList<SmartFolderValidationIssue> SmartFolderDraft::issues() const {
    SmartFolderDefinition judged = _definition;
    for (SmartFolderRule& rule : judged.rules)
        for (const auto& [id, operand] : _unread.keys())
            if (id == rule.id())
                rule = newRule(id);
    if (_unreadLimit)
        judged.resultLimit = 0;
    return validationIssues(judged);
}

// ---- beside the rules

void SmartFolderDraft::setHasLimit(bool hasLimit) {
    if (hasLimit == this->hasLimit())
        return;
    _unreadLimit.reset();
    _definition.resultLimit = hasLimit ? std::optional(usualLimit) : std::nullopt;
}

QString SmartFolderDraft::limitText() const {
    return _unreadLimit.value_or(hasLimit() ? QString::number(*_definition.resultLimit) : QString());
}

void SmartFolderDraft::typeLimit(const QString& text) {
    if (!hasLimit())
        return;
    if (const auto limit = _inputFormat.integer(text)) {
        _definition.resultLimit = *limit;
        _unreadLimit.reset();
    } else {
        _unreadLimit = text;
    }
}

// ---- rules

SmartFolderRuleRow SmartFolderDraft::row(qsizetype place) const {
    if (!has(place))
        return {};
    using Kind = SmartFolderOperandRow::Kind;
    const SmartFolderRule& rule = _definition.rules.at(place);
    const QString predicate = predicateName(rule);
    const QStringList words = this->words(rule);
    SmartFolderRuleRow row{.id = rule.id(),
                           .field = smartFolderText(rule.fieldName()),
                           .predicate = smartFolderText(predicate),
                           .operands = {}};
    bool isOneMarked = false;
    const auto add = [&](Kind kind, const QString& text, bool needsInput = false) {
        const auto unread = _unread.constFind({row.id, row.operands.size()});
        const bool isUnread = unread != _unread.constEnd();
        row.operands.append({kind, isUnread ? *unread : text, needsInput || isUnread});
        isOneMarked = isOneMarked || row.operands.last().needsInput;
    };
    for (const Operand& operand : operandsOf(rule)) {
        std::visit(
            [&]<typename T>(const T& value) {
                if constexpr (std::same_as<T, QString>)
                    add(words.isEmpty() ? Kind::text : Kind::choice, titleOf(words, value),
                        trimmed(value).isEmpty());
                else if constexpr (std::same_as<T, QStringList>) {
                    QStringList titles;
                    for (const QString& word : value)
                        titles.append(titleOf(words, word));
                    add(Kind::choices, titles.join(QStringLiteral(", ")), value.isEmpty());
                } else if constexpr (std::same_as<T, double>)
                    add(Kind::number, _inputFormat.text(value));
                else if constexpr (std::same_as<T, qint64>)
                    add(Kind::number, QString::number(value));
                else if constexpr (std::same_as<T, bool>)
                    add(Kind::choice, smartFolderText(value ? u"true" : u"false"));
                else if constexpr (std::same_as<T, Instant>)
                    add(Kind::date, _inputFormat.text(value, edgeOf(predicate, row.operands.size())));
                else
                    add(Kind::choice, smartFolderText(json::rawValue(value)));
            },
            operand);
    }
    // The values are invalid together, for example low and high.
    if (!isOneMarked && !rule.isComplete())
        for (SmartFolderOperandRow& operand : row.operands)
            operand.needsInput = true;
    return row;
}

QStringList SmartFolderDraft::words(const SmartFolderRule& rule) const {
    if (!_files)
        return wordsOf(rule);
    const auto known = _words.constFind(rule.fieldName());
    return known != _words.constEnd()
               ? *known
               : *_words.insert(rule.fieldName(), wordsOf(rule, _facts, *_files));
}

void SmartFolderDraft::forgetTyped(const SmartFolderRule& rule) {
    for (qsizetype operand = 0; operand < operandsOf(rule).size(); ++operand)
        _unread.remove({rule.id(), operand});
}

void SmartFolderDraft::replace(qsizetype place, SmartFolderRule with) {
    SmartFolderRule& rule = _definition.rules[place];
    forgetTyped(rule);
    // The day stays the same, whichever of its edges the predicate uses.
    const QList<Operand> operands = operandsOf(with);
    for (qsizetype i = 0; i < operands.size(); ++i)
        if (const auto* instant = std::get_if<Instant>(&operands.at(i)))
            with = withOperand(with, i, _inputFormat.onEdge(*instant, edgeOf(predicateName(with), i)));
    rule = std::move(with);
}

void SmartFolderDraft::insertRule(qsizetype place, const QUuid& id) {
    _definition.rules.insert(std::clamp<qsizetype>(place, 0, ruleCount()), newRule(id));
}

void SmartFolderDraft::removeRule(qsizetype place) {
    if (!has(place))
        return;
    forgetTyped(_definition.rules.at(place));
    _definition.rules.removeAt(place);
}

// ---- menus

QList<SmartFolderOption> SmartFolderDraft::options(const SmartFolderMenu& menu) const {
    using enum SmartFolderMenu::Kind;
    switch (menu.kind) {
    case matchMode:
        return menuOf(_definition.matchMode);
    case sortField:
        return sortFieldMenu(_definition.sort.field.rawValue());
    case sortDirection:
        return menuOf(_definition.sort.direction);
    default:
        break;
    }
    if (!has(menu.rule))
        return {};
    const SmartFolderRule& rule = _definition.rules.at(menu.rule);
    return menu.kind == field       ? fieldMenu(rule.fieldName())
           : menu.kind == predicate ? menuOf(predicateNames(rule), predicateName(rule))
                                    : operandOptions(menu.rule, menu.operand);
}

/// Assigns the value of a word, if it has one.
template <typename T>
static void assign(T& to, const std::optional<T>& value) {
    to = value.value_or(to);
}

void SmartFolderDraft::choose(const SmartFolderMenu& menu, const QString& word) {
    using enum SmartFolderMenu::Kind;
    auto& sort = _definition.sort;
    switch (menu.kind) {
    case matchMode:
        return assign(_definition.matchMode, json::fromRawValue<SmartFolderMatchMode>(word));
    case sortField:
        return assign(sort.field, SmartFolderSortField::named(word));
    case sortDirection:
        return assign(sort.direction, json::fromRawValue<SmartFolderSortDirection>(word));
    default:
        break;
    }
    if (!has(menu.rule))
        return;
    const SmartFolderRule& rule = _definition.rules.at(menu.rule);
    if (menu.kind == operand)
        chooseOperand(menu.rule, menu.operand, word);
    else if (menu.kind == field && word != rule.fieldName())
        replace(menu.rule, withField(rule, word, _today));
    else if (menu.kind == predicate && word != predicateName(rule))
        replace(menu.rule, withPredicate(rule, word, _today));
}

// ---- operands

QList<SmartFolderOption> SmartFolderDraft::operandOptions(qsizetype place, qsizetype operand) const {
    if (operand < 0 || operand >= operandsOf(_definition.rules.at(place)).size())
        return {};
    const SmartFolderRule& rule = _definition.rules.at(place);
    const Operand value = operandsOf(rule).at(operand);
    if (const auto* unit = std::get_if<Unit>(&value))
        return menuOf(*unit);
    if (const auto* isTrue = std::get_if<bool>(&value))
        return {{QStringLiteral("true"), smartFolderText(u"true"), *isTrue},
                {QStringLiteral("false"), smartFolderText(u"false"), !*isTrue}};
    const auto* one = std::get_if<QString>(&value);
    const auto* several = std::get_if<QStringList>(&value);
    const QStringList words = this->words(rule);
    if (words.isEmpty() || (!one && !several))
        return {};
    const QStringList chosen = several ? *several : QStringList{*one};
    QStringList all = words;
    for (const QString& word : chosen)
        if (!all.contains(word) && !word.isEmpty())
            all.append(word);
    QList<SmartFolderOption> result;
    for (const QString& word : std::as_const(all))
        result.append({word, titleOf(words, word), chosen.contains(word)});
    return result;
}

void SmartFolderDraft::chooseOperand(qsizetype place, qsizetype operand, const QString& word) {
    const auto offered = operandOptions(place, operand);
    if (std::ranges::find(offered, word, &SmartFolderOption::word) == offered.end() || word.isEmpty())
        return;
    const SmartFolderRule& rule = _definition.rules.at(place);
    Operand value = operandsOf(rule).at(operand);
    if (auto* several = std::get_if<QStringList>(&value)) {
        if (!several->removeAll(word))
            several->append(word);
    } else if (std::holds_alternative<Unit>(value)) {
        value = json::fromRawValue<Unit>(word).value_or(Unit::days);
    } else if (std::holds_alternative<bool>(value)) {
        value = word == u"true";
    } else {
        value = word;
    }
    _definition.rules[place] = withOperand(rule, operand, value);
}

void SmartFolderDraft::type(qsizetype place, qsizetype operand, const QString& text) {
    if (!has(place) || operand < 0 || operand >= operandsOf(_definition.rules.at(place)).size() ||
        !operandOptions(place, operand).isEmpty())
        return;
    const SmartFolderRule& rule = _definition.rules.at(place);
    const auto read = std::visit(
        [&]<typename T>(const T&) -> std::optional<Operand> {
            if constexpr (std::same_as<T, QString>)
                return text;
            else if constexpr (std::same_as<T, double>)
                return _inputFormat.number(text);
            else if constexpr (std::same_as<T, qint64>)
                return _inputFormat.integer(text);
            else if constexpr (std::same_as<T, Instant>)
                return _inputFormat.instant(text, edgeOf(predicateName(rule), operand));
            else
                return std::nullopt;
        },
        operandsOf(rule).at(operand));
    if (!read) {
        _unread.insert({rule.id(), operand}, text);
        return;
    }
    setOperand(place, operand, *read);
}

// ---- steps and days

void SmartFolderDraft::stepLimit(int by) {
    if (hasLimit()) {
        _definition.resultLimit =
            std::clamp(*_definition.resultLimit + by, SmartFolderDefinition::minimumResultLimit,
                       SmartFolderDefinition::maximumResultLimit);
        _unreadLimit.reset();
    }
}

void SmartFolderDraft::step(qsizetype place, qsizetype operand, int by) {
    if (!has(place))
        return;
    const SmartFolderRule& rule = _definition.rules.at(place);
    SmartFolderOperand value = operandsOf(rule).value(operand);
    if (auto* number = std::get_if<double>(&value))
        *number += by;
    else if (auto* amount = std::get_if<qint64>(&value))
        *amount = std::max<qint64>(*amount + by, 1);
    else if (const auto shown = day(place, operand))
        return chooseDay(place, operand, shown->addDays(by));
    else
        return;
    setOperand(place, operand, value);
}

std::optional<QDate> SmartFolderDraft::day(qsizetype place, qsizetype operand) const {
    if (!has(place))
        return std::nullopt;
    const auto value = operandsOf(_definition.rules.at(place)).value(operand);
    const auto* instant = std::get_if<Instant>(&value);
    return instant ? std::optional(_inputFormat.day(*instant)) : std::nullopt;
}

void SmartFolderDraft::chooseDay(qsizetype place, qsizetype operand, QDate chosen) {
    if (!day(place, operand))
        return;
    const Edge edge = edgeOf(predicateName(_definition.rules.at(place)), operand);
    if (const auto instant = _inputFormat.instant(chosen, edge))
        setOperand(place, operand, *instant);
}

SmartFolderMonth SmartFolderDraft::month(qsizetype place, qsizetype operand, QDate page) const {
    return _inputFormat.month(page, _inputFormat.day(_today), day(place, operand).value_or(QDate()));
}

void SmartFolderDraft::setOperand(qsizetype place, qsizetype operand, const SmartFolderOperand& value) {
    SmartFolderRule& rule = _definition.rules[place];
    _unread.remove({rule.id(), operand});
    rule = withOperand(rule, operand, value);
}

// ---- suggestions

void SmartFolderDraft::visitValues(qsizetype place, qsizetype operand,
                                   const std::function<bool(const QString&)>& visit) const {
    if (_files && has(place) && operand >= 0 &&
        operand < operandsOf(_definition.rules.at(place)).size() &&
        row(place).operands.at(operand).kind == SmartFolderOperandRow::Kind::text)
        visitTexts(_definition.rules.at(place), _facts, *_files, visit);
}

QStringList SmartFolderDraft::suggestions(qsizetype place, qsizetype operand) const {
    QHash<QString, qsizetype> counts;
    visitValues(place, operand, [&](const QString& value) {
        ++counts[value];
        return true;
    });
    QStringList values = counts.keys();
    std::ranges::sort(values, [&](const QString& a, const QString& b) {
        return counts[a] != counts[b] ? counts[a] > counts[b] : compareNumeric(a, b) < 0;
    });
    return values.first(std::min(values.size(), maximumSuggestions));
}

bool SmartFolderDraft::hasSuggestions(qsizetype place, qsizetype operand) const {
    bool isAny = false;
    visitValues(place, operand, [&](const QString&) {
        isAny = true;
        return false;
    });
    return isAny;
}

} // namespace tessellar
