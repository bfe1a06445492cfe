#include "smartfolders/smart_folder_rule_parts.h"

#include "smartfolders/smart_folder_rule.h"

#include <algorithm>

namespace tessellar {
namespace {

using Operand = SmartFolderOperand;

constexpr qint64 usualAmount = 7;

template <typename Rule>
using KindOf = typename Rule::Kind;

/// Initial operands of a newly chosen predicate.
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

/// Carries over an old operand of this type: the one at the same position, else the last.
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

/// The predicate's case with this name; nullopt if there is none.
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

/// The initial predicate for a kind of rule: the most common one, else the first.
template <typename Predicate>
QString usualPredicate() {
    for (const char* name : json::caseNames<Predicate>())
        for (const auto* usual : {"contains", "isAbove", "isWithinLast"})
            if (QLatin1StringView(name) == QLatin1StringView(usual))
                return QLatin1StringView(name);
    return QLatin1StringView(json::caseNames<Predicate>()[0]);
}

/// Calls `visit` with an empty rule of each kind, in the vocabulary's order.
template <typename Visit>
void forEachKind(Visit visit) {
    [&]<std::size_t... I>(std::index_sequence<I...>) {
        (visit(std::variant_alternative_t<I, SmartFolderAnyRule::variant>()), ...);
    }
    (std::make_index_sequence<std::variant_size_v<SmartFolderAnyRule::variant>>());
}

} // namespace

// ---- what a rule is made of

QList<QStringList> smartFolderFieldNames() {
    QList<QStringList> result;
    forEachKind([&]<typename Rule>(const Rule&) {
        QStringList names;
        for (const auto field : SmartFolderField<KindOf<Rule>>::all())
            names.append(field.rawValue());
        result.append(names);
    });
    return result;
}

QStringList predicateNames(const SmartFolderRule& rule) {
    QStringList result;
    std::visit(
        [&](const auto& r) {
            for (const char* name : json::caseNames<std::remove_cvref_t<decltype(r.predicate)>>())
                result.append(QLatin1StringView(name));
        },
        rule.value());
    return result;
}

QString predicateName(const SmartFolderRule& rule) {
    const auto index = std::visit([](const auto& r) { return r.predicate.index(); }, rule.value());
    return predicateNames(rule).at(static_cast<qsizetype>(index));
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

QStringList wordsOf(const SmartFolderRule& rule) {
    const auto* choice = std::get_if<SmartFolderChoiceRule>(&rule.value());
    return choice && choice->field.row().words ? choice->field.row().words() : QStringList();
}

QStringList wordsOf(const SmartFolderRule& rule, const SmartFolderFactsList& facts,
                    const FileSystem& files) {
    QStringList words = wordsOf(rule);
    const auto* choice = std::get_if<SmartFolderChoiceRule>(&rule.value());
    if (!choice || !choice->field.row().isOpen)
        return words;
    QStringList others;
    for (const auto& one : facts)
        for (const QString& word : choice->field.row().read({*one, files}).value_or(QStringList()))
            if (!words.contains(word) && !others.contains(word))
                others.append(word);
    others.sort();
    return words + others;
}

void visitTexts(const SmartFolderRule& rule, const SmartFolderFactsList& facts, const FileSystem& files,
                const std::function<bool(const QString&)>& visit) {
    std::visit(
        [&]<typename Rule>(const Rule& r) {
            if constexpr (std::same_as<typename KindOf<Rule>::Fact, QString>)
                for (const auto& one : facts)
                    if (const auto value = r.field.row().read({*one, files});
                        value && !value->isEmpty() && !visit(*value))
                        return;
        },
        rule.value());
}

// ---- other rules

SmartFolderRule newRule(const QUuid& id) {
    return SmartFolderTextRule{id, "displayName", predicate::Contains()};
}

SmartFolderRule withField(const SmartFolderRule& before, const QString& name, Instant today) {
    SmartFolderRule result = before;
    forEachKind([&]<typename Rule>(Rule rule) {
        const auto field = SmartFolderField<KindOf<Rule>>::named(name);
        if (!field)
            return;
        rule.id = before.id();
        rule.field = *field;
        const Beginning beginning{wordsOf(rule), today};
        // Texts and numbers may suit another field; words do not.
        const bool isAlike = std::holds_alternative<Rule>(before.value()) && beginning.words.isEmpty();
        const QList<Operand> operands = isAlike ? operandsOf(before) : QList<Operand>();
        using Predicate = decltype(rule.predicate);
        auto same = predicateNamed<Predicate>(predicateName(before), operands, beginning);
        rule.predicate =
            same ? *std::move(same)
                 : *predicateNamed<Predicate>(usualPredicate<Predicate>(), operands, beginning);
        result = rule;
    });
    return result;
}

SmartFolderRule withPredicate(const SmartFolderRule& rule, const QString& name, Instant today) {
    const QList<Operand> before = operandsOf(rule);
    const Beginning beginning{wordsOf(rule), today};
    return changed(rule, [&](auto& r) {
        if (auto found = predicateNamed<decltype(r.predicate)>(name, before, beginning))
            r.predicate = *std::move(found);
    });
}

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

} // namespace tessellar
