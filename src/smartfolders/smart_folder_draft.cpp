#include "smartfolders/smart_folder_draft.h"

#include "smartfolders/smart_folder_rule.h"
#include "smartfolders/smart_folder_words.h"

namespace tessellar {
namespace {

using Edge = SmartFolderTyping::Edge;
using Unit = SmartFolderRelativeDateUnit;

/// A value that a predicate carries, whatever rule it belongs to.
using Operand = std::variant<QString, QStringList, double, qint64, bool, Instant, Unit>;

constexpr qint64 usualAmount = 7;
constexpr qint64 usualLimit = 25;
constexpr qsizetype maximumSuggestions = 200;

// ---- rules and their parts

template <typename Rule>
using KindOf = typename Rule::Kind;

QString predicateOf(const SmartFolderRule& rule) {
    return std::visit(
        [](const auto& r) -> QString {
            return QLatin1StringView(json::caseNames<decltype(r.predicate)>()[r.predicate.index()]);
        },
        rule.value());
}

QList<Operand> operandsOf(const SmartFolderRule& rule) {
    const auto ofCase = [](const auto& asked) {
        return std::apply(
            [](const auto&... values) {
                return QList<Operand>{
                    Operand(std::in_place_type<std::remove_cvref_t<decltype(values)>>, values)...};
            },
            asked.values);
    };
    return std::visit([&](const auto& r) { return std::visit(ofCase, r.predicate); }, rule.value());
}

/// What an editor offers as the field's values; empty for those that are typed.
QStringList wordsOf(const SmartFolderRule& rule) {
    const auto* choice = std::get_if<SmartFolderChoiceRule>(&rule.value());
    return choice && choice->field.row().words ? choice->field.row().words() : QStringList();
}

/// Which instant of a day a date behind a predicate stands for.
Edge edgeOf(QStringView predicate, qsizetype operand) {
    return predicate == u"isAfter" || (predicate == u"isBetween" && operand == 1) ? Edge::end
                                                                                  : Edge::start;
}

/// What is behind a predicate that has just been chosen.
struct Beginning {
    QStringList words;
    Instant today;

