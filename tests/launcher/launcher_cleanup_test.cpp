#include "launcher/launcher_cleanup.h"

#include "small_launcher.h"

namespace tessellar::test {
namespace {

using Phase = LauncherCleanup::Phase;

const QString library = u"/Users/ada/Library/"_s;
const QString trash = u"/Users/ada/.local/share/Trash/files"_s;

class LauncherCleanupTest : public SmallLauncher {
protected:
    const QString ash = u"org.example.ash"_s;
    const QString beech = u"org.example.beech"_s;
    const QString bundle = u"/Applications/Ash.app"_s;
    const QString preferences = library + u"Preferences/org.example.ash.plist"_s;
    const QString caches = library + u"Caches/org.example.ash"_s;
    const QString offered = library + u"Application Support/Ash"_s;

    LauncherCleanupTest() {
        installAll(u"Ash Beech Cedar"_s);
        mac.write(preferences, "preferences");
        mac.write(caches + u"/data"_s, "1234");
        mac.write(offered + u"/notes"_s, "notes");
        start();
    }

    LauncherCleanup& cleanup() { return launcher->cleanup(); }
    LauncherCleanup& review(const QString& key = u"org.example.ash"_s) {
        cleanup().open(key);
        mac.settle();
        return cleanup();
    }
    /// What a removal came to: "done", or the code of the refusal.
    QString remove(bool accept = true) {
        QString result = u"nothing"_s;
        cleanup().remove(
            [&, accept](const LauncherQuestion& question, const std::function<void(bool)>& answer) {
                questions.append(question.title);
                answer(accept);
            },
            [&](const auto& outcome) { result = codeOf(outcome); });
        mac.settle();
        return result;
    }
    /// Reviews it and removes all that is selected then.
    void takeAway(const QString& key = u"org.example.ash"_s) {
        review(key);
        ASSERT_EQ(remove(), u"done");
    }
    QString restore(const std::optional<QUuid>& removal = {}) {
        QString result = u"nothing"_s;
        const int before = scans;
        cleanup().restore(removal, [&](const auto& restored) { result = codeOf(restored); });
        launcher->applications().rescan([this] { ++scans; });
        mac.settle();
        EXPECT_GT(scans, before) << result.toStdString();
        return result;
    }
    QString inWindow() const { return sketch(launcher->layout(windowed).pages()); }
    bool hasTile(const QString& key) const { return launcher->shown().tileOf(key); }
    QUuid tile(const QString& key) { return *findTile(launcher->shown().pages(), key); }

