#include "updates_fixture.h"

namespace tessellar::test {
namespace {

using AppUpdateRunnerTest = UpdatesFixture;

TEST_F(AppUpdateRunnerTest, RunsOneUpdateAtATimeAfterAskingAndChecksAgain) {
    load();
    check();
    mac.commands.holdStarted(true);
    EXPECT_TRUE(update({u"Cask"_s}));
    EXPECT_EQ(alerts, QStringList{u"Update “Cask”?|Homebrew may quit the app while it downloads and "
                                  "installs the update."_s});
    EXPECT_EQ(coordinator->runner().activeAppKey(), key(u"Cask"_s));
    settle();
    EXPECT_FALSE(update({u"Store"_s})) << "another one runs";
    int joined = 0;
    EXPECT_TRUE(update({u"Cask"_s}, [&] { ++joined; })) << "the same one is joined";
    EXPECT_EQ(alerts.size(), 1);
    EXPECT_TRUE(coordinator->runner().isExternalUpdaterRunning());

    // A check goes on while it runs.
    check();
    EXPECT_FALSE(coordinator->isChecking());

    const auto commands = mac.commands.commands();
    const auto upgrade = std::ranges::find_if(
        commands, [](const Command& command) { return command.arguments.value(0) == "upgrade"; });
    ASSERT_NE(upgrade, commands.end());
    EXPECT_EQ(upgrade->arguments, (QList<QByteArray>{"upgrade", "--cask", "cask"}));
    EXPECT_EQ(upgrade->environment.at("HOMEBREW_NO_ANALYTICS"), "1");

    add({.name = u"Cask"_s, .version = u"2.0"_s, .build = u"200"_s});
    brew({});
    mac.commands.holdStarted(false);
    pass(AppUpdateRunner::pollInterval);
    EXPECT_EQ(state(u"Cask"_s), (AppUpdateActionState{AppUpdateActionState::Kind::succeeded,
                                                      u"Updated to version 2.0."_s}));
    EXPECT_THAT(phases, testing::Contains(u"verifying"_s));
    EXPECT_EQ(completed, QStringList{key(u"Cask"_s)});
    EXPECT_EQ(joined, 1);
    EXPECT_EQ(sketch(), u"upToDate 1.10 2.5 -"_s);

    confirms = false;
    EXPECT_TRUE(update({u"Cask"_s}));
    EXPECT_EQ(coordinator->runner().activeAppKey(), std::nullopt);
    EXPECT_TRUE(update({u"Store"_s}));
    settle();
    EXPECT_EQ(mac.commands.commands().last().arguments,
              QList<QByteArray>{"https://apps.apple.com/app/id4711"});
}

TEST_F(AppUpdateRunnerTest, WhatIsInstalledDecidesHowAnUpdateWent) {
    load();
    check();
    using Kind = AppUpdateActionState::Kind;
    const auto answer = [&](const CommandResult& upgrade) {
        brewBut("upgrade", upgrade);
        EXPECT_TRUE(update({u"Cask"_s}));
        settle();
        return state(u"Cask"_s);
    };
    // Its own last words stand with a failure, fit to be printed.
    EXPECT_EQ(answer(exited(1, "==> Downloading x\n",
                            "curl: (6) no \x1b[31mhost\xE2\x80\xAE\nError: Download failed\n")),
              (AppUpdateActionState{.kind = Kind::failed,
                                    .message = u"The app could not be updated."_s,
                                    .detail = u"==> Downloading x\ncurl: (6) no [31mhost\nError: "
                                              "Download failed"_s}));
    EXPECT_EQ(answer({.outcome = CommandResult::Outcome::signalled, .exitStatus = 9}).message,
              u"The app could not be updated."_s);
    EXPECT_EQ(answer({.outcome = CommandResult::Outcome::couldNotLaunch, .exitStatus = 2}).message,
              u"The updater could not be started."_s);
    // No error, and nothing new.
    EXPECT_EQ(answer(exited(0, "Warning: not upgrading, the latest version is installed\n")),
              (AppUpdateActionState{
                  .kind = Kind::failed,
                  .message = u"Homebrew reported no error, but version 1.9 is still installed."_s,
                  .detail = u"Warning: not upgrading, the latest version is installed"_s}));
    EXPECT_EQ(
        answer(exited(1, {}, "sudo: a terminal is required to read the password; use -S\n")).message,
        u"The app could not be updated. Homebrew asked for your password. Run the update in "
        "Terminal."_s);
    // An error after it was done.
    mac.tool(brewPath, [&](const Command& command, const std::stop_token& stop) {
        if (command.arguments.value(0) != "upgrade")
            return brewOfOneCask({})(command, stop);
        EXPECT_EQ(command.executable, mac.hostPath(brewPath).toUtf8());
        add({.name = u"Cask"_s, .version = u"2.0"_s, .build = u"200"_s});
        return exited(1, {}, "Error: could not clean up");
    });
    EXPECT_TRUE(update({u"Cask"_s}));
    settle();
    EXPECT_EQ(state(u"Cask"_s).message, u"Updated to version 2.0."_s);
    EXPECT_EQ(state(u"Cask"_s).detail, u"Error: could not clean up"_s);
}

TEST_F(AppUpdateRunnerTest, AnUpdateThatRunsIsSeenToRunAndMayBeCancelled) {
    load();
    check();
    mac.commands.holdStarted(true);
    const QByteArray log =
        mac.hostPath(mac.machine.places.applicationFolder() + u"/app-update-run.log"_s).toUtf8();
    EXPECT_TRUE(update({u"Cask"_s}));
    settle();
    for (const auto& [words, phase] :
         {std::pair{"==> Auto-updating Homebrew...\n"_ba, u"updatingItself"_s},
          {"==> Downloading https://example.com/cask.zip\n######\r########\n"_ba, u"downloading"_s},
          {"==> Upgrading cask\n"_ba, u"installing"_s},
          {"Password:"_ba, u"password"_s}}) {
        mac.commands.say(log, words);
        pass(AppUpdateRunner::pollInterval);
        EXPECT_EQ(phases.last(), phase);
    }
    EXPECT_EQ(state(u"Cask"_s).detail, u"Password:"_s);
    // A night's sleep is no time in which it ran.
    mac.time.setNow(mac.time.now() + 9h);
    for (int i = 0; i < 3; ++i) {
        pass(AppUpdateRunner::pollInterval);
    }
    EXPECT_TRUE(mac.commands.terminated().isEmpty());
    EXPECT_TRUE(coordinator->runner().isBusy());
    coordinator->runner().cancel();
    settle();
    EXPECT_EQ(mac.commands.terminated().size(), 1);
    EXPECT_EQ(state(u"Cask"_s).kind, AppUpdateActionState::Kind::cancelled);
    EXPECT_EQ(state(u"Cask"_s).message, u"The update was cancelled."_s);
    EXPECT_FALSE(coordinator->runner().isBusy());
}

TEST_F(AppUpdateRunnerTest, AnUpdateOutlivesTheLauncherAndIsTakenUp) {
    load();
    check();
    mac.commands.holdStarted(true);
    EXPECT_TRUE(update({u"Cask"_s}));
    settle();
    make(); // the launcher ends, and is started again
    EXPECT_EQ(mac.commands.terminated().size(), 0);
    start();
    EXPECT_EQ(coordinator->runner().activeAppKey(), key(u"Cask"_s));
    EXPECT_FALSE(update({u"Store"_s}));
    make(); // and once more; meanwhile it comes through
    add({.name = u"Cask"_s, .version = u"2.0"_s, .build = u"200"_s});
    brew({});
    mac.commands.holdStarted(false);
    load();
    EXPECT_FALSE(coordinator->runner().isBusy()) << "nothing is begun before the start";
    coordinator->start();
    settle();
    pass(AppUpdateRunner::pollInterval);
    EXPECT_EQ(state(u"Cask"_s).message, u"Updated to version 2.0."_s);
    const QString journal = mac.machine.places.applicationFolder() + u"/app-update-run.json"_s;
    EXPECT_FALSE(mac.exists(journal));

    // One whose end nobody saw, and that changed nothing.
    brew("3.0");
    mac.write(journal, json::write(json::encode(AppUpdateRun{.appKey = key(u"Cask"_s),
                                                             .updaterName = u"Homebrew"_s,
                                                             .processNumber = 99,
                                                             .startedAt = mac.time.now(),
                                                             .installedVersion = u"2.0"_s,
                                                             .installedBuild = u"200"_s})));
    make();
    start();
    EXPECT_EQ(state(u"Cask"_s).message, u"The app could not be updated."_s);
}

TEST_F(AppUpdateRunnerTest, SeveralAreUpdatedOneAfterTheOtherAfterOneQuestion) {
    // Two applications of one cask, and one of another.
    add({.name = u"Twin"_s, .version = u"1.9"_s, .build = u"1"_s});
    add({.name = u"Other"_s, .version = u"1.9"_s, .build = u"1"_s});
    names = {u"Cask"_s, u"Twin"_s, u"Other"_s, u"Store"_s};
    bool isUpgraded = false;
    mac.tool(brewPath, [&](const Command& command, const std::stop_token&) {
        if (command.arguments.value(0) == "info")
            return exited(0, R"({"casks":[
                {"token":"cask","version":"2.0","artifacts":[{"app":["Cask.app"]},{"app":["Twin.app"]}]},
                {"token":"other","version":"2.0","artifacts":[{"app":["Other.app"]}]}]})");
        if (command.arguments.value(0) == "outdated")
            return exited(0, QByteArray(R"({"casks":[{"name":"other","current_version":"2.0"})") +
                                 (isUpgraded ? "" : R"(,{"name":"cask","current_version":"2.0"})") +
                                 "]}");
        isUpgraded = true;
        add({.name = u"Cask"_s, .version = u"2.0"_s, .build = u"2"_s});
        add({.name = u"Twin"_s, .version = u"2.0"_s, .build = u"2"_s});
        return exited(0);
    });
    load();
    check();
    int ended = 0;
    EXPECT_TRUE(update({u"Cask"_s, u"Twin"_s, u"Store"_s}, [&] { ++ended; }));
    settle();
    EXPECT_EQ(alerts.size(), 1);
    EXPECT_TRUE(alerts.first().startsWith(u"Update 2 apps?|Homebrew may quit the apps"));
    EXPECT_EQ(ended, 1);
    EXPECT_EQ(brewRuns("upgrade"), 1) << "the twin came with it";
    EXPECT_EQ(coordinator->known().record(key(u"Twin"_s))->status, AppUpdateStatus(UpToDate()));
    EXPECT_EQ(state(u"Twin"_s).kind, AppUpdateActionState::Kind::succeeded);

