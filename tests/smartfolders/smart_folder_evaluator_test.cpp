#include "smartfolders/smart_folder_evaluator.h"

#include "smartfolders/smart_folder_facts_index.h"
#include "smartfolders/smart_folder_notice.h"
#include "smartfolders/smart_folder_rule.h"
#include "tests/support/printers.h"
#include "tests/support/test_machine.h"

#include <gtest/gtest.h>

namespace tessellar {
namespace {

using namespace predicate;
using namespace Qt::Literals::StringLiterals;
using Text = SmartFolderTextRule;
using Choice = SmartFolderChoiceRule;

const Instant now = *Instant::fromIso8601(u"2026-11-14T12:00:00Z"); // a Saturday

class SmartFolderEvaluators : public testing::Test {
protected:
    SmartFolderAppFacts& add(const char* name) {
        SmartFolderAppFacts f;
        f.entry.id = machine.uuids.next();
        f.entry.name = f.entry.originalName = QString::fromUtf8(name);
        f.entry.path = u"/Applications/%1.app"_s.arg(f.entry.name);
        apps.push_back(std::make_shared<SmartFolderAppFacts>(f));
        return *apps.back();
    }
    template <typename Rule>
    SmartFolderRule rule(decltype(Rule::field) field, decltype(Rule::predicate) asked) {
        return Rule{machine.uuids.next(), field, std::move(asked)};
    }
    SmartFolderDefinition definition(QList<SmartFolderRule> rules) {
        return {.id = machine.uuids.next(),
                .name = u"Folder"_s,
                .rules = std::move(rules),
                .sort = {"name"}};
    }
    SmartFolderEvaluation evaluate(const SmartFolderDefinition& d) {
        const SmartFolderFactsIndex index({apps.begin(), apps.end()}, locale, machine.files);
        return SmartFolderEvaluator::evaluateAll({d}, index, now, calendar).value(0);
    }
    /// The names that a definition shows, in order.
    std::string shown(const SmartFolderDefinition& d) {
        QStringList names;
        for (const auto& match : evaluate(d).matches)
            names += match->entry.name;
        return names.join(u' ').toStdString();
    }

