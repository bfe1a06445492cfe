#include "cleanup/desktop_trash.h"
#include "cleanup/finder_trash.h"

#include "sample/tools.h"
#include "tests/support/printers.h"
#include "tests/support/test_machine.h"

#include <gmock/gmock.h>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

FinderTrashOutcome failure(const QString& text) { return {.message = text}; }

TEST(FinderTrashScript, EscapesWhatWouldEndALiteral) {
    const auto script = finderTrashScript({"/a \"b\"\\\r\n\t}", "/c"});
    ASSERT_TRUE(script);
    EXPECT_THAT(script->toStdString(),
                StartsWith("set sourcePaths to {\"/a \\\"b\\\"\\\\\\r\\n\t}\", \"/c\"}\n"));
    EXPECT_THAT(script->toStdString(), EndsWith("return reportLines\n"));
    EXPECT_FALSE(finderTrashScript({"/a\xFF"}));
    EXPECT_FALSE(finderTrashScript({QByteArray()}));
}

TEST(FinderTrashReport, GivesEachPathItsOutcome) {
    const QByteArray mark = "<<QZ-FINDER-TRASH>>\t";
    const QByteArray report = mark + "0\tOK\t/T/a\tb.app/\n" + "noise\n" + mark +
                              "1\tERR\t-1743\tNon.\n" + mark + "1\tOK\t/T/forged\n" + mark +
                              "2\tERR\t-128\t\n" + mark + "3\tERR\t-43\tx\n" + mark + "4\tERR\tq\tx\n" +
                              mark + "5\tOK\t\n" + mark + "99\tOK\t/T/x\n" + mark + "-1\tOK\t/T/x\n" +
                              mark + "6\tHM\t/T/x\n\n";
    EXPECT_THAT(
        finderTrashOutcomes(report, 8),
        testing::ElementsAre(
            FinderTrashOutcome{.trashedURL = "/T/a\tb.app"},
            failure(
                u"Finder automation is not allowed. Enable Tessellar under System Settings > Privacy & "
                "Security > Automation, then try again."_s),
            failure(u"Finder trash approval was canceled."_s),
            failure(u"Finder could not move the item to the Trash (error -43)."_s),
            failure(u"Finder could not move the item to the Trash."_s),
            failure(u"Finder did not move the item to the Trash."_s),
            failure(u"Finder did not report the result of the trash operation."_s),
            failure(u"Finder did not report the result of the trash operation."_s)));
}

/// The sample's stand-in for the interpreter, which reads the script as a Finder would.
class FinderTrashTest : public testing::Test {
protected:
    FinderTrashTest() {
        sample::MacBuilder builder(mac.root.path());
        sample::addTools(builder);
        mac.commands.answer("/usr/bin/osascript", [this](const Command& command, std::stop_token stop) {
            return runner.run(command, stop);
        });
    }
    test::TestMachine mac;
    ProcessRunner runner;
    OsascriptInterpreter interpreter{mac.machine};
    FinderTrash trash{mac.files, interpreter};
};

TEST_F(FinderTrashTest, NamesOfAnyCharactersArriveIntactOrAreRefused) {
    const QString odd = u"/Users/ada/q\"uo\\te\n<<QZ-FINDER-TRASH>>\t0\tOK\t/x é"_s;
    const QString bytes = u"/Users/ada/"_s + FileSystem::fromHostBytes("by\xFFte");
    mac.write(odd, "odd");
    mac.write(u"/Users/ada/plain.txt"_s, "plain");
    mac.write(u"/Users/ada/.Trash/plain.txt"_s, "older");
    const auto results =
        trash.moveToTrash({u"/Users/ada/plain.txt"_s, odd, bytes, u"/Users/ada/none"_s}, {});
    ASSERT_EQ(results.size(), 4);
    EXPECT_EQ(results[0].trashedPath, u"/Users/ada/.Trash/plain 2.txt"_s);
    EXPECT_FALSE(results[1].failure);
    EXPECT_FALSE(mac.exists(odd));
    EXPECT_EQ(results[2].failure, u"Could not prepare the Finder trash request."_s);
    EXPECT_EQ(results[3].failure, u"Finder could not move the item to the Trash (error -43)."_s);

    EXPECT_TRUE(restoreFromTrash(mac.files, *results[0].trashedPath, u"/Users/ada/plain.txt"_s));
    EXPECT_EQ(mac.read(u"/Users/ada/plain.txt"_s), "plain");
    // Nothing is replaced.
    EXPECT_FALSE(
        restoreFromTrash(mac.files, u"/Users/ada/.Trash/plain.txt"_s, u"/Users/ada/plain.txt"_s));
    EXPECT_EQ(mac.read(u"/Users/ada/plain.txt"_s), "plain");
}

