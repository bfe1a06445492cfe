#include "privileged/numbered_name.h"
#include "tests/helper/helper_fixture.h"
#include "tests/platform/disk_folder.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;
using Kind = PrivilegedFileOperationKind;
using Status = PrivilegedFileOutcomeStatus;

TEST(AllowedPlacesTest, AreStrictlyBelowTheFoldersOfTheLibrary) {
    const std::pair<QString, bool> cases[]{
        {u"/Library/LaunchDaemons/com.acme.plist"_s, true},
        {u"/library/launchdaemons/com.acme.plist"_s, true},
        {u"/Library/Application Support/Acme/Deep/x"_s, true},
        {u"/Library/Application Support"_s, false},
        {u"/Library/Application Support/"_s, false},
        {u"/Library/Application Support/../../etc/passwd"_s, false},
        {u"/Library/Application Support/./x"_s, false},
        {u"//Library/Preferences/x"_s, false},
        {u"/Library/Application Supportive/x"_s, false},
        {u"/Library/Fonts/x"_s, false},
        {u"/Library/Apple/x/y"_s, false},
        {u"/Library/Preferences/com.apple.loginwindow.plist"_s, false},
        {u"/Library/Application Support/APPLE/x"_s, false},
        {u"/Library/PrivilegedHelperTools/com.tessellar.app.removal-helper"_s, false},
        {u"/Library/LaunchDaemons/com.tessellar.app.removal-helper.plist"_s, false},
        {u"/Users/ada/Library/Preferences/x"_s, false},
        {u"Library/Preferences/x"_s, false},
        {u"/Library/Preferences/"_s + QString(4096, u'x'), false},
        {QString(), false},
    };
    for (const auto& [path, allowed] : cases) {
        const auto place = namedPlace(path);
        EXPECT_EQ(place && isAllowed(*place), allowed) << path.toStdString();
    }
}

class FileOperationsTest : public testing::Test, protected test::HelperMac {
protected:
    const QString daemon = u"/Library/LaunchDaemons/com.acme.plist"_s;
    void SetUp() override { mac.write(daemon, "daemon"); }
};

TEST_F(FileOperationsTest, MovesToTheTrashAndRestoresWhatItTook) {
    mac.write(trash + u"/com.acme.plist"_s, "older");
    const QString moved = trashed(daemon);
    EXPECT_EQ(moved, trash + u"/com.acme 2.plist"_s);
    EXPECT_EQ(mac.read(moved), "daemon");

    // To another place, by another user, or over something else: no.
    const PrivilegedFileOperationItem back{.source = moved, .destination = daemon};
    EXPECT_EQ(restore(moved, u"/Library/LaunchDaemons/evil.plist"_s), Status::failed);
    const HelperClient other{client.user + 1, client.trashFolders};
    EXPECT_EQ(operations.perform({.operation = Kind::restoreFromTrash, .items = {back}}, other)
                  .first()
                  .status,
              Status::failed);
    EXPECT_EQ(restore(trash + u"/com.acme.plist"_s, daemon), Status::failed);
    mac.write(daemon, "in the way");
    EXPECT_EQ(restore(moved, daemon), Status::failed);
    EXPECT_EQ(mac.read(daemon), "in the way");

    mac.remove(daemon);
    // A helper that was ended and started again knows it still.
    FileOperations again(mac.root.path().toUtf8(), state.path().toUtf8());
    EXPECT_EQ(
        again.perform({.operation = Kind::restoreFromTrash, .items = {back}}, client).first().status,
        Status::moved);
    EXPECT_EQ(mac.read(daemon), "daemon");
    EXPECT_EQ(restore(moved, daemon), Status::failed); // once
}

