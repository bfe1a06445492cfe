#include "smartfolders/smart_folder_evaluator.h"

#include "smartfolders/smart_folder_facts_index.h"
#include "smartfolders/smart_folder_rule.h"

#include <algorithm>

namespace tessellar {

namespace {

using namespace predicate;

/// From `low` inclusive to `high`, which is included if it says so.
struct Range {
    Instant low;
    Instant high;
    bool withHigh = false;

    bool contains(Instant value) const {
        return low <= value && (value < high || (withHigh && value == high));
    }
};

constexpr CalendarUnit calendarUnit(SmartFolderRelativeDateUnit unit) {
    switch (unit) {
    case SmartFolderRelativeDateUnit::days:
        return CalendarUnit::day;
    case SmartFolderRelativeDateUnit::weeks:
        return CalendarUnit::week;
    case SmartFolderRelativeDateUnit::months:
        break;
    }
    return CalendarUnit::month;
}

/// Compiles predicates into tests of known, prepared facts. Operands are prepared once.
class Tests {
public:
    Tests(const SmartFolderFactsIndex& index, Instant now, const Calendar& calendar)
        : _index(index), _now(now), _calendar(calendar) {}

    /// Nothing is within a range that the calendar cannot compute.
    static auto within(std::optional<Range> range) {
        return [range](Instant v) { return range && range->contains(v); };
    }

    // Texts and choices: one fact and one operand, both normalized.
    auto operator()(const IsExactly& p) const {
        return [x = normalized(p.value())](const ComparableText& v) { return v.text == x; };
    }
    auto operator()(const Contains& p) const {
        return [x = ComparableText(normalized(p.value()))](const ComparableText& v) {
            return v.contains(x);
        };
    }
    auto operator()(const DoesNotContain& p) const {
        return [x = ComparableText(normalized(p.value()))](const ComparableText& v) {
            return !v.contains(x);
        };
    }
    auto operator()(const BeginsWith& p) const {
        return [x = ComparableText(normalized(p.value()))](const ComparableText& v) {
            return v.beginsWith(x);
        };
    }
    auto operator()(const EndsWith& p) const {
        return [x = ComparableText(normalized(p.value()))](const ComparableText& v) {
            return v.endsWith(x);
        };
    }
    auto operator()(const IsValue<QString>& p) const {
        return [x = normalized(p.value())](const QStringList& values) { return values.contains(x); };
    }
    auto operator()(const IsAnyOf& p) const {
        QSet<QString> wanted;
        for (const QString& value : p.value())
            wanted.insert(normalized(value));
        return [wanted = std::move(wanted)](const QStringList& values) {
            return std::ranges::any_of(values, [&](const QString& v) { return wanted.contains(v); });
        };
    }
    auto operator()(const IsNot<QString>& p) const {
        struct Differs {
            QString x;
            bool operator()(const ComparableText& v) const { return v.text != x; }
            bool operator()(const QStringList& values) const { return !values.contains(x); }
        };
        return Differs{normalized(p.value())};
    }

    // Numbers.
    auto operator()(const IsEqualTo<double>& p) const {
        return [x = p.value()](double v) { return v == x; };
    }
    auto operator()(const IsAbove<double>& p) const {
        return [x = p.value()](double v) { return v > x; };
    }
    auto operator()(const IsBelow<double>& p) const {
        return [x = p.value()](double v) { return v < x; };
    }
    auto operator()(const IsBetween<double>& p) const {
        return [p](double v) { return p.value<0>() <= v && v <= p.value<1>(); };
    }

    // Versions.
    auto operator()(const IsEqualTo<QString>& p) const {
        return [x = versionKey(p.value())](const std::u16string& v) { return v == x; };
    }
    auto operator()(const IsAbove<QString>& p) const {
        return [x = versionKey(p.value())](const std::u16string& v) { return v > x; };
    }
    auto operator()(const IsBelow<QString>& p) const {
        return [x = versionKey(p.value())](const std::u16string& v) { return v < x; };
    }
    auto operator()(const IsBetween<QString>& p) const {
        return [low = versionKey(p.value<0>()), high = versionKey(p.value<1>())](
                   const std::u16string& v) { return low <= v && v <= high; };
    }

