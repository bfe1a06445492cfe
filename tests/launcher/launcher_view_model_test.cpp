#include "launcher/place_memory.h"

#include "small_launcher.h"

#include <latch>
#include <semaphore>

namespace tessellar::test {
namespace {

class LauncherTest : public SmallLauncher {
protected:
    /// "done", or why no edit is taken.
    QString guarded(LauncherWindowMode mode = fullScreen) {
        return codeOf(launcher->history().guard(mode));
    }
};

TEST_F(LauncherTest, AFirstStartShowsAndSavesTheDefaultLayoutOfBothModes) {
    installAll(u"Beech ash"_s);
    start();
    EXPECT_EQ(sketched(), u"ash Beech");
    EXPECT_EQ(stored().pages, launcher->shown().pages());
    EXPECT_EQ(sketch(stored("layout-windowed.json").pages), u"ash Beech");
    const Pages first = launcher->shown().pages();
    EXPECT_EQ(start().shown().pages(), first);
}

TEST_F(LauncherTest, EditsAreRefusedUntilTheFirstLoadIsComplete) {
    launcher = std::make_unique<LauncherViewModel>(mac.machine);
    for (const auto& outcome : {launcher->history().guard(mode()), launcher->archive().reset(mode()),
                                restoreArrangement(*launcher, mac, QUuid::createUuid())})
        EXPECT_EQ(codeOf(outcome), u"layoutNotReady");
}

TEST_F(LauncherTest, ADamagedFileShowsTheDefaultLayoutAndOnlyAResetWritesAgain) {
    install(u"Ash"_s);
    mac.write(layoutFile, "damaged");
    start();
    EXPECT_EQ(sketched(), u"Ash");
    ASSERT_EQ(messages().takeAlerts().size(), 1);
    EXPECT_EQ(guarded(), u"workingDocumentUnreadable");
    EXPECT_EQ(codeOf(editor().sortEverything(mode())), u"workingDocumentUnreadable");
    EXPECT_FALSE(saveArrangement(*launcher, mac, u"x"_s));
    rescan();
    EXPECT_TRUE(launcher->quit());
    EXPECT_EQ(mac.read(layoutFile), "damaged");

    EXPECT_EQ(guarded(windowed), u"done");
    EXPECT_TRUE(launcher->archive().reset(mode()));
    EXPECT_EQ(noticed(), u"Layout reset to the default alphabetical arrangement.");
    EXPECT_EQ(guarded(), u"done");
    EXPECT_EQ(sketch(stored().pages), u"Ash");
}

TEST_F(LauncherTest, WhatCouldNotBeReadIsTriedAgain) {
    const QString layout = u"/Volumes/Away/layout.json"_s;
    const QString places = u"/Volumes/Away/places.json"_s;
    installAll(u"Ash Beech"_s);
    mac.link(layoutFile, layout);
    mac.link(data + u"/remembered-places.json"_s, places);
    start();
    EXPECT_EQ(sketched(), u"Ash Beech");
    EXPECT_EQ(messages().takeAlerts().size(), 2);
    const auto wait = [&] {
        time.advance(1min);
        mac.settle();
    };
    wait();
    EXPECT_NE(guarded(), u"done");
    EXPECT_TRUE(messages().takeAlerts().isEmpty()) << "it was said";

    mac.write(layout, json::write(json::encode(LayoutDocument{.pages = drawn(u"Beech|Ash")})));
    mac.write(places, json::write(json::encode(RememberedPlaces())));
    time.advance(1min);
    mac.workers.waitIdle();
    mac.mailbox.drain(); // the layout is read for a scan, which a removal discards
    const auto hold = launcher->applications().hold();
    mac.settle();
    EXPECT_EQ(guarded(), u"done");
    EXPECT_EQ(sketched(), u"Beech|Ash") << "what can be edited is what was read";
    EXPECT_TRUE(launcher->places().canRemember(fullScreen));
}

TEST_F(LauncherTest, WhatWasResetIsNotReadAgain) {
    install(u"Ash"_s);
    mac.link(layoutFile, u"/Volumes/Away/layout.json"_s);
    start();
    ASSERT_TRUE(launcher->archive().reset(mode()));
    const QUuid ash = launcher->shown().pages()[0][0].id();
    for (int i = 0; i < 100; ++i) {
        ASSERT_TRUE(editor().rename(mode(), ash, QString::number(i)));
        const QString before = sketched();
        time.advance(250ms); // not saved yet
        mac.settle();
        ASSERT_EQ(sketched(), before);
    }
}

TEST_F(LauncherTest, ARescanMergesWhatChangedAndWritesNothingWhenNothingDid) {
    installAll(u"Ash Beech"_s);
    start();
    EXPECT_EQ(time.pendingCount(), 0u);
    rescan();
    EXPECT_EQ(time.pendingCount(), 0u);

    install(u"Cedar"_s);
    uninstall(u"Ash"_s);
    rescan();
    EXPECT_EQ(sketched(), u"Beech Cedar");
    time.advance(300ms);
    EXPECT_EQ(sketch(stored().pages), u"Beech Cedar");
    EXPECT_EQ(sketch(stored("layout-windowed.json").pages), u"Beech Cedar");
}

/// The merge is worked out behind the user's back; what he does meanwhile counts.
TEST_F(LauncherTest, WhatIsEditedWhileAScanIsMergedStays) {
    installAll(u"Amber Birch"_s);
    start();
    const QUuid amber = launcher->shown().pages().first().first().id();
    int edits = 0;
    // Each scan that is ready to be merged is met by an edit, more often than a merge is tried again.
    launcher->applications().rescan();
    install(u"Cobalt"_s);
    launcher->applications().rescan();
    do {
        mac.workers.waitIdle();
        if (edits < 10)
            (void)editor().rename(mode(), amber, u"Amber %1"_s.arg(++edits));
    } while (mac.mailbox.drain() > 0);
    EXPECT_EQ(edits, 10);
    EXPECT_EQ(sketched(), u"Amber %1 Birch Cobalt"_s.arg(edits));
}

TEST_F(LauncherTest, LaunchingTellsTheSystemAndSaysWhatItAnswers) {
    const QString path = install(u"Ash"_s);
    QList<QByteArray> arguments;
    int status = 0;
    mac.tool(u"/usr/bin/open"_s, [&](const Command& command, std::stop_token) {
        arguments = command.arguments;
        return exited(status, {}, "It would not open.\n");
    });
    start();
    int launches = 0;
    const auto subscription = launcher->opener().launched.connect([&] { ++launches; });
    const auto launch = [&] {
        launcher->opener().launch(u"org.example.ash"_s);
        mac.settle();
    };
    launch();
    EXPECT_EQ(arguments, QList<QByteArray>({"-a", mac.files.hostPath(path)}));
    EXPECT_EQ(launches, 1);

    status = 1;
    launch();
    const QList<LauncherError> alerts = messages().takeAlerts();
    ASSERT_EQ(alerts.size(), 1);
    EXPECT_EQ(alerts[0].message, u"It would not open.");
    EXPECT_EQ(alerts[0].title, u"Could not open “Ash”");

    mac.remove(path);
    launch();
    EXPECT_EQ(noticed(), LiveLayout::unavailableNotice());
    EXPECT_TRUE(launcher->shown().pages().isEmpty());
}

TEST_F(LauncherTest, ALaunchWaitsForNothingThatHangs) {
    install(u"Ash"_s);
    start();
    std::latch opened{1};
    for (const Lane lane :
         {Lane::files, Lane::computing, Lane::decoding, Lane::tools, Lane::network, Lane::saving})
        for (unsigned i = 0; i < mac.workers.threadCount(lane); ++i)
            mac.workers.submit(lane, {}, [&](std::stop_token) { opened.wait(); });
    std::binary_semaphore asked{0};
    mac.tool(u"/usr/bin/open"_s, [&](const Command&, std::stop_token) {
        asked.release();
        return exited(0);
    });
    launcher->opener().launch(u"org.example.ash"_s);
    bool isAsked = false;
    for (int i = 0; i < 3'000 && !isAsked; ++i) { // only a failure comes to the end
        mac.mailbox.drain();
        isAsked = asked.try_acquire_for(10ms);
    }
    EXPECT_TRUE(isAsked);
    opened.count_down();
    mac.settle();
}

TEST_F(LauncherTest, OpenFoldersAndPagesFollowTheLayout) {
    installAll(u"Ash Beech Cedar Dogwood"_s);
    store(drawn(u"Ash|[f: Cedar|Dogwood]|Beech"));
    LiveLayout& shown = start().shown();
    shown.navigation().setCurrentPage(99);
    EXPECT_EQ(shown.navigation().currentPage(), 2);
    EXPECT_FALSE(shown.navigation().openFolder(idOf(u"Ash"_s)));
    EXPECT_TRUE(shown.navigation().openFolder(idOf(u"f"_s)));
    shown.navigation().setFolderPage(5);
    EXPECT_EQ(shown.navigation().folderStack(), QList<OpenFolderLevel>({{idOf(u"f"_s), 1}}));
    shown.navigation().select(idOf(u"Cedar"_s));
    uninstall(u"Beech"_s);
    uninstall(u"Cedar"_s);
    rescan();
    EXPECT_TRUE(shown.navigation().folderStack().isEmpty());
    EXPECT_EQ(shown.navigation().currentPage(), 1);
    EXPECT_FALSE(shown.navigation().selectedItemID());
}

TEST_F(LauncherTest, ADiskThatRefusesTheStartUpSaveIsSaidAndNothingIsLost) {
    install(u"Ash"_s);
    // A link to nowhere in the folder's place: nothing is there to load, and nothing can be saved.
    mac.link(data, u"/nowhere/at all"_s);
    start();
    EXPECT_EQ(sketched(), u"Ash");
    EXPECT_FALSE(messages().takeAlerts().isEmpty());
    EXPECT_FALSE(launcher->quit());
    mac.remove(data);
    EXPECT_TRUE(launcher->quit());
    EXPECT_EQ(sketch(stored().pages), u"Ash");
}

} // namespace
} // namespace tessellar::test