TEST_F(FileOperationsTest, RestoresAfterARestartThatNumberedTheVolumesAnewAndARenameInTheTrash) {
    const QString moved = trashed(daemon);
    {
        auto journal = MoveJournal::open(state.path().toUtf8());
        ASSERT_TRUE(journal && journal->records().size() == 1);
        MoveRecord record = journal->records().first();
        record.identity.device += 7;
        ASSERT_TRUE(journal->append({record}));
    }
    const QString renamed = trash + u"/renamed"_s;
    ASSERT_TRUE(mac.files.move(moved, renamed));
    EXPECT_EQ(restore(renamed, daemon), Status::moved);
    EXPECT_EQ(mac.read(daemon), "daemon");
}

TEST_F(FileOperationsTest, RecordsAreAppendedAndOutliveCutAndUnreadableLines) {
    const QString journal = state.path() + u"/moves.journal"_s;
    const auto bytes = [&] {
        QFile file(journal);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    const QString moved = trashed(daemon);
    const QByteArray first = bytes();
    QFile file(journal);
    ASSERT_TRUE(file.open(QIODevice::Append) && file.write("rubbish\n{\"id\":\"9") > 0);
    file.close();
    const QString other = u"/Library/LaunchDaemons/com.acme.other.plist"_s;
    mac.write(other, "other");
    (void)trashed(other);
    EXPECT_TRUE(bytes().startsWith(first + "rubbish\n{"));
    EXPECT_EQ(restore(moved, daemon), Status::moved);
    EXPECT_EQ(bytes().count("rubbish"), 1);
}

TEST_F(FileOperationsTest, ForgetsOnlyWhatHasLeftTheTrash) {
    const QString moved = trashed(daemon);
    {
        auto journal = MoveJournal::open(state.path().toUtf8());
        ASSERT_TRUE(journal);
        QList<MoveRecord> many;
        for (int i = 0; i < 6'000; ++i) {
            MoveRecord gone = journal->records().first();
            gone.id = journal->freshId();
            gone.identity.inode += 1'000'000 + std::uint64_t(i);
            many.append(gone);
        }
        ASSERT_TRUE(journal->append(many));
    }
    // Not while the Trash cannot be seen.
    const QString aside = u"/Users/ada/aside"_s;
    ASSERT_TRUE(mac.files.move(trash, aside));
    operations.settle();
    EXPECT_EQ(MoveJournal::open(state.path().toUtf8())->records().size(), 6'001);
    ASSERT_TRUE(mac.files.move(aside, trash));
    operations.settle();
    EXPECT_EQ(MoveJournal::open(state.path().toUtf8())->records().size(), 1);
    EXPECT_EQ(restore(moved, daemon), Status::moved);
}

TEST_F(FileOperationsTest, LongNamesAreCutBetweenCharacters) {
    const QString name = QString(80, QChar(0x6F22)) + u".plist"_s; // 246 bytes
    const QString path = u"/Library/LaunchDaemons/"_s + name;
    for (int i = 0; i < 2; ++i) {
        mac.write(path, QByteArray::number(i));
        EXPECT_EQ(mac.read(trashed(path)), QByteArray::number(i));
    }
    // A family is one character.
    const QByteArray family = "\U0001F468\u200D\U0001F469\u200D\U0001F467";
    QByteArray stem = family;
    while (stem.size() < 240)
        stem += family;
    EXPECT_EQ(numberedName(stem, 12), stem.first(252 / family.size() * family.size()) + " 12");
    EXPECT_EQ(numberedName("archive.tar", 2), "archive 2.tar");
    EXPECT_EQ(numberedName(".hidden", 2), ".hidden 2");
}

TEST_F(FileOperationsTest, AnExchangedFileInTheTrashDoesNotComeBack) {
    const QString moved = trashed(daemon);
    mac.remove(moved);
    mac.write(moved, "evil"); // perhaps under the same inode
    ::chmod(mac.hostPath(moved).toUtf8().constData(), 04755);
    EXPECT_EQ(restore(moved, daemon), Status::failed);
    EXPECT_FALSE(mac.exists(daemon));
}

TEST_F(FileOperationsTest, TouchesOnlyWhatWasApprovedAndWhereItLies) {
    mac.write(u"/secret/com.acme.plist"_s, "secret");
    mac.link(u"/Library/Application Support/Way"_s, u"/secret"_s);
    mac.link(u"/Library/Preferences/link.plist"_s, u"/secret/com.acme.plist"_s);
    QList<PrivilegedFileOperationItem> items{
        {.source = daemon},                                                    // approved by nobody
        {.source = daemon, .approved = identity(u"/secret/com.acme.plist"_s)}, // another
        {.source = u"/Library/Application Support/Way/com.acme.plist"_s,
         .approved = identity(u"/secret/com.acme.plist"_s)}, // through a link
        item(u"/Library/Preferences/link.plist"_s),          // a link
        item(u"/secret/com.acme.plist"_s),                   // a foreign place
        item(u"/Library/Preferences/none.plist"_s),
        item(daemon)};
    for (const Kind kind : {Kind::moveToTrash, Kind::remove}) {
        mac.write(daemon, "daemon");
        items.last() = item(daemon);
        const auto outcomes = operations.perform({.operation = kind, .items = items}, client);
        ASSERT_EQ(outcomes.size(), items.size());
        for (qsizetype i = 0; i + 1 < outcomes.size(); ++i) {
            EXPECT_EQ(outcomes[i].status, Status::failed) << i;
            EXPECT_TRUE(outcomes[i].message);
        }
        EXPECT_NE(outcomes.last().status, Status::failed);
        EXPECT_EQ(mac.read(u"/secret/com.acme.plist"_s), "secret");
    }
}

TEST_F(FileOperationsTest, RefusesATrashOfSomeoneElseAndAJournalThatItCannotRead) {
    mac.link(u"/Users/ada/Linked"_s, u"/Users/ada/.Trash"_s);
    const QList<HelperClient> others{{client.user + 1, {trash}},
                                     {client.user, {u"/Users/ada/../../etc"_s, u"/none"_s}},
                                     {client.user, {u"/Users/ada/Linked"_s}}};
    for (const HelperClient& other : others) {
        client = other;
        EXPECT_EQ(perform(Kind::moveToTrash, item(daemon)).message,
                  u"Your Trash could not be opened."_s);
    }
    client.user = ::getuid();
    client.trashFolders = {trash};
    QFile::remove(state.path() + u"/moves.journal"_s);
    ASSERT_TRUE(QDir(state.path()).mkdir(u"moves.journal"_s));
    EXPECT_EQ(perform(Kind::moveToTrash, item(daemon)).status, Status::failed);
    EXPECT_EQ(mac.read(daemon), "daemon");
}

TEST_F(FileOperationsTest, TheLibraryMayLieOnAnotherVolumeThanTheRoot) {
    mac.remove(u"/Library"_s);
    mac.makeFolder(u"/Library"_s);
    const test::SmallDisk disk(mac.hostPath(u"/Library"_s).toStdString(), "size=64k");
    if (!disk)
        GTEST_SKIP() << "This process may not mount.";
    mac.write(daemon, "daemon");
    EXPECT_EQ(perform(Kind::remove, item(daemon)).status, Status::removed);
    EXPECT_FALSE(mac.exists(daemon));
}

TEST_F(FileOperationsTest, RemovesTreesWithoutFollowingTheirLinks) {
    const QString tree = u"/Library/Application Support/Acme"_s;
    mac.write(u"/keep/x"_s, "x");
    mac.link(tree + u"/a/link"_s, u"/keep"_s);
    for (int i = 0; i < 50; ++i)
        mac.write(tree + u"/%1/b/c/file"_s.arg(i), "x");
    const auto removed = perform(Kind::remove, item(tree));
    EXPECT_EQ(removed.status, Status::removed) << removed.message.value_or(QString()).toStdString();
    EXPECT_FALSE(mac.exists(tree));
    EXPECT_EQ(mac.read(u"/keep/x"_s), "x");
}

} // namespace
} // namespace tessellar
