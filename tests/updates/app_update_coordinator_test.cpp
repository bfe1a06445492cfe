#include "updates/app_update_coordinator.h"

#include "sample/mac_builder.h"
#include "tests/support/fake_updates.h"
#include "tests/support/items.h"
#include "tests/support/printers.h"
#include "tests/support/test_machine.h"

#include <gmock/gmock.h>

#include <thread>

namespace tessellar {
namespace {

using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

const QString brewPath = u"/opt/homebrew/bin/brew"_s;

/// A Mac with one application of each channel: Cask, Store, Feed, and Plain of none.
class AppUpdateCoordinatorTest : public testing::Test {
protected:
    void SetUp() override {
        sample::MacBuilder builder(mac.root.path());
        for (const auto& name : {u"Cask"_s, u"Store"_s, u"Feed"_s, u"Plain"_s})
            builder.addApplication({.name = name,
                                    .identifier = u"org.example."_s + name.toLower(),
                                    .version = u"1.9"_s,
                                    .build = u"100"_s,
                                    .sparkleFeed = name == u"Feed" || name == u"Cask"
                                                       ? std::optional(u"https://feeds.test/"_s + name)
                                                       : std::nullopt,
                                    .receipt = name == u"Store"});
        ASSERT_EQ(builder.failure(), std::nullopt);
        mac.tool(u"/usr/bin/mdls"_s, test::exited(0, "4711"));
        mac.tool(u"/usr/bin/open"_s, test::exited(0));
        brew("2.0");
        make();
    }

    void make() {
        coordinator.reset();
        coordinator.emplace(mac.machine);
        subscription = coordinator->events.connect([this](const AppUpdateEvent& event) {
            published += event.kind == AppUpdateEvent::Kind::changed ? 1 : 0;
            if (event.kind == AppUpdateEvent::Kind::updated)
                completed.append(event.appKey);
            if (event.kind == AppUpdateEvent::Kind::actionChanged)
                if (const auto state = coordinator->runner().state(event.appKey))
                    phases.append(json::rawValue(state->phase));
        });
    }

    /// Asks for an update as a window does; false when it was refused.
    bool update(const QStringList& which, AppUpdateRunner::Done done = {}) {
        QStringList keys;
        for (const QString& name : which)
            keys.append(key(name));
        return coordinator->runner().update(
            keys,
            [this](const AppUpdateQuestion& question, const auto& answer) {
                alerts.append(question.title + u'|' + question.text);
                answer(confirms);
            },
            std::move(done));
    }
    AppUpdateActionState state(const QString& name) const {
        return coordinator->runner().state(key(name)).value_or(AppUpdateActionState());
    }

    void brew(const QByteArray& newer) { mac.tool(brewPath, test::brewOfOneCask(newer)); }

    void settle() {
        for (int i = 0; i < 6; ++i) { // what a round begins may go on in a timer
            mac.settle();
            mac.time.advance(0ms);
        }
    }

    void load() {
        QList<AppEntry> apps;
        for (const auto& name : names)
            apps.append(test::app(name));
        coordinator->updateApps(apps);
        settle();
    }

    static QByteArray lookup(const QByteArray& version) {
        return R"({"results":[{"bundleId":"org.example.store","version":")" + version + R"("}]})";
    }
    void answerAll() {
        settle();
        mac.http.answer(u"lookup"_s, lookup("1.10"));
        mac.http.answer(u"feeds"_s, test::sparkleFeed("101"));
        settle();
    }

    QString sketch() const {
        QStringList parts;
        for (const auto& name : {u"Cask"_s, u"Store"_s, u"Feed"_s, u"Plain"_s}) {
            const auto record = coordinator->record(key(name));
            if (!record) {
                parts.append(u"-"_s);
                continue;
            }
            const auto* update = std::get_if<UpdateAvailable>(&record->status);
            parts.append(update ? update->latestVersion
                                : QString::fromLatin1(
                                      json::Cases<AppUpdateStatus>::names[record->status.index()]));
        }
        return parts.join(u' ');
    }
    static QString key(const QString& name) { return u"org.example."_s + name.toLower(); }

    /// What the file says, the cache's form aside.
    AppUpdateCache stored() {
        mac.workers.waitIdle();
        return json::decodeDocument<AppUpdateCache>(
                   mac.read(AppUpdateStore::defaultPath(mac.machine.places)))
            .value_or(AppUpdateCache());
    }

