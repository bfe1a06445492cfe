#include "model/saved_arrangements.h"

#include "model/drawn.h"
#include "model/layout_backups.h"
#include "support/printers.h"
#include "support/test_machine.h"
#ifdef __linux__
#include "platform/system_call_tracer.h"
#endif

#include <gtest/gtest.h>

#include <latch>

namespace tessellar {
namespace {

using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;
using test::drawn;
using test::folder;
using test::sketch;
using Code = LayoutStore::StorageError::Code;

class LayoutStoreTest : public testing::Test {
protected:
    const QString directory = u"/Users/ada/Library/Application Support/com.tessellar.app"_s;
    test::TestMachine mac;
    LayoutStore store{mac.machine, LayoutStore::defaultDirectory(mac.machine.places)};

    QString path(const char* name) const { return directory + u'/' + QLatin1StringView(name); }
    /// Moves the clock, and lets what is handed over then reach the disk.
    void advance(std::chrono::milliseconds time) {
        mac.time.advance(time);
        mac.settle();
    }
    QByteArray file(const char* name) const { return mac.read(path(name)); }
    void write(const char* name, const QByteArray& bytes) { mac.write(path(name), bytes); }

    /// What a file holds, as a sketch.
    QString stored(const char* name = "layout.json") {
        const auto document = json::decodeDocument<LayoutDocument>(file(name));
        EXPECT_TRUE(document) << name;
        return document ? sketch(document->pages) : QString();
    }
    const LayoutStore::Failed* failure(const LayoutStore::LoadResult& result) {
        return std::get_if<LayoutStore::Failed>(&result);
    }
};

constexpr auto fullScreen = LauncherWindowMode::fullScreen;
constexpr auto windowed = LauncherWindowMode::windowed;
LayoutDocument shown(QStringView sketch) { return {.pages = drawn(sketch)}; }

QByteArray documentOfVersion(int version) {
    return json::write(json::encode(LayoutDocument{.version = version, .pages = drawn(u"a b")}));
}

TEST_F(LayoutStoreTest, AFileThatCannotBeUsedBlocksItsModeUntilAReset) {
    const QByteArray whole = documentOfVersion(3);
    QList<QByteArray> bad{"",
                          "[]",
                          "null",
                          documentOfVersion(0),
                          documentOfVersion(4),
                          R"({"version": 3, "pages": []})",
                          R"({"version": "3", "pages": [], "hiddenKeys": []})",
                          R"({"version": 3, "pages": [[{"app": {}}]], "hiddenKeys": []})",
                          R"({"version": 3.5, "pages": [], "hiddenKeys": []})",
                          QByteArray(maximumLayoutBytes + 1, ' '),
                          QByteArray(500'000, '[')};
    for (qsizetype length = 1; length < whole.size() - 1; length += 7)
        bad += whole.first(length);
    for (const QByteArray& bytes : std::as_const(bad)) {
        write("layout.json", bytes);
        store.scheduleSave(fullScreen, shown(u"a b"));
        const auto result = store.load(fullScreen);
        ASSERT_TRUE(failure(result)) << bytes.left(200).toStdString();
        EXPECT_EQ(
            message(failure(result)->error),
            u"The current layout file could not be read. Reset the layout before saving changes.");
        EXPECT_TRUE(store.isWriteBlocked(fullScreen));
        store.scheduleSave(fullScreen, shown(u"a b"));
        advance(1s);
        const auto saved = store.saveNow(fullScreen, shown(u"a b"));
        ASSERT_FALSE(saved);
        EXPECT_EQ(std::get<LayoutStore::StorageError>(saved.error()).code,
                  Code::workingDocumentUnreadable);
        EXPECT_TRUE(store.flush());
        ASSERT_EQ(file("layout.json"), bytes);
    }
    // The other mode is free, and the damaged bytes outlive the reset.
    EXPECT_TRUE(std::holds_alternative<LayoutStore::Missing>(store.load(windowed)));
    EXPECT_TRUE(store.saveNow(windowed, shown(u"a b")));
    ASSERT_TRUE(store.reset(fullScreen));
    EXPECT_FALSE(mac.exists(path("layout.json")));
    EXPECT_TRUE(store.saveNow(fullScreen, shown(u"a b")));
    const QStringList kept = mac.names(path("Backups"));
    ASSERT_EQ(kept.size(), 1);
    EXPECT_EQ(mac.read(path("Backups/") + kept[0]), bad.last());
    // A later load of a usable file, or of none, unblocks too.
    write("layout.json", "damaged");
    EXPECT_TRUE(failure(store.load(fullScreen)));
    mac.remove(path("layout.json"));
    EXPECT_TRUE(std::holds_alternative<LayoutStore::Missing>(store.load(fullScreen)));
    EXPECT_TRUE(store.saveNow(fullScreen, shown(u"a b")));
}

TEST_F(LayoutStoreTest, AFolderInTheFilesPlaceBlocksAndIsNotThrownAway) {
    mac.write(path("layout.json/inside"), "x");
    const auto result = store.load(fullScreen);
    ASSERT_TRUE(failure(result));
    EXPECT_TRUE(failure(result)->isTransient);
    const Task again = store.loadInBackground(fullScreen, [](const auto&) {});
    mac.workers.waitIdle();
    EXPECT_TRUE(store.reset(fullScreen));
    mac.settle();
    EXPECT_FALSE(store.isWriteBlocked(fullScreen)) << "by what was read before the reset";
    EXPECT_FALSE(mac.exists(path("layout.json")));
    const QStringList kept = mac.names(path("Backups"));
    ASSERT_EQ(kept.size(), 1);
    EXPECT_EQ(mac.read(path("Backups/") + kept[0] + u"/inside"_s), "x");
}

#ifdef __linux__
TEST_F(LayoutStoreTest, AFileThatCannotBeLookedAtIsNotThrownAwayEither) {
    write("layout.json", "damaged");
    EXPECT_TRUE(failure(store.load(fullScreen)));
    const auto run = test::traceSystemCalls(
        [&] { return store.reset(fullScreen) ? 0 : 1; },
        [hasFailed = false](std::size_t, long call) mutable -> test::Fate {
            const bool fails = call == SYS_statx && !std::exchange(hasFailed, true);
            return fails ? test::Fate{test::Fate::Kind::fail, EIO} : test::Fate{};
        });
    if (!run.traceable)
        GTEST_SKIP() << "this process may not trace its children";
    const QStringList kept = mac.names(path("Backups"));
    EXPECT_EQ(kept.isEmpty() ? file("layout.json") : mac.read(path("Backups/") + kept[0]), "damaged");
}
#endif

TEST_F(LayoutStoreTest, TheModesWaitFailAndBlockEachForItself) {
    store.scheduleSave(fullScreen, shown(u"a"));
    advance(200ms);
    store.scheduleSave(windowed, shown(u"b"));
    advance(100ms);
    EXPECT_EQ(stored(), u"a");
    EXPECT_FALSE(mac.exists(path("layout-windowed.json")));
    EXPECT_TRUE(store.hasUnsavedEdits());

    // Neither a save nor a reset of the one takes the other's pending save.
    EXPECT_TRUE(store.saveNow(fullScreen, shown(u"c")));
    EXPECT_TRUE(store.reset(fullScreen));
    advance(200ms);
    EXPECT_EQ(stored("layout-windowed.json"), u"b");
    EXPECT_FALSE(store.hasUnsavedEdits());

    // A folder in the file's place, made after the load, fails every write for root too.
    mac.makeFolder(path("layout.json/in the way"));
    store.scheduleSave(fullScreen, shown(u"d"));
    store.scheduleSave(windowed, shown(u"e"));
    advance(300ms);
    EXPECT_FALSE(store.flush());
    EXPECT_EQ(stored("layout-windowed.json"), u"e");
    EXPECT_TRUE(store.hasUnsavedEdits());
    mac.remove(path("layout.json"));
    EXPECT_TRUE(store.flush()) << "tried again at quitting";
    EXPECT_EQ(stored(), u"d");
}

TEST_F(LayoutStoreTest, ASaveIsHandedOverAndToldOfWhenItIsOnTheDisk) {
    // The lane for saving is held up, as by a slow disk: nothing of the store's waits for it.
    std::latch opened{1};
    mac.workers.submit(Lane::saving, {}, [&](std::stop_token) { opened.wait(); });
    store.scheduleSave(fullScreen, shown(u"a"));
    mac.time.advance(300ms);
    store.scheduleSave(windowed, shown(u"b"));
    store.scheduleSave(fullScreen, shown(u"c")); // edited while the first is on its way
    EXPECT_TRUE(store.hasUnsavedEdits());
    QStringList told;
    const Subscription ended =
        store.saveEnded.connect([&](LauncherWindowMode mode, LayoutStore::Revision revision,
                                    const BackgroundFile::Result& saved) {
            EXPECT_LE(revision, store.revision(mode));
            told += !saved               ? u"failed"_s
                    : mode == fullScreen ? u"%1 "_s.arg(revision) + stored()
                                         : u"windowed"_s;
        });
    store.startPendingSave(fullScreen);
    store.startPendingSave(windowed);
    mac.mailbox.drain();
    EXPECT_FALSE(mac.exists(path("layout.json")));
    EXPECT_TRUE(told.isEmpty());
    opened.count_down();
    mac.settle();
    // Of what waited only the last is written, and the others are safe with it.
    EXPECT_EQ(told, QStringList({u"1 c"_s, u"2 c"_s, u"windowed"_s}));
    EXPECT_EQ(stored("layout-windowed.json"), u"b");
    EXPECT_FALSE(store.hasUnsavedEdits());

    // A failure is told once nothing is under way that may still succeed.
    told.clear();
    mac.remove(path("layout.json"));
    mac.makeFolder(path("layout.json/in the way"));
    for (const auto* name : {u"d", u"e"}) {
        store.scheduleSave(fullScreen, shown(name));
        store.startPendingSave(fullScreen);
    }
    mac.settle();
    EXPECT_EQ(told, QStringList{u"failed"_s});
    EXPECT_TRUE(store.hasUnsavedEdits());
    // What a start could not bring up to date is nobody's edit.
    store.saveInBackground(fullScreen, shown(u"f"),
                           [](const BackgroundFile::Result& saved) { EXPECT_FALSE(saved); });
    mac.settle();
    EXPECT_FALSE(store.hasUnsavedEdits());
}

TEST_F(LayoutStoreTest, ALinkStaysALinkAndOneToNowhereIsNoAbsence) {
    mac.write(u"/Users/ada/dotfiles/layout.json"_s, documentOfVersion(3));
    mac.link(path("layout.json"), u"../../../dotfiles/layout.json"_s);
    EXPECT_TRUE(std::holds_alternative<LayoutDocument>(store.load(fullScreen)));
    EXPECT_TRUE(store.saveNow(fullScreen, shown(u"new")));
    EXPECT_TRUE(QFileInfo(mac.hostPath(path("layout.json"))).isSymLink());
    EXPECT_TRUE(mac.read(u"/Users/ada/dotfiles/layout.json"_s).contains("new"));

    mac.remove(u"/Users/ada/dotfiles/layout.json"_s);
    EXPECT_TRUE(failure(store.load(fullScreen)));
    EXPECT_FALSE(store.saveNow(fullScreen, shown(u"a b")));
    EXPECT_FALSE(mac.exists(u"/Users/ada/dotfiles/layout.json"_s));
}

TEST_F(LayoutStoreTest, WhatAnotherProgramWroteIsKeptBeforeItIsSavedOver) {
    QStringList kept;
    const Subscription told = store.foreignVersionKept.connect(
        [&](LauncherWindowMode, const QString& path) { kept += path; });
    write("layout.json", documentOfVersion(1));
    EXPECT_EQ(std::get<LayoutDocument>(store.load(fullScreen)).version, 3);
    for (const auto* name : {u"a", u"b", u"a"})
        EXPECT_TRUE(store.saveNow(fullScreen, shown(name)));
    mac.settle();
    EXPECT_FALSE(mac.exists(path("Backups"))) << "what was read and written here is no other's";

    write("layout.json", json::write(json::encode(shown(u"theirs"))));
    EXPECT_TRUE(store.saveNow(fullScreen, shown(u"ours")));
    mac.settle();
    const LayoutBackups backups(mac.files, directory);
    ASSERT_EQ(backups.list().size(), 1);
    EXPECT_EQ(backups.list()[0].reason, u"changed-by-another-program");
    EXPECT_EQ(backups.read(backups.list()[0].name)->value.document, shown(u"theirs"));
    ASSERT_EQ(kept.size(), 1);
    EXPECT_EQ(stored(), u"ours");

    write("layout.json", documentOfVersion(4));
    EXPECT_TRUE(store.saveNow(fullScreen, shown(u"ours")));
    mac.settle();
    ASSERT_EQ(kept.size(), 2);
    EXPECT_TRUE(FileSystem::fileName(kept[1]).startsWith(u"unreadable-layout-"_s));
    EXPECT_EQ(mac.read(kept[1]), documentOfVersion(4));

    mac.remove(path("Backups"));
    write("Backups", "in the way");
    write("layout.json", documentOfVersion(5));
    EXPECT_FALSE(store.saveNow(fullScreen, shown(u"more")));
    EXPECT_EQ(file("layout.json"), documentOfVersion(5)) << "what cannot be kept is not saved over";
}

TEST_F(LayoutStoreTest, WhatCouldNotBeReadAgainIsNotWritten) {
    Pages deep = drawn(u"a");
    for (int i = 0; i < maximumFolderDepth; ++i)
        deep = {{folder(QString::number(i), deep)}};
    EXPECT_TRUE(store.saveNow(fullScreen, {.pages = deep}));
    EXPECT_TRUE(std::holds_alternative<LayoutDocument>(store.load(fullScreen)));
    const SavedArrangements saved = store.arrangements(fullScreen);
    EXPECT_TRUE(saved.encoded(makeArrangement({}, u"deep"_s, {}, {.pages = deep}, {})));
    const Pages deeper{{folder(u"one more"_s, deep)}};
    EXPECT_FALSE(saved.encoded(makeArrangement({}, u"deeper"_s, {}, {.pages = deeper}, {})));
    EXPECT_FALSE(store.saveNow(fullScreen, {.pages = deeper}));
    EXPECT_EQ(stored(), sketch(deep));
    // What could not be saved again is not taken up either.
    write("layout.json", json::write(json::encode(LayoutDocument{.pages = deeper})));
    EXPECT_TRUE(failure(store.load(fullScreen)));
}

TEST_F(LayoutStoreTest, BackupsOfOneSecondHaveNamesOfTheirOwn) {
    const auto first = store.backup(u"legacy-launchpad-import"_s, u"/db"_s, shown(u"a b"));
    const auto second = store.backup(u"arrangement-restore"_s, {}, shown(u"a b"));
    ASSERT_TRUE(first.write() && second.write());
    EXPECT_NE(first.path, second.path);
    EXPECT_EQ(first.path, path("Backups/layout-2026-11-14T21-05-40Z-00000001.json"));
    const auto backup = json::decodeDocument<BackupDocument>(mac.read(first.path));
    ASSERT_TRUE(backup);
    EXPECT_EQ(*backup,
              (BackupDocument{mac.time.now(), u"legacy-launchpad-import"_s, u"/db"_s, shown(u"a b")}));
    EXPECT_FALSE(mac.read(second.path).contains("sourceDatabasePath"));
}

TEST_F(LayoutStoreTest, ArrangementsListNewestFirstThenByNameWithoutRegardToCase) {
    const SavedArrangements saved = store.arrangements(fullScreen);
    const auto save = [&](const char* name) {
        const Arrangement arrangement = makeArrangement(QUuid::createUuid(), QLatin1StringView(name),
                                                        mac.time.now(), shown(u"a b"), {});
        EXPECT_TRUE(saved.writeBytes(arrangement.id, saved.encoded(arrangement).value()));
        return arrangement.id;
    };
    save("old");
    mac.time.advance(2s);
    save("b");
    const QUuid capital = save("A");
    save("c");
    const QUuid broken = QUuid::createUuid();
    mac.write(saved.path(broken), "{");
    write("Arrangements/copy.json", "{");
    write("Arrangements/notes.txt", "not ours");
    QStringList names;
    for (const ListedArrangement& arrangement : saved.list())
        names += arrangement.summary.name;
    EXPECT_EQ(names.join(u' '), u"A b c old ") << "what cannot be read has no name";
    EXPECT_FALSE(saved.list().last().isReadable);
    EXPECT_TRUE(mac.log.lines().join(u' ').contains(saved.path(broken)));
    EXPECT_TRUE(saved.remove(broken));

    EXPECT_TRUE(store.arrangements(windowed).list().isEmpty());
    EXPECT_FALSE(store.arrangements(windowed).remove(capital));
    EXPECT_TRUE(saved.remove(capital));
    EXPECT_EQ(saved.list().size(), 3);

    // A copy that someone made bears another's identifier.
    const QUuid copy = QUuid::createUuid();
    const QUuid original = saved.list()[0].summary.id;
    const QByteArray bytes = mac.read(saved.path(original));
    mac.write(saved.path(copy), bytes);
    write("Arrangements/copy.json", bytes.constData());
    EXPECT_EQ(saved.list().size(), 4);
    EXPECT_TRUE(saved.remove(copy));
    EXPECT_EQ(saved.list()[0].summary.id, original);
}

TEST_F(LayoutStoreTest, ArrangementsCountTilesAtEveryDepthAndCarryTheirSettings) {
    Pages pages = drawn(u"a [o: [i: b alias] c]|*");
    pages[0][1].folder()->pages[0][0].folder()->pages[0][1].app()->alias = {u"org.example.a"_s};
    ArrangementLayout layout;
    layout.rows = 4;
    layout.windowSize = WindowSize{800, 600};
    const SavedArrangements saved = store.arrangements(fullScreen);
    Arrangement arrangement =
        makeArrangement(QUuid::createUuid(), u"x"_s, mac.time.now(),
                        {.pages = pages, .hiddenKeys = {u"org.example.a"_s}}, layout);
    EXPECT_EQ(arrangement.pageCount, 2);
    EXPECT_EQ(arrangement.appCount, 3);
    EXPECT_EQ(arrangement.folderCount, 3);
    ASSERT_TRUE(saved.writeBytes(arrangement.id, saved.encoded(arrangement).value()));
    const auto read = saved.read(arrangement.id);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->value, arrangement);
    // What a picture of it is made from.
    EXPECT_EQ(saved.list(), (QList<ListedArrangement>{
                                {summaryOf(arrangement), Page{pages[0][1]}, 4, layout.columns}}));

    // One of an unknown version is refused.
    arrangement.document.version = 9;
    mac.write(saved.path(arrangement.id), json::write(json::encode(arrangement)));
    const auto unknown = saved.read(arrangement.id);
    ASSERT_FALSE(unknown);
    EXPECT_EQ(std::get<LayoutStore::StorageError>(unknown.error()).version, 9);
    EXPECT_FALSE(saved.read(QUuid::createUuid()));
}

} // namespace
} // namespace tessellar