    template <typename T>
    T value() const {
        if constexpr (std::same_as<T, QString>)
            return words.value(0);
        else if constexpr (std::same_as<T, qint64>)
            return usualAmount;
        else if constexpr (std::same_as<T, bool>)
            return true;
        else if constexpr (std::same_as<T, Instant>)
            return today;
        else
            return T();
    }
};

/// A value of this type from what stood there before: at the same place, else the last one.
template <typename T>
std::optional<T> carriedOver(const QList<Operand>& before, std::size_t place) {
    if (before.isEmpty())
        return std::nullopt;
    const Operand& old = before.at(std::min(static_cast<qsizetype>(place), before.size() - 1));
    if (const T* same = std::get_if<T>(&old))
        return *same;
    if constexpr (std::same_as<T, QStringList>)
        if (const auto* one = std::get_if<QString>(&old))
            return QStringList{*one};
    if constexpr (std::same_as<T, QString>)
        if (const auto* several = std::get_if<QStringList>(&old); several && !several->isEmpty())
            return several->first();
    return std::nullopt;
}

/// The case of this name; nothing when the predicate has none.
template <typename Predicate>
std::optional<Predicate> predicateNamed(QStringView name, const QList<Operand>& before,
                                        const Beginning& beginning) {
    std::optional<Predicate> result;
    const auto tryCase = [&]<typename Case>(Case asked) {
        if (result || name != QLatin1StringView(Case::key))
            return;
        [&]<std::size_t... I>(std::index_sequence<I...>) {
            ((std::get<I>(asked.values) =
                  carriedOver<std::tuple_element_t<I, decltype(asked.values)>>(before, I).value_or(
                      beginning.value<std::tuple_element_t<I, decltype(asked.values)>>())),
             ...);
        }
        (std::make_index_sequence<std::tuple_size_v<decltype(asked.values)>>());
        result = std::move(asked);
    };
    [&]<std::size_t... I>(std::index_sequence<I...>) {
        (tryCase(std::variant_alternative_t<I, Predicate>()), ...);
    }
    (std::make_index_sequence<std::variant_size_v<Predicate>>());
    return result;
}

/// Of a kind of rule, the predicate to begin with: what is asked most, else the first.
template <typename Predicate>
QString usualPredicate() {
    for (const char* name : json::caseNames<Predicate>())
        for (const auto* usual : {"contains", "isAbove", "isWithinLast"})
            if (QLatin1StringView(name) == QLatin1StringView(usual))
                return QLatin1StringView(name);
    return QLatin1StringView(json::caseNames<Predicate>()[0]);
}

/// Calls `visit` with an empty rule of each kind, in the order of the vocabulary.
template <typename Visit>
void forEachKind(Visit visit) {
    [&]<std::size_t... I>(std::index_sequence<I...>) {
        (visit(std::variant_alternative_t<I, SmartFolderAnyRule::variant>()), ...);
    }
    (std::make_index_sequence<std::variant_size_v<SmartFolderAnyRule::variant>>());
}

/// The value of one operand; one of another type than the operand's changes nothing.
SmartFolderRule withOperand(const SmartFolderRule& rule, qsizetype place, const Operand& value) {
    const auto set = [&](auto& asked) {
        qsizetype i = 0;
        std::apply(
            [&](auto&... values) {
                [[maybe_unused]] const auto setOne = [&](auto& to) {
                    if (i++ == place)
                        if (const auto* same =
                                std::get_if<std::remove_reference_t<decltype(to)>>(&value))
                            to = *same;
                };
                (setOne(values), ...);
            },
            asked.values);
    };
    return changed(rule, [&](auto& r) { std::visit(set, r.predicate); });
}

// ---- words

QString titleOf(const QStringList& words, const QString& word) {
    // A word of another vocabulary is shown as it is.
    return words.contains(word) ? smartFolderTitle(word) : word;
}

template <typename Names>
QList<SmartFolderWord> menuOf(const Names& names, const QString& chosen,
                              QString (*title)(QStringView)) {
    QList<SmartFolderWord> result;
    for (const auto& name : names) {
        const QString word = QLatin1StringView(name);
        result.append({word, title(word), word == chosen});
    }
    return result;
}

template <typename E>
QList<SmartFolderWord> menuOf(E chosen, QString (*title)(QStringView) = smartFolderTitle) {
    QList<const char*> names;
    for (const auto& [value, name] : json::RawValues<E>::values)
        names.append(name);
    return menuOf(names, json::rawValue(chosen), title);
}

} // namespace

SmartFolderDraft::SmartFolderDraft(SmartFolderDefinition definition, SmartFolderTyping typing,
                                   Instant now)
    : _definition(std::move(definition))
    , _typing(std::move(typing))
    , _today(_typing.instant(_typing.day(now), Edge::start).value_or(now)) {}

QList<SmartFolderValidationIssue> SmartFolderDraft::issues() const {
    SmartFolderDefinition judged = _definition;
    for (SmartFolderRule& rule : judged.rules)
        for (const auto& [id, operand] : _unread.keys())
            if (id == rule.id())
                rule = SmartFolderTextRule{id, {}, predicate::Contains()};
    if (_unreadLimit)
        judged.resultLimit = 0;
    return validationIssues(judged);
}

// ---- beside the rules

QList<SmartFolderWord> SmartFolderDraft::matchModes() const {
    return menuOf(_definition.matchMode, smartFolderPhrase);
}

void SmartFolderDraft::setMatchMode(const QString& word) {
    if (const auto mode = json::fromRawValue<SmartFolderMatchMode>(word))
        _definition.matchMode = *mode;
}

QList<SmartFolderWord> SmartFolderDraft::sortFields() const {
    QList<const char*> names;
    for (const auto field : SmartFolderSortField::all())
        names.append(field.row().rawValue);
    return menuOf(names, _definition.sort.field.rawValue(), smartFolderTitle);
}

void SmartFolderDraft::setSortField(const QString& word) {
    if (const auto field = SmartFolderSortField::named(word))
        _definition.sort.field = *field;
}

QList<SmartFolderWord> SmartFolderDraft::sortDirections() const {
    return menuOf(_definition.sort.direction);
}

void SmartFolderDraft::setSortDirection(const QString& word) {
    if (const auto direction = json::fromRawValue<SmartFolderSortDirection>(word))
        _definition.sort.direction = *direction;
}

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
    if (const auto limit = _typing.integer(text)) {
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
    const QString predicate = predicateOf(rule);
    const QStringList words = wordsOf(rule);
    SmartFolderRuleRow row{.id = rule.id(),
                           .field = smartFolderTitle(rule.fieldName()),
                           .predicate = smartFolderPhrase(predicate),
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
                    add(Kind::number, _typing.text(value));
                else if constexpr (std::same_as<T, qint64>)
                    add(Kind::number, QString::number(value));
                else if constexpr (std::same_as<T, bool>)
                    add(Kind::choice, smartFolderTitle(value ? u"true" : u"false"));
                else if constexpr (std::same_as<T, Instant>)
                    add(Kind::date, _typing.text(value, edgeOf(predicate, row.operands.size())));
                else
                    add(Kind::choice, smartFolderPhrase(json::rawValue(value)));
            },
            operand);
    }
    // Values that do not go together: low and high.
    if (!isOneMarked && !rule.isComplete())
        for (SmartFolderOperandRow& operand : row.operands)
            operand.needsInput = true;
    return row;
}

