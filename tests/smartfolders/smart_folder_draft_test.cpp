#include "smartfolders/smart_folder_draft.h"

#include "platform/file_system.h"
#include "smartfolders/smart_folder_rule.h"
#include "support/printers.h"
#include "support/sequential_uuids.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;
using namespace predicate;
using Kind = SmartFolderOperandRow::Kind;
using Menu = SmartFolderMenu::Kind;

class SmartFolderDrafts : public testing::Test {
protected:
    static SmartFolderInputFormat inputFormat(const QString& language = u"en_US"_s) {
        return {Locale(language), Calendar(Locale(language), u"Europe/Oslo"_s)};
    }
    SmartFolderDraft draft(const QList<SmartFolderRule>& rules, const QString& language = u"en_US"_s) {
        return {SmartFolderDefinition{.id = ids.next(),
                                      .name = u"Folder"_s,
                                      .modifiedAt = Instant{1},
                                      .rules = rules,
                                      .sort = {"name"}},
                inputFormat(language), now};
    }
    SmartFolderDraft fresh() {
        SmartFolderDraft result = draft({});
        result.insertRule(0, ids.next());
        return result;
    }
    template <typename Rule>
    static auto predicateIn(const SmartFolderDraft& draft, qsizetype rule = 0) {
        return std::get<Rule>(draft.definition().rules.at(rule).value()).predicate;
    }
    static QString issue(const SmartFolderDraft& draft) {
        const auto issues = draft.issues();
        return issues.isEmpty() ? QString() : message(issues.first());
    }
    static Instant at(const char* iso) { return *Instant::fromIso8601(QString::fromLatin1(iso)); }

    test::SequentialUuids ids;
    const Instant now = at("2026-11-21T19:20:00Z");
};

/// As a person would, whatever is asked for.
void fillIn(SmartFolderDraft& draft) {
    for (qsizetype i = 0; i < draft.row(0).operands.size(); ++i) {
        switch (draft.row(0).operands.at(i).kind) {
        case Kind::text:
        case Kind::number:
            draft.type(0, i, u"1%1"_s.arg(i));
            break;
        case Kind::date:
            draft.type(0, i, u"11/2%1/2026"_s.arg(i));
            break;
        case Kind::choices:
            draft.choose({Menu::operand, 0, i}, draft.options({Menu::operand, 0, i}).first().word);
            [[fallthrough]];
        case Kind::choice:
            draft.choose({Menu::operand, 0, i}, draft.options({Menu::operand, 0, i}).last().word);
        }
    }
}

TEST_F(SmartFolderDrafts, EveryFieldAndPredicateCanBeMadeFilledInAndReadBack) {
    QSet<QString> fields;
    int made = 0;
    const auto menu = fresh().options({Menu::field, 0});
    for (const SmartFolderOption& field : menu) {
        if (field.word.isEmpty())
            continue;
        EXPECT_FALSE(fields.contains(field.word))
            << "one name, two fields: " << field.word.toStdString();
        fields.insert(field.word);
        SmartFolderDraft ofField = fresh();
        ofField.choose({Menu::field, 0}, field.word);
        const auto asked = ofField.options({Menu::predicate, 0});
        for (const SmartFolderOption& predicate : asked) {
            SCOPED_TRACE((field.word + u' ' + predicate.word).toStdString());
            SmartFolderDraft draft = ofField;
            draft.choose({Menu::predicate, 0}, predicate.word);
            fillIn(draft);
            EXPECT_EQ(issue(draft), QString());
            const SmartFolderDefinition definition = draft.definition();
            const QJsonObject rule = json::encode(definition)[u"rules"][0].toObject();
            const QJsonValue body = rule.begin().value();
            EXPECT_EQ(body[u"field"].toString(), field.word);
            EXPECT_EQ(body[u"predicate"].toObject().keys(), QStringList{predicate.word});
            EXPECT_EQ(body[u"predicate"][predicate.word].toObject().size(),
                      draft.row(0).operands.size());
            EXPECT_EQ(json::decode<SmartFolderDefinition>(json::encode(definition)), definition);
            // Opened anew it shows the same, and typing what is shown is what was meant.
            SmartFolderDraft again(definition, inputFormat(), now);
            EXPECT_EQ(again.row(0), draft.row(0));
            for (qsizetype i = 0; i < again.row(0).operands.size(); ++i)
                again.type(0, i, again.row(0).operands.at(i).text);
            EXPECT_EQ(again.definition(), definition);
            ++made;
        }
    }
    EXPECT_EQ(fields.size(), 28);
    EXPECT_EQ(made, 8 * 7 + 7 * 4 + 5 + 3 * 5 + 3 * 9 + 6 * 3);
}