    // Cancelled, none of those that wait is begun.
    isUpgraded = false;
    check();
    mac.commands.holdStarted(true);
    EXPECT_TRUE(update({u"Other"_s, u"Cask"_s}));
    settle();
    EXPECT_EQ(state(u"Cask"_s).kind, AppUpdateActionState::Kind::waiting);
    coordinator->runner().cancel();
    settle();
    EXPECT_EQ(state(u"Other"_s).kind, AppUpdateActionState::Kind::cancelled);
    EXPECT_EQ(state(u"Cask"_s).kind, AppUpdateActionState::Kind::cancelled);
    EXPECT_FALSE(coordinator->runner().isBusy());

    EXPECT_TRUE(update({u"Store"_s, u"Plain"_s}, [&] { ++ended; })) << "there is nothing to do";
    EXPECT_EQ(ended, 2);
}

TEST_F(AppUpdateRunnerTest, EachApplicationIsHandedToWhoUpdatesIt) {
    sample::MacBuilder builder(mac.root.path());
    const auto entry = [&](const QString& identifier, const QString& name,
                           const sample::Plist::Dictionary& info = {},
                           const QString& folder = u"/Applications"_s) {
        builder.addApplication(
            {.name = name, .folder = folder, .identifier = identifier, .info = info});
        AppEntry found = app(name);
        found.bundleIdentifier = identifier;
        found.path = folder + u'/' + name + u".app"_s;
        return found;
    };
    const QList<AppEntry> apps{
        entry(u"COM.Microsoft.Excel"_s, u"Excel"_s),
        entry(u"com.microsoft.word"_s, u"Word"_s, {{u"SUFeedURL"_s, u"https://feeds.test/word"_s}}),
        entry(u"com.microsoft.unheard"_s, u"Unheard"_s),
        entry(u"org.example.clock"_s, u"Clock"_s, {}, u"/System/Applications"_s),
        entry(u"org.example.keystone"_s, u"Keystone"_s, {{u"KSUpdateURL"_s, u"https://k.test"_s}}),
    };
    const auto kinds = [&] {
        coordinator->updateApps(apps);
        settle();
        QStringList raw;
        for (const AppEntry& app : apps)
            raw.append(json::rawValue(kindOf(*coordinator->channels().action(appKey(app)))));
        return raw.join(u' ');
    };
    EXPECT_EQ(kinds(), u"openApp sparkle openApp systemSoftwareUpdate vendorUpdater"_s)
        << "without the vendor's tool";
    mac.tool(MicrosoftAutoUpdateTarget::toolPath, exited(0, "No updates applied"));
    EXPECT_EQ(kinds(), u"microsoftAutoUpdate sparkle openApp systemSoftwareUpdate vendorUpdater"_s);
    EXPECT_EQ(coordinator->channels().all().size(), 1);

    std::optional<AppUpdateActionState> ended;
    const auto run = [&](const AppEntry& app) {
        coordinator->runner().update(
            {appKey(app)},
            [this](const AppUpdateQuestion& question, const auto& answer) {
                EXPECT_FALSE(coordinator->runner().state(*coordinator->runner().activeAppKey()))
                    << "nothing runs before the answer";
                alerts.append(question.title + u'|' + question.text);
                answer(true);
            },
            [&] { ended = coordinator->runner().state(appKey(app)); });
        settle();
        return mac.commands.commands().last();
    };
    run(apps[0]);
    const auto commands = mac.commands.commands(); // a check follows the update
    const auto update =
        std::ranges::find(commands, MicrosoftAutoUpdateTarget::toolPath.toUtf8(), &Command::executable);
    ASSERT_NE(update, commands.end());
    EXPECT_EQ(alerts.last(), u"Update “Excel”?|Microsoft AutoUpdate may quit the app while it "
                             "downloads and installs the update."_s);
    EXPECT_EQ(update->arguments,
              (QList<QByteArray>{"--install", "--apps", "XCEL2019", "--wait", "1800"}));
    EXPECT_EQ(completed, QStringList{u"COM.Microsoft.Excel"_s});
    EXPECT_EQ(ended->message, u"The app is up to date."_s);

    alerts.clear();
    EXPECT_EQ(
        run(apps[3]).arguments,
        QList<QByteArray>{"x-apple.systempreferences:com.apple.Software-Update-Settings.extension"});
    EXPECT_TRUE(run(apps[4]).arguments.last().endsWith("/Applications/Keystone.app"));
    EXPECT_EQ(ended, (AppUpdateActionState{AppUpdateActionState::Kind::succeeded, {}}));
    mac.tool(u"/usr/bin/open"_s, exited(1, {}, "no such application"));
    run(apps[1]);
    EXPECT_EQ(ended->message, u"The updater could not be started."_s);
    EXPECT_EQ(alerts, QStringList()) << "what only opens something is not asked about";
}

} // namespace
} // namespace tessellar::test