    QStringList questions;
    int scans = 0; ///< that were asked for while something was being restored
};

TEST_F(LauncherCleanupTest, RefusesWhatIsNotItsToRemove) {
    builder.addApplication({.name = u"Preview"_s,
                            .folder = u"/System/Applications"_s,
                            .identifier = u"com.apple.Preview"_s});
    builder.addApplication({.name = u"Tessellar"_s, .identifier = applicationIdentifier});
    builder.addApplication({.name = u"Leaf"_s,
                            .folder = u"/Applications/Beech.app/Contents/Applications"_s,
                            .identifier = u"org.example.leaf"_s});
    start();
    for (const QString& key :
         {u"nobody"_s, u"com.apple.Preview"_s, u"org.example.leaf"_s, applicationIdentifier}) {
        review(key);
        EXPECT_EQ(cleanup().phase(), Phase::idle);
        ASSERT_TRUE(cleanup().error());
        EXPECT_EQ(cleanup().error()->code,
                  key == u"nobody" ? u"unknownApplication"_s : u"protectedApplication"_s);
    }
    EXPECT_EQ(remove(), u"nothingSelected");
}

TEST_F(LauncherCleanupTest, TilesLeaveAsOneStepWhoseUndoBringsAllBack) {
    ASSERT_TRUE(editor().groupTiles(mode(), {tile(ash), tile(beech)}, tile(beech)));
    ASSERT_TRUE(editor().createAlias(mode(), tile(ash), {.page = 0, .index = 0}));
    const Pages before = launcher->shown().pages();
    const QString windowBefore = inWindow();
    review();
    // What a scan sees that is under way meanwhile is of no account.
    launcher->applications().rescan();
    EXPECT_EQ(remove(), u"done");
    EXPECT_EQ(cleanup().phase(), Phase::done);
    EXPECT_EQ(cleanup().log().size(), 3);
    EXPECT_EQ(mac.names(trash).size(), 3);
    EXPECT_TRUE(mac.exists(offered));
    EXPECT_EQ(sketched(), u"Beech Cedar");
    EXPECT_EQ(inWindow(), u"Beech Cedar");
    EXPECT_FALSE(launcher->applications().withKey(ash));
    EXPECT_EQ(steps().size(), 3);
    EXPECT_EQ(steps().last(), u"Move App to Trash");

    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(undo(), u"done");
        EXPECT_EQ(launcher->shown().pages(), before);
        EXPECT_EQ(inWindow(), windowBefore);
        EXPECT_TRUE(launcher->shown().unavailableAppKeys().isEmpty());
        EXPECT_TRUE(launcher->applications().withKey(ash));
        EXPECT_EQ(mac.read(caches + u"/data"_s), "1234");
        EXPECT_EQ(mac.read(preferences), "preferences");
        EXPECT_TRUE(mac.names(trash).isEmpty());
        EXPECT_EQ(redo(), u"done");
        EXPECT_FALSE(mac.exists(bundle));
        EXPECT_FALSE(mac.exists(preferences));
        EXPECT_EQ(sketched(), u"Beech Cedar");
    }
}

TEST_F(LauncherCleanupTest, ABundleThatStaysKeepsItsTile) {
    review();
    move(bundle, u"/Applications/Moved.app"_s);
    mac.link(bundle, u"/Applications/Beech.app"_s);
    EXPECT_EQ(remove(), u"done");
    EXPECT_EQ(cleanup().log().last().text,
              u"Ash.app: It has changed since it was reviewed, and was left alone.");
    EXPECT_FALSE(mac.exists(preferences));
    EXPECT_TRUE(mac.exists(u"/Applications/Beech.app/Contents/Info.plist"_s));
    EXPECT_EQ(undo(), u"done"); // for what went
    EXPECT_TRUE(mac.exists(preferences));
    EXPECT_TRUE(hasTile(ash));
}

TEST_F(LauncherCleanupTest, WhatDidNotComeBackMayBeAskedForAgain) {
    takeAway();
    mac.write(bundle, "in the way");
    EXPECT_EQ(undo(), u"trashFailed");
    EXPECT_EQ(mac.read(bundle), "in the way");
    EXPECT_FALSE(mac.exists(preferences)) << "the rest waits for the bundle";
    EXPECT_EQ(sketched(), u"Beech Cedar");
    mac.remove(bundle);
    mac.write(preferences, "in the way");
    start();
    EXPECT_EQ(restore(), u"done");
    EXPECT_TRUE(mac.exists(bundle));
    EXPECT_EQ(mac.read(preferences), "in the way");
    mac.remove(preferences);
    EXPECT_EQ(restore(), u"done");
    EXPECT_EQ(mac.read(preferences), "preferences");
    EXPECT_EQ(restore(), u"nothingToRestore");
}

TEST_F(LauncherCleanupTest, AnotherLauncherBringsTheLastRemovalBack) {
    // A folder that closes when one of its two goes.
    ASSERT_TRUE(editor().groupTiles(mode(), {tile(ash)}, tile(beech)));
    ASSERT_TRUE(editor().hideApps(mode(), {tile(ash)}));
    const Pages before = launcher->shown().pages();
    const QString windowBefore = inWindow();
    review();
    cleanup().selectAllMatches();
    ASSERT_EQ(remove(), u"done");
    start();
    EXPECT_FALSE(mac.exists(offered));
    EXPECT_EQ(restore(), u"done");
    EXPECT_EQ(mac.read(offered + u"/notes"_s), "notes");
    EXPECT_EQ(launcher->shown().pages(), before);
    EXPECT_TRUE(launcher->shown().hiddenKeys().contains(ash));
    EXPECT_EQ(inWindow(), windowBefore);
    EXPECT_EQ(restore(), u"nothingToRestore");

    // In one process it is a step of history.
    takeAway();
    EXPECT_EQ(restore(), u"done");
    EXPECT_EQ(launcher->history().steps().redoStack().size(), 1);
    EXPECT_EQ(launcher->shown().pages(), before);
}

TEST_F(LauncherCleanupTest, NothingLeavesTheTrashWhilePlacesCannotBeWritten) {
    for (const QString& name : {u"remembered-places.json"_s, u"remembered-places-windowed.json"_s}) {
        takeAway();
        start();
        const QString places = data + u'/' + name;
        const QByteArray before = mac.read(places);
        mac.remove(places);
        mac.makeFolder(places);
        EXPECT_EQ(restore(), u"isADirectory");
        EXPECT_FALSE(mac.exists(bundle));
        EXPECT_FALSE(mac.exists(preferences));
        mac.remove(places);
        mac.write(places, before);
        EXPECT_EQ(restore(), u"done");
        EXPECT_TRUE(mac.exists(bundle));
    }
}

TEST_F(LauncherCleanupTest, WhatWasRenamedInTheTrashIsNotForgotten) {
    takeAway();
    const QString lies = trash + u'/' + mac.names(trash).filter(u"Ash.app"_s).value(0);
    const QString renamed = trash + u"/Kept for later.app"_s;
    move(lies, renamed);
    (void)restore();
    EXPECT_FALSE(mac.exists(bundle));
    move(renamed, lies);
    EXPECT_EQ(restore(), u"done");
    EXPECT_TRUE(mac.exists(bundle));
}

TEST_F(LauncherCleanupTest, ARecordThatCannotBeReadNowIsNoAbsenceAndStays) {
    const QString record = data + u"/removals.json"_s;
    mac.makeFolder(record + u"/in the way"_s);
    EXPECT_EQ(restore(), u"recordUnreadable");
    EXPECT_TRUE(mac.exists(record + u"/in the way"_s));

    // Nor is one that a later launcher wrote: what stands in it is not lost to an earlier one.
    mac.remove(record);
    const QByteArray later = R"({"version": 2, "removals": {"form": "another"}})";
    mac.write(record, later);
    EXPECT_EQ(restore(), u"recordUnreadable");
    review();
    EXPECT_EQ(remove(), u"notRemoved");
    EXPECT_TRUE(cleanup().error()->message.endsWith(u"is from a later version of Tessellar."));
    EXPECT_TRUE(mac.exists(bundle));
    EXPECT_EQ(mac.read(record), later);
    EXPECT_TRUE(mac.names(data).filter(u"removals.damaged-"_s).isEmpty());

    // A damaged one is set aside, and the next begins anew.
    cleanup().close();
    mac.write(record, "{damaged");
    EXPECT_EQ(restore(), u"nothingToRestore");
    const QStringList aside = mac.names(data).filter(u"removals.damaged-"_s);
    ASSERT_EQ(aside.size(), 1);
    EXPECT_EQ(mac.read(data + u'/' + aside.first()), "{damaged");
    takeAway();
    start();
    EXPECT_EQ(restore(), u"done");
    EXPECT_TRUE(mac.exists(bundle));
}

TEST_F(LauncherCleanupTest, AFailedAttemptLosesNoRecordAndAnyRemovalMayBeChosen) {
    takeAway();
    takeAway(beech);
    start();
    const auto past = [&] {
        QList<CleanupRecord> records;
        cleanup().listPast([&](const LauncherCleanup::Past& found) { records = found.value(); });
        mac.settle();
        return records;
    };
    ASSERT_EQ(past().size(), 2);
    EXPECT_EQ(past()[1].name, u"Ash");
    const QUuid removal = past()[1].id;
    // The Trash is out of reach; then it is there again.
    move(trash, u"/away"_s);
    EXPECT_EQ(restore(removal), u"notRestored");
    EXPECT_EQ(restore(), u"notRestored");
    EXPECT_EQ(past()[1].items.size(), 3);
    move(u"/away"_s, trash);
    EXPECT_EQ(restore(removal), u"done");
    EXPECT_TRUE(mac.exists(bundle));
    EXPECT_TRUE(hasTile(ash));
    EXPECT_EQ(steps().last(), u"Put App Back");
    EXPECT_EQ(past()[1].restored.size(), 3);
    EXPECT_EQ(restore(removal), u"nothingToRestore");
    EXPECT_EQ(restore(), u"done"); // the other one
    EXPECT_TRUE(mac.exists(u"/Applications/Beech.app"_s));
}

TEST_F(LauncherCleanupTest, WhatIsOutOfSightOrWentClaimsItsFiles) {
    const auto add = [&](const QString& name, const QString& folder) {
        builder.addApplication({.name = u"Ash "_s + name,
                                .folder = folder,
                                .identifier = u"org.example.ash."_s + name.toLower()});
        mac.makeFolder(caches + u'.' + name.toLower());
    };
    const auto isOffered = [&](const QString& name) {
        const QList<RelatedFile>& items = review().review().items;
        return std::ranges::find(items, caches + u'.' + name, &RelatedFile::path) != items.end();
    };
    add(u"Studio"_s, u"/Volumes/Ext"_s);
    add(u"Works"_s, u"/Applications"_s);
    mac.link(u"/Applications/Ash Studio.app"_s, u"/Volumes/Ext/Ash Studio.app"_s);
    start();
    EXPECT_FALSE(isOffered(u"studio"_s) || isOffered(u"works"_s));
    ASSERT_TRUE(hasTile(u"org.example.ash.studio"_s));
    // Its volume is gone, and then the link to it; the other has but its remembered place.
    move(u"/Volumes/Ext"_s, u"/away"_s);
    uninstall(u"Ash Works"_s);
    start();
    EXPECT_FALSE(hasTile(u"org.example.ash.works"_s));
    EXPECT_FALSE(isOffered(u"studio"_s) || isOffered(u"works"_s));
    mac.remove(u"/Applications/Ash Studio.app"_s);
    start();
    EXPECT_FALSE(isOffered(u"studio"_s));
}

TEST_F(LauncherCleanupTest, AnOpenApplicationIsNamedAndGoesOnlyAfterAYes) {
    takeAway();
    ASSERT_EQ(undo(), u"done");
    bool isOpen = true;
    mac.tool(u"/bin/ps"_s, [&](const Command&, std::stop_token) {
        return exited(0, isOpen ? mac.hostPath(bundle + u"/Contents/MacOS/Ash"_s).toUtf8() + '\n'
                                : QByteArray());
    });
    EXPECT_EQ(redo(), u"trashFailed") << "which asks nobody";
    EXPECT_TRUE(mac.exists(bundle) && mac.exists(preferences) && hasTile(ash));
    QByteArrayList scripts;
    mac.tool(u"/usr/bin/osascript"_s, [&](const Command& command, std::stop_token) {
        scripts.append(command.input.value_or(QByteArray()));
        if (scripts.last().contains(" to quit"))
            isOpen = false;
        return exited(1, {}, "execution error: no (-1743)\n");
    });
    review();
    EXPECT_EQ(remove(false), u"stillOpen");
    EXPECT_EQ(questions, QStringList{u"“Ash” is open"_s});
    EXPECT_TRUE(scripts.isEmpty());
    EXPECT_EQ(cleanup().phase(), Phase::review);
    // Quits after the yes; here it is the Finder who then refuses.
    EXPECT_EQ(remove(), u"notRemoved");
    EXPECT_EQ(scripts.value(0), "tell application id \"org.example.ash\" to quit\n");
    EXPECT_TRUE(cleanup().error()->message.startsWith(u"Finder automation is not allowed."));
    EXPECT_EQ(cleanup().phase(), Phase::review);
    EXPECT_TRUE(hasTile(ash));

    // An answer that comes after the review was closed is too late.
    isOpen = true;
    scripts.clear();
    cleanup().remove(messages().asker());
    mac.settle();
    ASSERT_TRUE(messages().question());
    cleanup().close();
    messages().answer(true);
    mac.settle();
    EXPECT_TRUE(scripts.isEmpty());
}

TEST_F(LauncherCleanupTest, AllWhoAskAtTheSameTimeAreAnswered) {
    int answers = 0;
    for (int i = 0; i < 2; ++i) {
        cleanup().checkHelper([&](const auto&) { ++answers; });
        cleanup().reveal(bundle, [&](const auto&) { ++answers; });
    }
    mac.settle();
    EXPECT_EQ(answers, 4);
}

TEST_F(LauncherCleanupTest, ALauncherThatGoesMeanwhileHasWrittenDownWhatItTook) {
    review();
    cleanup().remove(messages().asker());
    mac.workers.waitIdle(); // the look for open applications
    mac.mailbox.drain();
    launcher.reset();
    mac.settle();
    start();
    // As much as was taken comes back; perhaps it was stopped before anything went.
    const QString result = restore();
    EXPECT_TRUE(result == u"done" || result == u"nothingToRestore") << result.toStdString();
    EXPECT_TRUE(mac.exists(bundle) && mac.exists(preferences) && mac.exists(caches));
}

} // namespace
} // namespace tessellar::test
