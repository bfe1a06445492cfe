#include "smartfolders/smart_folder_rule.h"

#include "smartfolders/smart_folder_store.h"

#include "support/printers.h"
#include "support/sequential_uuids.h"

#include <gtest/gtest.h>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;
using namespace predicate;
using enum SmartFolderRelativeDateUnit;

class SmartFolderDefinitions : public testing::Test {
protected:
    template <typename Rule>
    static SmartFolderRule rule(decltype(Rule::field) field, decltype(Rule::predicate) asked) {
        return Rule{QUuid(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11), field, std::move(asked)};
    }
    SmartFolderDefinition definition(QList<SmartFolderRule> rules) {
        return {.id = ids.next(),
                .name = u"Folder"_s,
                .modifiedAt = Instant{123.456789},
                .rules = std::move(rules),
                .sort = {"name", SmartFolderSortDirection::ascending}};
    }

    test::SequentialUuids ids;
};

const QString blank = u" \t\n\u00a0"_s;
const QString text = u"a"_s;

TEST_F(SmartFolderDefinitions, RulesAreCompleteWhenTheirValuesCanBeUsed) {
    using T = SmartFolderTextRule;
    using C = SmartFolderChoiceRule;
    using N = SmartFolderNumberRule;
    using V = SmartFolderVersionRule;
    using D = SmartFolderDateRule;
    const auto v = [](const char* s) { return QString::fromLatin1(s); };

    const QList<SmartFolderRule> complete{
        rule<T>("path", IsUnknown()),
        rule<C>("permission", IsAnyOf(QStringList{text, v(" b ")})),
        rule<N>("launchCount", IsBetween<double>(2, 2)),
        rule<V>("build", IsBetween<QString>(v("1.9"), v("1.10"))),
        rule<D>("installedDate", IsBetween<Instant>(Instant{5}, Instant{5})),
    };
    for (const SmartFolderRule& r : complete)
        EXPECT_TRUE(r.isComplete()) << json::writeCompact(json::encode(r)).toStdString();

    const QList<SmartFolderRule> incomplete{
        rule<T>("path", IsExactly(blank)),
        rule<C>("permission", IsAnyOf(QStringList())),
        rule<C>("permission", IsAnyOf(QStringList{text, blank})),
        rule<N>("launchCount", IsBetween<double>(2, 1.5)),
        rule<V>("build", IsBetween<QString>(v("1.10"), v("1.9"))),
        rule<D>("installedDate", IsBetween<Instant>(Instant{5}, Instant{4})),
        rule<D>("installedDate", IsWithinLast(0, days)),
    };
    for (const SmartFolderRule& r : incomplete)
        EXPECT_FALSE(r.isComplete()) << json::writeCompact(json::encode(r)).toStdString();
}

TEST_F(SmartFolderDefinitions, TheFileFormIsTheWordsOfTheVocabulary) {
    const QByteArray document = R"({
        "id": "00000001-0000-4000-8000-00000000000A", "name": "מסמכים", "modifiedAt": 785710800.25,
        "matchMode": "any", "sort": {"field": "updateStatus", "direction": "descending"}, "resultLimit": 500,
        "rules": [
          {"text": {"id": "00000002-0000-4000-8000-000000000000", "field": "developer",
                    "predicate": {"contains": {"_0": "Microsoft"}}}},
          {"choice": {"id": "00000003-0000-4000-8000-000000000000", "field": "permission",
                      "predicate": {"isAnyOf": {"_0": ["camera", "photos"]}}}},
          {"number": {"id": "00000004-0000-4000-8000-000000000000", "field": "launchCount",
                      "predicate": {"isBetween": {"_0": 0.5, "_1": 7}}}},
          {"version": {"id": "00000005-0000-4000-8000-000000000000", "field": "minimumMacOSVersion",
                       "predicate": {"isBelow": {"_0": "13.0"}}}},
          {"date": {"id": "00000006-0000-4000-8000-000000000000", "field": "lastUsedDate",
                    "predicate": {"isWithinLast": {"_0": 3, "_1": "weeks"}}}},
          {"boolean": {"id": "00000007-0000-4000-8000-000000000000", "field": "isNeverUsed",
                       "predicate": {"isUnknown": {}}}}]})";
    const auto decoded = json::decodeDocument<SmartFolderDefinition>(document);
    ASSERT_TRUE(decoded) << json::message(decoded.error()).toStdString();
    EXPECT_EQ(decoded->sort.field, SmartFolderSortField("updateStatus"));
    const auto& number = std::get<SmartFolderNumberRule>(decoded->rules[2].value());
    EXPECT_EQ(number.predicate, SmartFolderNumberPredicate(IsBetween<double>(0.5, 7)));
    const auto& date = std::get<SmartFolderDateRule>(decoded->rules[4].value());
    EXPECT_EQ(date.predicate, SmartFolderDatePredicate(IsWithinLast(3, weeks)));
    // Equal as JSON, which does not know the order of keys.
    EXPECT_EQ(json::encode(*decoded), *json::parse(document));
}

