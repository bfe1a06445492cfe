#pragma once

#include "smartfolders/smart_folder_evaluator.h"
#include "smartfolders/smart_folder_facts_index.h"
#include "smartfolders/smart_folder_rule.h"

#include <algorithm>
#include <random>

namespace tessellar::test {

/// Evaluation as one would say it, rule by rule and application by application, without any
/// preparation: what the evaluator is compared with. Fields and predicates go by their words.
class PlainEvaluation {
public:
    PlainEvaluation(const Locale& locale, Instant now, const Calendar& calendar,
                    const FileSystem& files)
        : _locale(locale), _now(now), _calendar(calendar), _files(files) {}

    SmartFolderEvaluation evaluate(const SmartFolderDefinition& definition,
                                   const SmartFolderFactsList& facts) const {
        SmartFolderEvaluation result;
        if (!validationIssues(definition).isEmpty())
            return result;
        for (const auto& app : facts) {
            bool every = true;
            bool any = false;
            for (const SmartFolderRule& rule : definition.rules) {
                const std::optional<bool> match = std::visit(
                    [&](const auto& r) {
                        return std::visit(
                            [&](const auto& p) { return judge(r.field.rawValue(), p, *app); },
                            r.predicate);
                    },
                    rule.value());
                if (!match)
                    result.unknownRuleIDs.insert(rule.id());
                every = every && match == true;
                any = any || match == true;
            }
            if (definition.matchMode == SmartFolderMatchMode::all ? every : any)
                result.matches.append(app);
        }
        std::stable_sort(
            result.matches.begin(), result.matches.end(),
            [&](const auto& a, const auto& b) { return comesBefore(*a, *b, definition.sort); });
        if (definition.resultLimit && result.matches.size() > *definition.resultLimit)
            result.matches.resize(*definition.resultLimit);
        return result;
    }

private:
    using Facts = SmartFolderAppFacts;

    QString folded(const QString& text) const { return _locale.folded(text.trimmed()); }

    static std::optional<QString> text(const QString& field, const Facts& f) {
        const std::optional<QString> none;
        return field == u"displayName" || field == u"name" ? f.entry.name
               : field == u"originalName"                  ? f.entry.originalName
               : field == u"bundleIdentifier"              ? f.entry.bundleIdentifier
               : field == u"developer"                     ? f.developer
               : field == u"publisher"                     ? f.publisher
               : field == u"signingTeamID"                 ? f.signingTeamID
               : field == u"category"                      ? f.entry.category
               : field == u"path"                          ? f.entry.path
               : field == u"version"                       ? f.version
               : field == u"build"                         ? f.build
               : field == u"minimumMacOSVersion"           ? f.minimumMacOSVersion
                                                           : none;
    }
    static std::optional<Instant> date(const QString& field, const Facts& f) {
        return field == u"installedDate"   ? f.installedDate
               : field == u"firstSeenDate" ? f.firstSeenDate
                                           : f.lastUsedDate;
    }
    template <typename E>
    static std::optional<QStringList> raw(const std::optional<E>& value) {
        return value ? std::optional(QStringList{json::rawValue(*value)}) : std::nullopt;
    }
    static std::optional<QStringList> choice(const QString& field, const Facts& f) {
        if (field == u"permission") {
            QStringList list;
            for (const auto permission : f.declaredPermissions)
                list += json::rawValue(permission);
            return list;
        }
        return field == u"applicationLocation"   ? raw(f.applicationLocation)
               : field == u"installSource"       ? raw(f.installSource)
               : field == u"distributionChannel" ? raw(f.distributionChannel)
               : field == u"platform"            ? raw(f.platform)
               : field == u"updateStatus"        ? raw(f.updateStatus)
                                                 : f.architectures;
    }
    std::optional<bool> boolean(const QString& field, const Facts& f) const {
        const QString& path = f.entry.path;
        const bool isProtected = path.startsWith(u"/System/") || path.startsWith(u"/Library/Apple/");
        const bool isNested =
            path.sliced(0, path.lastIndexOf(u'/')).contains(u".app/", Qt::CaseInsensitive) ||
            path.sliced(0, path.lastIndexOf(u'/')).endsWith(u".app", Qt::CaseInsensitive);
        if (field == u"isProtected")
            return isProtected;
        if (field == u"isNestedInsideApplicationBundle")
            return isNested;
        if (field == u"isRemovable")
            return !isProtected && !isNested &&
                   (f.entry.source != AppSource::legacyImport || _files.exists(path));
        if (field == u"hasCustomName")
            return f.entry.name != f.entry.originalName;
        return field == u"isNeverUsed" ? f.isNeverUsed : f.hasCustomIcon;
    }

