#pragma once

#include "smartfolders/smart_folder_evaluator.h"
#include "smartfolders/smart_folder_facts_index.h"
#include "smartfolders/smart_folder_rule.h"

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
#include <random>

namespace tessellar::test {

using namespace Qt::Literals::StringLiterals;

/// Evaluation as one would say it, rule by rule and application by application, without any
/// preparation: what the evaluator is compared with. Facts, fields and predicates go by their words, as
/// their JSON has them.
class PlainEvaluation {
public:
    PlainEvaluation(const SmartFolderFactsList& facts, const Locale& locale, Instant now,
                    const Calendar& calendar, const FileSystem& files)
        : _locale(locale), _now(now), _calendar(calendar) {
        for (const auto& app : facts)
            _apps.push_back({app, knownOf(*app, files)});
    }

    SmartFolderEvaluation evaluate(const SmartFolderDefinition& definition) const {
        SmartFolderEvaluation result;
        if (!validationIssues(definition).isEmpty())
            return result;
        std::vector<App> matches;
        for (const App& app : _apps) {
            bool every = true;
            bool any = false;
            for (const SmartFolderRule& rule : definition.rules) {
                const std::optional<bool> match = judge(json::encode(rule).toObject(), app.known);
                if (!match)
                    result.unknownRuleIDs.insert(rule.id());
                every = every && match == true;
                any = any || match == true;
            }
            if (definition.matchMode == SmartFolderMatchMode::all ? every : any)
                matches.push_back(app);
        }
        std::ranges::stable_sort(
            matches, [&](const App& a, const App& b) { return comesBefore(a, b, definition.sort); });
        for (const App& app : matches)
            if (result.matches.size() < definition.resultLimit.value_or(matches.size()))
                result.matches.append(app.record);
        return result;
    }

private:
    struct App {
        std::shared_ptr<const SmartFolderAppFacts> record;
        QJsonObject known; ///< facts by the words of fields; those that are missing are not in it
    };

    static QJsonObject knownOf(const SmartFolderAppFacts& app, const FileSystem& files) {
        QJsonObject known = json::encode(app).toObject();
        const AppEntry& entry = app.entry;
        known[u"name"] = entry.name;
        known[u"displayName"] = entry.name;
        known[u"originalName"] = entry.originalName;
        known[u"path"] = entry.path;
        if (entry.bundleIdentifier)
            known[u"bundleIdentifier"] = *entry.bundleIdentifier;
        if (entry.category)
            known[u"category"] = *entry.category;
        if (app.architectures)
            known[u"architecture"] = known.take(u"architectures");
        known[u"permission"] = known.take(u"declaredPermissions");
        const QString folder = entry.path.sliced(0, entry.path.lastIndexOf(u'/') + 1);
        const bool isProtected =
            folder.startsWith(u"/System/") || folder.startsWith(u"/Library/Apple/");
        const bool isNested = folder.contains(u".app/", Qt::CaseInsensitive);
        const bool isThere = entry.source != AppSource::legacyImport || files.exists(entry.path);
        known[u"isProtected"] = isProtected;
        known[u"isNestedInsideApplicationBundle"] = isNested;
        known[u"isRemovable"] = !isProtected && !isNested && isThere;
        known[u"hasCustomName"] = entry.name != entry.originalName;
        return known;
    }

    QString folded(const QJsonValue& text) const { return _locale.folded(text.toString().trimmed()); }