TEST_F(SmartFolderDefinitions, AnUnknownWordRefusesTheWhole) {
    const auto d =
        definition({SmartFolderTextRule{ids.next(), "developer", Contains(text)},
                    SmartFolderDateRule{ids.next(), "firstSeenDate", IsWithinLast(2, days)}});
    const QByteArray good = json::writeCompact(json::encode(d));
    ASSERT_TRUE(json::decodeDocument<SmartFolderDefinition>(good));

    const struct {
        QByteArray from, to, path;
    } faults[] = {
        {R"("developer")", R"("developers")", "rules[0].text.field"},
        {R"("developer")", R"("version")", "rules[0].text.field"},
        {R"("contains")", R"("resembles")", "rules[0].text.predicate"},
        {R"("contains":)", R"("isUnknown":{},"contains":)", "rules[0].text.predicate"},
        {R"({"_0":"a"})", "{}", "rules[0].text.predicate.contains._0"},
        {R"("_0":2,)", R"("_0":2.5,)", "rules[1].date.predicate.isWithinLast._0"},
        {R"("days")", R"("years")", "rules[1].date.predicate.isWithinLast._1"},
        {R"({"text":)", R"({"extra":1,"text":)", "rules[0]"},
        {R"("all")", R"("none")", "matchMode"},
        {R"("modifiedAt":123.456789)", R"("modifiedAt":"2026-11-14T21:02:47Z")", "modifiedAt"},
        {R"("name":"Folder",)", "", "name"},
    };
    for (const auto& fault : faults) {
        QByteArray bad = good;
        ASSERT_TRUE(bad.contains(fault.from)) << fault.from.toStdString();
        const auto decoded =
            json::decodeDocument<SmartFolderDefinition>(bad.replace(fault.from, fault.to));
        ASSERT_FALSE(decoded) << fault.to.toStdString();
        EXPECT_EQ(decoded.error().path, QLatin1StringView(fault.path));
    }
}

TEST_F(SmartFolderDefinitions, TemplatesMayBeSavedAsTheyAre) {
    QSet<QUuid> rules;
    for (const auto& [which, name] : json::RawValues<SmartFolderTemplate>::values) {
        const auto d = templateDefinition(which, ids.next(), Instant{9}, ids);
        EXPECT_TRUE(validationIssues(d).isEmpty()) << name;
        EXPECT_EQ(json::decode<SmartFolderDefinition>(json::encode(d)), d) << name;
        EXPECT_FALSE(json::encode(d).toObject().contains(u"resultLimit"_s));
        for (const SmartFolderRule& r : d.rules)
            rules.insert(r.id());
    }
    EXPECT_EQ(rules.size(), 8);

    const auto microsoft = templateDefinition(SmartFolderTemplate::microsoftApps, ids.next(), {}, ids);
    EXPECT_EQ(microsoft.matchMode, SmartFolderMatchMode::any);
    EXPECT_EQ(needsOf({microsoft}), SmartFolderNeed::bundle | SmartFolderNeed::signature);
    const auto games = templateDefinition(SmartFolderTemplate::games, ids.next(), {}, ids);
    EXPECT_EQ(needsOf({games}), SmartFolderNeeds());
    auto sorted = games;
    sorted.sort.field = "developer";
    EXPECT_EQ(needsOf({games, sorted}), SmartFolderNeed::bundle | SmartFolderNeed::signature);
}

TEST_F(SmartFolderDefinitions, ACopyGetsIdentifiersOfItsOwn) {
    const auto original = templateDefinition(SmartFolderTemplate::microsoftApps, ids.next(), {}, ids);
    const auto copy = withOwnIdentifiers(original, {original}, ids);
    EXPECT_TRUE(SmartFolderStore::check({original, copy}));
    EXPECT_EQ(withOwnIdentifiers(copy, {}, ids), copy);
    auto twice = copy;
    twice.rules += twice.rules.first();
    EXPECT_TRUE(SmartFolderStore::check({original, withOwnIdentifiers(twice, {original}, ids)}));
}

} // namespace
} // namespace tessellar