    template <json::Name name>
    std::optional<bool> judge(const QString& field, const json::Case<name>& p, const Facts& f) const {
        const std::string_view asked = p.key;
        if (asked == "isUnknown") {
            const QStringList dates{QStringLiteral("installedDate"), QStringLiteral("firstSeenDate"),
                                    QStringLiteral("lastUsedDate")};
            return dates.contains(field)      ? !date(field, f)
                   : field == u"launchCount"  ? !f.launchCount
                   : field.startsWith(u"is")  ? !boolean(field, f)
                   : field.startsWith(u"has") ? !boolean(field, f)
                   : isChoice(field)          ? !choice(field, f)
                                              : !text(field, f);
        }
        const auto value = date(field, f);
        if (!value)
            return std::nullopt;
        const auto interval = _calendar.interval(asked == "isToday"       ? CalendarUnit::day
                                                 : asked == "isThisWeek"  ? CalendarUnit::week
                                                 : asked == "isThisMonth" ? CalendarUnit::month
                                                                          : CalendarUnit::year,
                                                 _now);
        return interval->start <= *value &&
               (asked == "isToday" ? *value < interval->end : *value <= interval->end);
    }
    static bool isChoice(const QString& field) {
        return SmartFolderChoiceField::named(field).has_value();
    }
    template <json::Name name>
    std::optional<bool> judge(const QString& field, const json::Case<name, QString>& p,
                              const Facts& f) const {
        const std::string_view asked = p.key;
        if (isChoice(field)) {
            const auto values = choice(field, f);
            if (!values)
                return std::nullopt;
            bool found = false;
            for (const QString& v : *values)
                found = found || folded(v) == folded(p.value());
            return asked == "isValue" ? found : !found;
        }
        const auto fact = text(field, f);
        if (!fact)
            return std::nullopt;
        if (asked == "isEqualTo" || asked == "isAbove" || asked == "isBelow") {
            const auto order = compareNumeric(fact->trimmed(), p.value().trimmed());
            return asked == "isEqualTo" ? order == 0 : asked == "isAbove" ? order > 0 : order < 0;
        }
        const QString v = folded(*fact);
        const QString x = folded(p.value());
        return asked == "isExactly"        ? v == x
               : asked == "isNot"          ? v != x
               : asked == "contains"       ? v.indexOf(x) >= 0
               : asked == "doesNotContain" ? v.indexOf(x) < 0
               : asked == "beginsWith"     ? v.left(x.size()) == x
                                           : v.right(x.size()) == x;
    }
    std::optional<bool> judge(const QString& field, const predicate::IsAnyOf& p, const Facts& f) const {
        const auto values = choice(field, f);
        if (!values)
            return std::nullopt;
        for (const QString& v : *values)
            for (const QString& x : p.value())
                if (folded(v) == folded(x))
                    return true;
        return false;
    }
    std::optional<bool> judge(const QString& field, const predicate::IsBetween<QString>& p,
                              const Facts& f) const {
        const auto fact = text(field, f);
        if (!fact)
            return std::nullopt;
        return compareNumeric(fact->trimmed(), p.value<0>().trimmed()) >= 0 &&
               compareNumeric(fact->trimmed(), p.value<1>().trimmed()) <= 0;
    }
    template <json::Name name, typename... Rest>
    std::optional<bool> judge(const QString&, const json::Case<name, double, Rest...>& p,
                              const Facts& f) const {
        if (!f.launchCount)
            return std::nullopt;
        const std::string_view asked = p.key;
        const double v = static_cast<double>(*f.launchCount);
        const double x = p.template value<0>();
        if constexpr (sizeof...(Rest) == 1)
            return x <= v && v <= p.template value<1>();
        return asked == "isEqualTo" ? v == x : asked == "isAbove" ? v > x : v < x;
    }
    template <json::Name name, typename... Rest>
    std::optional<bool> judge(const QString& field, const json::Case<name, Instant, Rest...>& p,
                              const Facts& f) const {
        const auto v = date(field, f);
        if (!v)
            return std::nullopt;
        const Instant x = p.template value<0>();
        if constexpr (sizeof...(Rest) == 1)
            return x <= *v && *v <= p.template value<1>();
        return std::string_view(p.key) == "isBefore" ? *v < x : *v > x;
    }
    std::optional<bool> judge(const QString& field, const predicate::IsWithinLast& p,
                              const Facts& f) const {
        const auto v = date(field, f);
        if (!v)
            return std::nullopt;
        const auto unit = p.value<1>() == SmartFolderRelativeDateUnit::days    ? CalendarUnit::day
                          : p.value<1>() == SmartFolderRelativeDateUnit::weeks ? CalendarUnit::week
                                                                               : CalendarUnit::month;
        return *_calendar.startOfDay(_now, unit, -p.value<0>()) <= *v &&
               *v < *_calendar.startOfDay(_now, CalendarUnit::day, 1);
    }
    template <json::Name name>
    std::optional<bool> judge(const QString& field, const json::Case<name, bool>& p,
                              const Facts& f) const {
        const auto v = boolean(field, f);
        if (!v)
            return std::nullopt;
        return std::string_view(p.key) == "isValue" ? *v == p.value() : *v != p.value();
    }

