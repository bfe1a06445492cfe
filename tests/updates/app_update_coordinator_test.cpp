#include "updates/app_update_coordinator.h"

#include "sample/mac_builder.h"
#include "tests/support/fake_updates.h"
#include "tests/support/items.h"
#include "tests/support/printers.h"
#include "tests/support/test_machine.h"

#include <gmock/gmock.h>

#include <future>
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
        coordinator->onStatusesChanged = [this] { ++published; };
        coordinator->presentAlert = [this](const AppUpdateAlert& alert, const auto& answer) {
            alerts.append(alert.title + u'|' + alert.text);
            answer(confirms);
        };
        coordinator->onUpdateCompleted = [this](const QString& key) { completed.append(key); };
    }

    void brew(const QByteArray& newer) { mac.tool(brewPath, test::brewOfOneCask(newer)); }

    void settle() {
        for (int i = 0; i < 3; ++i) { // what a round begins may go on in a timer
            do {
                mac.workers.waitIdle();
                coordinator->waitForTools();
            } while (mac.mailbox.drain() > 0);
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
    std::optional<AppUpdateCoordinator> coordinator;
};

TEST_F(AppUpdateCoordinatorTest, AFullCheckGoesThroughAllChannelsAndKeepsWhatItFinds) {
    coordinator->start();
    load();
    EXPECT_EQ(mac.http.waiting(),
              (QStringList{u"https://itunes.apple.com/lookup?id=4711&entity=macSoftware&country=US"_s,
                           u"https://feeds.test/Feed"_s}));
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
    EXPECT_EQ(stored(), AppUpdateCache());
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
    EXPECT_EQ(kindOf(*coordinator->action(key(u"Cask"_s))), AppUpdateActionKind::openApp);
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

TEST_F(AppUpdateCoordinatorTest, RunsOneUpdateAtATimeAfterAskingAndChecksAgain) {
    load();
    ASSERT_TRUE(coordinator->check());
    answerAll();
    alerts.clear();
    coordinator->runAction(key(u"Cask"_s));
    EXPECT_EQ(alerts, QStringList{u"Update “Cask”?|Homebrew may quit the app while it downloads and "
                                  "installs the update."_s});
    EXPECT_EQ(coordinator->activeUpdateAppKey(), key(u"Cask"_s));
    coordinator->runAction(key(u"Store"_s));
    EXPECT_EQ(alerts.last(), u"Another app update is already in progress.|"_s);
    EXPECT_FALSE(coordinator->actionStates().contains(key(u"Store"_s)));
    brew({});
    settle();
    const auto commands = mac.commands.commands();
    const auto upgrade = std::ranges::find_if(
        commands, [](const Command& command) { return command.arguments.value(0) == "upgrade"; });
    ASSERT_NE(upgrade, commands.end());
    EXPECT_EQ(upgrade->arguments, (QList<QByteArray>{"upgrade", "--cask", "cask"}));
    EXPECT_EQ(upgrade->environment.at("HOMEBREW_NO_ANALYTICS"), "1");
    EXPECT_EQ(coordinator->actionStates()[key(u"Cask"_s)],
              (AppUpdateActionState{AppUpdateActionState::Kind::succeeded,
                                    u"Update completed. Verifying the installed version…"_s}));
    EXPECT_EQ(completed, QStringList{key(u"Cask"_s)});
    EXPECT_EQ(sketch(), u"upToDate 1.10 2.5 -"_s);

    confirms = false;
    coordinator->runAction(key(u"Cask"_s));
    EXPECT_EQ(coordinator->activeUpdateAppKey(), std::nullopt);
    coordinator->runAction(key(u"Store"_s));
    settle();
    EXPECT_EQ(mac.commands.commands().last().arguments,
              QList<QByteArray>{"https://apps.apple.com/app/id4711"});
}

TEST_F(AppUpdateCoordinatorTest, SaysHowACommandFailedAndCancelsAtOnce) {
    load();
    ASSERT_TRUE(coordinator->check());
    answerAll();
    using Outcome = CommandResult::Outcome;
    for (const auto& [outcome, status, text] :
         {std::tuple{Outcome::exited, 1, u"The app could not be updated."_s},
          {Outcome::signalled, 9, u"The app could not be updated."_s},
          {Outcome::timedOut, -1, u"The update command timed out."_s},
          {Outcome::couldNotLaunch, 2, u"The updater could not be started."_s}}) {
        mac.tool(brewPath, CommandResult{.outcome = outcome, .exitStatus = status});
        coordinator->runAction(key(u"Cask"_s));
        settle();
        EXPECT_EQ(coordinator->actionStates()[key(u"Cask"_s)].message, text);
    }
    EXPECT_EQ(completed, QStringList());

    std::promise<void> begun;
    mac.tool(brewPath, [&](const Command&, const std::stop_token& stop) {
        begun.set_value();
        while (!stop.stop_requested())
            std::this_thread::yield();
        return CommandResult{.outcome = Outcome::cancelled};
    });
    coordinator->runAction(key(u"Cask"_s));
    begun.get_future().wait();
    coordinator->cancelAction();
    EXPECT_EQ(coordinator->actionStates()[key(u"Cask"_s)].message, u"The update was cancelled."_s);
    EXPECT_EQ(coordinator->activeUpdateAppKey(), std::nullopt);
    settle();
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

    QString screen; // what was said of who comes to the front, "open" being a command
    coordinator->beginExternalSystemUI = [&] { screen += u"begin "_s; };
    coordinator->endExternalSystemUI = [&] { screen += u"end "_s; };
    coordinator->prepareForExternalPresentation = [&] { screen += u"prepare "_s; };
    mac.tool(u"/usr/bin/open"_s, [&](const Command&, const std::stop_token&) {
        screen += u"open "_s; // while the main thread waits
        return test::exited(0);
    });
    std::optional<AppUpdateActionState> ended;
    const auto run = [&](const AppEntry& app) {
        coordinator->runAction(appKey(app), [&](const auto& state) { ended = state; });
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
    EXPECT_EQ(update->timeout, 2h);
    EXPECT_EQ(completed, QStringList{u"COM.Microsoft.Excel"_s});
    EXPECT_EQ(screen, u"begin end "_s);

    alerts.clear();
    EXPECT_EQ(
        run(apps[3]).arguments,
        QList<QByteArray>{"x-apple.systempreferences:com.apple.Software-Update-Settings.extension"});
    EXPECT_TRUE(run(apps[4]).arguments.last().endsWith("/Applications/Keystone.app"));
    EXPECT_EQ(screen, u"begin end prepare open prepare open "_s);
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
    EXPECT_EQ(mac.log.lines().size(), 1);
    mac.remove(path);
    ASSERT_TRUE(coordinator->check({.channel = AppUpdateChannelKind::homebrewCask}));
    settle();
    mac.time.advance(1s);
    EXPECT_EQ(stored().records.keys(), QStringList{key(u"Cask"_s)});
}

} // namespace
} // namespace tessellar
