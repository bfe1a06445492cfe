#include "launcher/launcher_settings.h"
#include "launcher/launcher_updates.h"
#include "small_launcher.h"
#include "support/fake_updates.h"

#include "smartfolders/smart_folder_rule.h"

#include <latch>

namespace tessellar::test {
namespace {

const QString brewPath = u"/opt/homebrew/bin/brew"_s;
const QString cask = u"org.example.cask"_s;
const QString feed = u"org.example.feed"_s;
const QString plain = u"org.example.plain"_s;

/// A Mac on which one application is a cask's, one names a feed, and one has neither.
class LauncherUpdatesTest : public SmallLauncher {
protected:
    LauncherUpdatesTest() {
        install(u"Cask"_s, {});
        install(u"Feed"_s, u"https://feeds.test/feed"_s);
        install(u"Plain"_s, {});
        mac.tool(u"/usr/bin/open"_s, exited(0));
        brew("2.0");
    }

    void install(const QString& name, const std::optional<QString>& sparkleFeed,
                 const QString& version = u"1.9"_s) {
        builder.addApplication({.name = name,
                                .identifier = u"org.example."_s + name.toLower(),
                                .version = version,
                                .build = u"100"_s,
                                .sparkleFeed = sparkleFeed});
    }
    void brew(const QByteArray& newer, int upgradeStatus = 0) {
        mac.tool(brewPath, brewOfOneCask(newer, upgradeStatus));
    }

    bool isUpdating(const QString& key) {
        const auto state = updates().of(key).actionState();
        return state && !state->isOver();
    }

    LauncherUpdates& start() {
        launcher.reset();
        launcher = std::make_unique<LauncherViewModel>(mac.machine);
        goesAway = launcher->updates().opened.connect([this] { ++went; });
        launcher->startAndWait();
        settle();
        return updates();
    }
    void settle(std::chrono::milliseconds after = {}) {
        time.advance(after);
        for (int i = 0; i < 6; ++i) { // what a round begins may go on in a timer
            mac.settle();
            time.advance(0ms);
        }
    }
    /// The schedule's first check, to its end.
    LauncherUpdates& startAndCheck() {
        start().startSchedule(nullptr);
        settle();
        answerFeed("101");
        return updates();
    }
    void answerFeed(const QByteArray& build) {
        mac.http.answer(u"feeds"_s, sparkleFeed(build));
        settle();
        settle(250ms);
    }
    LauncherUpdates& updates() { return launcher->updates(); }
    /// As the user asks for it.
    void run(const QString& key) {
        updates().run(key);
        settle();
    }
    void answer(bool accepted) {
        messages().answer(accepted);
        settle();
    }
    /// As a command asks for it, which says yes beforehand and notes how it ended.
    auto runAtOnce(const QString& key) {
        return updates().run(
            {key}, [](const LauncherQuestion&, const auto& yes) { yes(true); },
            [this](const auto& outcome) { ends += codeOf(outcome); });
    }
    /// What the updater that runs puts out.
    void say(const QByteArray& words) {
        mac.commands.say(mac.hostPath(data + u"/app-update-run.log"_s).toUtf8(), words);
        settle(AppUpdateRunner::pollInterval);
    }

    /// What the folder of all updates shows, or that it cannot tell.
    QString shown() {
        const SmartFolderEvaluation* found = launcher->smartFolders().evaluation(folder, fullScreen);
        return found && found->unknownRuleIDs.isEmpty() ? found->appKeys().join(u' ') : u"unknown"_s;
    }
    void addFolder() {
        const auto definition =
            templateDefinition(SmartFolderTemplate::updatesAvailable, folder, time.now(), mac.uuids);
        ASSERT_TRUE(editor().addSmartFolder(mode(), definition));
        settle();
    }