    test::TestMachine mac;
    QStringList names{u"Cask"_s, u"Store"_s, u"Feed"_s, u"Plain"_s};
    QStringList alerts;
    QStringList completed;
    bool confirms = true;
    int published = 0;
    QStringList phases;
    std::optional<AppUpdateCoordinator> coordinator;
    Subscription subscription;
};

TEST_F(AppUpdateCoordinatorTest, AFullCheckGoesThroughAllChannelsAndKeepsWhatItFinds) {
    coordinator->start();
    load();
    EXPECT_THAT(mac.http.waiting(),
                testing::UnorderedElementsAre(
                    u"https://itunes.apple.com/lookup?id=4711&entity=macSoftware&country=US"_s,
                    u"https://feeds.test/Feed"_s));
    EXPECT_TRUE(coordinator->isChecking());
    EXPECT_EQ(coordinator->progress().total, 3);
    EXPECT_EQ(coordinator->progress().checked, 1); // the cask's verdict needs no network
    answerAll();
    EXPECT_EQ(sketch(), u"2.0 1.10 2.5 -"_s);
    EXPECT_FALSE(coordinator->isChecking());
    mac.time.advance(250ms);
    EXPECT_EQ(coordinator->availableUpdateCount(), 3);
    EXPECT_EQ(coordinator->record(key(u"Cask"_s))->sourceFingerprint,
              u"homebrew:/opt/homebrew/bin/brew:2.0"_s);
    EXPECT_EQ(coordinator->record(key(u"Store"_s))->sourceFingerprint, u"mac-app-store-v2"_s);
    EXPECT_EQ(coordinator->channel(key(u"Cask"_s)), AppUpdateChannel(HomebrewCaskChannel{u"cask"_s}));

    EXPECT_EQ(stored(), AppUpdateCache());
    mac.time.advance(750ms);
    EXPECT_EQ(stored().records.size(), 3);
    EXPECT_TRUE(stored().lastCheck);
    for (const Command& command : mac.commands.commands())
        EXPECT_EQ(command.environment.contains("LC_ALL"), command.executable.endsWith("brew"));
}

TEST_F(AppUpdateCoordinatorTest, TheScheduleFollowsTheLastCheckAndTheInterval) {
    const auto brewRuns = [&] {
        qsizetype count = 0;
        for (const Command& command : mac.commands.commands())
            count += command.arguments.value(0) == "outdated" ? 1 : 0;
        return count;
    };
    coordinator->start();
    load();
    answerAll();
    EXPECT_EQ(brewRuns(), 1);
    mac.time.advance(24h - 1s);
    settle();
    EXPECT_EQ(brewRuns(), 1);
    mac.time.advance(1s);
    answerAll();
    EXPECT_EQ(brewRuns(), 2);

    // A shorter interval counts from the last check; an interval of 0 is a day.
    mac.time.advance(7h);
    (void)mac.settings.set(AppUpdateSettings::intervalKey, 21'600);
    coordinator->settingsChanged();
    answerAll();
    EXPECT_EQ(brewRuns(), 3);
    (void)mac.settings.set(AppUpdateSettings::intervalKey, 0);
    coordinator->settingsChanged();
    mac.time.advance(23h);
    settle();
    EXPECT_EQ(brewRuns(), 3);

    // The clock goes back by three days: the wait is what that makes of it.
    mac.time.setNow(mac.time.now() - 72h);
    coordinator->settingsChanged();
    mac.time.advance(72h);
    settle();
    EXPECT_EQ(brewRuns(), 3);
    mac.time.advance(1h);
    answerAll();
    EXPECT_EQ(brewRuns(), 4);
}

TEST_F(AppUpdateCoordinatorTest, SwitchingOffDropsTheResultsOfTheRunningCheck) {
    coordinator->start();
    load();
    settle();
    EXPECT_EQ(sketch(), u"2.0 - - -"_s);
    (void)mac.settings.set(AppUpdateSettings::enabledKey,
                           false); // not told yet: the next result sees it
    mac.http.answer(u"lookup"_s, lookup("1.10"));
    settle();
    EXPECT_EQ(sketch(), u"- - - -"_s);
    EXPECT_FALSE(coordinator->isChecking());
    EXPECT_EQ(mac.http.waiting(), QStringList());
    mac.time.advance(240h);
    settle();
    EXPECT_EQ(stored().records.size(), 0);
    EXPECT_EQ(stored().lastCheck, std::nullopt);
    EXPECT_EQ(coordinator->check(), std::unexpected(AppUpdateError::disabled));
    (void)mac.settings.set(AppUpdateSettings::enabledKey, true);
    coordinator->settingsChanged();
    EXPECT_TRUE(coordinator->isChecking());
}

TEST_F(AppUpdateCoordinatorTest, CancellingKeepsWhatIsKnownSoFarAndIsNoFullCheck) {
    load();
    std::optional<bool> ended;
    ASSERT_TRUE(coordinator->check({}, [&](bool wasCompleted) { ended = wasCompleted; }));
    EXPECT_EQ(coordinator->check(), std::unexpected(AppUpdateError::alreadyChecking));
    settle();
    coordinator->cancelCheck();
    EXPECT_EQ(ended, false);
    EXPECT_EQ(mac.http.waiting(), QStringList());
    EXPECT_EQ(sketch(), u"2.0 - - -"_s);
    EXPECT_EQ(coordinator->lastCheck(), std::nullopt);
    for (int step = 0; step < 3; ++step) { // at once, while bundles are read, while brew is asked
        ASSERT_TRUE(coordinator->check());
        for (int i = 0; i < step; ++i)
            mac.mailbox.waitAndDrain();
        coordinator->cancelCheck();
        settle();
        EXPECT_FALSE(coordinator->isChecking());
    }
}

TEST_F(AppUpdateCoordinatorTest, ACheckThatWasDueIsNotBegunAgainAtOnceWhenItIsCancelled) {
    coordinator->start();
    load();
    ASSERT_TRUE(coordinator->isChecking());
    coordinator->cancelCheck();
    EXPECT_FALSE(coordinator->isChecking());
    load(); // nor by what else looks at the schedule
    mac.time.advance(24h - 1s);
    settle();
    EXPECT_FALSE(coordinator->isChecking());
    mac.time.advance(1s);
    EXPECT_TRUE(coordinator->isChecking());
}

TEST_F(AppUpdateCoordinatorTest, WhatIsBroughtUpToDateDuringACheckIsCheckedAfterIt) {
    coordinator->start();
    load();
    mac.http.answer(u"feeds"_s, test::sparkleFeed("101"));
    settle();
    sample::MacBuilder(mac.root.path())
        .addApplication({.name = u"Feed"_s,
                         .identifier = u"org.example.feed"_s,
                         .version = u"2.5"_s,
                         .build = u"101"_s,
                         .sparkleFeed = u"https://feeds.test/Feed"_s});
    load();
    mac.http.answer(u"lookup"_s, lookup("1.10"));
    settle();
    mac.http.answer(u"feeds"_s, test::sparkleFeed("101"));
    settle();
    EXPECT_EQ(sketch(), u"2.0 1.10 upToDate -"_s);
}

TEST_F(AppUpdateCoordinatorTest, ACaskThatIsInstalledMeanwhileHasItsChannelAtOnce) {
    names.removeOne(u"Cask"_s);
    coordinator->start();
    load();
    mac.tool(brewPath, test::exited(0, R"({"casks":[]})"));
    answerAll();
    ASSERT_TRUE(coordinator->areChannelsKnown());
    brew({});
    names.append(u"Cask"_s);
    load();
    coordinator->learnChannels([] {});
    settle();
    ASSERT_TRUE(coordinator->channel(key(u"Cask"_s)));
    EXPECT_EQ(kindOf(*coordinator->channel(key(u"Cask"_s))), AppUpdateChannelKind::homebrewCask);
}

TEST_F(AppUpdateCoordinatorTest, AFailureKeepsWhatWasKnownBesideIt) {
    load();
    ASSERT_TRUE(coordinator->check());
    answerAll();
    mac.tool(brewPath, test::exited(0, "garbage"));
    ASSERT_TRUE(coordinator->check());
    settle();
    mac.http.answer(u"lookup"_s, HttpResponse{500, lookup("1.10")});
    mac.http.answer(u"feeds"_s, std::unexpected(HttpError::timedOut));
    settle();
    mac.time.advance(1s);
    EXPECT_EQ(sketch(), u"failed failed failed -"_s);
    EXPECT_EQ(coordinator->availableUpdateCount(), 3);
    EXPECT_EQ(coordinator->knownStatuses()[key(u"Cask"_s)], AppUpdateStatus(UpdateAvailable{u"2.0"_s}));
    // A brew that fails owns what it owned also in a later run, which knows it from the record.
    make();
    load();
    ASSERT_TRUE(coordinator->check({.channel = AppUpdateChannelKind::homebrewCask}));
    settle();
    EXPECT_EQ(sketch(), u"failed failed failed -"_s);
    EXPECT_EQ(kindOf(*coordinator->channel(key(u"Cask"_s))), AppUpdateChannelKind::homebrewCask);
    EXPECT_EQ(kindOf(*coordinator->action(key(u"Cask"_s))), AppUpdateActionKind::homebrew);
}

TEST_F(AppUpdateCoordinatorTest, StaleRecordsAreHiddenAndCheckedAgain) {
    coordinator->start();
    load();
    answerAll();
    make();
    sample::MacBuilder builder(mac.root.path());
    builder.addApplication({.name = u"Store"_s,
                            .identifier = u"org.example.store"_s,
                            .version = u"1.10"_s,
                            .receipt = true});
    load();
    EXPECT_EQ(sketch(), u"2.0 - 2.5 -"_s);
    EXPECT_EQ(mac.http.waiting(), QStringList()) << "nothing is contacted before the start";
    coordinator->start();
    load();
    EXPECT_EQ(mac.http.waiting().size(), 1);
    mac.http.answer(u"lookup"_s, lookup("1.10"));
    settle();
    EXPECT_EQ(sketch(), u"2.0 upToDate 2.5 -"_s);

    // Another checker's fingerprint; an application that has left.
    names.removeOne(u"Feed"_s);
    load();
    const auto asked = mac.commands.commands().size();
    load();
    EXPECT_EQ(mac.commands.commands().size(), asked) << "Spotlight says the same of the same bundle";
    ASSERT_TRUE(coordinator->check());
    settle();
    mac.http.answer(u"lookup"_s, lookup("1.10"));
    settle();
    coordinator.reset();
    EXPECT_EQ(stored().records.keys(), (QStringList{key(u"Cask"_s), key(u"Store"_s)}));
}

TEST_F(AppUpdateCoordinatorTest, AsksFourAtATimeTheSameIdentifierOnceAndPublishesInBursts) {
    sample::MacBuilder builder(mac.root.path());
    int next = 0;
    mac.tool(u"/usr/bin/mdls"_s, [](const Command& command, const std::stop_token&) {
        const QByteArray name = command.arguments.last().split('/').last();
        return test::exited(0, name.startsWith("Twin") ? "99" : name.mid(1, 2));
    });
    names = {u"Twin1"_s, u"Twin2"_s};
    for (; next < 9; ++next)
        names.append(u"S%1"_s.arg(10 + next));
    for (const QString& name : std::as_const(names))
        builder.addApplication({.name = name,
                                .identifier = u"org.example."_s + name.toLower(),
                                .version = u"1"_s,
                                .receipt = true});
    load();
    published = 0;
    ASSERT_TRUE(coordinator->check());
    settle();
    EXPECT_EQ(mac.http.waiting().size(), 4);
    int answered = 0;
    while (mac.http.answer(u"lookup"_s, QByteArray(R"({"results":[{"version":"2"}]})"))) {
        ++answered;
        settle();
        EXPECT_LE(mac.http.waiting().size(), 4);
    }
    EXPECT_EQ(answered, 10);
    EXPECT_EQ(published, 0); // all within a quarter of a second of the beginning
    mac.time.advance(250ms);
    EXPECT_EQ(published, 1);
    EXPECT_EQ(coordinator->availableUpdateCount(), 11);

    // Who asked for a check finds its outcome published when it ends.
    mac.tool(brewPath, test::exited(0, R"({"casks":[]})"));
    qsizetype atTheEnd = -1;
    ASSERT_TRUE(coordinator->check({.channel = AppUpdateChannelKind::macAppStore},
                                   [&](bool) { atTheEnd = coordinator->availableUpdateCount(); }));
    settle();
    while (mac.http.answer(u"lookup"_s, QByteArray(R"({"results":[{"version":"1"}]})")))
        settle();
    EXPECT_EQ(atTheEnd, 0);
}

/// What an update that comes through leaves behind.
void install(const test::TestMachine& mac, const QString& name, const QString& version,
             const QString& build) {
    sample::MacBuilder(mac.root.path())
        .addApplication({.name = name,
                         .identifier = u"org.example."_s + name.toLower(),
                         .version = version,
                         .build = build});
}

TEST_F(AppUpdateCoordinatorTest, RunsOneUpdateAtATimeAfterAskingAndChecksAgain) {
    load();
    ASSERT_TRUE(coordinator->check());
    answerAll();
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
    ASSERT_TRUE(coordinator->check());
    answerAll();
    EXPECT_FALSE(coordinator->isChecking());

    const auto commands = mac.commands.commands();
    const auto upgrade = std::ranges::find_if(
        commands, [](const Command& command) { return command.arguments.value(0) == "upgrade"; });
    ASSERT_NE(upgrade, commands.end());
    EXPECT_EQ(upgrade->arguments, (QList<QByteArray>{"upgrade", "--cask", "cask"}));
    EXPECT_EQ(upgrade->environment.at("HOMEBREW_NO_ANALYTICS"), "1");

    install(mac, u"Cask"_s, u"2.0"_s, u"200"_s);
    brew({});
    mac.commands.holdStarted(false);
    mac.time.advance(AppUpdateRunner::lookInterval);
    settle();
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

TEST_F(AppUpdateCoordinatorTest, WhatIsInstalledDecidesHowAnUpdateWent) {
    load();
    ASSERT_TRUE(coordinator->check());
    answerAll();
    using Kind = AppUpdateActionState::Kind;
    const auto answer = [&](const CommandResult& upgrade) {
        mac.tool(brewPath, [=](const Command& command, const std::stop_token& stop) {
            return command.arguments.value(0) == "upgrade" ? upgrade
                                                           : test::brewOfOneCask("2.0")(command, stop);
        });
        EXPECT_TRUE(update({u"Cask"_s}));
        settle();
        return state(u"Cask"_s);
    };
    // Its own last words stand with a failure, fit to be printed.
    EXPECT_EQ(answer(test::exited(1, "==> Downloading x\n",
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
    EXPECT_EQ(answer(test::exited(0, "Warning: not upgrading, the latest version is installed\n")),
              (AppUpdateActionState{
                  .kind = Kind::failed,
                  .message = u"Homebrew reported no error, but version 1.9 is still installed."_s,
                  .detail = u"Warning: not upgrading, the latest version is installed"_s}));
    EXPECT_EQ(answer(test::exited(1, {}, "sudo: a terminal is required to read the password; use -S\n"))
                  .message,
              u"The app could not be updated. Homebrew asked for your password. Run the update in "
              "Terminal."_s);
    // An error after it was done.
    mac.tool(brewPath, [&](const Command& command, const std::stop_token& stop) {
        if (command.arguments.value(0) != "upgrade")
            return test::brewOfOneCask({})(command, stop);
        install(mac, u"Cask"_s, u"2.0"_s, u"200"_s);
        return test::exited(1, {}, "Error: could not clean up");
    });
    EXPECT_TRUE(update({u"Cask"_s}));
    settle();
    EXPECT_EQ(state(u"Cask"_s).message, u"Updated to version 2.0."_s);
    EXPECT_EQ(state(u"Cask"_s).detail, u"Error: could not clean up"_s);
}

TEST_F(AppUpdateCoordinatorTest, AnUpdateThatRunsIsSeenToRunAndMayBeCancelled) {
    load();
    ASSERT_TRUE(coordinator->check());
    answerAll();
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
        mac.time.advance(AppUpdateRunner::lookInterval);
        settle();
        EXPECT_EQ(phases.last(), phase);
    }
    EXPECT_EQ(state(u"Cask"_s).detail, u"Password:"_s);
    coordinator->runner().cancel();
    settle();
    EXPECT_EQ(mac.commands.terminated().size(), 1);
    EXPECT_EQ(state(u"Cask"_s).kind, AppUpdateActionState::Kind::cancelled);
    EXPECT_EQ(state(u"Cask"_s).message, u"The update was cancelled."_s);
    EXPECT_FALSE(coordinator->runner().isBusy());
}

TEST_F(AppUpdateCoordinatorTest, AnUpdateOutlivesTheLauncherAndIsTakenUp) {
    load();
    ASSERT_TRUE(coordinator->check());
    answerAll();
    mac.commands.holdStarted(true);
    EXPECT_TRUE(update({u"Cask"_s}));
    settle();
    make(); // the launcher ends, and is started again
    EXPECT_EQ(mac.commands.terminated().size(), 0);
    coordinator->start();
    load();
    EXPECT_EQ(coordinator->runner().activeAppKey(), key(u"Cask"_s));
    EXPECT_FALSE(update({u"Store"_s}));
    make(); // and once more; meanwhile it comes through
    install(mac, u"Cask"_s, u"2.0"_s, u"200"_s);
    brew({});
    mac.commands.holdStarted(false);
    load();
    EXPECT_FALSE(coordinator->runner().isBusy()) << "nothing is begun before the start";
    coordinator->start();
    settle();
    mac.time.advance(AppUpdateRunner::lookInterval);
    settle();
    EXPECT_EQ(state(u"Cask"_s).message, u"Updated to version 2.0."_s);
    EXPECT_FALSE(mac.exists(mac.machine.places.applicationFolder() + u"/app-update-run.json"_s));
}

TEST_F(AppUpdateCoordinatorTest, SeveralAreUpdatedOneAfterTheOtherAfterOneQuestion) {
    // Two applications of one cask, and one of another.
    install(mac, u"Twin"_s, u"1.9"_s, u"1"_s);
    install(mac, u"Other"_s, u"1.9"_s, u"1"_s);
    names = {u"Cask"_s, u"Twin"_s, u"Other"_s, u"Store"_s};
    bool isUpgraded = false;
    mac.tool(brewPath, [&](const Command& command, const std::stop_token&) {
        if (command.arguments.value(0) == "info")
            return test::exited(0, R"({"casks":[
                {"token":"cask","version":"2.0","artifacts":[{"app":["Cask.app"]},{"app":["Twin.app"]}]},
                {"token":"other","version":"2.0","artifacts":[{"app":["Other.app"]}]}]})");
        if (command.arguments.value(0) == "outdated")
            return test::exited(
                0, QByteArray(R"({"casks":[{"name":"other","current_version":"2.0"})") +
                       (isUpgraded ? "" : R"(,{"name":"cask","current_version":"2.0"})") + "]}");
        isUpgraded = true;
        install(mac, u"Cask"_s, u"2.0"_s, u"2"_s);
        install(mac, u"Twin"_s, u"2.0"_s, u"2"_s);
        return test::exited(0);
    });
    load();
    ASSERT_TRUE(coordinator->check());
    answerAll();
    int ended = 0;
    EXPECT_TRUE(update({u"Cask"_s, u"Twin"_s, u"Store"_s}, [&] { ++ended; }));
    settle();
    EXPECT_EQ(alerts.size(), 1);
    EXPECT_TRUE(alerts.first().startsWith(u"Update 2 apps?|Homebrew may quit the apps"));
    EXPECT_EQ(ended, 1);
    const auto upgrades = std::ranges::count_if(mac.commands.commands(), [](const Command& command) {
        return command.arguments.value(0) == "upgrade";
    });
    EXPECT_EQ(upgrades, 1) << "the twin came with it";
    EXPECT_EQ(coordinator->record(key(u"Twin"_s))->status, AppUpdateStatus(UpToDate()));
    EXPECT_EQ(state(u"Twin"_s).kind, AppUpdateActionState::Kind::succeeded);

    // Cancelled, none of those that wait is begun.
    isUpgraded = false;
    ASSERT_TRUE(coordinator->check());
    answerAll();
    mac.commands.holdStarted(true);
    EXPECT_TRUE(update({u"Other"_s, u"Cask"_s}));
    settle();
    EXPECT_EQ(state(u"Cask"_s).kind, AppUpdateActionState::Kind::waiting);
    coordinator->runner().cancel();
    settle();
    EXPECT_EQ(state(u"Other"_s).kind, AppUpdateActionState::Kind::cancelled);
    EXPECT_EQ(state(u"Cask"_s).kind, AppUpdateActionState::Kind::cancelled);
    EXPECT_FALSE(coordinator->runner().isBusy());
}

TEST_F(AppUpdateCoordinatorTest, BrewsThatHangHoldUpNothingElse) {
    mac.tool(brewPath, [&](const Command&, const std::stop_token& stop) {
        while (!stop.stop_requested())
            std::this_thread::yield();
        return CommandResult{.outcome = CommandResult::Outcome::cancelled};
    });
    coordinator->updateApps({test::app(u"Store"_s), test::app(u"Feed"_s)});
    mac.settle();
    ASSERT_TRUE(coordinator->check());
    while (mac.http.waiting().size() < 2) {
        mac.mailbox.waitAndDrain();
        mac.time.advance(0ms);
    }
    mac.http.answer(u"lookup"_s, lookup("1.10"));
    mac.http.answer(u"feeds"_s, test::sparkleFeed("101"));
    while (sketch() != u"- 1.10 2.5 -") {
        mac.mailbox.waitAndDrain();
        mac.time.advance(0ms);
    }
    EXPECT_TRUE(coordinator->isChecking()) << "the brew has not answered yet";
    coordinator->cancelCheck();
}

TEST_F(AppUpdateCoordinatorTest, WhatIsKnownOfChannelsIsKept) {
    load();
    ASSERT_TRUE(coordinator->check());
    answerAll();
    const auto asked = mac.commands.commands().size();
    make();
    load();
    EXPECT_EQ(coordinator->channel(key(u"Cask"_s)), AppUpdateChannel(HomebrewCaskChannel{u"cask"_s}));
    EXPECT_EQ(coordinator->channel(key(u"Store"_s)), AppUpdateChannel(MacAppStoreChannel{4711}));
    EXPECT_EQ(kindOf(*coordinator->action(key(u"Cask"_s))), AppUpdateActionKind::homebrew);
    EXPECT_EQ(mac.commands.commands().size(), asked) << "without starting a tool";
    EXPECT_EQ(coordinator->reason(key(u"Plain"_s))->code, AppUpdateReason::Code::noChannel);

    // A token that is none was written by somebody else.
    AppUpdateCache cache = stored();
    (*cache.owners)[key(u"Cask"_s)].token = u"--force"_s;
    mac.write(AppUpdateStore::defaultPath(mac.machine.places), json::write(json::encode(cache)));
    make();
    load();
    EXPECT_NE(kindOf(*coordinator->action(key(u"Cask"_s))), AppUpdateActionKind::homebrew);
}

TEST_F(AppUpdateCoordinatorTest, ASpotlightThatHangsIsWaitedForOnce) {
    sample::MacBuilder builder(mac.root.path());
    names = {u"Feed"_s};
    for (int i = 0; i < 12; ++i) {
        names.append(u"S%1"_s.arg(i));
        builder.addApplication({.name = names.last(),
                                .identifier = u"org.example."_s + names.last().toLower(),
                                .version = u"1"_s,
                                .receipt = true});
    }
    mac.tool(u"/usr/bin/mdls"_s, CommandResult{.outcome = CommandResult::Outcome::timedOut});
    load();
    ASSERT_TRUE(coordinator->check());
    answerAll();
    EXPECT_FALSE(coordinator->isChecking());
    const auto waits =
        std::ranges::count(mac.commands.commands(), QByteArray("/usr/bin/mdls"), &Command::executable);
    EXPECT_EQ(waits, 1);
    ASSERT_EQ(coordinator->problems().size(), 1);
    EXPECT_EQ(coordinator->problems().first().reason.code, AppUpdateReason::Code::noSpotlight);
    EXPECT_EQ(coordinator->reason(key(u"S3"_s))->code, AppUpdateReason::Code::noStoreItem);
}

TEST_F(AppUpdateCoordinatorTest, OfflineIsSaidAndTriedAgainSoon) {
    names = {u"Store"_s, u"Feed"_s, u"Plain"_s};
    brew({});
    const auto fail = [&] {
        settle();
        for (int i = 0; i < 2; ++i) {
            mac.http.answer(u"test"_s, test::FakeHttp::Answer(std::unexpected(HttpError::transport)));
            mac.http.answer(u"lookup"_s, test::FakeHttp::Answer(std::unexpected(HttpError::transport)));
        }
        settle();
    };
    coordinator->start();
    load();
    fail();
    EXPECT_EQ(sketch(), u"- failed failed -"_s);
    EXPECT_EQ(coordinator->lastCheck(), std::nullopt) << "it could not find anything";
    const auto summary = [&] {
        return update_texts::summary(coordinator->tally(), coordinator->problems(),
                                     coordinator->lastCheck() ? u"now"_s : QString());
    };
    EXPECT_EQ(summary(), u"2 apps could not be checked. The server could not be reached."_s);
    // After a minute, after five more, and when the network returns.
    for (const auto pause : {60s, 300s}) {
        mac.time.advance(pause - 1s);
        settle();
        EXPECT_FALSE(coordinator->isChecking());
        mac.time.advance(1s);
        EXPECT_TRUE(coordinator->isChecking());
        fail();
    }
    coordinator->networkReturned();
    EXPECT_TRUE(coordinator->isChecking());
    settle();
    mac.http.answer(u"lookup"_s, lookup("1.9"));
    mac.http.answer(u"feeds"_s, HttpResponse{503, {}});
    settle();
    mac.time.advance(250ms);
    EXPECT_EQ(summary(), u"Last checked now. No updates found. 1 app could not be checked. The server "
                         "takes no more questions for now."_s);
    // Now only the one that failed is asked for again.
    mac.time.advance(1min);
    settle();
    EXPECT_EQ(mac.http.waiting(), QStringList{u"https://feeds.test/Feed"_s});
    mac.http.answer(u"feeds"_s, test::sparkleFeed("100"));
    settle();
    mac.time.advance(250ms);
    EXPECT_EQ(summary(), u"Last checked now. No updates found."_s);
    coordinator->networkReturned();
    EXPECT_EQ(mac.http.waiting(), QStringList());
}

TEST_F(AppUpdateCoordinatorTest, AServerThatThrottlesIsAskedNoMoreForNow) {
    sample::MacBuilder builder(mac.root.path());
    mac.tool(u"/usr/bin/mdls"_s, [](const Command& command, const std::stop_token&) {
        return test::exited(0, command.arguments.last().split('/').last().mid(1, 2));
    });
    names = {u"Feed"_s};
    for (int i = 10; i < 40; ++i) {
        names.append(u"S%1"_s.arg(i));
        builder.addApplication({.name = names.last(),
                                .identifier = u"org.example."_s + names.last().toLower(),
                                .version = u"1"_s,
                                .receipt = true});
    }
    load();
    ASSERT_TRUE(coordinator->check());
    settle();
    mac.http.answer(u"lookup"_s, HttpResponse{403, {}});
    settle();
    while (mac.http.answer(u"lookup"_s, QByteArray(R"({"results":[{"version":"1"}]})")))
        settle();
    mac.http.answer(u"feeds"_s, test::sparkleFeed("101"));
    settle();
    EXPECT_FALSE(coordinator->isChecking());
    EXPECT_EQ(mac.http.requests.size(), 5) << "four of the store, and one of another server";
    EXPECT_EQ(coordinator->tally().failed, 27);
    EXPECT_EQ(coordinator->tally().reason->code, AppUpdateReason::Code::throttled);
}

TEST_F(AppUpdateCoordinatorTest, AFailingBrewIsNotSilence) {
    brew({});
    names = {u"Cask"_s};
    mac.tool(brewPath, test::exited(1, {}, "Error: Permission denied\n"));
    load();
    ASSERT_TRUE(coordinator->check());
    settle();
    mac.http.answer(u"feeds"_s, test::sparkleFeed("100"));
    settle();
    ASSERT_EQ(coordinator->problems().size(), 1);
    EXPECT_EQ(message(coordinator->problems().first().reason),
              u"Homebrew reported an error. Error: Permission denied."_s);
    EXPECT_EQ(sketch(), u"upToDate - - -"_s) << "its feed can tell, as long as no cask is known";
    EXPECT_EQ(update_texts::summary(coordinator->tally(), coordinator->problems(), u"now"_s),
              u"Last checked now. No updates found. Homebrew reported an error. Error: Permission "
              "denied."_s);

    // It is asked again soon, and only it.
    coordinator->start();
    const auto asked = mac.http.requests.size();
    for (const auto pause : {1min, 5min}) {
        mac.time.advance(pause);
        settle();
        EXPECT_FALSE(coordinator->isChecking());
    }
    const auto attempts = std::ranges::count_if(mac.commands.commands(), [](const Command& command) {
        return command.arguments.value(0) == "info";
    });
    EXPECT_EQ(attempts, 3);
    EXPECT_EQ(mac.http.requests.size(), asked);

    // When it lists its casks, but not which are outdated, they are its own and have failed.
    mac.tool(brewPath, [](const Command& command, const std::stop_token& stop) {
        return command.arguments.value(0) == "outdated" ? test::exited(1, {}, "Error: no network")
                                                        : test::brewOfOneCask("2.0")(command, stop);
    });
    ASSERT_TRUE(coordinator->check());
    settle();
    EXPECT_EQ(sketch(), u"failed - - -"_s);
    EXPECT_EQ(coordinator->reason(key(u"Cask"_s))->detail, u"Error: no network"_s);
}

TEST_F(AppUpdateCoordinatorTest, WhatIsSkippedOrPinnedIsNoUpdate) {
    load();
    ASSERT_TRUE(coordinator->check());
    answerAll();
    mac.time.advance(250ms);
    EXPECT_EQ(coordinator->availableUpdateCount(), 3);
    coordinator->skip(key(u"Store"_s), u"1.10"_s);
    coordinator->skip(key(u"Feed"_s), std::nullopt);
    mac.time.advance(250ms);
    EXPECT_EQ(coordinator->availableUpdateCount(), 1);
    EXPECT_EQ(coordinator->statuses()[key(u"Store"_s)], AppUpdateStatus(UpToDate()));
    EXPECT_TRUE(coordinator->isHeld(key(u"Store"_s)));

    mac.tool(brewPath, [](const Command& command, const std::stop_token& stop) {
        return command.arguments.value(0) == "outdated"
                   ? test::exited(
                         0, R"({"casks":[{"name":"cask","current_version":"2.0","pinned":true}]})")
                   : test::brewOfOneCask("2.0")(command, stop);
    });
    ASSERT_TRUE(coordinator->check());
    settle();
    mac.http.answer(u"lookup"_s, lookup("1.11")); // another version than the one that is skipped
    mac.http.answer(u"feeds"_s, test::sparkleFeed("102"));
    settle();
    mac.time.advance(1s);
    EXPECT_EQ(coordinator->availableUpdateCount(), 1);
    EXPECT_EQ(coordinator->tally().held, 2);
    make();
    load();
    EXPECT_TRUE(coordinator->isHeld(key(u"Feed"_s))) << "as the file says";
    coordinator->unskip(key(u"Feed"_s));
    mac.time.advance(250ms);
    EXPECT_EQ(coordinator->availableUpdateCount(), 2);
}

TEST_F(AppUpdateCoordinatorTest, EachApplicationIsHandedToWhoUpdatesIt) {
    sample::MacBuilder builder(mac.root.path());
    const auto add = [&](const QString& identifier, const QString& name,
                         const sample::Plist::Dictionary& info = {},
                         const QString& folder = u"/Applications"_s) {
        builder.addApplication(
            {.name = name, .folder = folder, .identifier = identifier, .info = info});
        AppEntry entry = test::app(name);
        entry.bundleIdentifier = identifier;
        entry.path = folder + u'/' + name + u".app"_s;
        return entry;
    };
    const QList<AppEntry> apps{
        add(u"COM.Microsoft.Excel"_s, u"Excel"_s),
        add(u"com.microsoft.word"_s, u"Word"_s, {{u"SUFeedURL"_s, u"https://feeds.test/word"_s}}),
        add(u"com.microsoft.unheard"_s, u"Unheard"_s),
        add(u"org.example.clock"_s, u"Clock"_s, {}, u"/System/Applications"_s),
        add(u"org.example.keystone"_s, u"Keystone"_s, {{u"KSUpdateURL"_s, u"https://k.test"_s}}),
    };
    const auto kinds = [&] {
        coordinator->updateApps(apps);
        settle();
        QStringList raw;
        for (const AppEntry& app : apps)
            raw.append(json::rawValue(kindOf(*coordinator->action(appKey(app)))));
        return raw.join(u' ');
    };
    EXPECT_EQ(kinds(), u"openApp sparkle openApp systemSoftwareUpdate vendorUpdater"_s)
        << "without the vendor's tool";
    mac.tool(MicrosoftAutoUpdateTarget::toolPath, test::exited(0, "No updates applied"));
    EXPECT_EQ(kinds(), u"microsoftAutoUpdate sparkle openApp systemSoftwareUpdate vendorUpdater"_s);
    EXPECT_EQ(coordinator->channels().size(), 1);

    std::optional<AppUpdateActionState> ended;
    const auto run = [&](const AppEntry& app) {
        coordinator->runner().update(
            {appKey(app)},
            [this](const AppUpdateQuestion& question, const auto& answer) {
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
    mac.tool(u"/usr/bin/open"_s, test::exited(1, {}, "no such application"));
    run(apps[1]);
    EXPECT_EQ(ended->message, u"The updater could not be started."_s);
    EXPECT_EQ(alerts, QStringList()) << "what only opens something is not asked about";
}

TEST_F(AppUpdateCoordinatorTest, TriesToSaveAgainAtTheNextResult) {
    const QString path = AppUpdateStore::defaultPath(mac.machine.places);
    mac.makeFolder(FileSystem::joined(path, u"in the way"_s));
    load();
    ASSERT_TRUE(coordinator->check({.channel = AppUpdateChannelKind::homebrewCask}));
    settle();
    mac.time.advance(1s);
    settle();
    EXPECT_EQ(mac.log.lines().size(), 1);
    mac.remove(path);
    ASSERT_TRUE(coordinator->check({.channel = AppUpdateChannelKind::homebrewCask}));
    settle();
    mac.time.advance(1s);
    settle();
    EXPECT_EQ(stored().records.keys(), QStringList{key(u"Cask"_s)});
}

} // namespace
} // namespace tessellar
