#include "smartfolders/smart_folder_evaluator.h"

#include "plain_evaluation.h"
#include "smartfolders/smart_folder_notice.h"
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
                .customSymbolName = {},
                .modifiedAt = {},
                .rules = std::move(rules),
                .sort = {"name"},
                .resultLimit = {}};
    }
    SmartFolderEvaluation evaluate(const SmartFolderDefinition& d) {
        return SmartFolderEvaluator(machine.files)
            .evaluate(d, {apps.begin(), apps.end()}, locale, now, calendar);
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

TEST_F(SmartFolderEvaluators, GivesWhatAPlainReadingGives) {
    machine.makeFolder(u"/Applications/1.app"_s);
    qsizetype matches = 0;
    qsizetype unknown = 0;
    for (const char* localeName : {"en_US", "tr_TR", "de_DE"}) {
        const Locale generatedLocale(QString::fromLatin1(localeName));
        const Calendar days(generatedLocale, u"UTC"_s);
        for (unsigned seed = 0; seed < 40; ++seed) {
            test::SmartFolderGenerator generator(seed);
            const SmartFolderFactsList facts = generator.list(1 + generator.below(60));
            const test::PlainEvaluation plain(facts, generatedLocale, now, days, machine.files);
            const SmartFolderFactsIndex index(facts, generatedLocale, machine.files);
            QList<SmartFolderDefinition> definitions;
            for (int i = 0; i < 50; ++i)
                definitions.append(generator.definition());
            const auto evaluations = SmartFolderEvaluator::evaluateAll(definitions, index, now, days);
            for (int i = 0; i < 50; ++i) {
                SCOPED_TRACE(localeName + std::to_string(seed) +
                             json::write(json::encode(definitions[i])).toStdString());
                const auto expected = plain.evaluate(definitions[i]);
                const auto& actual = evaluations.at(i);
                ASSERT_EQ(actual.unknownRuleIDs, expected.unknownRuleIDs);
                ASSERT_EQ(actual.matches, expected.matches); // the very records: some have equal keys
                matches += actual.matches.size();
                unknown += actual.unknownRuleIDs.size();
            }
        }
    }
    EXPECT_GT(matches, 10'000);
    EXPECT_GT(unknown, 1'000);
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