    Subscription goesAway;
    const QUuid folder = QUuid::createUuidV5(QUuid(), u"updates"_s);
    int went = 0;
    QStringList ends;
};

TEST_F(LauncherUpdatesTest, NothingIsLookedAtBeforeSomebodyWantsToKnow) {
    start();
    settle(48h);
    EXPECT_FALSE(updates().isReady());
    EXPECT_EQ(mac.commands.commands().size(), 0);
    EXPECT_TRUE(mac.http.requests.isEmpty());

    bool isKnown = false;
    updates().whenReady([&] { isKnown = true; });
    settle();
    EXPECT_TRUE(isKnown);
    EXPECT_EQ(updates().of(feed).actionKind(), AppUpdateActionKind::sparkle);
    settle(48h);
    EXPECT_EQ(mac.commands.commands().size(), 0) << "to know is not to check";
    EXPECT_TRUE(mac.http.requests.isEmpty());
}

TEST_F(LauncherUpdatesTest, TilesAndFoldersShowWhatTheScheduleFinds) {
    start();
    addFolder();
    EXPECT_EQ(shown(), u""_s) << "nothing was checked yet";
    updates().startSchedule(nullptr);
    settle();
    EXPECT_EQ(updates().summary(), u"Checking your installed apps for updates…"_s);
    EXPECT_EQ(updates().progress().total, 2);
    answerFeed("101");
    EXPECT_EQ(shown(), cask + u' ' + feed);
    EXPECT_EQ(updates().summary(), u"2 updates available."_s);
    EXPECT_EQ(updates().of(cask).badge(), u"↓"_s);
    EXPECT_EQ(updates().of(plain).badge(), QString());
    EXPECT_EQ(updates().of(feed).statusText(), u"Update available: 1.9 → 2.5"_s);
    EXPECT_EQ(updates().of(cask).actionLabel(), u"Update with Homebrew"_s);
    EXPECT_EQ(launcher->smartFolders().runtimeFacts().distributionChannels,
              (QHash<QString, SmartFolderDistributionChannel>{
                  {cask, SmartFolderDistributionChannel::homebrew},
                  {feed, SmartFolderDistributionChannel::sparkle}}));

    // The next start knows it from the cache, without asking anybody.
    const auto asked = mac.commands.commands().size();
    start();
    EXPECT_EQ(shown(), cask + u' ' + feed);
    EXPECT_EQ(updates().of(cask).actionLabel(), u"Update with Homebrew"_s);
    EXPECT_EQ(mac.commands.commands().size(), asked);
}

TEST_F(LauncherUpdatesTest, SwitchedOffLeavesFoldersUndecidedAndOtherFactsAlone) {
    startAndCheck();
    addFolder();
    SmartFolderRuntimeFacts facts = launcher->smartFolders().runtimeFacts();
    facts.customIconKeys = {plain};
    launcher->smartFolders().setRuntimeFacts(facts);
    launcher->settings().store(AppUpdateSettings::enabledKey, false);
    settle();
    EXPECT_EQ(shown(), u"unknown"_s);
    EXPECT_EQ(launcher->smartFolders().notice(folder, fullScreen),
              u"Update checking is disabled, so update-status rules cannot be evaluated."_s);
    EXPECT_EQ(launcher->smartFolders().runtimeFacts().customIconKeys, QSet<QString>{plain});
    updates().check();
    settle();
    EXPECT_EQ(noticed(), u"Update checking is disabled."_s);
    launcher->settings().store(AppUpdateSettings::enabledKey, true);
    settle();
    EXPECT_EQ(shown(), cask + u' ' + feed);
    launcher->settings().store(AppUpdateSettings::intervalKey,
                               qToUnderlying(AppUpdateInterval::sixHours));
    settle();
    settle(6h);
    EXPECT_TRUE(updates().isChecking());
}

TEST_F(LauncherUpdatesTest, AnUpdateIsAskedForRunAndLookedAt) {
    startAndCheck();
    run(cask);
    EXPECT_EQ(asked(), u"Update “Cask”?"_s);
    EXPECT_EQ(messages().question()->accept, u"Update"_s);
    run(feed);
    EXPECT_EQ(alerts(), QStringList{u"updateInProgress"_s});
    EXPECT_FALSE(isUpdating(cask));

    install(u"Cask"_s, {}, u"2.0"_s); // what the command does
    brew({});
    int asked = 0;
    const auto passwords = updates().passwordAsked.connect([&] { ++asked; });
    mac.commands.holdStarted(true);
    answer(true);
    EXPECT_TRUE(updates().isExternalUpdaterRunning());
    EXPECT_EQ(updates().of(cask).runningText(), u"Updating…"_s);
    EXPECT_EQ(went, 0);
    say("Password:");
    say("\nSorry, try again.\nPassword:");
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(went, 0) << "only a window that fills the screen is in the way";
    EXPECT_EQ(updates().of(cask).tileText(), u"Asks for password"_s);
    EXPECT_EQ(updates().of(cask).runningText(), u"Updating… Waiting for your password."_s);
    mac.commands.holdStarted(false);
    settle(AppUpdateRunner::pollInterval);
    settle(250ms);
    EXPECT_FALSE(updates().isExternalUpdaterRunning());
    EXPECT_EQ(updates().of(cask).badge(), QString());
    EXPECT_EQ(updates().of(cask).record()->installedVersion, u"2.0"_s);
    EXPECT_EQ(noticed(), u"Updated to version 2.0."_s);

    brew("3.0", 1);
    run(cask);
    answer(true);
    EXPECT_EQ(messages().takeAlerts(),
              QList({LauncherError{u"updateFailed"_s, u"The app could not be updated."_s,
                                   u"Could not update “Cask”"_s}}));
    run(cask);
    messages().answer(false);
    EXPECT_FALSE(updates().isRunning());
    EXPECT_TRUE(messages().takeAlerts().isEmpty());

    // Its own updater: the launcher's window makes way for it.
    EXPECT_EQ(went, 0);
    run(feed);
    EXPECT_EQ(went, 1);
}

TEST_F(LauncherUpdatesTest, FoldersSayWhatFailedAndWhatIsSkipped) {
    startAndCheck();
    addFolder();
    EXPECT_EQ(shown(), cask + u' ' + feed);
    ASSERT_TRUE(updates().skip(cask, false));
    EXPECT_FALSE(updates().skip(plain, false)) << "there is no version to skip";
    settle(250ms);
    EXPECT_EQ(shown(), feed);
    EXPECT_EQ(updates().of(cask).badge(), QString());
    ASSERT_TRUE(updates().unskip(cask));
    mac.tool(brewPath, exited(1, {}, "Error: offline"));
    updates().check();
    settle();
    mac.http.answer(u"feeds"_s, FakeHttp::Answer(std::unexpected(HttpError::transport)));
    settle();
    settle(250ms);
    EXPECT_EQ(launcher->smartFolders().runtimeFacts().updateStatuses[cask],
              SmartFolderUpdateState::failed);
    EXPECT_EQ(updates().of(cask).badge(), u"↓"_s) << "what was known stays on the tile";
    EXPECT_TRUE(updates().summary().contains(u"2 apps could not be checked."_s));
    EXPECT_EQ(updates().of(cask).reason()->detail, u"Error: offline"_s);
}

TEST_F(LauncherUpdatesTest, FoldersWaitForWhoKnowsWhoseTheApplicationsAre) {
    std::latch answer(1);
    mac.tool(brewPath, [&](const Command& command, const std::stop_token& stop) {
        answer.wait();
        return brewOfOneCask("2.0")(command, stop);
    });
    start().whenReady([] {});
    settle();
    SmartFolderDefinition casks{.id = folder, .name = u"Casks"_s};
    casks.rules = {SmartFolderChoiceRule{mac.uuids.next(), "distributionChannel",
                                         predicate::IsValue<QString>(u"homebrew"_s)}};
    casks.sort.field = "name";
    ASSERT_TRUE(editor().addSmartFolder(mode(), casks));
    const auto notice = [&] { return launcher->smartFolders().notice(folder, fullScreen); };
    mac.until([&] { return !notice().isEmpty(); });
    EXPECT_EQ(notice(), u"Still gathering… (Updates Come From)"_s)
        << "what declares a feed may be another one's, too";
    answer.count_down();
    settle();
    EXPECT_EQ(shown(), cask);
    EXPECT_EQ(notice(), QString());

    // A tool that fails does not leave a folder waiting for ever.
    mac.write(mac.machine.places.applicationFolder() + u"/app-updates.json"_s, "{}");
    mac.tool(brewPath, exited(1));
    start();
    EXPECT_EQ(notice(), QString());
}

TEST_F(LauncherUpdatesTest, WhatIsCancelledBeforeItBeginsNeverBegins) {
    using enum LauncherUpdates::StopMode;
    start();
    const auto hasRun = [&](const QByteArray& word) {
        return std::ranges::any_of(mac.commands.commands(), [&](const Command& command) {
            return command.arguments.value(0) == word;
        });
    };
    // While the bundles are read, and while the brew is asked for its casks.
    updates().check({}, {.done = [&](const std::expected<bool, LauncherError>& completed) {
                        EXPECT_EQ(completed, false);
                        ends += u"check"_s;
                    }})();
    runAtOnce(cask)(cancel);
    EXPECT_EQ(ends, (QStringList{u"check"_s, u"cancelled"_s}));
    settle();
    EXPECT_TRUE(hasRun("info"));
    EXPECT_FALSE(hasRun("outdated") || hasRun("upgrade"));

    // Nobody ends the update of another; one that has come through need not be looked at.
    mac.commands.holdStarted(true);
    const auto end = runAtOnce(cask);
    runAtOnce(feed)(cancel);
    EXPECT_EQ(ends.takeLast(), u"updateInProgress");
    EXPECT_TRUE(isUpdating(cask));
    settle();
    ASSERT_TRUE(hasRun("upgrade"));
    EXPECT_EQ(ends.size(), 2) << "it still runs";
    // Who only leaves kills nothing that is half done.
    end(detach);
    EXPECT_EQ(ends.last(), u"left");
    settle();
    EXPECT_EQ(mac.commands.terminated().size(), 0);
    EXPECT_TRUE(isUpdating(cask));
    const auto other = runAtOnce(cask);
    settle();
    other(cancel);
    settle();
    EXPECT_EQ(ends.last(), u"cancelled");
    EXPECT_EQ(mac.commands.terminated().size(), 1);
    EXPECT_EQ(ends.size(), 4);
}

TEST_F(LauncherUpdatesTest, AQuestionForAPasswordIsMadeWayForOnce) {
    int asked = 0;
    Subscription subscribed;
    const auto hear = [&] { subscribed = updates().passwordAsked.connect([&] { ++asked; }); };
    const auto askedAfter = [&](const QByteArray& words) {
        say(words);
        return asked;
    };
    start();
    hear();
    mac.commands.holdStarted(true);
    runAtOnce(cask);
    settle();
    EXPECT_EQ(askedAfter("Password:"), 1);
    EXPECT_EQ(askedAfter("\nPassword:"), 1);
    // Who starts the launcher again while it waits is not sent away.
    subscribed.cancel();
    start();
    hear();
    updates().startSchedule(nullptr);
    settle();
    EXPECT_TRUE(isUpdating(cask));
    EXPECT_EQ(askedAfter("\nSorry, try again.\nPassword:"), 1);
    EXPECT_EQ(askedAfter("\n==> Installing\n"), 1);
    EXPECT_EQ(askedAfter("Password:"), 2);
}

} // namespace
} // namespace tessellar::test