TEST_F(SmartFolderDrafts, WhatIsNotTouchedStaysToTheLastBit) {
    const QList<SmartFolderRule> odd{
        SmartFolderChoiceRule{ids.next(), "permission",
                              IsAnyOf(QStringList{u"telepathy"_s, u"camera"_s})},
        SmartFolderDateRule{ids.next(), "lastUsedDate",
                            IsBetween<Instant>(Instant{123.456789}, Instant{1e9 + 0.25})},
        SmartFolderNumberRule{ids.next(), "launchCount", IsAbove<double>(0.1 + 0.2)},
        SmartFolderTextRule{ids.next(), "path", Contains(u"  ×\u200f "_s)},
    };
    SmartFolderDraft edited = draft(odd);
    EXPECT_EQ(edited.row(0).operands.first().text, u"telepathy, Camera");
    EXPECT_EQ(edited.row(1).operands.first().text.left(9), u"1/1/2001 ") << "a time, not only a day";
    edited.setName(u"Other"_s);
    edited.insertRule(1, ids.next());
    edited.type(1, 0, u"x"_s);
    edited.removeRule(1);
    edited.insertRule(4, ids.next());
    EXPECT_EQ(edited.definition().rules.first(4), odd);
    // Also within a rule: a word of a newer vocabulary is offered where it stands.
    edited.choose({Menu::operand, 0, 0}, u"camera"_s);
    edited.choose({Menu::operand, 0, 0}, u"photos"_s);
    EXPECT_EQ(predicateIn<SmartFolderChoiceRule>(edited),
              SmartFolderChoicePredicate(IsAnyOf(QStringList{u"telepathy"_s, u"photos"_s})));
    edited.choose({Menu::operand, 0, 0}, u"nonsense"_s);
    edited.choose({Menu::operand, 0, 1}, u"camera"_s);
    edited.type(0, 0, u"nonsense"_s);
    EXPECT_EQ(edited.row(0).operands.first().text, u"telepathy, Photos");
}

TEST_F(SmartFolderDrafts, IssuesAreThoseOfTheDefinitionAndOfWhatCannotBeRead) {
    SmartFolderDraft d = draft({});
    d.setName(u"  "_s);
    EXPECT_EQ(issue(d), u"Enter a name.");
    d.setName(u"Folder"_s);
    EXPECT_EQ(issue(d), u"Add at least one rule.");
    d.insertRule(0, ids.next());
    EXPECT_EQ(issue(d), u"Complete every rule.");
    EXPECT_TRUE(d.row(0).operands.first().needsInput);
    d.choose({Menu::field, 0}, u"launchCount"_s);
    EXPECT_EQ(issue(d), QString());

    d.type(0, 0, u"many"_s);
    EXPECT_EQ(d.row(0).operands.first(), (SmartFolderOperandRow{Kind::number, u"many"_s, true}));
    EXPECT_EQ(d.issues(), QList<SmartFolderValidationIssue>{
                              validation::InvalidRule{d.definition().rules.first().id()}});
    d.type(0, 0, u"2.5"_s);
    EXPECT_EQ(issue(d), QString());
    d.choose({Menu::predicate, 0}, u"isBetween"_s);
    d.type(0, 1, u"1"_s);
    EXPECT_TRUE(d.row(0).operands.first().needsInput && d.row(0).operands.last().needsInput)
        << "low and high do not go together";
    d.type(0, 1, u""_s);
    EXPECT_FALSE(d.row(0).operands.first().needsInput);
    d.choose({Menu::predicate, 0}, u"isBelow"_s);
    EXPECT_EQ(issue(d), QString()) << "what was typed into the second went with it";

    d.setHasLimit(true);
    EXPECT_EQ(d.limitText(), u"25");
    for (const QString& limit : {u"0"_s, u"501"_s, u""_s, u"x"_s, u"1.5"_s}) {
        d.typeLimit(limit);
        EXPECT_EQ(issue(d), u"Choose a limit from 1 to 500.") << limit.toStdString();
        EXPECT_EQ(d.limitText(), limit);
    }
    d.typeLimit(u"500"_s);
    EXPECT_EQ(issue(d), QString());
    d.typeLimit(u"x"_s);
    d.setHasLimit(false);
    EXPECT_EQ(issue(d), QString());
    EXPECT_EQ(d.definition().resultLimit, std::nullopt);
}

