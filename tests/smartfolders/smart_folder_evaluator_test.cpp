#include "smartfolders/smart_folder_evaluator.h"

#include "plain_evaluation.h"
#include "smartfolders/smart_folder_notice.h"
#include "tests/support/printers.h"
#include "tests/support/test_machine.h"

#include <gtest/gtest.h>

namespace tessellar {
namespace {

using namespace predicate;
using enum SmartFolderSortDirection;

const Instant now = *Instant::fromIso8601(u"2026-11-14T12:00:00Z"); // a Saturday

class SmartFolderEvaluators : public testing::Test {
protected:
    SmartFolderAppFacts& add(const char* name) {
        SmartFolderAppFacts f;
        f.entry.id = machine.uuids.next();
        f.entry.name = f.entry.originalName = QString::fromUtf8(name);
        f.entry.path = QStringLiteral("/Applications/%1.app").arg(f.entry.name);
        apps.push_back(std::make_shared<SmartFolderAppFacts>(f));
        return *apps.back();
    }
    template <typename Rule>
    SmartFolderRule rule(decltype(Rule::field) field, decltype(Rule::predicate) asked) {
        return Rule{machine.uuids.next(), field, std::move(asked)};
    }
    SmartFolderDefinition definition(QList<SmartFolderRule> rules) {
        return {.id = machine.uuids.next(),
                .name = QStringLiteral("Folder"),
                .customSymbolName = {},
                .modifiedAt = {},
                .rules = std::move(rules),
                .sort = {"name", ascending},
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
    Locale locale{QStringLiteral("en_US")};
    Calendar calendar{locale, QStringLiteral("UTC")};
    std::vector<std::shared_ptr<SmartFolderAppFacts>> apps;
};

TEST_F(SmartFolderEvaluators, GivesWhatAPlainReadingGives) {
    machine.makeFolder(QStringLiteral("/Applications/1.app"));
    qsizetype matches = 0;
    qsizetype unknown = 0;
    for (const char* localeName : {"en_US", "tr_TR", "de_DE"}) {
        const Locale generatedLocale(QString::fromLatin1(localeName));
        const Calendar days(generatedLocale, QStringLiteral("UTC"));
        const test::PlainEvaluation plain(generatedLocale, now, days, machine.files);
        for (unsigned seed = 0; seed < 40; ++seed) {
            test::SmartFolderGenerator generator(seed);
            const SmartFolderFactsList facts = generator.list(1 + generator.below(60));
            const SmartFolderFactsIndex index(facts, generatedLocale, machine.files);
            QList<SmartFolderDefinition> definitions;
            for (int i = 0; i < 50; ++i)
                definitions.append(generator.definition());
            const auto evaluations = SmartFolderEvaluator::evaluateAll(definitions, index, now, days);
            for (int i = 0; i < 50; ++i) {
                const SmartFolderDefinition& d = definitions.at(i);
                const auto expected = plain.evaluate(d, facts);
                const auto& actual = evaluations.at(i);
                ASSERT_EQ(actual.unknownRuleIDs, expected.unknownRuleIDs)
                    << localeName << seed << json::write(json::encode(d)).toStdString();
                // The very records, for some have equal keys.
                ASSERT_EQ(actual.matches, expected.matches)
                    << localeName << seed << json::write(json::encode(d)).toStdString();
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
    add("ms").developer = QStringLiteral("Microsoft Corporation");
    const QString vendor = QStringLiteral("Microsoft");
    auto d =
        definition({rule<SmartFolderTextRule>("developer", Contains(vendor)),
                    rule<SmartFolderTextRule>("path", BeginsWith(QStringLiteral("/APPLICATIONS")))});
    EXPECT_EQ(shown(d), "ms");
    EXPECT_EQ(evaluate(d).unknownRuleIDs, QSet{d.rules[0].id()});
    d.matchMode = SmartFolderMatchMode::any;
    EXPECT_EQ(shown(d), "empty ms none");
    EXPECT_EQ(evaluate(d).unknownRuleIDs, QSet{d.rules[0].id()});

    d = definition({rule<SmartFolderTextRule>("developer", IsUnknown())});
    EXPECT_EQ(shown(d), "none");
    EXPECT_EQ(evaluate(d).unknownRuleIDs, QSet<QUuid>());
    // A fact that is still being gathered is not unknown: nobody knows yet.
    add("soon").pending = SmartFolderNeed::signature;
    EXPECT_EQ(shown(d), "none");
    EXPECT_EQ(evaluate(d).unknownRuleIDs, QSet{d.rules[0].id()});
    EXPECT_EQ(evaluate(d).waitingRuleIDs, QSet{d.rules[0].id()});
    // The notice names the rules that are undecided, and why they are, not those that are decided.
    d.rules += rule<SmartFolderTextRule>("displayName", Contains(vendor));
    d.rules += rule<SmartFolderTextRule>("publisher", Contains(vendor));
    d.rules += rule<SmartFolderChoiceRule>("updateStatus", IsUnknown());
    const QString off = QStringLiteral("Checking is off.");
    EXPECT_EQ(smartFolderNotice(d, evaluate(d), off),
              QStringLiteral("Still gathering… (Developer) Some app details are unavailable, so those "
                             "rules cannot be evaluated yet. (Publisher)"));
    d.rules = {rule<SmartFolderChoiceRule>("updateStatus", IsValue<QString>(QStringLiteral("failed")))};
    EXPECT_EQ(smartFolderNotice(d, evaluate(d), off), off);
    d = definition({rule<SmartFolderTextRule>("publisher", IsUnknown())}); // which needs no signature
    EXPECT_EQ(shown(d), "empty ms none soon");
    EXPECT_TRUE(evaluate(d).unknownRuleIDs.isEmpty());
    apps.pop_back();
    d = definition({rule<SmartFolderTextRule>("developer", DoesNotContain(vendor))});
    EXPECT_EQ(shown(d), "empty");

    // No permission is declared, which is known; the architectures are not.
    d = definition({rule<SmartFolderChoiceRule>("permission", IsNot<QString>(QStringLiteral("camera"))),
                    rule<SmartFolderChoiceRule>("architecture", IsUnknown())});
    EXPECT_EQ(shown(d), "empty ms none");

    d.name = QStringLiteral("  ");
    EXPECT_EQ(evaluate(d), SmartFolderEvaluation());
}

TEST_F(SmartFolderEvaluators, TextsCompareWithoutCaseMarksWidthAndOuterSpace) {
    add("Café");
    add(" ＣＡＦＥ ");
    add("cafeteria");
    const auto asked = [&](SmartFolderTextPredicate p) {
        return shown(definition({rule<SmartFolderTextRule>("displayName", std::move(p))}));
    };
    EXPECT_EQ(asked(IsExactly(QStringLiteral("\tCAFE\n"))), " ＣＡＦＥ  Café");
    EXPECT_EQ(asked(IsNot<QString>(QStringLiteral("cafe"))), "cafeteria");
    EXPECT_EQ(asked(EndsWith(QStringLiteral("FÉ"))), " ＣＡＦＥ  Café");
    EXPECT_EQ(asked(Contains(QStringLiteral("a").repeated(100'000))), "");
    EXPECT_EQ(asked(DoesNotContain(QStringLiteral("שלום"))), " ＣＡＦＥ  Café cafeteria");
}

TEST_F(SmartFolderEvaluators, VersionsCompareByNumbers) {
    for (const char* version : {"1.9", "1.10", "1.0.0", "10.0"})
        add(version).version = QStringLiteral(" %1 ").arg(QString::fromLatin1(version));
    const auto asked = [&](SmartFolderVersionPredicate p) {
        auto d = definition({rule<SmartFolderVersionRule>("version", std::move(p))});
        d.sort.field = "version";
        return shown(d);
    };
    EXPECT_EQ(asked(IsAbove<QString>(QStringLiteral("1.9"))), "1.10 10.0");
    EXPECT_EQ(asked(IsEqualTo<QString>(QStringLiteral("1.0"))), "");
    EXPECT_EQ(asked(IsBelow<QString>(QStringLiteral("1.10 "))), "1.0.0 1.9");
    EXPECT_EQ(asked(IsBetween<QString>(QStringLiteral("1.9"), QStringLiteral("1.010"))), "1.9 1.10");
}

TEST_F(SmartFolderEvaluators, RelativeDatesGoByTheUsersDays) {
    calendar = Calendar(locale, QStringLiteral("America/New_York")); // 07:00 there
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
    calendar = Calendar(Locale(QStringLiteral("de_DE")), calendar.timeZone());
    EXPECT_EQ(asked(IsThisWeek()), "a-before-yesterday b-yesterday c-later-today d-tomorrow");
}

TEST_F(SmartFolderEvaluators, OnlyWhatIsThereAndNobodysPartCanBeRemoved) {
    const auto place = [&](const char* name, const char* path, AppSource source = AppSource::local) {
        auto& entry = add(name).entry;
        entry.path = QString::fromLatin1(path);
        entry.source = source;
    };
    place("local", "/Applications/Local.app");
    place("system", "/System/Applications/Notes.app");
    place("apple", "/Library/Apple/System/X.app");
    place("nested", "/Applications/Suite.app/Contents/Tool.app");
    place("gone", "/Applications/Gone.app", AppSource::legacyImport);
    place("stands", "/Applications/Stands.app", AppSource::legacyImport);
    machine.makeFolder(QStringLiteral("/Applications/Stands.app"));
    EXPECT_EQ(shown(definition({rule<SmartFolderBooleanRule>("isRemovable", IsValue<bool>(true))})),
              "local stands");
    EXPECT_EQ(shown(definition({rule<SmartFolderBooleanRule>("isProtected", IsNot<bool>(false))})),
              "apple system");
}

TEST_F(SmartFolderEvaluators, MissingValuesSortLastAndTiesGoByNameThenKey) {
    const auto launched = [&](const char* name, std::optional<qint64> count) -> SmartFolderAppFacts& {
        auto& f = add(name);
        f.launchCount = count;
        return f;
    };
    launched("d", 1);
    launched("c", std::nullopt);
    launched("b 10", 5).entry.bundleIdentifier = QStringLiteral("z");
    launched("B 9", 5);
    launched("a", std::nullopt);
    launched("b 10", 5).entry.bundleIdentifier = QStringLiteral("Y");
    auto d = definition({rule<SmartFolderTextRule>("path", Contains(QStringLiteral("/")))});
    d.sort = {"launchCount", descending};
    EXPECT_EQ(shown(d), "B 9 b 10 b 10 d a c");
    EXPECT_EQ(evaluate(d).appKeys().mid(1, 2), QStringList({QStringLiteral("Y"), QStringLiteral("z")}));
    d.sort.direction = ascending;
    EXPECT_EQ(shown(d), "d B 9 b 10 b 10 a c");
    d.resultLimit = 2;
    EXPECT_EQ(shown(d), "d B 9");

    using enum SmartFolderUpdateState;
    int i = 0;
    for (const auto state : {upToDate, updateAvailable, unsupported, failed, notChecked})
        apps.at(i++)->updateStatus = state;
    d.sort = {"updateStatus", ascending};
    d.resultLimit = {};
    EXPECT_EQ(shown(d), "c d B 9 b 10 a b 10");
}

} // namespace
} // namespace tessellar