    bool comesBefore(const Facts& a, const Facts& b, const SmartFolderSortDescriptor& sort) const {
        const QString field = sort.field.rawValue();
        const int order = compare(a, b, field);
        if (order == firstKnown || order == secondKnown)
            return order == firstKnown;
        if (order != 0)
            return (order < 0) == (sort.direction == SmartFolderSortDirection::ascending);
        if (const auto names = _locale.compareLoosely(a.entry.name, b.entry.name); names != 0)
            return names < 0;
        return folded(appKey(a.entry)) < folded(appKey(b.entry));
    }
    static constexpr int firstKnown = -10;
    static constexpr int secondKnown = 10;
    template <typename Value, typename Compare>
    static int compareKnown(const std::optional<Value>& a, const std::optional<Value>& b,
                            Compare compare) {
        if (a && b)
            return compare(*a, *b) < 0 ? -1 : compare(*a, *b) > 0 ? 1 : 0;
        return a ? firstKnown : b ? secondKnown : 0;
    }
    int compare(const Facts& a, const Facts& b, const QString& field) const {
        const auto byMagnitude = [](const auto& x, const auto& y) { return x <=> y; };
        if (field.endsWith(u"Date"))
            return compareKnown(date(field, a), date(field, b), byMagnitude);
        if (field == u"launchCount")
            return compareKnown(a.launchCount, b.launchCount, byMagnitude);
        if (field == u"updateStatus") {
            using enum SmartFolderUpdateState;
            const std::array first{updateAvailable, upToDate, failed, unsupported, notChecked};
            return compareKnown(a.updateStatus, b.updateStatus, [&](auto x, auto y) {
                return std::ranges::find(first, x) - std::ranges::find(first, y);
            });
        }
        if (field == u"version" || field == u"build")
            return compareKnown(text(field, a), text(field, b), [](const QString& x, const QString& y) {
                return compareNumeric(x, y);
            });
        return compareKnown(text(field, a), text(field, b), [&](const QString& x, const QString& y) {
            return _locale.compareLoosely(x, y);
        });
    }

    Locale _locale;
    Instant _now;
    Calendar _calendar;
    const FileSystem& _files;
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
    QUuid id() { return QUuid(++_last, 7, 0x4000, 0x80, 0, 0, 0, 0, 0, 0, 0); }