    // Dates.
    auto operator()(const IsBefore& p) const {
        return [x = p.value()](Instant v) { return v < x; };
    }
    auto operator()(const IsAfter& p) const {
        return [x = p.value()](Instant v) { return v > x; };
    }
    auto operator()(const IsBetween<Instant>& p) const {
        return within(Range{p.value<0>(), p.value<1>(), true});
    }
    auto operator()(const IsToday&) const { return within(interval(CalendarUnit::day, false)); }
    auto operator()(const IsThisWeek&) const { return within(interval(CalendarUnit::week, true)); }
    auto operator()(const IsThisMonth&) const { return within(interval(CalendarUnit::month, true)); }
    auto operator()(const IsThisYear&) const { return within(interval(CalendarUnit::year, true)); }
    auto operator()(const IsWithinLast& p) const {
        const auto low = _calendar.startOfDay(_now, calendarUnit(p.value<1>()), -p.value<0>());
        const auto high = _calendar.startOfDay(_now, CalendarUnit::day, 1);
        return within(low && high ? std::optional(Range{*low, *high}) : std::nullopt);
    }

    // Booleans.
    auto operator()(const IsValue<bool>& p) const {
        return [x = p.value()](bool v) { return v == x; };
    }
    auto operator()(const IsNot<bool>& p) const {
        return [x = p.value()](bool v) { return v != x; };
    }

    // A known fact is never unknown.
    auto operator()(const IsUnknown&) const {
        return [](const auto&) { return false; };
    }

private:
    QString normalized(const QString& text) const { return _index.normalized(text); }
    static std::u16string versionKey(const QString& version) {
        return SmartFolderFactsIndex::versionSortKey(QStringView(version).trimmed());
    }

    std::optional<Range> interval(CalendarUnit unit, bool withEnd) const {
        const auto interval = _calendar.interval(unit, _now);
        return interval ? std::optional(Range{interval->start, interval->end, withEnd}) : std::nullopt;
    }
    const SmartFolderFactsIndex& _index;
    Instant _now;
    const Calendar& _calendar;
};

/// One rule's result for pending and missing facts, and for each of its field's values.
struct Verdicts {
    std::vector<char> matches; ///< of a pending and a missing fact, then by slot
    const std::vector<int>* slots = nullptr;
    bool isUndecidedSomewhere = false;
    bool isWaitingSomewhere = false;