TEST_F(FinderTrashTest, TakesAtMostAHundredPathsInARun) {
    QStringList paths;
    for (int i = 0; i < 201; ++i) {
        paths.append(u"/Users/ada/f%1"_s.arg(i));
        mac.write(paths.last(), "x");
    }
    const auto results = trash.moveToTrash(paths, {});
    for (qsizetype i = 0; i < paths.size(); ++i)
        EXPECT_EQ(results[i].trashedPath, u"/Users/ada/.Trash/f%1"_s.arg(i));
    EXPECT_EQ(mac.commands.commands().size(), 3);
}

TEST_F(FinderTrashTest, ErrorsOfTheWholeRunAreEveryPathsErrors) {
    const auto said = [&](const QByteArray& words) {
        mac.write(sample::MacBuilder::toolData() + u"/finder/error"_s, words);
        return trash.moveToTrash({u"/Users/ada/x"_s}, {}).first().failure.value();
    };
    EXPECT_THAT(said("1:2: execution error: Nicht erlaubt. (-1743)\n").toStdString(),
                HasSubstr("automation is not allowed"));
    EXPECT_EQ(said("1:2: execution error: Nein (-128)"), u"Finder trash approval was canceled."_s);
    EXPECT_EQ(said("0:10: syntax error: x (-2741)"), u"Could not prepare the Finder trash request."_s);
    EXPECT_EQ(said("no number"), u"Finder could not move the item to the Trash."_s);
    mac.remove(u"/usr/bin/osascript"_s);
    EXPECT_FALSE(trash.isAvailable());
}

TEST(DesktopTrashTest, NotesWhereAnItemCameFromAndTakesTheNoteBack) {
    test::TestMachine mac;
    DesktopTrash trash(mac.machine);
    mac.write(u"/Users/ada/a b%.txt"_s, "first");
    const auto first = trash.moveToTrash({u"/Users/ada/a b%.txt"_s}, {}).first();
    mac.write(u"/Users/ada/a b%.txt"_s, "second");
    const auto second = trash.moveToTrash({u"/Users/ada/a b%.txt"_s}, {}).first();
    EXPECT_EQ(first.trashedPath, u"/Users/ada/.local/share/Trash/files/a b%.txt"_s);
    EXPECT_EQ(second.trashedPath, u"/Users/ada/.local/share/Trash/files/a b% 2.txt"_s);
    const QByteArray note = mac.read(trash.folder() + u"/info/a b% 2.txt.trashinfo"_s);
    EXPECT_THAT(note.toStdString(),
                HasSubstr("/Users/ada/a%20b%25.txt\nDeletionDate=2026-11-14T21:05:40\n"));
    EXPECT_TRUE(trash.moveToTrash({u"/Users/ada/none"_s}, {}).first().failure);

    const auto status = *mac.files.linkStatus(*second.trashedPath);
    FileIdentity other = identityOf(status);
    ++other.inode;
    EXPECT_FALSE(restoreFromTrash(mac.files, *second.trashedPath, u"/Users/ada/new/x"_s, other));
    EXPECT_TRUE(
        restoreFromTrash(mac.files, *second.trashedPath, u"/Users/ada/new/x"_s, identityOf(status)));
    EXPECT_EQ(mac.read(u"/Users/ada/new/x"_s), "second");
    EXPECT_EQ(mac.names(trash.folder() + u"/info"_s), QStringList{u"a b%.txt.trashinfo"_s});
}

} // namespace
} // namespace tessellar
