#include "launcher/launcher_editor.h"
#include "launcher/launcher_history.h"
#include "launcher/launcher_messages.h"
#include "launcher/launcher_view_model.h"
#include "launcher/layout_archive.h"
#include "launcher/live_layout.h"
#include "launcher/place_memory.h"

#include "small_launcher.h"

#include <latch>
#include <semaphore>

namespace tessellar {
namespace {

using namespace std::chrono_literals;
using test::sketch;

class LauncherTest : public test::SmallLauncher {};

TEST_F(LauncherTest, AFirstStartShowsAndSavesTheDefaultLayoutOfBothModes) {
    install(u"Beech"_qs);
    install(u"ash"_qs);
    start();
    EXPECT_EQ(sketch(launcher->shown().pages()), u"ash Beech");
    EXPECT_EQ(stored().pages, launcher->shown().pages());
    EXPECT_EQ(sketch(stored("layout-windowed.json").pages), u"ash Beech");
    const Pages first = launcher->shown().pages();
    EXPECT_EQ(start().shown().pages(), first);
}

TEST_F(LauncherTest, EditsAreRefusedUntilTheFirstLoadIsComplete) {
    launcher = std::make_unique<LauncherViewModel>(mac.machine);
    for (const auto& outcome : {launcher->history().guard(launcher->shown().mode()),
                                launcher->archive().reset(launcher->shown().mode()),
                                test::restoreArrangement(*launcher, mac, QUuid::createUuid())}) {
        ASSERT_FALSE(outcome);
        EXPECT_EQ(outcome.error().code, u"layoutNotReady");
        EXPECT_EQ(outcome.error().message,
                  u"The launcher layout is still loading. Try again in a moment.");
    }
}

TEST_F(LauncherTest, ADamagedFileShowsTheDefaultLayoutAndOnlyAResetWritesAgain) {
    install(u"Ash"_qs);
    mac.write(data + QStringLiteral("/layout.json"), "damaged");
    start();
    EXPECT_EQ(sketch(launcher->shown().pages()), u"Ash");
    ASSERT_EQ(launcher->messages().takeAlerts().size(), 1);
    ASSERT_FALSE(launcher->history().guard(launcher->shown().mode()));
    EXPECT_EQ(launcher->history().guard(launcher->shown().mode()).error().code,
              u"workingDocumentUnreadable");
    EXPECT_FALSE(test::saveArrangement(*launcher, mac, u"x"_qs));
    rescan();
    EXPECT_TRUE(launcher->quit());
    EXPECT_EQ(mac.read(data + QStringLiteral("/layout.json")), "damaged");

    launcher->layouts().show(LauncherWindowMode::windowed);
    EXPECT_TRUE(launcher->history().guard(launcher->shown().mode()));
    launcher->layouts().show(LauncherWindowMode::fullScreen);
    EXPECT_TRUE(launcher->archive().reset(launcher->shown().mode()));
    EXPECT_EQ(launcher->messages().notice()->text,
              u"Layout reset to the default alphabetical arrangement.");
    EXPECT_TRUE(launcher->history().guard(launcher->shown().mode()));
    EXPECT_EQ(sketch(stored().pages), u"Ash");
}

TEST_F(LauncherTest, WhatCouldNotBeReadIsTriedAgain) {
    const auto mode = LauncherWindowMode::fullScreen;
    const QString layout = u"/Volumes/Away/layout.json"_qs;
    const QString places = u"/Volumes/Away/places.json"_qs;
    for (const char16_t* name : {u"Ash", u"Beech"})
        install(QString::fromUtf16(name));
    mac.link(data + u"/layout.json"_qs, layout);
    mac.link(data + u"/remembered-places.json"_qs, places);
    start();
    EXPECT_EQ(sketched(), u"Ash Beech");
    EXPECT_EQ(launcher->messages().takeAlerts().size(), 2);
    const auto wait = [&] {
        time.advance(1min);
        mac.settle();
    };
    wait();
    EXPECT_FALSE(launcher->history().guard(mode));
    EXPECT_TRUE(launcher->messages().takeAlerts().isEmpty()) << "it was said";

    mac.write(layout, json::write(json::encode(LayoutDocument{
                          .pages = {{test::app(u"Beech"_qs)}, {test::app(u"Ash"_qs)}}})));
    mac.write(places, json::write(json::encode(RememberedPlaces())));
    wait();
    EXPECT_EQ(sketched(), u"Beech|Ash");
    EXPECT_TRUE(launcher->history().guard(mode));
    EXPECT_TRUE(launcher->places().canRemember(mode));
}

TEST_F(LauncherTest, ARescanMergesWhatChangedAndWritesNothingWhenNothingDid) {
    install(u"Ash"_qs);
    install(u"Beech"_qs);
    start();
    EXPECT_EQ(mac.time.pendingCount(), 0u);
    rescan();
    EXPECT_EQ(mac.time.pendingCount(), 0u);

    install(u"Cedar"_qs);
    mac.remove(QStringLiteral("/Applications/Ash.app"));
    rescan();
    EXPECT_EQ(sketch(launcher->shown().pages()), u"Beech Cedar");
    mac.time.advance(300ms);
    EXPECT_EQ(sketch(stored().pages), u"Beech Cedar");
    launcher->layouts().show(LauncherWindowMode::windowed);
    EXPECT_EQ(sketch(stored("layout-windowed.json").pages), u"Beech Cedar");
}

/// The merge is worked out behind the user's back; what he does meanwhile counts.
TEST_F(LauncherTest, WhatIsEditedWhileAScanIsMergedStays) {
    install(u"Amber"_qs);
    install(u"Birch"_qs);
    start();
    const QUuid amber = launcher->shown().pages().first().first().id();
    int edits = 0;
    // Each scan that is ready to be merged is met by an edit, more often than a merge is tried again.
    launcher->applications().rescan();
    install(u"Cobalt"_qs);
    launcher->applications().rescan();
    const auto rename = [&] {
        (void)launcher->editor().rename(launcher->shown().mode(), amber, u"Amber %1"_qs.arg(++edits));
    };
    do {
        mac.workers.waitIdle();
        if (edits < 10)
            rename();
    } while (mac.mailbox.drain() > 0);
    EXPECT_EQ(edits, 10);
    EXPECT_EQ(sketched(), u"Amber %1 Birch Cobalt"_qs.arg(edits));
}

TEST_F(LauncherTest, AnApplicationOnAVolumeThatIsNotMountedKeepsItsTile) {
    (void)mac.settings.set(QStringLiteral("appDiscovery.additionalSearchPaths"),
                           QJsonArray{QStringLiteral("/Volumes/Work/Tools")});
    install(u"Ash"_qs);
    install(u"Zelkova"_qs, QStringLiteral("/Volumes/Work/Tools"));
    start();
    // Moved and not removed: the next folder of its name is to be another one, not the same inode.
    ASSERT_TRUE(mac.files.move(u"/Volumes/Work"_qs, u"/elsewhere"_qs));
    rescan();
    EXPECT_EQ(sketch(launcher->shown().pages()), u"Ash Zelkova");
    EXPECT_EQ(launcher->shown().unavailableAppKeys(),
              QSet<QString>{QStringLiteral("org.example.zelkova")});
    QString refusal;
    launcher->launch(QStringLiteral("org.example.zelkova"),
                     [&](const LauncherViewModel::Outcome& outcome) {
                         refusal = outcome ? QString() : outcome.error().message;
                     });
    EXPECT_EQ(refusal, LiveLayout::unavailableNotice());
    // Another folder of that name is not the volume.
    mac.makeFolder(QStringLiteral("/Volumes/Work/Tools"));
    rescan();
    EXPECT_EQ(sketch(launcher->shown().pages()), u"Ash Zelkova");
}

TEST_F(LauncherTest, QuestionsAreAskedOneAtATimeInTheirOrder) {
    start();
    QStringList answers;
    const auto ask = [&](const QString& title) {
        launcher->messages().ask({.title = title}, [&answers, title](bool accepted) {
            answers.append(title + (accepted ? u" yes"_qs : u" no"_qs));
        });
    };
    ask(u"first"_qs);
    ask(u"second"_qs);
    ASSERT_TRUE(launcher->messages().question());
    EXPECT_EQ(launcher->messages().question()->title, u"first");
    launcher->messages().answer(true);
    ASSERT_TRUE(launcher->messages().question());
    EXPECT_EQ(launcher->messages().question()->title, u"second");
    launcher->messages().answer(false);
    launcher->messages().answer(true);
    EXPECT_FALSE(launcher->messages().question());
    EXPECT_EQ(answers, QStringList({u"first yes"_qs, u"second no"_qs}));
}

TEST_F(LauncherTest, LaunchingTellsTheSystemAndSaysWhatItAnswers) {
    const QString path = install(u"Ash"_qs);
    QList<QByteArray> arguments;
    int status = 0;
    mac.tool(u"/usr/bin/open"_qs, [&](const Command& command, std::stop_token) {
        arguments = command.arguments;
        return test::exited(status, {}, "It would not open.\n");
    });
    start();
    int launches = 0;
    const auto subscription = launcher->launched.connect([&] { ++launches; });
    launcher->launch(u"org.example.ash"_qs);
    mac.settle();
    EXPECT_EQ(arguments, QList<QByteArray>({"-a", mac.files.hostPath(path)}));
    EXPECT_EQ(launches, 1);

    status = 1;
    launcher->launch(u"org.example.ash"_qs);
    mac.settle();
    const QList<LauncherError> alerts = launcher->messages().takeAlerts();
    ASSERT_EQ(alerts.size(), 1);
    EXPECT_EQ(alerts[0].message, u"It would not open.");
    EXPECT_EQ(alerts[0].title, u"Could not open “Ash”");

    mac.remove(path);
    launcher->launch(u"org.example.ash"_qs);
    mac.settle();
    EXPECT_EQ(launcher->messages().notice()->text, LiveLayout::unavailableNotice());
    EXPECT_TRUE(launcher->shown().pages().isEmpty());
}

TEST_F(LauncherTest, ALaunchWaitsForNothingThatHangs) {
    install(u"Ash"_qs);
    start();
    std::latch opened{1};
    for (const Lane lane :
         {Lane::files, Lane::computing, Lane::decoding, Lane::tools, Lane::network, Lane::saving})
        for (unsigned i = 0; i < mac.workers.threadCount(lane); ++i)
            mac.workers.submit(lane, {}, [&](std::stop_token) { opened.wait(); });
    std::binary_semaphore asked{0};
    mac.tool(u"/usr/bin/open"_qs, [&](const Command&, std::stop_token) {
        asked.release();
        return test::exited(0);
    });
    launcher->launch(u"org.example.ash"_qs);
    bool isAsked = false;
    for (int i = 0; i < 3'000 && !isAsked; ++i) { // only a failure comes to the end
        mac.mailbox.drain();
        isAsked = asked.try_acquire_for(10ms);
    }
    EXPECT_TRUE(isAsked);
    opened.count_down();
    mac.settle();
}

TEST_F(LauncherTest, RestoringAnArrangementBacksUpMergesAndBringsItsSettings) {
    for (const QString& name : {u"Ash"_qs, u"Beech"_qs, u"Cedar"_qs})
        install(name);
    AppEntry beech = test::app(u"Beech"_qs);
    store({{beech}, {test::folder(u"f"_qs, {{test::app(u"Cedar"_qs), test::app(u"Ash"_qs)}})}},
          {u"org.example.beech"_qs});
    (void)mac.settings.set(u"gridRows"_qs, 3);
    start();
    const auto saved = test::saveArrangement(*launcher, mac, u"  Mine "_qs);
    ASSERT_TRUE(saved);
    EXPECT_EQ(saved->name, u"Mine");
    (void)mac.settings.set(u"gridRows"_qs, 6);
    launcher->applySettings();
    EXPECT_TRUE(launcher->archive().reset(launcher->shown().mode()));
    mac.remove(QStringLiteral("/Applications/Ash.app"));
    install(u"Dogwood"_qs);
    rescan();
    const QString before = sketch(launcher->shown().pages());

    ASSERT_TRUE(test::restoreArrangement(*launcher, mac, saved->id));
    EXPECT_EQ(sketch(launcher->shown().pages()), u"Beech|Cedar|Dogwood");
    EXPECT_EQ(launcher->shown().hiddenKeys(), QSet<QString>{u"org.example.beech"_qs});
    EXPECT_EQ(launcher->shown().settings().rows, 3);
    EXPECT_EQ(stored().pages, launcher->shown().pages());
    const QStringList backups = mac.names(data + u"/Backups"_qs);
    ASSERT_EQ(backups.size(), 2);
    QHash<QString, QString> kept;
    for (const QString& name : backups)
        if (const auto backup =
                json::decodeDocument<BackupDocument>(mac.read(data + u"/Backups/"_qs + name)))
            kept.insert(backup->reason, sketch(backup->document.pages));
    EXPECT_EQ(kept.value(u"arrangement-restore"_qs), before);
    EXPECT_EQ(kept.value(u"reset"_qs), u"Beech|[f: Cedar Ash]");
}

TEST_F(LauncherTest, ARestoreThatCannotBeReadChangesNothing) {
    install(u"Ash"_qs);
    start();
    const auto saved = test::saveArrangement(*launcher, mac, u"x"_qs);
    ASSERT_TRUE(saved);
    mac.write(data + u"/Arrangements/"_qs + toText(saved->id) + u".json"_qs, "{");
    const auto restored = test::restoreArrangement(*launcher, mac, saved->id);
    ASSERT_FALSE(restored);
    EXPECT_EQ(restored.error().title, u"Could not restore arrangement");
    EXPECT_FALSE(mac.exists(data + u"/Backups"_qs));
}

TEST_F(LauncherTest, OpenFoldersAndPagesFollowTheLayout) {
    for (const QString& name : {u"Ash"_qs, u"Beech"_qs, u"Cedar"_qs, u"Dogwood"_qs})
        install(name);
    store({{test::app(u"Ash"_qs)},
           {test::folder(u"f"_qs, {{test::app(u"Cedar"_qs)}, {test::app(u"Dogwood"_qs)}})},
           {test::app(u"Beech"_qs)}});
    start();
    launcher->shown().setCurrentPage(99);
    EXPECT_EQ(launcher->shown().currentPage(), 2);
    EXPECT_FALSE(launcher->shown().openFolder(test::idOf(u"Ash"_qs)));
    EXPECT_TRUE(launcher->shown().openFolder(test::idOf(u"f"_qs)));
    launcher->shown().setFolderPage(5);
    EXPECT_EQ(launcher->shown().folderStack(), QList<OpenFolderLevel>({{test::idOf(u"f"_qs), 1}}));
    launcher->shown().select(test::idOf(u"Cedar"_qs));
    mac.remove(QStringLiteral("/Applications/Beech.app"));
    mac.remove(QStringLiteral("/Applications/Cedar.app"));
    rescan();
    EXPECT_TRUE(launcher->shown().folderStack().isEmpty());
    EXPECT_EQ(launcher->shown().currentPage(), 1);
    EXPECT_FALSE(launcher->shown().selectedItemID());
}

TEST_F(LauncherTest, ADiskThatRefusesTheStartUpSaveIsSaidAndNothingIsLost) {
    install(u"Ash"_qs);
    // A link to nowhere in the folder's place: nothing is there to load, and nothing can be saved.
    mac.link(data, u"/nowhere/at all"_qs);
    start();
    EXPECT_EQ(sketch(launcher->shown().pages()), u"Ash");
    EXPECT_FALSE(launcher->messages().takeAlerts().isEmpty());
    EXPECT_FALSE(launcher->quit());
    mac.remove(data);
    EXPECT_TRUE(launcher->quit());
    EXPECT_EQ(sketch(stored().pages), u"Ash");
}

} // namespace
} // namespace tessellar