    /// A rule as {KIND: {"field": FIELD, "predicate": {ASKED: {"_0": X, "_1": Y}}}}.
    std::optional<bool> judge(const QJsonObject& rule, const QJsonObject& known) const {
        const QString kind = rule.begin().key();
        const QJsonValue body = rule.begin().value();
        const QJsonObject predicate = body[u"predicate"].toObject();
        const QString asked = predicate.begin().key();
        const QJsonValue x = predicate.begin().value()[u"_0"];
        const QJsonValue y = predicate.begin().value()[u"_1"];
        const QJsonValue fact = known.value(body[u"field"].toString());
        if (asked == u"isUnknown")
            return fact.isUndefined();
        if (fact.isUndefined())
            return std::nullopt;
        if (kind == u"boolean")
            return (fact == x) == (asked == u"isValue");
        if (kind == u"choice")
            return hasAny(fact, x) == (asked != u"isNot");
        if (kind == u"text")
            return holds(folded(fact), asked, folded(x));
        if (asked.startsWith(u"isThis") || asked == u"isToday" || asked == u"isWithinLast")
            return isNear(Instant{fact.toDouble()}, asked, x, y);
        const auto order = [&](const QJsonValue& value) -> std::partial_ordering {
            if (kind == u"version")
                return compareNumeric(fact.toString().trimmed(), value.toString().trimmed());
            return fact.toDouble() <=> value.toDouble();
        };
        return asked == u"isEqualTo"                         ? order(x) == 0
               : asked == u"isAbove" || asked == u"isAfter"  ? order(x) > 0
               : asked == u"isBelow" || asked == u"isBefore" ? order(x) < 0
                                                             : order(x) >= 0 && order(y) <= 0;
    }
    static QJsonArray listOf(const QJsonValue& value) {
        return value.isArray() ? value.toArray() : QJsonArray{value};
    }
    bool hasAny(const QJsonValue& values, const QJsonValue& wanted) const {
        for (const QJsonValue value : listOf(values))
            for (const QJsonValue one : listOf(wanted))
                if (folded(value) == folded(one))
                    return true;
        return false;
    }
    static bool holds(const QString& v, const QString& asked, const QString& x) {
        return asked == u"isExactly"        ? v == x
               : asked == u"isNot"          ? v != x
               : asked == u"contains"       ? v.indexOf(x) >= 0
               : asked == u"doesNotContain" ? v.indexOf(x) < 0
               : asked == u"beginsWith"     ? v.left(x.size()) == x
                                            : v.right(x.size()) == x;
    }
    bool isNear(Instant v, const QString& asked, const QJsonValue& amount,
                const QJsonValue& unit) const {
        if (asked == u"isWithinLast") {
            const auto units = unit == u"days"_s    ? CalendarUnit::day
                               : unit == u"weeks"_s ? CalendarUnit::week
                                                    : CalendarUnit::month;
            return *_calendar.startOfDay(_now, units, -amount.toInteger()) <= v &&
                   v < *_calendar.startOfDay(_now, CalendarUnit::day, 1);
        }
        const auto interval = *_calendar.interval(asked == u"isToday"       ? CalendarUnit::day
                                                  : asked == u"isThisWeek"  ? CalendarUnit::week
                                                  : asked == u"isThisMonth" ? CalendarUnit::month
                                                                            : CalendarUnit::year,
                                                  _now);
        return interval.start <= v && (asked == u"isToday" ? v < interval.end : v <= interval.end);
    }

    bool comesBefore(const App& a, const App& b, const SmartFolderSortDescriptor& sort) const {
        const QString field = sort.field.rawValue();
        const QJsonValue x = a.known.value(field);
        const QJsonValue y = b.known.value(field);
        if (x.isUndefined() != y.isUndefined())
            return y.isUndefined();
        if (const auto order = compare(field, x, y); order != 0)
            return (order < 0) == (sort.direction == SmartFolderSortDirection::ascending);
        const AppEntry& one = a.record->entry;
        const AppEntry& other = b.record->entry;
        if (const auto names = _locale.compareLoosely(one.name, other.name); names != 0)
            return names < 0;
        return folded(appKey(one)) < folded(appKey(other));
    }
    std::partial_ordering compare(const QString& field, const QJsonValue& x,
                                  const QJsonValue& y) const {
        static const QStringList states{u"updateAvailable"_s, u"upToDate"_s, u"failed"_s,
                                        u"unsupported"_s, u"notChecked"_s};
        if (field == u"updateStatus")
            return states.indexOf(x.toString()) <=> states.indexOf(y.toString());
        if (field == u"version" || field == u"build")
            return compareNumeric(x.toString(), y.toString());
        if (x.isDouble())
            return x.toDouble() <=> y.toDouble();
        return _locale.compareLoosely(x.toString(), y.toString());
    }

    Locale _locale;
    Instant _now;
    Calendar _calendar;
    std::vector<App> _apps;
};

/// Facts and definitions from a seed. Values come from small pools, so that rules hit, miss and tie.
class SmartFolderGenerator {
public:
    explicit SmartFolderGenerator(unsigned seed) : _engine(seed) {}

    int below(int bound) { return std::uniform_int_distribution<int>(0, bound - 1)(_engine); }
    template <typename List>
    auto pick(const List& list) {
        return list[below(static_cast<int>(list.size()))];
    }

