#include "launcher/launcher_updates.h"
#include "launcher/place_memory.h"
#include "launcher/small_launcher.h"
#include "updates/app_update_runner.h"

#include <latch>

namespace tessellar::test {
namespace {

class PlaceMemoryTest : public SmallLauncher {
protected:
    void arrange() {
        installAll(u"Ash Elm Ivy Oak"_s);
        store(drawn(arranged));
    }
    /// Restores the newest backup, or the one of this name.
    QString restoreBackup(QString name = {}) {
        if (name.isEmpty())
            name = mac.names(data + u"/Backups"_s).last().sliced(7).chopped(5);
        QString code;
        launcher->archive().restoreBackup(fullScreen, name,
                                          [&](const auto& restored) { code = codeOf(restored); });
        mac.settle();
        return code;
    }
    const QString arranged = u"Oak [Trees: Elm Ash] Ivy"_s;
    const QString places = data + u"/remembered-places.json"_s;
};

TEST_F(PlaceMemoryTest, AnApplicationThatComesBackAWeekLaterLiesWhereItLay) {
    arrange();
    start();
    uninstall(u"Ash"_s);
    start();
    EXPECT_EQ(sketched(), u"Oak Elm Ivy");
    time.advance(7 * 24h);
    for (const bool isNewProcess : {true, false}) {
        install(u"Ash"_s);
        isNewProcess ? (void)start() : rescan();
        EXPECT_EQ(sketched(), arranged);
        EXPECT_EQ(launcher->shown().pages()[0][1].id(), idOf(u"Trees"_s));
        uninstall(u"Ash"_s);
        rescan();
        EXPECT_EQ(sketched(), u"Oak Elm Ivy");
    }
    // Each mode has its own.
    EXPECT_EQ(summaries(launcher->places()[fullScreen]).size(), 1);
    // Success is what is on the disk; else it is remembered, and no later save forgets it.
    for (const bool isOnDisk : {false, true}) {
        const QByteArray kept = mac.read(places);
        if (!isOnDisk)
            block(places);
        std::expected<qsizetype, LauncherError> forgotten;
        launcher->places().forget(fullScreen, u"org.example.ash"_s,
                                  [&](const auto& outcome) { forgotten = outcome; });
        mac.settle();
        if (!isOnDisk) {
            mac.remove(places);
            mac.write(places, kept);
        }
        EXPECT_EQ(forgotten.has_value(), isOnDisk);
        EXPECT_EQ(forgotten.value_or(0), isOnDisk ? 1 : 0);
        EXPECT_EQ(summaries(launcher->places()[fullScreen]).size(), isOnDisk ? 0 : 1);
    }
    install(u"Ash"_s);
    rescan();
    EXPECT_EQ(sketched(), u"Oak Elm Ivy Ash");
    EXPECT_EQ(sketch(launcher->layout(windowed).pages()), u"Ash Elm Ivy Oak");
}

TEST_F(PlaceMemoryTest, WhatCouldNotBeSeenCostsNoTile) {
    arrange();
    const QString custom = install(u"Fern"_s, u"/Volumes/Work/Apps"_s);
    (void)mac.machine.settings.set(u"appDiscovery.additionalSearchPaths"_s,
                                   QJsonArray{u"/Volumes/Work/Apps"_s});
    start();
    const QString whole = sketched();
    ASSERT_TRUE(whole.contains(u"Fern"_s));
    // No mount, or a mount point without its mount, or another folder of that name is not the volume;
    // to the launcher that runs and to one that begins then. Moved and not removed: the next folder is
    // not to be the same inode.
    for (const auto& there : {u""_s, u"/Volumes/Work"_s, u"/Volumes/Work/Apps"_s}) {
        move(u"/Volumes/Work"_s, u"/aside"_s);
        if (!there.isEmpty())
            mac.makeFolder(there);
        for (const bool isRunning : {true, false}) {
            isRunning ? rescan() : (void)start();
            EXPECT_EQ(sketched(), whole) << there.toStdString();
            EXPECT_EQ(launcher->shown().unavailableAppKeys(), QSet<QString>{u"org.example.fern"_s});
        }
        QString refusal;
        launcher->opener().launch(u"org.example.fern"_s,
                                  [&](const LauncherViewModel::Outcome& outcome) {
                                      refusal = outcome ? QString() : outcome.error().message;
                                  });
        EXPECT_EQ(refusal, LiveLayout::unavailableNotice());
        if (!there.isEmpty())
            mac.remove(u"/Volumes/Work"_s);
        move(u"/aside"_s, u"/Volumes/Work"_s);
        rescan();
        EXPECT_TRUE(launcher->shown().unavailableAppKeys().isEmpty());
    }
    // Settings that are lost say nothing. Those that the user takes back do.
    const auto set = [&](const QJsonValue& paths) {
        ASSERT_TRUE(mac.machine.settings.set(u"appDiscovery.additionalSearchPaths"_s, paths));
    };
    const QJsonArray paths{u"/Volumes/Work/Apps"_s};
    for (const bool isLost : {true, false}) {
        set(QJsonValue());
        isLost ? void() : launcher->settings().stored.notify();
        for (int i = 0; i < 2; ++i) {
            start();
            EXPECT_EQ(sketched().contains(u"Fern"_s), isLost);
        }
        set(paths);
        start();
        EXPECT_EQ(sketched(), whole);
    }
    mac.remove(custom);
    rescan();
    EXPECT_FALSE(sketched().contains(u"Fern"_s));
}

TEST_F(PlaceMemoryTest, NothingIsGoneWhileAnUpdaterReplacesBundles) {
    arrange();
    start();
    move(u"/Applications/Oak.app"_s, u"/Oak.app"_s);
    auto replacing = launcher->applications().replacing();
    rescan();
    EXPECT_EQ(sketched(), arranged);
    EXPECT_TRUE(launcher->shown().unavailableAppKeys().contains(u"org.example.oak"_s));
    move(u"/Oak.app"_s, u"/Applications/Oak.app"_s);
    replacing.reset();
    mac.settle();
    EXPECT_EQ(sketched(), arranged);
    EXPECT_TRUE(launcher->shown().unavailableAppKeys().isEmpty());
    uninstall(u"Oak"_s);
    rescan();
    EXPECT_EQ(sketched(), u"[Trees: Elm Ash] Ivy");

    // Nor while one goes on that an earlier launcher started.
    install(u"Oak"_s);
    start();
    const QString brew = u"/opt/homebrew/bin/brew"_s;
    mac.tool(brew, exited(0));
    mac.commands.holdStarted(true);
    const auto number = mac.commands.start({.executable = mac.files.hostPath(brew)},
                                           mac.files.hostPath(data + u"/app-update-run.log"_s));
    ASSERT_TRUE(number);
    mac.write(data + u"/app-update-run.json"_s,
              json::write(json::encode(AppUpdateRun{.appKey = u"org.example.oak"_s,
                                                    .updaterName = u"Homebrew"_s,
                                                    .processNumber = *number,
                                                    .startedAt = time.now()})));
    uninstall(u"Oak"_s);
    start();
    EXPECT_EQ(sketched(), arranged);
    mac.commands.holdStarted(false);
    rescan();
    EXPECT_EQ(sketched(), u"[Trees: Elm Ash] Ivy");
}

TEST_F(PlaceMemoryTest, UsageAndUpdatesGoAlongWithAChangedKey) {
    arrange();
    const QString key = u"org.example.oak"_s;
    const QString path = u"/Applications/Oak.app"_s;
    AppUpdateCache cache;
    cache.records[key] = {.status = UpdateAvailable{u"9"_s}, .checkedAt = time.now()};
    cache.skipped[key] = u"9"_s;
    mac.write(data + u"/app-updates.json"_s, json::write(json::encode(cache)));
    const auto keyOfUpdates = [&] {
        mac.workers.waitIdle();
        const auto read = json::decodeDocument<AppUpdateCache>(mac.read(data + u"/app-updates.json"_s));
        return read && read->records.size() == 1 && read->records.keys() == read->skipped.keys()
                   ? read->records.firstKey()
                   : u"another"_s;
    };
    start();
    launcher->smartFolders().recordLaunch(key);
    install(u"Oak"_s, u"/Users/ada/Applications"_s);
    rescan();
    EXPECT_EQ(keyOfUpdates(), path) << "though nobody has asked for updates";
    start();
    const auto counts = [&](const QString& of) {
        for (const auto& facts : launcher->smartFolders().facts(fullScreen))
            if (appKey(facts->entry) == of)
                return facts->launchCount.value_or(-1);
        return qint64{-2};
    };
    bool isKnown = false;
    launcher->smartFolders().gatherFacts({}, [&] { isKnown = true; });
    mac.until([&] { return isKnown; });
    EXPECT_EQ(counts(path), 1);
    EXPECT_EQ(counts(u"/Users/ada/Applications/Oak.app"_s), 0);
    // They come back also where updates are known by then.
    isKnown = false;
    launcher->updates().whenReady([&] { isKnown = true; });
    mac.until([&] { return isKnown; });
    mac.remove(u"/Users/ada/Applications/Oak.app"_s);
    rescan();
    EXPECT_EQ(launcher->updates().of(key).skipped(), u"9");
}

TEST_F(PlaceMemoryTest, FilesThatCannotBeUsedCostNothingElse) {
    arrange();
    for (const QByteArray& bytes :
         {QByteArray("{"), QByteArray("{\"version\": 2}"), QByteArray(20 << 20, ' '), QByteArray()}) {
        install(u"Ash"_s);
        store(drawn(arranged));
        mac.write(places, bytes);
        mac.write(data + u"/known-volumes.json"_s, bytes);
        start();
        EXPECT_EQ(sketched(), arranged);
        uninstall(u"Ash"_s);
        rescan();
        EXPECT_EQ(sketched(), u"Oak Elm Ivy");
        install(u"Ash"_s);
        rescan();
        EXPECT_EQ(sketched(), arranged) << "remembered as long as it runs";
    }
    EXPECT_EQ(mac.names(data).filter(u"remembered-places.damaged-"_s).size(), 4)
        << "one that is too large would be in the way for good";
}

TEST_F(PlaceMemoryTest, AFileThatIsReadInPartIsKeptBeforeItIsSavedOver) {
    arrange();
    const QByteArray bad =
        QByteArray(mac.read(layoutFile)).replace("file:///Applications/Ash.app/", "nowhere");
    mac.write(layoutFile, bad);
    start();
    EXPECT_EQ(alerts(), QStringList{u"lossyLayout"_s});
    EXPECT_EQ(sketched(), u"Oak Ivy Ash Elm");
    const QStringList kept = mac.names(data + u"/Backups"_s);
    ASSERT_EQ(kept.size(), 1);
    EXPECT_EQ(mac.read(data + u"/Backups/"_s + kept[0]), bad);
}

TEST_F(PlaceMemoryTest, WhatIsRestoredOnlyInPartIsToldAndKeptWhole) {
    arrange();
    start();
    const auto saved = saveArrangement(*launcher, mac, u"Mine"_s);
    ASSERT_TRUE(saved);
    ASSERT_TRUE(launcher->archive().reset(fullScreen));
    mac.settle();
    const QString arrangement = data + u"/Arrangements/"_s + toText(saved->id) + u".json"_s;
    for (const QString& file :
         {arrangement, data + u"/Backups/"_s + mac.names(data + u"/Backups"_s)[0]}) {
        const QByteArray bad = mac.read(file).replace("file:///Applications/Ash.app/", "nowhere");
        mac.write(file, bad);
        EXPECT_EQ(file == arrangement ? codeOf(restoreArrangement(*launcher, mac, saved->id))
                                      : restoreBackup(FileSystem::fileName(file).sliced(7).chopped(5)),
                  u"done");
        EXPECT_EQ(sketched(), u"Oak Ivy|Ash Elm");
        EXPECT_EQ(alerts(), QStringList{u"lossyRestore"_s});
        EXPECT_EQ(mac.read(file), bad);
    }
}

TEST_F(PlaceMemoryTest, NoTileLeavesTheDiskBeforeItsPlaceIsThere) {
    arrange();
    start();
    const auto pressOn = [&] {
        EXPECT_TRUE(editor().rename(fullScreen, idOf(u"Ivy"_s),
                                    sketched().contains(u"Ivy"_s) ? u"Yew"_s : u"Ivy"_s));
        time.advance(300ms);
        mac.settle();
        return sketch(stored().pages);
    };
    mac.makeFolder(places); // no file can take its place
    uninstall(u"Ash"_s);
    rescan();
    time.advance(300ms);
    EXPECT_EQ(sketched(), u"Oak Elm Ivy");
    EXPECT_EQ(sketch(stored().pages), arranged);
    EXPECT_EQ(pressOn(), arranged);
    EXPECT_EQ(alerts(&LauncherError::title).value(0), u"Could not save the layout");
    mac.remove(places);
    EXPECT_EQ(pressOn(), u"Oak Elm Ivy");
    install(u"Ash"_s);
    start();
    EXPECT_EQ(sketched(), arranged);

    // Nor is one dropped while it is not known what the file holds.
    launcher.reset();
    mac.remove(places);
    mac.link(places, u"nowhere"_s);
    uninstall(u"Ash"_s);
    start();
    EXPECT_EQ(alerts().value(0), u"placesUnreadable");
    QString forgotten;
    launcher->places().forget(fullScreen, {},
                              [&](const auto& outcome) { forgotten = codeOf(outcome); });
    mac.settle();
    EXPECT_EQ(forgotten, u"placesUnreadable");
    EXPECT_EQ(pressOn(), u"Oak [Trees: Elm Ash] Yew");
    EXPECT_EQ(launcher->shown().unavailableAppKeys(), QSet<QString>{u"org.example.ash"_s});
    launcher.reset();
    mac.remove(places);
    start();
    EXPECT_EQ(sketched(), u"Oak Elm Yew");
}

TEST_F(PlaceMemoryTest, TheSaveAtTheStartKeepsNobodyWaiting) {
    arrange();
    std::latch opened{1};
    mac.workers.submit(Lane::saving, {}, [&](std::stop_token) { opened.wait(); });
    launcher = std::make_unique<LauncherViewModel>(mac.machine);
    launcher->start();
    while (!launcher->isBootstrapped())
        mac.mailbox.waitAndDrain();
    EXPECT_TRUE(launcher->history().guard(fullScreen));
    EXPECT_FALSE(mac.exists(data + u"/layout-windowed.json"_s));
    opened.count_down();
    EXPECT_EQ(stored().pages, launcher->shown().pages());
}

TEST_F(PlaceMemoryTest, ALayoutThatAnotherProgramChangedIsKeptAndTheUserTold) {
    arrange();
    start();
    const QByteArray theirs = QByteArray(mac.read(layoutFile)).replace("Trees", "Theirs");
    mac.write(layoutFile, theirs);
    const auto turned =
        launcher->history().edit(fullScreen, u"Turn"_s, [](LayoutDocument document) -> EditResult {
            document.pages[0].swapItemsAt(0, 1);
            return document;
        });
    ASSERT_TRUE(turned);
    time.advance(300ms);
    mac.settle();
    EXPECT_EQ(alerts(), QStringList{u"changedByAnotherProgram"_s});
    EXPECT_EQ(sketch(stored().pages), u"[Trees: Elm Ash] Oak Ivy");
    EXPECT_EQ(restoreBackup(), u"done");
    EXPECT_EQ(sketched(), u"Oak [Theirs: Elm Ash] Ivy");
}

TEST_F(PlaceMemoryTest, BackupsAreRestoredAsAStepOfHistory) {
    arrange();
    start();
    for (int i = 0; i < 10; ++i) // the latest are kept however old they are
        mac.write(data + u"/Backups/layout-2001-01-1%1T00-00-00Z-00000000.json"_s.arg(i), "old");
    ASSERT_TRUE(launcher->archive().reset(fullScreen));
    mac.settle();
    EXPECT_EQ(mac.names(data + u"/Backups"_s).size(), 10) << "bounded also when nobody lists them";
    EXPECT_EQ(sketched(), u"Ash Elm Ivy Oak");
    QList<BackupSummary> backups;
    launcher->archive().listBackups([&](const QList<BackupSummary>& all) { backups = all; });
    mac.settle();
    ASSERT_EQ(backups.size(), 1);
    EXPECT_EQ(backups[0].reason, u"reset");
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(sketched(), arranged);
    EXPECT_EQ(redo(), u"done");
    EXPECT_EQ(restoreBackup(backups[0].name), u"done");
    EXPECT_EQ(sketched(), arranged);
    EXPECT_EQ(stored().pages, launcher->shown().pages());
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(sketched(), u"Ash Elm Ivy Oak");
    EXPECT_NE(restoreBackup(u"../layout"_s), u"done");
}

} // namespace
} // namespace tessellar::test
