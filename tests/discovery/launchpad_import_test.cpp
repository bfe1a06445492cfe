#include "discovery/launchpad_import.h"

#include "discovery/launchpad_snapshot.h"
#include "sample/launchpad_database.h"
#include "support/items.h"
#include "support/printers.h"
#include "support/test_machine.h"
#ifdef __linux__
#include "tests/platform/system_call_tracer.h"
#endif

#include <gmock/gmock.h>
#include <sqlite3.h>
#include <sys/stat.h>

#include <filesystem>
#include <random>
#include <source_location>

namespace tessellar::test {

using namespace Qt::Literals::StringLiterals;
using Code = LaunchpadImportError::Code;
using sample::OldFolder;
using sample::OldItem;
using sample::OldTile;

namespace {

const QString userFolder = u"/private/var/folders/zz/0/"_s;
const QString primary = userFolder + u"com.apple.dock.launchpad/db/db"_s;
const QString dockFolder = u"/Users/ada/Library/Application Support/Dock"_s;

OldItem tile(const QString& name) { return OldTile{name, u"org.example."_s + name.toLower()}; }

class LaunchpadImportTest : public testing::Test {
protected:
    LaunchpadImportTest() {
        machine.tool(u"/usr/bin/getconf"_s, exited(0, userFolder.toUtf8() + '\n'));
    }

    NativeLaunchpadImporter importer(LaunchpadReadLimits limits = {}) {
        auto context = LaunchpadImportContext::of(machine.machine, installed);
        context.temporaryFolder = temporary.path();
        context.limits = limits;
        return NativeLaunchpadImporter(std::move(context));
    }
    NativeLaunchpadImportResult import(const std::optional<QString>& path = {}) {
        auto result = importer().run(path);
        EXPECT_TRUE(result) << (result ? "" : result.error().detail.toStdString());
        return result.value_or(NativeLaunchpadImportResult());
    }
    LaunchpadImportError failure(const std::optional<QString>& path = {}) {
        auto result = importer().run(path);
        EXPECT_FALSE(result);
        return result ? LaunchpadImportError() : result.error();
    }
    void add(const sample::OldLaunchpad& launchpad, const QString& path = primary) {
        sample::addOldLaunchpad(mac, launchpad, path);
        ASSERT_EQ(mac.failure(), std::nullopt);
    }
    void sql(const char* statements, const QString& path = primary) {
        machine.makeFolder(FileSystem::parent(path));
        sqlite3* database = nullptr;
        sqlite3_open(machine.hostPath(path).toUtf8().constData(), &database);
        EXPECT_EQ(sqlite3_exec(database, statements, nullptr, nullptr, nullptr), SQLITE_OK)
            << sqlite3_errmsg(database);
        sqlite3_close(database);
    }