TEST_F(SmartFolderDrafts, AnotherFieldOrPredicateTakesOverWhatFits) {
    SmartFolderDraft d =
        draft({SmartFolderTextRule{ids.next(), "developer", EndsWith(u"Oy"_s)},
               SmartFolderChoiceRule{ids.next(), "installSource", IsNot<QString>(u"manual"_s)}});
    d.choose({Menu::field, 0}, u"publisher"_s);
    EXPECT_EQ(predicateIn<SmartFolderTextRule>(d), SmartFolderTextPredicate(EndsWith(u"Oy"_s)));
    d.choose({Menu::predicate, 0}, u"isUnknown"_s);
    d.choose({Menu::field, 0}, u"isNeverUsed"_s);
    EXPECT_EQ(predicateIn<SmartFolderBooleanRule>(d), SmartFolderBooleanPredicate(IsUnknown()));
    d.choose({Menu::predicate, 0}, u"isNot"_s);
    EXPECT_EQ(predicateIn<SmartFolderBooleanRule>(d), SmartFolderBooleanPredicate(IsNot<bool>(true)));

    d.choose({Menu::predicate, 1}, u"isAnyOf"_s);
    EXPECT_EQ(predicateIn<SmartFolderChoiceRule>(d, 1),
              SmartFolderChoicePredicate(IsAnyOf(QStringList{u"manual"_s})));
    d.choose({Menu::field, 1}, u"platform"_s);
    EXPECT_EQ(issue(d), u"Complete every rule.") << "the words of another vocabulary do not serve";
    d.choose({Menu::predicate, 1}, u"isValue"_s);
    EXPECT_EQ(predicateIn<SmartFolderChoiceRule>(d, 1),
              SmartFolderChoicePredicate(IsValue<QString>(u"macOS"_s)));

    const QUuid id = d.row(1).id;
    d.choose({Menu::field, 1}, u"build"_s);
    d.type(1, 0, u"1.9"_s);
    d.choose({Menu::predicate, 1}, u"isBetween"_s);
    d.type(1, 1, u"1.10"_s);
    EXPECT_EQ(predicateIn<SmartFolderVersionRule>(d, 1),
              SmartFolderVersionPredicate(IsBetween<QString>(u"1.9"_s, u"1.10"_s)));
    d.choose({Menu::field, 1}, u"colour"_s);
    d.choose({Menu::predicate, 1}, u"isPurple"_s);
    d.choose({Menu::field, 9}, u"build"_s);
    d.removeRule(-1);
    EXPECT_EQ(d.row(1).predicate, u"is between");
    EXPECT_EQ(d.row(1).id, id);
}

TEST_F(SmartFolderDrafts, ADayIsTheWholeDayWhereTheUserIs) {
    SmartFolderDraft d = fresh();
    d.choose({Menu::field, 0}, u"installedDate"_s);
    d.choose({Menu::predicate, 0}, u"isBefore"_s);
    EXPECT_EQ(d.row(0).operands.first().text, u"11/21/2026") << "today to begin with";
    EXPECT_EQ(predicateIn<SmartFolderDateRule>(d),
              SmartFolderDatePredicate(IsBefore(at("2026-11-20T23:00:00Z"))));
    d.choose({Menu::predicate, 0}, u"isAfter"_s);
    const Instant end = std::get<IsAfter>(predicateIn<SmartFolderDateRule>(d)).value();
    EXPECT_GT(end, at("2026-11-21T22:59:59Z"));
    EXPECT_LT(end, at("2026-11-21T23:00:00Z"));
    EXPECT_EQ(d.row(0).operands.first().text, u"11/21/2026") << "the same day";
    d.choose({Menu::predicate, 0}, u"isBetween"_s);
    EXPECT_EQ(d.row(0).operands.last().text, u"11/21/2026");
    EXPECT_EQ(predicateIn<SmartFolderDateRule>(d),
              SmartFolderDatePredicate(IsBetween<Instant>(at("2026-11-20T23:00:00Z"), end)));

    // Whoever travels meanwhile means the days where he is now.
    SmartFolderDraft travelled = d;
    travelled.setInputFormat(
        {Locale(u"en_US"_s), Calendar(Locale(u"en_US"_s), u"Pacific/Kiritimati"_s)}, now);
    travelled.choose({Menu::predicate, 0}, u"isBefore"_s);
    travelled.type(0, 0, u"11/22/2026"_s);
    EXPECT_EQ(predicateIn<SmartFolderDateRule>(travelled),
              SmartFolderDatePredicate(IsBefore(at("2026-11-21T10:00:00Z"))));

    const auto read = [&](const QString& text) {
        d.type(0, 0, text);
        return issue(d).isEmpty() ? std::get<IsBetween<Instant>>(predicateIn<SmartFolderDateRule>(d))
                                        .value()
                                        .toIso8601()
                                  : u"none"_s;
    };
    // The clocks of Oslo are two hours ahead in summer.
    for (const QString& text : {u"7/4/2026"_s, u"07/04/2026"_s, u" 7/4/26"_s, u"2026-07-04"_s})
        EXPECT_EQ(read(text), u"2026-07-03T22:00:00Z") << text.toStdString();
    EXPECT_EQ(read(u"2026-07-04 14:05"_s), u"2026-07-04T12:05:00Z");
    EXPECT_EQ(read(u"7/4/2026 2:05 PM"_s), u"2026-07-04T12:05:00Z");
    for (const QString& text : {u""_s, u"tomorrow"_s, u"13/13/2026"_s, u"2026-02-30"_s, u"7/4"_s})
        EXPECT_EQ(read(text), u"none") << text.toStdString();

    SmartFolderDraft german = draft({d.definition().rules.first()}, u"de_DE"_s);
    german.type(0, 0, u"4.7.2026"_s);
    EXPECT_EQ(german.row(0).operands.first().text, u"04.07.2026");
    german.choose({Menu::field, 0}, u"launchCount"_s);
    german.type(0, 0, u"2,5"_s);
    EXPECT_EQ(predicateIn<SmartFolderNumberRule>(german),
              SmartFolderNumberPredicate(IsBetween<double>(2.5, 0)));
}