void SmartFolderDraft::forgetTyped(const SmartFolderRule& rule) {
    for (qsizetype operand = 0; operand < operandsOf(rule).size(); ++operand)
        _unread.remove({rule.id(), operand});
}

void SmartFolderDraft::replace(qsizetype place, SmartFolderRule with) {
    SmartFolderRule& rule = _definition.rules[place];
    forgetTyped(rule);
    // A day stays the same day, whichever of its edges is compared with.
    const QList<Operand> operands = operandsOf(with);
    for (qsizetype i = 0; i < operands.size(); ++i)
        if (const auto* instant = std::get_if<Instant>(&operands.at(i)))
            with = withOperand(with, i, _typing.onEdge(*instant, edgeOf(predicateOf(with), i)));
    rule = std::move(with);
}

void SmartFolderDraft::insertRule(qsizetype place, const QUuid& id) {
    SmartFolderRule rule = SmartFolderTextRule{id, "displayName", predicate::Contains()};
    _definition.rules.insert(std::clamp<qsizetype>(place, 0, ruleCount()), rule);
}

void SmartFolderDraft::removeRule(qsizetype place) {
    if (!has(place))
        return;
    forgetTyped(_definition.rules.at(place));
    _definition.rules.removeAt(place);
}

QList<SmartFolderWord> SmartFolderDraft::fields(qsizetype place) const {
    QList<SmartFolderWord> result;
    const QString chosen = has(place) ? _definition.rules.at(place).fieldName() : QString();
    forEachKind([&]<typename Rule>(const Rule&) {
        if (!result.isEmpty())
            result.append(SmartFolderWord());
        for (const auto field : SmartFolderField<KindOf<Rule>>::all())
            result.append(
                {field.rawValue(), smartFolderTitle(field.rawValue()), field.rawValue() == chosen});
    });
    return result;
}

void SmartFolderDraft::setField(qsizetype place, const QString& word) {
    if (!has(place) || word == _definition.rules.at(place).fieldName())
        return;
    const SmartFolderRule before = _definition.rules.at(place);
    forEachKind([&]<typename Rule>(Rule rule) {
        const auto field = SmartFolderField<KindOf<Rule>>::named(word);
        if (!field)
            return;
        rule.id = before.id();
        rule.field = *field;
        const Beginning beginning{wordsOf(rule), _today};
        // Another field's texts and numbers may serve; its words do not.
        const bool isAlike = std::holds_alternative<Rule>(before.value()) && beginning.words.isEmpty();
        const QList<Operand> operands = isAlike ? operandsOf(before) : QList<Operand>();
        using Predicate = decltype(rule.predicate);
        auto same = predicateNamed<Predicate>(predicateOf(before), operands, beginning);
        rule.predicate =
            same ? *std::move(same)
                 : *predicateNamed<Predicate>(usualPredicate<Predicate>(), operands, beginning);
        replace(place, rule);
    });
}

QList<SmartFolderWord> SmartFolderDraft::predicates(qsizetype place) const {
    if (!has(place))
        return {};
    const SmartFolderRule& rule = _definition.rules.at(place);
    return std::visit(
        [&](const auto& r) {
            return menuOf(json::caseNames<decltype(r.predicate)>(), predicateOf(rule),
                          smartFolderPhrase);
        },
        rule.value());
}

void SmartFolderDraft::setPredicate(qsizetype place, const QString& word) {
    if (!has(place) || word == predicateOf(_definition.rules.at(place)))
        return;
    const SmartFolderRule rule = _definition.rules.at(place);
    const QList<Operand> before = operandsOf(rule);
    const Beginning beginning{wordsOf(rule), _today};
    replace(place, changed(rule, [&](auto& r) {
                if (auto found = predicateNamed<decltype(r.predicate)>(word, before, beginning))
                    r.predicate = *std::move(found);
            }));
}