    TestMachine machine;
    QTemporaryDir temporary;
    sample::MacBuilder mac{machine.root.path()};
    QList<AppEntry> installed{app(u"A"_s), app(u"B"_s), app(u"C"_s), app(u"D"_s), app(u"E"_s)};
};

constexpr auto bareTables =
    "CREATE TABLE apps (item_id INTEGER, title, bundleid, storeid);"
    "CREATE TABLE groups (item_id INTEGER, title);"
    "CREATE TABLE items (rowid INTEGER, uuid, flags, type, parent_id, ordering);";

TEST_F(LaunchpadImportTest, KeepsPagesFoldersAndTheirPagesAndLeavesTheOriginalAlone) {
    const sample::OldLaunchpad old{
        .pages = {{tile(u"C"_s), OldFolder{u" Work "_s,
                                           {{OldTile{u"A"_s, u"org.example.a"_s}},
                                            {OldTile{u"Gone"_s, u"org.example.gone"_s},
                                             OldTile{u"b"_s, u"former.identifier"_s}}}}},
                  {OldFolder{u""_s, {{OldTile{u"D"_s, u"org.example.d"_s}}}}, tile(u"E"_s)},
                  {tile(u"Lost"_s), OldFolder{u"All gone"_s, {{OldTile{u"X"_s, u"x"_s}}}}}}};
    for (const bool inUse : {true, false}) {
        for (const bool olderForm : {true, false}) {
            auto variant = old;
            variant.inUse = inUse;
            variant.olderForm = olderForm;
            add(variant);
            const QStringList before = machine.names(FileSystem::parent(primary));
            const QByteArray bytes = machine.read(primary) + machine.read(primary + u"-wal"_s);
            ASSERT_EQ(before.contains(u"db-wal"_s), inUse);

            const auto result = import();
            EXPECT_EQ(sketch(result.pages), u"C [Work: A|B]|[Folder: D] E"_s);
            EXPECT_EQ(result.skippedApps, (QStringList{u"Gone"_s, u"Lost"_s, u"X"_s}));
            EXPECT_EQ(result.metadata.sourceDatabasePath, primary);
            EXPECT_EQ(result.metadata.importedAt, machine.time.now());
            EXPECT_EQ(result.metadata.appCount, 5);
            EXPECT_EQ(result.metadata.folderCount, 2);
            EXPECT_EQ(result.metadata.unresolvedAppCount, 3);
            EXPECT_EQ(result.metadata.schemaUserVersion, 1);
            EXPECT_EQ(result.otherItemCount, olderForm ? 2 : 1);
            EXPECT_EQ(machine.names(FileSystem::parent(primary)), before);
            EXPECT_EQ(machine.read(primary) + machine.read(primary + u"-wal"_s), bytes);
            EXPECT_TRUE(QDir(temporary.path()).isEmpty());
        }
    }
}

TEST_F(LaunchpadImportTest, FindsTheDatabaseWhereTheSystemHasIt) {
    EXPECT_EQ(failure().code, Code::databaseNotFound);
    const auto old = [](const QString& name) { return sample::OldLaunchpad{.pages = {{tile(name)}}}; };
    const auto settle = [&](const QString& path, int seconds) {
        const auto time = std::filesystem::file_time_type::clock::now() + std::chrono::seconds(seconds);
        for (const QString& suffix : {u""_s, u"-wal"_s})
            if (machine.exists(path + suffix))
                std::filesystem::last_write_time(machine.hostPath(path + suffix).toStdString(), time);
    };
    const QString older = dockFolder + u"/1.db"_s;
    const QString newer = dockFolder + u"/2.DB"_s;
    const QString other = dockFolder + u"/3.db"_s;
    add(old(u"A"_s), older);
    add(old(u"B"_s), newer);
    sql("CREATE TABLE thumbnails (x)", other);
    machine.write(dockFolder + u"/4.db"_s, "not a database, but the newest");
    const QString damaged = dockFolder + u"/5.db"_s;
    add({.pages = {{tile(u"D"_s)}}, .inUse = false}, damaged);
    machine.write(damaged, machine.read(damaged).replace("CREATE TABLE", "CREATE FABLE"));
    settle(older, -30);
    settle(newer, -20);
    settle(other, -10);
    EXPECT_EQ(sketch(import().pages), u"B"_s);
    EXPECT_EQ(sketch(import(older).pages), u"A"_s);

    add(old(u"C"_s));
    EXPECT_EQ(sketch(import().pages), u"C"_s);
    for (const auto& answer : {exited(1, "/x\n"), exited(0, " \n"), exited(0, "relative\n")}) {
        machine.commands.answer("/usr/bin/getconf", answer);
        EXPECT_EQ(failure().code, Code::cannotResolveDarwinUserDirectory);
    }
}

TEST_F(LaunchpadImportTest, RefusesWhatIsNoLaunchpadDatabase) {
    const QString path = u"/bad/db"_s;
    add({.pages = {{tile(u"A"_s)}}, .inUse = false});
    const QByteArray whole = machine.read(primary);
    QByteArray declaresTwoGigabytes = whole;
    declaresTwoGigabytes.replace(28, 4, QByteArray::fromHex("0007a120"));
    QByteArray encrypted = whole;
    std::mt19937 random(7); // NOLINT: the same bytes in every run
    for (char& byte : encrypted)
        byte = static_cast<char>(random());
    const auto refuses = [&](Code code, const QString& detail = {},
                             std::source_location where = std::source_location::current()) {
        SCOPED_TRACE(where.line());
        const LaunchpadImportError error = failure(path);
        EXPECT_EQ(error.code, code);
        EXPECT_TRUE(error.detail.contains(detail)) << error.detail.toStdString();
        EXPECT_TRUE(QDir(temporary.path()).isEmpty());
        if (machine.exists(u"/bad"_s))
            machine.remove(u"/bad"_s);
    };
    const auto pipe = [&](const QString& place) {
        machine.makeFolder(FileSystem::parent(place));
        ::mkfifo(machine.hostPath(place).toUtf8().constData(), 0600);
    };
    refuses(Code::unableToOpenDatabase);
    for (const auto& [bytes, detail] : {std::pair{QByteArray(20'000, 'x'), QString()},
                                        {encrypted, QString()},
                                        {whole.first(4'500), u"malformed"_s},
                                        {whole.first(16'384), u"malformed"_s},
                                        {declaresTwoGigabytes, u"malformed"_s}}) {
        SCOPED_TRACE(bytes.size());
        machine.write(path, bytes);
        refuses(Code::unableToOpenDatabase, detail);
    }
    machine.write(path, whole);
    QFile::resize(machine.hostPath(path), qint64(2) << 30);
    refuses(Code::unableToOpenDatabase, u"large"_s);

    // What is no regular file, in its place or in that of its log.
    pipe(path);
    refuses(Code::unableToOpenDatabase, u"not a regular file"_s);
    machine.link(path, primary);
    refuses(Code::unableToOpenDatabase, u"not a regular file"_s);
    machine.makeFolder(path);
    refuses(Code::unableToOpenDatabase, u"not a regular file"_s);
    machine.write(path, whole);
    pipe(path + u"-wal"_s);
    refuses(Code::unableToOpenDatabase, u"not a regular file"_s);

    // Tables that are none, or not these.
    machine.write(path, {});
    refuses(Code::unsupportedSchema, u"Missing required table: apps"_s);
    const QByteArray apps = "CREATE TABLE apps (item_id, title, bundleid, storeid);";
    const QByteArray groups = "CREATE TABLE groups (item_id, title);";
    const QByteArray items = "CREATE TABLE items (rowid, uuid, flags, type, parent_id, ordering);";
    for (const auto& [statements, detail] :
         {std::pair{apps + items, u"Missing required table: groups"_s},
          {apps + groups + items +
               "ALTER TABLE items DROP COLUMN ordering; ALTER TABLE items DROP COLUMN flags",
           u"items is missing columns: flags, ordering"_s},
          {apps + groups +
               "CREATE VIEW items AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) "
               "SELECT i AS rowid, 'x' AS uuid, 0 AS flags, 4 AS type, 1 AS parent_id, 0 AS ordering "
               "FROM n",
           u"Missing required table: items"_s},
          {apps + groups + "CREATE TRIGGER items AFTER INSERT ON apps BEGIN DELETE FROM apps; END",
           u"Missing required table: items"_s},
          {apps + groups +
               "CREATE VIRTUAL TABLE items USING fts5(uuid, flags, type, parent_id, ordering)",
           u"Missing required table: items"_s},
          {apps + items +
               "CREATE TABLE groups (item_id, title AS (hex(zeroblob(100000000))));"
               "INSERT INTO groups VALUES (1)",
           u"groups is missing columns: title"_s}}) {
        SCOPED_TRACE(statements.constData());
        sql(statements.constData(), path);
        refuses(Code::unsupportedSchema, detail);
    }
    sql(bareTables, path);
    refuses(Code::importConversionFailed);
    add({.pages = {{tile(u"Lost"_s), OldFolder{u"F"_s, {{}}}}}}, path);
    refuses(Code::importConversionFailed);
}

TEST_F(LaunchpadImportTest, TakesValuesOfOtherTypesForNone) {
    sql(bareTables);
    sql("INSERT INTO apps VALUES (10, x'00ff', 'org.example.a', 5), (11, 7, NULL, NULL), ('x', 'B', "
        "'b', NULL),"
        "  (12, printf('%.*c', 5000, 'x'), 'org.example.c', NULL), (99, 'Without an item', 'q', NULL);"
        "INSERT INTO items VALUES (1, 'ROOTPAGE', 0, 1, 0, 0), (2, 'P', 0, 3, 1, 'last'),"
        "  (10, 'a', 0, 4, 2, 0), (11, NULL, 0, 4, 2, 0), (12, 'c', 0, 4, 2, NULL), (13, 'd', 0, 4, 2, "
        "1),"
        "  (14, 'e', 0, '4', 2, 1), (15, 'f', 0, 4, NULL, 1);");
    const auto result = import();
    EXPECT_EQ(sketch(result.pages), u"A C"_s);
    EXPECT_EQ(result.skippedApps, (QStringList{u"Item 11"_s, u"Item 13"_s}));
}

TEST_F(LaunchpadImportTest, EndsInTimeWhateverTheSize) {
    add({.pages = {{tile(u"A"_s), tile(u"B"_s)}}});
    EXPECT_EQ(importer({.rows = 1}).run().error(),
              (LaunchpadImportError{Code::queryFailed, u"There are too many rows."_s}));
    std::stop_source stop;
    stop.request_stop();
    EXPECT_EQ(importer().run({}, stop.get_token()).error().code, Code::cancelled);
    sql("INSERT INTO apps(item_id) WITH RECURSIVE n(i) AS (SELECT 1000 UNION ALL SELECT i + 1 FROM n "
        "WHERE "
        "i < 100000) SELECT i FROM n");
    const auto outOfTime = importer({.time = std::chrono::milliseconds(0)}).run();
    ASSERT_FALSE(outOfTime);
    EXPECT_EQ(outOfTime.error().detail, u"interrupted"_s);
}

/// What a lock protects is what was committed, and that is what a copy holds.
TEST_F(LaunchpadImportTest, ReadsPastTheLockOfAnotherConnection) {
    for (const bool inUse : {true, false}) {
        add({.pages = {{tile(u"A"_s), tile(u"B"_s)}}, .inUse = inUse});
        sqlite3* owner = nullptr;
        ASSERT_EQ(sqlite3_open(machine.hostPath(primary).toUtf8().constData(), &owner), SQLITE_OK);
        ASSERT_EQ(sqlite3_exec(owner,
                               "PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE;"
                               "DELETE FROM apps WHERE title = 'B'",
                               nullptr, nullptr, nullptr),
                  SQLITE_OK);
        EXPECT_EQ(sketch(import().pages), u"A B"_s);
        sqlite3_close(owner);
    }
}

#ifdef __linux__
/// A copy that mixes moments would show what never was.
TEST_F(LaunchpadImportTest, CopiesAnewWhatChangedMeanwhile) {
    const QString path = u"/live/db"_s;
    const QString log = path + u"-wal"_s;
    const QString journal = path + u"-journal"_s;
    const QByteArray plain(1'000, 'a');
    QByteArray logged = plain;
    logged[18] = logged[19] = 2; // it uses a log
    const struct {
        const char* what;
        QByteArray database;
        std::function<void()> change;
        int writes = 2; ///< to the copies
    } cases[] = {
        {"grown", plain, [&] { machine.write(path, plain + 'b'); }, 3},
        {"written", plain,
         [&] { std::filesystem::last_write_time(machine.hostPath(path).toStdString(), {}); }},
        {"replaced", plain,
         [&] {
             machine.write(u"/new"_s, plain);
             std::filesystem::rename(machine.hostPath(u"/new"_s).toStdString(),
                                     machine.hostPath(path).toStdString());
         }},
        {"in a transaction until then", plain, [&] { machine.remove(journal); }},
        {"with a log begun anew", logged, [&] { machine.write(log, QByteArray(64, 'm')); }, 4},
    };
    for (const auto& [what, database, change, writes] : cases) {
        machine.write(path, database);
        machine.write(log, QByteArray(64, 'l'));
        machine.write(journal, QByteArray(what).startsWith("in a transaction") ? "x" : "");
        int written = 0;
        const auto run = traceSystemCalls(
            [&] { return LaunchpadSnapshot::take(machine.files, path, temporary.path()) ? 0 : 1; },
            [&](std::size_t, long call) {
                if (call == SYS_write && ++written == 1)
                    change();
                return Fate{};
            });
        if (!run.traceable)
            GTEST_SKIP() << "this process may not trace its children";
        EXPECT_EQ(run.exitStatus, 0) << what;
        EXPECT_EQ(written, writes) << what;
    }
}
#endif

} // namespace
} // namespace tessellar::test