    test::TestMachine machine;
    Locale locale{u"en_US"_s};
    Calendar calendar{locale, u"UTC"_s};
    std::vector<std::shared_ptr<SmartFolderAppFacts>> apps;
};

TEST_F(SmartFolderEvaluators, EachPredicateSelectsWhatItSays) {
    const auto at = [](const char* iso) { return *Instant::fromIso8601(QString::fromLatin1(iso)); };
    SmartFolderAppFacts& a = add("a");
    a.developer = u" CAFÉ Microsoft 10"_s;
    a.version = u"1.10b2"_s;
    a.launchCount = 5;
    a.lastUsedDate = at("2026-11-30T23:59:59Z");
    a.architectures = QStringList{u"x86_64"_s, u"arm64"_s};
    a.isNeverUsed = false;
    SmartFolderAppFacts& b = add("b");
    b.developer = u"Straße"_s;
    b.version = u" 1.9"_s;
    b.launchCount = 2;
    b.lastUsedDate = at("2026-01-01T00:00:00Z");
    b.architectures = QStringList{u"x86_64"_s};
    b.isNeverUsed = true;
    add("none").entry.path = u"/System/Applications/none.app"_s;
    using Number = SmartFolderNumberRule;
    using Version = SmartFolderVersionRule;
    using Date = SmartFolderDateRule;
    using Boolean = SmartFolderBooleanRule;
    const Instant used = *b.lastUsedDate;
    const std::pair<SmartFolderRule, const char*> cases[] = {
        {rule<Text>("developer", IsExactly(u"cafe microsoft 10"_s)), "a"},
        {rule<Text>("developer", IsNot<QString>(u"STRASSE "_s)), "a"},
        {rule<Text>("developer", Contains(u"micro"_s)), "a"},
        {rule<Text>("developer", Contains(u"orcim"_s)), ""},
        {rule<Text>("developer", DoesNotContain(u"é"_s)), ""},
        {rule<Text>("developer", BeginsWith(u"strass"_s)), "b"},
        {rule<Text>("developer", EndsWith(u"t 10"_s)), "a"},
        {rule<Text>("developer", EndsWith(u"longer than any of them"_s)), ""},
        {rule<Choice>("architecture", IsValue<QString>(u"ARM64"_s)), "a"},
        {rule<Choice>("architecture", IsNot<QString>(u"arm64"_s)), "b"},
        {rule<Choice>("architecture", IsAnyOf(QStringList{u"arm64"_s, u"riscv"_s})), "a"},
        {rule<Number>("launchCount", IsEqualTo<double>(5)), "a"},
        {rule<Number>("launchCount", IsAbove<double>(2)), "a"},
        {rule<Number>("launchCount", IsBelow<double>(5)), "b"},
        {rule<Number>("launchCount", IsBetween<double>(2, 5)), "a b"},
        {rule<Number>("launchCount", IsBetween<double>(3, 4)), ""},
        {rule<Version>("version", IsEqualTo<QString>(u" 1.010b02"_s)), "a"},
        {rule<Version>("version", IsAbove<QString>(u"1.0"_s)), "a b"},
        {rule<Version>("version", IsAbove<QString>(u"1.9"_s)), "a"},
        {rule<Version>("version", IsBelow<QString>(u"1.10b2"_s)), "b"},
        {rule<Version>("version", IsBetween<QString>(u"1.9"_s, u"1.10b2"_s)), "a b"},
        {rule<Date>("lastUsedDate", IsBefore(*a.lastUsedDate)), "b"},
        {rule<Date>("lastUsedDate", IsAfter(used)), "a"},
        {rule<Date>("lastUsedDate", IsBetween<Instant>(used, used)), "b"},
        {rule<Date>("lastUsedDate", IsThisMonth()), "a"},
        {rule<Date>("lastUsedDate", IsThisYear()), "a b"},
        {rule<Boolean>("isNeverUsed", IsValue<bool>(true)), "b"},
        {rule<Boolean>("isNeverUsed", IsNot<bool>(true)), "a"},
        {rule<Boolean>("isNeverUsed", IsUnknown()), "none"},
        {rule<Boolean>("isRemovable", IsValue<bool>(false)), "none"},
    };
    for (const auto& [asked, expected] : cases)
        EXPECT_EQ(shown(definition({asked})), expected)
            << json::writeCompact(json::encode(asked)).toStdString();
}

TEST_F(SmartFolderEvaluators, SortsKnownFactsEitherWayAndThenByNameAndUnknownOnesLast) {
    for (const char* name : {"d", "C", "b", "a", "é"}) // in no order
        add(name);
    using enum SmartFolderUpdateState;
    const std::optional<SmartFolderUpdateState> states[] = {upToDate, {}, failed, upToDate, {}};
    const char* versions[] = {"1.9", "1.10", nullptr, "1.9", "1.010"};
    const char* developers[] = {"Übel", "ubel", "a", nullptr, "Z"};
    for (int i = 0; i < 5; ++i) {
        apps[i]->updateStatus = states[i];
        if (versions[i])
            apps[i]->version = QString::fromLatin1(versions[i]);
        if (developers[i])
            apps[i]->developer = QString::fromUtf8(developers[i]);
        if (i > 0)
            apps[i]->launchCount = 7 - i / 2;
    }
    const struct {
        SmartFolderSortField field;
        const char* ascending;
        const char* descending;
    } cases[] = {
        {"name", "a b C d é", "é d C b a"},         {"version", "a d C é b", "C é a d b"},
        {"developer", "b C d é a", "é C d b a"},    {"launchCount", "é a b C d", "C a b é d"},
        {"updateStatus", "a d b C é", "b a d C é"},
    };
    auto d = definition({rule<Text>("path", BeginsWith(u"/"_s))});
    for (const auto& [field, ascending, descending] : cases) {
        d.sort.field = field;
        d.sort.direction = SmartFolderSortDirection::ascending;
        EXPECT_EQ(shown(d), ascending);
        d.sort.direction = SmartFolderSortDirection::descending;
        EXPECT_EQ(shown(d), descending);
    }
    d.resultLimit = 2;
    EXPECT_EQ(shown(d), "b a");
}

TEST_F(SmartFolderEvaluators, AMissingFactIsNeitherAMatchNorAMiss) {
    add("none");
    add("empty").developer = QString();
    add("ms").developer = u"Microsoft Corporation"_s;
    const QString vendor = u"Microsoft"_s;
    auto d = definition({rule<Text>("developer", Contains(vendor)),
                         rule<Text>("path", BeginsWith(u"/APPLICATIONS"_s))});
    EXPECT_EQ(shown(d), "ms");
    EXPECT_EQ(evaluate(d).unknownRuleIDs, QSet{d.rules[0].id()});
    d.matchMode = SmartFolderMatchMode::any;
    EXPECT_EQ(shown(d), "empty ms none");
    EXPECT_EQ(evaluate(d).unknownRuleIDs, QSet{d.rules[0].id()});

    d = definition({rule<Text>("developer", IsUnknown())});
    EXPECT_EQ(shown(d), "none");
    EXPECT_EQ(evaluate(d).unknownRuleIDs, QSet<QUuid>());
    // A fact that is still being gathered is not unknown: nobody knows yet.
    add("soon").pending = SmartFolderNeed::signature;
    EXPECT_EQ(shown(d), "none");
    EXPECT_EQ(evaluate(d).unknownRuleIDs, QSet{d.rules[0].id()});
    EXPECT_EQ(evaluate(d).waitingRuleIDs, QSet{d.rules[0].id()});
    // The notice names the rules that are undecided, and why they are, not those that are decided.
    d.rules += rule<Text>("displayName", Contains(vendor));
    d.rules += rule<Text>("publisher", Contains(vendor));
    d.rules += rule<Choice>("updateStatus", IsUnknown());
    const QString off = u"Checking is off."_s;
    EXPECT_EQ(smartFolderNotice(d, evaluate(d), off),
              QStringLiteral("Still gathering… (Developer) Some app details are unavailable, so those "
                             "rules cannot be evaluated yet. (Publisher)"));
    d.rules = {rule<Choice>("updateStatus", IsValue<QString>(u"failed"_s))};
    EXPECT_EQ(smartFolderNotice(d, evaluate(d), off), off);
    d = definition({rule<Text>("publisher", IsUnknown())}); // which needs no signature
    EXPECT_EQ(shown(d), "empty ms none soon");
    EXPECT_TRUE(evaluate(d).unknownRuleIDs.isEmpty());
    apps.pop_back();
    d = definition({rule<Text>("developer", DoesNotContain(vendor))});
    EXPECT_EQ(shown(d), "empty");
    EXPECT_EQ(evaluate(d).appKeys(), QStringList{u"/Applications/empty.app"_s});

    // No permission is declared, which is known; the architectures are not.
    d = definition({rule<Choice>("permission", IsNot<QString>(u"camera"_s)),
                    rule<Choice>("architecture", IsUnknown())});
    EXPECT_EQ(shown(d), "empty ms none");

    d.name = u"  "_s;
    EXPECT_EQ(evaluate(d), SmartFolderEvaluation());
}

TEST_F(SmartFolderEvaluators, RelativeDatesGoByTheUsersDays) {
    calendar = Calendar(locale, u"America/New_York"_s); // 07:00 there
    const auto used = [&](const char* name, const char* date) {
        add(name).lastUsedDate = Instant::fromIso8601(QString::fromLatin1(date));
    };
    used("a-before-yesterday", "2026-11-13T04:59:59Z");
    used("b-yesterday", "2026-11-13T05:00:00Z");
    used("c-later-today", "2026-11-15T04:59:59Z");
    used("d-tomorrow", "2026-11-15T05:00:00Z");
    used("e-sunday", "2026-11-08T05:00:00Z");
    const auto asked = [&](SmartFolderDatePredicate p) {
        return shown(definition({rule<SmartFolderDateRule>("lastUsedDate", std::move(p))}));
    };
    EXPECT_EQ(asked(IsWithinLast(1, SmartFolderRelativeDateUnit::days)), "b-yesterday c-later-today");
    EXPECT_EQ(asked(IsToday()), "c-later-today");
    EXPECT_EQ(asked(IsThisWeek()), "a-before-yesterday b-yesterday c-later-today d-tomorrow e-sunday");
    EXPECT_EQ(asked(IsWithinLast(9'000'000'000, SmartFolderRelativeDateUnit::days)), "");
    calendar = Calendar(Locale(u"de_DE"_s), calendar.timeZone());
    EXPECT_EQ(asked(IsThisWeek()), "a-before-yesterday b-yesterday c-later-today d-tomorrow");
}

} // namespace
} // namespace tessellar