    char of(std::size_t place) const {
        return matches[static_cast<std::size_t>((*slots)[place] - SmartFolderFactsIndex::pending)];
    }
};

template <typename Kind>
Verdicts judge(const SmartFolderRuleOf<Kind>& rule, const SmartFolderFactsIndex& index,
               const Tests& tests) {
    const auto& column = index.column(rule.field);
    const bool missingMatches = std::holds_alternative<IsUnknown>(rule.predicate);
    Verdicts verdicts{.matches = std::vector<char>(column.values.size() + 2, false),
                      .slots = &column.slots,
                      .isUndecidedSomewhere =
                          column.hasPending || (column.hasMissing && !missingMatches),
                      .isWaitingSomewhere = column.hasPending};
    verdicts.matches[SmartFolderFactsIndex::missing - SmartFolderFactsIndex::pending] = missingMatches;
    std::visit(
        [&](const auto& asked) {
            std::ranges::transform(
                column.values, verdicts.matches.begin() - SmartFolderFactsIndex::pending, tests(asked));
        },
        rule.predicate);
    return verdicts;
}

/// The applications that a definition selects, as positions in the index.
struct Selection {
    std::vector<int> places; ///< sorted and limited
    QSet<QUuid> unknownRuleIDs;
    QSet<QUuid> waitingRuleIDs;
};

Selection select(const SmartFolderDefinition& definition, const SmartFolderFactsIndex& index,
                 Instant now, const Calendar& calendar, const std::stop_token& stop) {
    Selection selection;
    if (stop.stop_requested() || !validationIssues(definition).isEmpty())
        return selection;

    const std::size_t count = index.facts().size();
    const bool all = definition.matchMode == SmartFolderMatchMode::all;
    const Tests tests(index, now, calendar);
    std::vector<char> included(count, all);
    for (const SmartFolderRule& rule : definition.rules) {
        if (stop.stop_requested())
            return {};
        const Verdicts verdicts =
            std::visit([&](const auto& r) { return judge(r, index, tests); }, rule.value());
        for (std::size_t place = 0; place < count; ++place) {
            const char matches = verdicts.of(place);
            included[place] = all ? included[place] & matches : included[place] | matches;
        }
        if (verdicts.isUndecidedSomewhere)
            selection.unknownRuleIDs.insert(rule.id());
        if (verdicts.isWaitingSomewhere)
            selection.waitingRuleIDs.insert(rule.id());
    }

    const auto found = static_cast<qint64>(std::ranges::count(included, char(true)));
    const qint64 limit = std::min(definition.resultLimit.value_or(found), found);
    selection.places.reserve(static_cast<std::size_t>(limit));
    for (const int place : index.order(definition.sort.field, definition.sort.direction)) {
        if (static_cast<qint64>(selection.places.size()) >= limit)
            break;
        if (included[place])
            selection.places.push_back(place);
    }
    return selection;
}

} // namespace

QStringList SmartFolderEvaluation::appKeys() const {
    QStringList keys;
    keys.reserve(matches.size());
    for (const auto& facts : matches)
        keys.append(appKey(facts->entry));
    return keys;
}

bool SmartFolderEvaluation::operator==(const SmartFolderEvaluation& other) const {
    return unknownRuleIDs == other.unknownRuleIDs && waitingRuleIDs == other.waitingRuleIDs &&
           std::ranges::equal(matches, other.matches,
                              [](const auto& a, const auto& b) { return a == b || *a == *b; });
}

SmartFolderEvaluation SmartFolderEvaluator::evaluate(const SmartFolderDefinition& definition,
                                                     const SmartFolderFactsIndex& index, Instant now,
                                                     const Calendar& calendar,
                                                     const std::stop_token& stop) {
    Selection selection = select(definition, index, now, calendar, stop);
    SmartFolderEvaluation evaluation{.unknownRuleIDs = std::move(selection.unknownRuleIDs),
                                     .waitingRuleIDs = std::move(selection.waitingRuleIDs)};
    evaluation.matches.reserve(static_cast<qsizetype>(selection.places.size()));
    for (const int place : selection.places)
        evaluation.matches.append(index.facts().at(place));
    return evaluation;
}

SmartFolderEvaluation SmartFolderEvaluator::evaluate(const SmartFolderDefinition& definition,
                                                     const SmartFolderFactsList& facts,
                                                     const Locale& locale, Instant now,
                                                     const Calendar& calendar) const {
    return evaluate(definition, SmartFolderFactsIndex(facts, locale, _files), now, calendar);
}

QList<SmartFolderEvaluation>
SmartFolderEvaluator::evaluateAll(const QList<SmartFolderDefinition>& definitions,
                                  const SmartFolderFactsIndex& index, Instant now,
                                  const Calendar& calendar, const std::stop_token& stop) {
    QList<SmartFolderEvaluation> evaluations;
    evaluations.reserve(definitions.size());
    for (const SmartFolderDefinition& definition : definitions)
        evaluations.append(evaluate(definition, index, now, calendar, stop));
    return evaluations;
}

} // namespace tessellar