    QString text() {
        static const QStringList pool{
            QStringLiteral("Café"),
            QStringLiteral(" CAFE "),
            QStringLiteral("cafe\u0301 10"),
            QStringLiteral("Café 9"),
            QStringLiteral("Ｃａｆｅ"),
            QStringLiteral("Microsoft"),
            QStringLiteral("microsoft "),
            QStringLiteral("İstanbul"),
            QStringLiteral("ısı"),
            QStringLiteral("Straße"),
            QStringLiteral("STRASSE 2"),
            QStringLiteral("ガイド"),
            QStringLiteral("שלום"),
            QStringLiteral("مرحبا 3"),
            QStringLiteral("ø"),
            QStringLiteral("camera"),
            QStringLiteral("Photos"),
            QStringLiteral("MACOS"),
            QStringLiteral("arm64"),
            QStringLiteral("failed"),
            QStringLiteral("e"),
            QStringLiteral("1.9"),
            QStringLiteral("1.10"),
            QStringLiteral(" 1.010"),
            QStringLiteral("10.0b2"),
            QStringLiteral("1.0"),
            QStringLiteral("1.0.0"),
            QStringLiteral("x").repeated(3000),
            QStringLiteral("\u0301"),
        };
        return pool.at(below(static_cast<int>(pool.size())));
    }
    std::shared_ptr<const SmartFolderAppFacts> facts() {
        static const QStringList paths{
            QStringLiteral("/Applications/%1.app"), QStringLiteral("/System/Applications/%1.app"),
            QStringLiteral("/Library/Apple/%1.app"), QStringLiteral("/Applications/Suite.APP/%1.app"),
            QStringLiteral("/Systems/%1.app")};
        SmartFolderAppFacts f;
        f.entry.id = id();
        f.entry.name = text();
        f.entry.originalName = below(3) ? f.entry.name : text();
        fill(f.entry.bundleIdentifier, f.entry.category);
        f.entry.isDuplicateBundleIdentifier = below(2);
        f.entry.path = paths.at(below(5)).arg(below(4));
        f.entry.source = below(3) ? AppSource::local : AppSource::legacyImport;
        fill(f.developer, f.publisher, f.signingTeamID, f.version, f.build, f.installedDate,
             f.firstSeenDate, f.applicationLocation, f.installSource, f.distributionChannel, f.platform,
             f.architectures, f.minimumMacOSVersion, f.lastUsedDate, f.launchCount, f.isNeverUsed,
             f.updateStatus, f.hasCustomIcon);
        for (int i = below(3); i > 0; --i)
            f.declaredPermissions.append(value<SmartFolderPermission>());
        return std::make_shared<const SmartFolderAppFacts>(std::move(f));
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
            .name = QStringLiteral("Generated"),
            .customSymbolName = {},
            .modifiedAt = {},
            .matchMode = value<SmartFolderMatchMode>(),
            .rules = {},
            .sort = {pick(SmartFolderSortField::all()), value<SmartFolderSortDirection>()},
            .resultLimit = {}};
        if (below(4) == 0)
            d.resultLimit = 1 + below(12);
        for (int i = 1 + below(3); i > 0; --i)
            d.rules.append(rule());
        return d;
    }

private:
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
    template <typename... T>
    void fill(std::optional<T>&... facts) {
        ((below(4) ? facts.emplace(value<T>()) : (facts.reset(), T())), ...);
    }
    template <typename Kind, std::size_t... I>
    auto askedOf(std::index_sequence<I...>) {
        const std::size_t index = below(sizeof...(I));
        typename Kind::Predicate result;
        (void)((I == index &&
                (result = made<std::variant_alternative_t<I, typename Kind::Predicate>>(), true)) ||
               ...);
        return result;
    }
    template <typename Case>
    Case made() {
        Case result;
        std::apply([&](auto&... values) { ((values = value<std::decay_t<decltype(values)>>()), ...); },
                   result.values);
        return result;
    }
    template <typename Kind>
    SmartFolderRule ruleOf() {
        return SmartFolderRuleOf<Kind>{
            id(), pick(SmartFolderField<Kind>::all()),
            askedOf<Kind>(std::make_index_sequence<std::variant_size_v<typename Kind::Predicate>>())};
    }
    SmartFolderRule rule() {
        switch (below(6)) {
        case 0:
            return ruleOf<SmartFolderTextKind>();
        case 1:
            return ruleOf<SmartFolderChoiceKind>();
        case 2:
            return ruleOf<SmartFolderNumberKind>();
        case 3:
            return ruleOf<SmartFolderVersionKind>();
        case 4:
            return ruleOf<SmartFolderDateKind>();
        default:
            return ruleOf<SmartFolderBooleanKind>();
        }
    }

    std::mt19937 _engine;
    unsigned _last = 0;
};

} // namespace tessellar::test
