#include "model/saved_arrangements.h"

#include "model/layout_backups.h"
#include "support/items.h"
#include "support/printers.h"
#include "support/test_machine.h"

#include <gtest/gtest.h>

#include <latch>

namespace tessellar {
namespace {

using namespace std::chrono_literals;
using test::app;
using test::folder;
using test::sketch;
using Code = LayoutStore::StorageError::Code;

class LayoutStoreTest : public testing::Test {
protected:
    const QString directory =
        QStringLiteral("/Users/ada/Library/Application Support/com.tessellar.app");
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

    LayoutDocument stored(const char* name = "layout.json") {
        const auto document = json::decodeDocument<LayoutDocument>(file(name));
        EXPECT_TRUE(document) << name;
        return document.value_or(LayoutDocument());
    }
    const LayoutStore::Failed* failure(const LayoutStore::LoadResult& result) {
        return std::get_if<LayoutStore::Failed>(&result);
    }
};

constexpr auto fullScreen = LauncherWindowMode::fullScreen;
constexpr auto windowed = LauncherWindowMode::windowed;
const Pages onePage{{app(u"a"_qs), app(u"b"_qs)}};

QByteArray documentOfVersion(int version) {
    return json::write(
        json::encode(LayoutDocument{.version = version, .pages = onePage, .hiddenKeys = {}}));
}

TEST_F(LayoutStoreTest, TheFolderIsNamedByTheIdentifier) {
    EXPECT_EQ(store.directory(), directory);
    EXPECT_EQ(LayoutStore::defaultDirectory(mac.machine.places, std::nullopt),
              u"/Users/ada/Library/Application Support/com.quillane.app");
    EXPECT_TRUE(mac.exists(directory));
}

TEST_F(LayoutStoreTest, KnownVersionsLoadAsTheCurrentOne) {
    for (const int version : {1, 2, 3}) {
        write("layout.json", documentOfVersion(version));
        const auto result = store.load(fullScreen);
        ASSERT_TRUE(std::holds_alternative<LayoutDocument>(result));
        EXPECT_EQ(std::get<LayoutDocument>(result).version, 3);
        EXPECT_TRUE(store.saveNow(fullScreen, {.pages = onePage}));
        EXPECT_EQ(stored().version, 3);
    }
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
        store.scheduleSave(fullScreen, {.pages = onePage});
        const auto result = store.load(fullScreen);
        ASSERT_TRUE(failure(result)) << bytes.left(200).toStdString();
        EXPECT_EQ(
            message(failure(result)->error),
            u"The current layout file could not be read. Reset the layout before saving changes.");
        EXPECT_TRUE(store.isWriteBlocked(fullScreen));
        store.scheduleSave(fullScreen, {.pages = onePage});
        advance(1s);
        const auto saved = store.saveNow(fullScreen, {.pages = onePage});
        ASSERT_FALSE(saved);
        EXPECT_EQ(std::get<LayoutStore::StorageError>(saved.error()).code,
                  Code::workingDocumentUnreadable);
        EXPECT_TRUE(store.flush());
        ASSERT_EQ(file("layout.json"), bytes);
    }
    // The other mode is free, and the damaged bytes outlive the reset.
    EXPECT_TRUE(std::holds_alternative<LayoutStore::Missing>(store.load(windowed)));
    EXPECT_TRUE(store.saveNow(windowed, {.pages = onePage}));
    ASSERT_TRUE(store.reset(fullScreen));
    EXPECT_FALSE(mac.exists(path("layout.json")));
    EXPECT_TRUE(store.saveNow(fullScreen, {.pages = onePage}));
    const QStringList kept = mac.names(path("Backups"));
    ASSERT_EQ(kept.size(), 1);
    EXPECT_EQ(mac.read(path("Backups/") + kept[0]), bad.last());
}

TEST_F(LayoutStoreTest, ALaterLoadOfAUsableFileOrOfNoneUnblocks) {
    write("layout.json", "damaged");
    EXPECT_TRUE(failure(store.load(fullScreen)));
    mac.remove(path("layout.json"));
    EXPECT_TRUE(std::holds_alternative<LayoutStore::Missing>(store.load(fullScreen)));
    EXPECT_TRUE(store.saveNow(fullScreen, {.pages = onePage}));
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
    EXPECT_EQ(mac.read(path("Backups/") + kept[0] + u"/inside"_qs), "x");
}

TEST_F(LayoutStoreTest, ABurstOfEditsIsOneWriteAfterItsEnd) {
    for (int i = 0; i < 10; ++i) {
        store.scheduleSave(fullScreen, {.pages = {{app(QString::number(i))}}});
        advance(100ms);
        EXPECT_FALSE(mac.exists(path("layout.json")));
    }
    advance(199ms);
    EXPECT_FALSE(mac.exists(path("layout.json")));
    advance(1ms);
    EXPECT_EQ(sketch(stored().pages), u"9");
    EXPECT_EQ(mac.time.pendingCount(), 0u);
}

TEST_F(LayoutStoreTest, TheModesWaitFailAndBlockEachForItself) {
    const auto shown = [](const char* name) {
        return LayoutDocument{.pages = {{app(QLatin1StringView(name))}}};
    };
    store.scheduleSave(fullScreen, shown("a"));
    advance(200ms);
    store.scheduleSave(windowed, shown("b"));
    advance(100ms);
    EXPECT_EQ(sketch(stored().pages), u"a");
    EXPECT_FALSE(mac.exists(path("layout-windowed.json")));
    EXPECT_TRUE(store.hasUnsavedEdits());

    // Neither a save nor a reset of the one takes the other's pending save.
    EXPECT_TRUE(store.saveNow(fullScreen, shown("c")));
    EXPECT_TRUE(store.reset(fullScreen));
    advance(200ms);
    EXPECT_EQ(sketch(stored("layout-windowed.json").pages), u"b");
    EXPECT_FALSE(store.hasUnsavedEdits());

    mac.makeFolder(path("layout.json/in the way"));
    store.scheduleSave(fullScreen, shown("d"));
    store.scheduleSave(windowed, shown("e"));
    EXPECT_FALSE(store.flush());
    EXPECT_TRUE(store.lastSaveError(fullScreen));
    EXPECT_FALSE(store.lastSaveError(windowed));
    EXPECT_EQ(sketch(stored("layout-windowed.json").pages), u"e");
}

TEST_F(LayoutStoreTest, AScheduledSaveThatFailsIsTriedAgainAtQuitting) {
    // A folder in the file's place, made after the load, fails every write for root too.
    mac.makeFolder(path("layout.json/in the way"));
    store.scheduleSave(fullScreen, {.pages = onePage});
    advance(300ms);
    EXPECT_TRUE(store.lastSaveError(fullScreen));
    EXPECT_TRUE(store.hasUnsavedEdits());
    EXPECT_FALSE(store.flush());
    mac.remove(path("layout.json"));
    EXPECT_TRUE(store.flush());
    EXPECT_FALSE(store.lastSaveError(fullScreen));
    EXPECT_EQ(stored().pages, onePage);
}

TEST_F(LayoutStoreTest, ASaveIsHandedOverAndToldOfWhenItIsOnTheDisk) {
    // The lane for saving is held up, as by a slow disk: nothing of the store's waits for it.
    std::latch opened{1};
    mac.workers.submit(Lane::saving, {}, [&](std::stop_token) { opened.wait(); });
    const auto shown = [](const char* name) {
        return LayoutDocument{.pages = {{app(QLatin1StringView(name))}}};
    };
    store.scheduleSave(fullScreen, shown("a"));
    mac.time.advance(300ms);
    store.scheduleSave(windowed, shown("b"));
    store.scheduleSave(fullScreen, shown("c")); // edited while the first is on its way
    EXPECT_TRUE(store.hasUnsavedEdits());
    QStringList told;
    const Subscription ended =
        store.saveEnded.connect([&](LauncherWindowMode mode, LayoutStore::Revision revision,
                                    const BackgroundFile::Result& saved) {
            EXPECT_LE(revision, store.revision(mode));
            told += !saved               ? u"failed"_qs
                    : mode == fullScreen ? u"%1 "_qs.arg(revision) + sketch(stored().pages)
                                         : u"windowed"_qs;
        });
    store.startPendingSave(fullScreen);
    store.startPendingSave(windowed);
    mac.mailbox.drain();
    EXPECT_FALSE(mac.exists(path("layout.json")));
    EXPECT_TRUE(told.isEmpty());
    opened.count_down();
    mac.settle();
    // Of what waited only the last is written, and the others are safe with it.
    EXPECT_EQ(told, QStringList({u"1 c"_qs, u"2 c"_qs, u"windowed"_qs}));
    EXPECT_EQ(sketch(stored("layout-windowed.json").pages), u"b");
    EXPECT_FALSE(store.hasUnsavedEdits());

    // A failure is told once nothing is under way that may still succeed.
    told.clear();
    mac.remove(path("layout.json"));
    mac.makeFolder(path("layout.json/in the way"));
    for (const char* name : {"d", "e"}) {
        store.scheduleSave(fullScreen, shown(name));
        store.startPendingSave(fullScreen);
    }
    mac.settle();
    EXPECT_EQ(told, QStringList{u"failed"_qs});
    EXPECT_TRUE(store.hasUnsavedEdits());
    // What a start could not bring up to date is nobody's edit.
    store.saveInBackground(fullScreen, shown("f"), [](const BackgroundFile::Result&) {});
    mac.settle();
    EXPECT_FALSE(store.hasUnsavedEdits());
    EXPECT_TRUE(store.lastSaveError(fullScreen));
}

TEST_F(LayoutStoreTest, WhatWasHandedOverIsWrittenAlsoAtTheEnd) {
    std::latch opened{1};
    auto own = std::make_unique<test::TestMachine>();
    const QString root = own->root.path();
    own->root.setAutoRemove(false);
    own->workers.submit(Lane::saving, {}, [&](std::stop_token) { opened.wait(); });
    {
        LayoutStore last(own->machine, directory);
        last.scheduleSave(fullScreen, {.pages = onePage});
        last.startPendingSave(fullScreen);
    }
    opened.count_down();
    own.reset();
    QFile written(root + path("layout.json"));
    EXPECT_TRUE(written.open(QIODevice::ReadOnly));
    EXPECT_EQ(json::decodeDocument<LayoutDocument>(written.readAll())->pages, onePage);
    QDir(root).removeRecursively();
}

TEST_F(LayoutStoreTest, ALinkStaysALinkAndOneToNowhereIsNoAbsence) {
    mac.write(u"/Users/ada/dotfiles/layout.json"_qs, documentOfVersion(3));
    mac.link(path("layout.json"), u"../../../dotfiles/layout.json"_qs);
    EXPECT_TRUE(std::holds_alternative<LayoutDocument>(store.load(fullScreen)));
    EXPECT_TRUE(store.saveNow(fullScreen, {.pages = {{app(u"new"_qs)}}}));
    EXPECT_TRUE(QFileInfo(mac.hostPath(path("layout.json"))).isSymLink());
    EXPECT_TRUE(mac.read(u"/Users/ada/dotfiles/layout.json"_qs).contains("new"));

    mac.remove(u"/Users/ada/dotfiles/layout.json"_qs);
    EXPECT_TRUE(failure(store.load(fullScreen)));
    EXPECT_FALSE(store.saveNow(fullScreen, {.pages = onePage}));
    EXPECT_FALSE(mac.exists(u"/Users/ada/dotfiles/layout.json"_qs));
}

TEST_F(LayoutStoreTest, WhatAnotherProgramWroteIsKeptBeforeItIsSavedOver) {
    const auto shown = [](const char* name) {
        return LayoutDocument{.pages = {{app(QLatin1StringView(name))}}};
    };
    QStringList kept;
    const Subscription told = store.foreignVersionKept.connect(
        [&](LauncherWindowMode, const QString& path) { kept += path; });
    write("layout.json", documentOfVersion(1));
    (void)store.load(fullScreen);
    for (const char* name : {"a", "b", "a"})
        EXPECT_TRUE(store.saveNow(fullScreen, shown(name)));
    mac.settle();
    EXPECT_FALSE(mac.exists(path("Backups"))) << "what was read and written here is no other's";

    write("layout.json", json::write(json::encode(shown("theirs"))));
    EXPECT_TRUE(store.saveNow(fullScreen, shown("ours")));
    mac.settle();
    const LayoutBackups backups(mac.files, directory);
    ASSERT_EQ(backups.list().size(), 1);
    EXPECT_EQ(backups.list()[0].reason, u"changed-by-another-program");
    EXPECT_EQ(backups.read(backups.list()[0].name)->value.document, shown("theirs"));
    ASSERT_EQ(kept.size(), 1);
    EXPECT_EQ(sketch(stored().pages), u"ours");

    write("layout.json", documentOfVersion(4));
    EXPECT_TRUE(store.saveNow(fullScreen, shown("ours")));
    mac.settle();
    ASSERT_EQ(kept.size(), 2);
    EXPECT_TRUE(FileSystem::fileName(kept[1]).startsWith(u"unreadable-layout-"_qs));
    EXPECT_EQ(mac.read(kept[1]), documentOfVersion(4));

    mac.remove(path("Backups"));
    write("Backups", "in the way");
    write("layout.json", documentOfVersion(5));
    EXPECT_FALSE(store.saveNow(fullScreen, shown("more")));
    EXPECT_EQ(file("layout.json"), documentOfVersion(5)) << "what cannot be kept is not saved over";
}

TEST_F(LayoutStoreTest, WhatCouldNotBeReadAgainIsNotWritten) {
    Pages deep{{app(u"a"_qs)}};
    for (int i = 0; i < maximumFolderDepth; ++i)
        deep = {{folder(QString::number(i), deep)}};
    EXPECT_TRUE(store.saveNow(fullScreen, {.pages = deep}));
    EXPECT_TRUE(std::holds_alternative<LayoutDocument>(store.load(fullScreen)));
    const SavedArrangements saved = store.arrangements(fullScreen);
    EXPECT_TRUE(saved.encoded(makeArrangement({}, u"deep"_qs, {}, {.pages = deep}, {})));
    const Pages deeper{{folder(u"one more"_qs, deep)}};
    EXPECT_FALSE(saved.encoded(makeArrangement({}, u"deeper"_qs, {}, {.pages = deeper}, {})));
    EXPECT_FALSE(store.saveNow(fullScreen, {.pages = deeper}));
    EXPECT_EQ(stored().pages, deep);
    // What could not be saved again is not taken up either.
    write("layout.json", json::write(json::encode(LayoutDocument{.pages = deeper})));
    EXPECT_TRUE(failure(store.load(fullScreen)));
}

TEST_F(LayoutStoreTest, BackupsOfOneSecondHaveNamesOfTheirOwn) {
    const auto first = store.makeBackup(u"legacy-launchpad-import"_qs, u"/db"_qs, {.pages = onePage});
    const auto second = store.makeBackup(u"arrangement-restore"_qs, {}, {.pages = onePage});
    ASSERT_TRUE(first && second);
    EXPECT_NE(*first, *second);
    EXPECT_EQ(*first, path("Backups/layout-2026-11-14T21-05-40Z-00000001.json"));
    const auto backup = json::decodeDocument<BackupDocument>(mac.read(*first));
    ASSERT_TRUE(backup);
    EXPECT_EQ(*backup, (BackupDocument{mac.time.now(),
                                       u"legacy-launchpad-import"_qs,
                                       u"/db"_qs,
                                       {.pages = onePage, .hiddenKeys = {}}}));
    EXPECT_FALSE(mac.read(*second).contains("sourceDatabasePath"));
}

TEST_F(LayoutStoreTest, ArrangementsListNewestFirstThenByNameWithoutRegardToCase) {
    const SavedArrangements saved = store.arrangements(fullScreen);
    const auto save = [&](const char* name) {
        const Arrangement arrangement = makeArrangement(QUuid::createUuid(), QLatin1StringView(name),
                                                        mac.time.now(), {.pages = onePage}, {});
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
    AppEntry alias = app(u"alias"_qs);
    alias.alias = AppAliasReference{QStringLiteral("org.example.a")};
    const Pages pages{
        {app(u"a"_qs), folder(u"o"_qs, {{folder(u"i"_qs, {{app(u"b"_qs), alias}}), app(u"c"_qs)}})},
        {SmartFolderReference{QUuid::createUuid()}}};
    ArrangementLayout layout;
    layout.rows = 4;
    layout.windowSize = WindowSize{800, 600};
    const SavedArrangements saved = store.arrangements(fullScreen);
    const Arrangement arrangement =
        makeArrangement(QUuid::createUuid(), u"x"_qs, mac.time.now(),
                        {.pages = pages, .hiddenKeys = {u"org.example.a"_qs}}, layout);
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
}

TEST_F(LayoutStoreTest, AnArrangementOfAnUnknownVersionIsRefused) {
    Arrangement arrangement{
        .id = QUuid::createUuid(), .name = u"x"_qs, .createdAt = {}, .document = {.version = 9}};
    const SavedArrangements saved = store.arrangements(fullScreen);
    mac.write(saved.path(arrangement.id), json::write(json::encode(arrangement)));
    const auto read = saved.read(arrangement.id);
    ASSERT_FALSE(read);
    EXPECT_EQ(std::get<LayoutStore::StorageError>(read.error()).version, 9);
    EXPECT_FALSE(saved.read(QUuid::createUuid()));
}

} // namespace
} // namespace tessellar
