#include "cleanup/related_file_names.h"

#include "tests/support/printers.h"

#include <gmock/gmock.h>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;
using enum RelatedFileMatch;
using Match = std::optional<RelatedFileMatch>;

Match gradeOf(const CleanupApplication& application, const QByteArray& name) {
    const MatchingName matching(name);
    const auto grade = ApplicationNames(application).grade(matching);
    return grade ? Match(grade->match) : std::nullopt;
}

CleanupApplication named(const QString& name, std::optional<QString> identifier = std::nullopt) {
    return {.names = {name}, .bundleIdentifier = std::move(identifier)};
}

TEST(RelatedFileNames, GradesByIdentifierThenByName) {
    const CleanupApplication notes = named(u"Acme Notes"_s, u"com.Acme.Notes"_s);
    const std::pair<QByteArray, Match> cases[]{
        {"com.acme.notes.plist", strong},
        {"COM.ACME.NOTES.savedState", strong},
        {"com.acme.Notes.binarycookies", strong},
        {"com.acme.notes.plist.plist", strongish}, // one suffix is taken off
        {"com.acme.notes.ShipIt", strongish},
        {"ABCDE12345.com.acme.notes", strongish},
        {"group.com.acme.notes", strongish},
        {"com.acme.notesplus", risky}, // by "notes", not by the identifier
        {"xcom.acme.notes", risky},
        {"acme notes", medium},
        {"AcmeNotes", medium},
        {"Acme-Notes", medium},
        {"acme_notes.plist", medium},
        {"Notes", medium},
        {"my notes of 2024", risky},
        {"com.acme", risky},
        {"com.globex.calendar", std::nullopt},
        {".plist", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& [name, match] : cases)
        EXPECT_EQ(gradeOf(notes, name), match) << name.toStdString();
}

TEST(RelatedFileNames, NeitherVendorsNorPartsStandForAnApplication) {
    EXPECT_EQ(gradeOf(named(u"Google Chrome"_s), "Google"), std::nullopt);
    EXPECT_EQ(gradeOf(named(u"Google Chrome"_s), "Chrome"), medium);
    EXPECT_EQ(gradeOf(named(u"Steam"_s), "Steam"), std::nullopt);
    for (const char* name : {"Epic Games", "epic-games", "EpicGames"})
        EXPECT_EQ(gradeOf(named(u"Epic Games"_s), name), std::nullopt) << name;
    EXPECT_EQ(gradeOf(named(u"Core Data Helper"_s), "Data"), std::nullopt);
    EXPECT_EQ(gradeOf(named(u"Update.app"_s), "Update"), std::nullopt);
}

TEST(RelatedFileNames, ShortNamesAndNumbersCountOnlyAsAWhole) {
    EXPECT_EQ(gradeOf(named(u"Ice"_s), "ice"), medium);
    EXPECT_EQ(gradeOf(named(u"Ice"_s), "service"), std::nullopt);
    EXPECT_EQ(gradeOf(named(u"2048"_s), "2048"), medium);
    EXPECT_EQ(gradeOf(named(u"2048"_s), "backup-2048"), std::nullopt);
    EXPECT_EQ(gradeOf(named(u"Go To It"_s), "Go"), std::nullopt); // words need four letters
    EXPECT_EQ(gradeOf(named(u"…"_s), "…"), std::nullopt);
    EXPECT_EQ(gradeOf(named(u".."_s), ".."), std::nullopt);
    EXPECT_EQ(gradeOf(named(QString()), "anything"), std::nullopt);
}

TEST(RelatedFileNames, ComposedAndDecomposedNamesAreTheSame) {
    const QString composed = u"Café Über"_s.normalized(QString::NormalizationForm_C);
    const QString decomposed = composed.normalized(QString::NormalizationForm_D);
    for (const QString& name : {composed, decomposed, composed.toUpper(), decomposed.toUpper()}) {
        EXPECT_EQ(gradeOf(named(name), composed.toUtf8()), medium);
        EXPECT_EQ(gradeOf(named(name), decomposed.toUtf8()), medium);
        EXPECT_EQ(gradeOf(named(name), "x " + decomposed.toUpper().toUtf8()), risky);
    }
    EXPECT_EQ(gradeOf(named(u"Café"_s), "Caf\xE9"), std::nullopt); // no UTF-8
}

TEST(RelatedFileNames, AnIdentifierThatCouldBeAnybodysIsNone) {
    for (const QString& bad : {u""_s, u"notes"_s, u"com/acme/notes"_s, u"../com.acme"_s, u"com..acme"_s,
                               u".com.acme"_s, u"com.acme."_s, u"com.acme notes"_s, u"com.ácme"_s})
        EXPECT_TRUE(ApplicationNames(named(u"X"_s, bad)).identifier().isEmpty()) << bad.toStdString();
    EXPECT_FALSE(ApplicationNames(named(u"X"_s, u"com.acme"_s)).ownsExtensions());
    EXPECT_FALSE(ApplicationNames(named(u"X"_s, u"com.apple.finder"_s)).ownsExtensions());
    EXPECT_TRUE(ApplicationNames(named(u"X"_s, u"com.acme.x"_s)).ownsExtensions());
    // Of an unusable identifier nothing but the name is left.
    EXPECT_EQ(gradeOf(named(u"Quill"_s, u"com"_s), "com.acme.x"), std::nullopt);
}

} // namespace
} // namespace tessellar