// ---- operands

QList<SmartFolderWord> SmartFolderDraft::choices(qsizetype place, qsizetype operand) const {
    if (!has(place) || operand < 0 || operand >= operandsOf(_definition.rules.at(place)).size())
        return {};
    const SmartFolderRule& rule = _definition.rules.at(place);
    const Operand value = operandsOf(rule).at(operand);
    if (const auto* unit = std::get_if<Unit>(&value))
        return menuOf(*unit, smartFolderPhrase);
    if (const auto* isTrue = std::get_if<bool>(&value))
        return {{QStringLiteral("true"), smartFolderTitle(u"true"), *isTrue},
                {QStringLiteral("false"), smartFolderTitle(u"false"), !*isTrue}};
    const auto* one = std::get_if<QString>(&value);
    const auto* several = std::get_if<QStringList>(&value);
    const QStringList words = wordsOf(rule);
    if (words.isEmpty() || (!one && !several))
        return {};
    const QStringList chosen = several ? *several : QStringList{*one};
    QStringList all = words;
    for (const QString& word : chosen)
        if (!all.contains(word) && !word.isEmpty())
            all.append(word);
    QList<SmartFolderWord> result;
    for (const QString& word : std::as_const(all))
        result.append({word, titleOf(words, word), chosen.contains(word)});
    return result;
}

void SmartFolderDraft::choose(qsizetype place, qsizetype operand, const QString& word) {
    const auto offered = choices(place, operand);
    if (std::ranges::find(offered, word, &SmartFolderWord::word) == offered.end() || word.isEmpty())
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
        !choices(place, operand).isEmpty())
        return;
    const SmartFolderRule& rule = _definition.rules.at(place);
    const auto read = std::visit(
        [&]<typename T>(const T&) -> std::optional<Operand> {
            if constexpr (std::same_as<T, QString>)
                return text;
            else if constexpr (std::same_as<T, double>)
                return _typing.number(text);
            else if constexpr (std::same_as<T, qint64>)
                return _typing.integer(text);
            else if constexpr (std::same_as<T, Instant>)
                return _typing.instant(text, edgeOf(predicateOf(rule), operand));
            else
                return std::nullopt;
        },
        operandsOf(rule).at(operand));
    if (!read) {
        _unread.insert({rule.id(), operand}, text);
        return;
    }
    _unread.remove({rule.id(), operand});
    _definition.rules[place] = withOperand(rule, operand, *read);
}

void SmartFolderDraft::visitValues(qsizetype place, qsizetype operand,
                                   const SmartFolderFactsList& facts, const FileSystem& files,
                                   const std::function<bool(const QString&)>& visit) const {
    if (!has(place) || row(place).operands.value(operand).kind != SmartFolderOperandRow::Kind::text ||
        operand >= operandsOf(_definition.rules.at(place)).size())
        return;
    std::visit(
        [&]<typename Rule>(const Rule& rule) {
            if constexpr (std::same_as<typename KindOf<Rule>::Fact, QString>)
                for (const auto& one : facts)
                    if (const auto value = rule.field.row().read({*one, files});
                        value && !value->isEmpty() && !visit(*value))
                        return;
        },
        _definition.rules.at(place).value());
}

QStringList SmartFolderDraft::suggestions(qsizetype place, qsizetype operand,
                                          const SmartFolderFactsList& facts,
                                          const FileSystem& files) const {
    QHash<QString, qsizetype> counts;
    visitValues(place, operand, facts, files, [&](const QString& value) {
        ++counts[value];
        return true;
    });
    QStringList values = counts.keys();
    std::ranges::sort(values, [&](const QString& a, const QString& b) {
        return counts[a] != counts[b] ? counts[a] > counts[b] : compareNumeric(a, b) < 0;
    });
    return values.first(std::min(values.size(), maximumSuggestions));
}

bool SmartFolderDraft::hasSuggestions(qsizetype place, qsizetype operand,
                                      const SmartFolderFactsList& facts,
                                      const FileSystem& files) const {
    bool isAny = false;
    visitValues(place, operand, facts, files, [&](const QString&) {
        isAny = true;
        return false;
    });
    return isAny;
}

} // namespace tessellar