    SmartFolderFactsList list(int count) {
        SmartFolderFactsList result;
        for (int i = 0; i < count; ++i)
            result.append(facts());
        return result;
    }
    /// Valid, but for one in a few.
    SmartFolderDefinition definition() {
        SmartFolderDefinition d{
            .id = id(),
            .name = u"Generated"_s,
            .customSymbolName = {},
            .modifiedAt = {},
            .matchMode = value<SmartFolderMatchMode>(),
            .rules = {},
            .sort = {pick(SmartFolderSortField::all()), value<SmartFolderSortDirection>()},
            .resultLimit = {}};
        if (below(4) == 0)
            d.resultLimit = 1 + below(12);
        static constexpr std::array makeRule{&SmartFolderGenerator::ruleOf<SmartFolderTextKind>,
                                             &SmartFolderGenerator::ruleOf<SmartFolderChoiceKind>,
                                             &SmartFolderGenerator::ruleOf<SmartFolderNumberKind>,
                                             &SmartFolderGenerator::ruleOf<SmartFolderVersionKind>,
                                             &SmartFolderGenerator::ruleOf<SmartFolderDateKind>,
                                             &SmartFolderGenerator::ruleOf<SmartFolderBooleanKind>};
        for (int i = 1 + below(3); i > 0; --i)
            d.rules.append((this->*pick(makeRule))());
        return d;
    }

private:
    QUuid id() { return QUuid(++_last, 7, 0x4000, 0x80, 0, 0, 0, 0, 0, 0, 0); }
    QString text() {
        static const QStringList pool =
            QStringList{u"x"_s.repeated(3000)} +
            u"Café| CAFE |cafe\u0301 10|Café 9|Ｃａｆｅ|Microsoft|microsoft "
            u"|İstanbul|ısı|Straße|STRASSE 2|"
            "ガイド|שלום|مرحبا 3|ø|camera|Photos|MACOS|arm64|failed|e|1.9|1.10| 1.010|10.0b2|1.0|1.0.0|\u0301"_s
                .split(u'|');
        return pick(pool);
    }
    std::shared_ptr<const SmartFolderAppFacts> facts() {
        static const QStringList paths{u"/Applications/%1.app"_s, u"/System/Applications/%1.app"_s,
                                       u"/Library/Apple/%1.app"_s, u"/Applications/Suite.APP/%1.app"_s,
                                       u"/Systems/%1.app"_s};
        SmartFolderAppFacts f;
        f.entry.id = id();
        f.entry.name = text();
        f.entry.originalName = below(3) ? f.entry.name : text();
        fill(f.entry.bundleIdentifier, f.entry.category);
        f.entry.isDuplicateBundleIdentifier = below(2);
        f.entry.path = pick(paths).arg(below(4));
        f.entry.source = below(3) ? AppSource::local : AppSource::legacyImport;
        fill(f.developer, f.publisher, f.signingTeamID, f.version, f.build, f.installedDate,
             f.firstSeenDate, f.applicationLocation, f.installSource, f.distributionChannel, f.platform,
             f.architectures, f.minimumMacOSVersion, f.lastUsedDate, f.launchCount, f.isNeverUsed,
             f.updateStatus, f.hasCustomIcon);
        for (int i = below(3); i > 0; --i)
            f.declaredPermissions.append(value<SmartFolderPermission>());
        return std::make_shared<const SmartFolderAppFacts>(std::move(f));
    }
    template <typename... T>
    void fill(std::optional<T>&... facts) {
        ((below(4) ? facts.emplace(value<T>()) : (facts.reset(), T())), ...);
    }

    template <typename T>
    T value() {
        if constexpr (std::is_enum_v<T>)
            return pick(json::RawValues<T>::values).first;
        else if constexpr (std::same_as<T, bool>)
            return below(2);
        else if constexpr (std::is_arithmetic_v<T>)
            return below(6);
        else if constexpr (std::same_as<T, Instant>)
            return instant();
        else if constexpr (std::same_as<T, QString>)
            return text();
        else
            return T{text(), text()};
    }
    /// Around the borders of days, weeks, months and years.
    Instant instant() {
        static constexpr std::array borders{"2026-11-14T00:00:00Z", "2026-11-15T00:00:00Z",
                                            "2026-11-08T00:00:00Z", "2026-11-01T00:00:00Z",
                                            "2026-12-01T00:00:00Z", "2026-01-01T00:00:00Z",
                                            "2027-01-01T00:00:00Z", "2026-10-14T00:00:00Z"};
        return *Instant::fromIso8601(QString::fromLatin1(pick(borders))) +
               std::chrono::duration<double>((below(3) - 1) * 0.5);
    }
    template <typename Kind>
    SmartFolderRule ruleOf() {
        return SmartFolderRuleOf<Kind>{id(), pick(SmartFolderField<Kind>::all()),
                                       asked(typename Kind::Predicate())};
    }
    /// One of the variant's cases.
    template <typename... Case>
    std::variant<Case...> asked(std::variant<Case...> result) {
        int left = below(sizeof...(Case));
        (void)((left-- == 0 && (result = made<Case>(), true)) || ...);
        return result;
    }
    template <typename Case>
    Case made() {
        Case result;
        std::apply([&](auto&... values) { ((values = value<std::decay_t<decltype(values)>>()), ...); },
                   result.values);
        return result;
    }

    std::mt19937 _engine;
    unsigned _last = 0;
};

} // namespace tessellar::test