TEST_F(SmartFolderDrafts, WhatIsTypedIsSuggestedFromWhatApplicationsHave) {
    SmartFolderFactsList facts;
    for (const auto* category : {"games", "tools", "tools", ""}) {
        SmartFolderAppFacts one;
        one.entry.category = QString::fromLatin1(category);
        one.version = u"1.10"_s;
        one.architectures = QStringList{u"arm64"_s, u"arm64e"_s};
        facts.append(std::make_shared<const SmartFolderAppFacts>(one));
    }
    QTemporaryDir folder;
    const FileSystem files(folder.path());
    SmartFolderDraft d = fresh();
    d.choose({Menu::field, 0}, u"category"_s);
    EXPECT_FALSE(d.hasSuggestions(0, 0)) << "before anything is known";
    d.setFacts(facts, files);
    EXPECT_EQ(d.suggestions(0, 0), (QStringList{u"tools"_s, u"games"_s}));
    d.choose({Menu::field, 0}, u"version"_s);
    EXPECT_EQ(d.suggestions(0, 0), QStringList{u"1.10"_s});
    d.choose({Menu::field, 0}, u"platform"_s);
    EXPECT_EQ(d.suggestions(0, 0), QStringList());
    EXPECT_EQ(d.suggestions(0, 3), QStringList());
    // A vocabulary that is open has what is installed besides.
    d.choose({Menu::field, 0}, u"architecture"_s);
    const auto words = d.options({Menu::operand, 0, 0});
    EXPECT_EQ(words.size(), 5);
    EXPECT_EQ(words.last(), (SmartFolderOption{u"arm64e"_s, u"Apple silicon (arm64e)"_s}));
    d.choose({Menu::operand, 0, 0}, u"arm64e"_s);
    EXPECT_EQ(d.row(0).operands.first().text, u"Apple silicon (arm64e)");
}

TEST_F(SmartFolderDrafts, StepsNumbersAndPicksDays) {
    SmartFolderDraft d = fresh();
    d.choose({Menu::field, 0}, u"installedDate"_s); // "is within the last 7 days"
    d.step(0, 0, -100);
    EXPECT_EQ(d.row(0).operands.first().text, u"1");
    d.choose({Menu::predicate, 0}, u"isAfter"_s);
    d.chooseDay(0, 0, QDate(2026, 3, 28));
    d.step(0, 0, 1); // a day of 23 hours
    EXPECT_EQ(d.day(0, 0), QDate(2026, 3, 29));
    const Instant end = std::get<IsAfter>(predicateIn<SmartFolderDateRule>(d)).value();
    EXPECT_GT(end, at("2026-03-29T21:59:59Z"));
    EXPECT_LT(end, at("2026-03-29T22:00:00Z"));

    const SmartFolderMonth month = d.month(0, 0, QDate(2026, 3, 5));
    ASSERT_EQ(month.days.size(), 42);
    EXPECT_EQ(month.days[0].date, QDate(2026, 3, 1)); // a Sunday, with which weeks begin here
    EXPECT_TRUE(month.days[28].isChosen && month.days[28].isInMonth);
    EXPECT_FALSE(month.days[31].isInMonth || month.days[27].isChosen);
    EXPECT_EQ(inputFormat(u"de_DE"_s).month(QDate(2026, 3, 5), {}, {}).days[0].date,
              QDate(2026, 2, 23));
    d.setHasLimit(true);
    d.stepLimit(1'000);
    EXPECT_EQ(d.limitText(), u"500");
}

} // namespace
} // namespace tessellar
