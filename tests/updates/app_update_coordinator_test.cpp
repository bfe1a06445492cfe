#include "updates_fixture.h"

#include <thread>

namespace tessellar::test {
namespace {

using AppUpdateCoordinatorTest = UpdatesFixture;

TEST_F(AppUpdateCoordinatorTest, AFullCheckGoesThroughAllChannelsAndKeepsWhatItFinds) {
    start();
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
    EXPECT_EQ(coordinator->known().tally().available, 3);
    EXPECT_EQ(coordinator->known().record(key(u"Cask"_s))->sourceFingerprint,
              u"homebrew:/opt/homebrew/bin/brew:2.0"_s);
    EXPECT_EQ(coordinator->known().record(key(u"Store"_s))->sourceFingerprint, u"mac-app-store-v2"_s);
    EXPECT_EQ(coordinator->channels().channel(key(u"Cask"_s)),
              AppUpdateChannel(HomebrewCaskChannel{u"cask"_s}));

    EXPECT_EQ(stored(), AppUpdateCache());
    mac.time.advance(750ms);
    EXPECT_EQ(stored().records.size(), 3);
    EXPECT_TRUE(stored().lastCheck);
    for (const Command& command : mac.commands.commands())
        EXPECT_EQ(command.environment.contains("LC_ALL"), command.executable.endsWith("brew"));
}

TEST_F(AppUpdateCoordinatorTest, WhatNoServerWillEverAnswerIsNotAskedForAtOnceAgain) {
    names = {u"Store"_s};
    brew({});
    start();
    mac.http.answer(u"lookup"_s, HttpResponse{200, R"({"resultCount": 0, "results": []})"});
    settle();
    EXPECT_EQ(sketch(), u"- failed - -"_s);
    pass(23h);
    EXPECT_FALSE(coordinator->isChecking());
    EXPECT_EQ(mac.http.waiting(), QStringList());
    pass(1h);
    EXPECT_EQ(mac.http.waiting().size(), 1);
}

TEST_F(AppUpdateCoordinatorTest, TheScheduleFollowsTheLastCheckAndTheInterval) {
    start();
    answerAll();
    EXPECT_EQ(brewRuns("outdated"), 1);
    pass(24h - 1s);
    EXPECT_EQ(brewRuns("outdated"), 1);
    mac.time.advance(1s);
    answerAll();
    EXPECT_EQ(brewRuns("outdated"), 2);

    // A shorter interval counts from the last check; an interval of 0 is a day.
    mac.time.advance(7h);
    set(AppUpdateSettings::intervalKey, 21'600);
    answerAll();
    EXPECT_EQ(brewRuns("outdated"), 3);
    set(AppUpdateSettings::intervalKey, 0);
    pass(23h);
    EXPECT_EQ(brewRuns("outdated"), 3);

    // The clock goes back by three days: the wait is what that makes of it.
    mac.time.setNow(mac.time.now() - 72h);
    coordinator->settingsChanged();
    pass(72h);
    EXPECT_EQ(brewRuns("outdated"), 3);
    mac.time.advance(1h);
    answerAll();
    EXPECT_EQ(brewRuns("outdated"), 4);
}

TEST_F(AppUpdateCoordinatorTest, SwitchingOffDropsTheResultsOfTheRunningCheck) {
    start();
    settle();
    EXPECT_EQ(sketch(), u"2.0 - - -"_s);
    (void)mac.settings.set(AppUpdateSettings::enabledKey,
                           false); // not told yet: the next result sees it
    answerStore("1.10");
    EXPECT_EQ(sketch(), u"- - - -"_s);
    EXPECT_FALSE(coordinator->isChecking());
    EXPECT_EQ(mac.http.waiting(), QStringList());
    pass(240h);
    EXPECT_EQ(stored().records.size(), 0);
    EXPECT_EQ(stored().lastCheck, std::nullopt);
    EXPECT_EQ(coordinator->check(), std::unexpected(AppUpdateError::disabled));
    set(AppUpdateSettings::enabledKey, true);
    EXPECT_TRUE(coordinator->isChecking());
    answerAll();
    ASSERT_TRUE(coordinator->check());
    settle();
    mac.http.answer(u"lookup"_s, lookup("1.11"));
    settle();
    EXPECT_EQ(sketch(), u"2.0 1.11 2.5 -"_s);
    set(AppUpdateSettings::enabledKey, false);
    EXPECT_EQ(sketch(), u"2.0 1.10 2.5 -"_s) << "as before that check";
}

TEST_F(AppUpdateCoordinatorTest, RevertingTwoChecksOfOneApplicationRestoresTheOldestRecord) {
    load();
    check();
    KnownAppUpdates& known = coordinator->known();
    const AppUpdateCandidate store = *coordinator->channels().candidate(key(u"Store"_s));
    std::array<KnownAppUpdates::Replaced, 2> replaced;
    for (std::size_t i = 0; i < replaced.size(); ++i) {
        pass(1s);
        known.recordVerdict(store, *coordinator->channels().checker(store),
                            AppUpdateStatus(UpdateAvailable{u"1.2%1"_s.arg(i)}), replaced[i]);
    }
    EXPECT_EQ(sketch(), u"2.0 1.21 2.5 -"_s);
    known.revert(replaced[0]);
    known.revert(replaced[1]);
    EXPECT_EQ(sketch(), u"2.0 1.10 2.5 -"_s);
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
    EXPECT_EQ(coordinator->known().lastCheck(), std::nullopt);
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
    start();
    ASSERT_TRUE(coordinator->isChecking());
    coordinator->cancelCheck();
    EXPECT_FALSE(coordinator->isChecking());
    load(); // nor by what else looks at the schedule
    pass(24h - 1s);
    EXPECT_FALSE(coordinator->isChecking());
    mac.time.advance(1s);
    EXPECT_TRUE(coordinator->isChecking());
}

TEST_F(AppUpdateCoordinatorTest, AFailureKeepsWhatWasKnownBesideIt) {
    load();
    check();
    mac.tool(brewPath, exited(0, "garbage"));
    beginCheck();
    mac.http.answer(u"lookup"_s, HttpResponse{500, lookup("1.10")});
    mac.http.answer(u"feeds"_s, std::unexpected(HttpError::timedOut));
    settle();
    mac.time.advance(1s);
    EXPECT_EQ(sketch(), u"failed failed failed -"_s);
    EXPECT_EQ(coordinator->known().tally().available, 3);
    EXPECT_EQ(coordinator->known().knownStatuses()[key(u"Cask"_s)],
              AppUpdateStatus(UpdateAvailable{u"2.0"_s}));
    // A brew that fails owns what it owned also in a later run, which knows it from the record.
    restart();
    beginCheck({.channel = AppUpdateChannelKind::homebrewCask});
    EXPECT_EQ(sketch(), u"failed failed failed -"_s);
    EXPECT_EQ(kindOf(*coordinator->channels().channel(key(u"Cask"_s))),
              AppUpdateChannelKind::homebrewCask);
    EXPECT_EQ(kindOf(*coordinator->channels().action(key(u"Cask"_s))), AppUpdateActionKind::homebrew);
}

TEST_F(AppUpdateCoordinatorTest, StaleRecordsAreHiddenAndCheckedAgain) {
    start();
    answerAll();
    make();
    add({.name = u"Store"_s, .version = u"1.10"_s, .receipt = true});
    load();
    EXPECT_EQ(sketch(), u"2.0 - 2.5 -"_s);
    EXPECT_EQ(mac.http.waiting(), QStringList()) << "nothing is contacted before the start";
    start();
    EXPECT_EQ(mac.http.waiting().size(), 1);
    answerStore("1.10");
    EXPECT_EQ(sketch(), u"2.0 upToDate 2.5 -"_s);

    // Another checker's fingerprint; an application that has left.
    names.removeOne(u"Feed"_s);
    load();
    const auto asked = mac.commands.commands().size();
    load();
    EXPECT_EQ(mac.commands.commands().size(), asked) << "Spotlight says the same of the same bundle";
    beginCheck();
    answerStore("1.10");
    mac.time.advance(1s);
    EXPECT_FALSE(coordinator->known().statuses().contains(key(u"Feed"_s)));
    EXPECT_FALSE(coordinator->known().knownStatuses().contains(key(u"Feed"_s)));
    coordinator.reset();
    EXPECT_EQ(stored().records.keys(), (QStringList{key(u"Cask"_s), key(u"Feed"_s), key(u"Store"_s)}))
        << "it may only be out of sight";
    EXPECT_EQ(stored().storeItems.keys(), QStringList{key(u"Store"_s)});

    names = {u"Cask"_s};
    mac.time.setNow(Instant{mac.time.now().secondsSince2001 + 91.0 * 24 * 60 * 60});
    restart();
    beginCheck();
    coordinator.reset();
    EXPECT_EQ(stored().records.keys(), QStringList{key(u"Cask"_s)});
    EXPECT_EQ(stored().storeItems.keys(), QStringList());
}

TEST_F(AppUpdateCoordinatorTest, AsksFourAtATimeTheSameIdentifierOnceAndPublishesInBursts) {
    addStoreApps({}, numbered(10, 19) + QStringList{u"Twin1"_s, u"Twin2"_s});
    load();
    published = 0;
    beginCheck();
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
    EXPECT_EQ(coordinator->known().tally().available, 11);

    // Who asked for a check finds its outcome published when it ends.
    mac.tool(brewPath, exited(0, R"({"casks":[]})"));
    qsizetype atTheEnd = -1;
    ASSERT_TRUE(coordinator->check({.channel = AppUpdateChannelKind::macAppStore},
                                   [&](bool) { atTheEnd = coordinator->known().tally().available; }));
    settle();
    while (mac.http.answer(u"lookup"_s, QByteArray(R"({"results":[{"version":"1"}]})")))
        settle();
    EXPECT_EQ(atTheEnd, 0);
}

TEST_F(AppUpdateCoordinatorTest, BrewsThatHangHoldUpNothingElse) {
    mac.tool(brewPath, [&](const Command&, const std::stop_token& stop) {
        while (!stop.stop_requested())
            std::this_thread::yield();
        return CommandResult{.outcome = CommandResult::Outcome::cancelled};
    });
    coordinator->updateApps({app(u"Store"_s), app(u"Feed"_s)});
    mac.settle();
    ASSERT_TRUE(coordinator->check());
    const auto until = [&](const auto& isSo) {
        while (!isSo()) {
            mac.mailbox.waitAndDrain();
            mac.time.advance(0ms);
        }
    };
    until([&] { return mac.http.waiting().size() == 2; });
    mac.http.answer(u"lookup"_s, lookup("1.10"));
    mac.http.answer(u"feeds"_s, sparkleFeed("101"));
    until([&] { return sketch() == u"- 1.10 2.5 -"; });
    EXPECT_TRUE(coordinator->isChecking()) << "the brew has not answered yet";
    coordinator->cancelCheck();
}

TEST_F(AppUpdateCoordinatorTest, ACheckThatIsCancelledOverAnAnswerLeavesTheBrewToTheNext) {
    load();
    bool isCancelled = false;
    const Subscription cancels = coordinator->known().events.connect([&](const AppUpdateEvent& event) {
        if (event.kind == AppUpdateEvent::Kind::recorded && !std::exchange(isCancelled, true))
            coordinator->cancelCheck();
    });
    beginCheck({.channel = AppUpdateChannelKind::homebrewCask});
    ASSERT_TRUE(isCancelled);
    brew("3.0");
    beginCheck({.channel = AppUpdateChannelKind::homebrewCask});
    EXPECT_EQ(sketch(), u"3.0 - - -");
}

TEST_F(AppUpdateCoordinatorTest, BrewsThatDoNotAnswerLeaveTheOthersToBeAsked) {
    names.clear();
    bool isSilent = false;
    for (int i = 0; i < 8; ++i) { // in whichever order they are asked
        const QString name = u"Tree%1"_s.arg(i);
        add({.name = name});
        names.append(name);
        mac.machine.environment["PATH"] += ":/brew" + QByteArray::number(i);
        mac.tool(u"/brew%1/brew"_s.arg(i), [&, i, name](const Command& command, std::stop_token stop) {
            if (isSilent && i % 2 == 0)
                return CommandResult{.outcome = CommandResult::Outcome::timedOut};
            CommandResult said = brewOfOneCask(isSilent ? "3.0" : "2.0")(command, stop);
            said.standardOutput.replace("Cask.app", name.toUtf8() + ".app");
            return said;
        });
    }
    load();
    beginCheck();
    isSilent = true;
    beginCheck();
    EXPECT_FALSE(coordinator->isChecking());
    QStringList found;
    for (const QString& name : names)
        found += test::sketch(coordinator->known().record(key(name)));
    EXPECT_EQ(found.join(u' '), u"failed 3.0 failed 3.0 failed 3.0 failed 3.0");
}

TEST_F(AppUpdateCoordinatorTest, WhatIsKnownOfChannelsIsKept) {
    load();
    check();
    const auto asked = mac.commands.commands().size();
    restart();
    EXPECT_EQ(coordinator->channels().channel(key(u"Cask"_s)),
              AppUpdateChannel(HomebrewCaskChannel{u"cask"_s}));
    EXPECT_EQ(coordinator->channels().channel(key(u"Store"_s)),
              AppUpdateChannel(MacAppStoreChannel{4711}));
    EXPECT_EQ(kindOf(*coordinator->channels().action(key(u"Cask"_s))), AppUpdateActionKind::homebrew);
    EXPECT_EQ(mac.commands.commands().size(), asked) << "without starting a tool";
    EXPECT_EQ(coordinator->known().reason(key(u"Plain"_s))->code, AppUpdateReason::Code::noChannel);

    // A token that is none was written by somebody else.
    AppUpdateCache cache = stored();
    (*cache.owners)[key(u"Cask"_s)].token = u"--force"_s;
    mac.write(AppUpdateStore::defaultPath(mac.machine.places), json::write(json::encode(cache)));
    restart();
    EXPECT_NE(kindOf(*coordinator->channels().action(key(u"Cask"_s))), AppUpdateActionKind::homebrew);
}

TEST_F(AppUpdateCoordinatorTest, ASpotlightThatHangsIsWaitedForOnce) {
    addStoreApps({u"Feed"_s}, numbered(0, 12));
    mac.tool(u"/usr/bin/mdls"_s, CommandResult{.outcome = CommandResult::Outcome::timedOut});
    load();
    check();
    EXPECT_FALSE(coordinator->isChecking());
    const auto waits =
        std::ranges::count(mac.commands.commands(), QByteArray("/usr/bin/mdls"), &Command::executable);
    EXPECT_EQ(waits, 1);
    ASSERT_EQ(coordinator->known().problems().size(), 1);
    EXPECT_EQ(coordinator->known().problems().first().reason.code, AppUpdateReason::Code::noSpotlight);
    EXPECT_EQ(coordinator->known().reason(key(u"S3"_s))->code, AppUpdateReason::Code::noStoreItem);
}

TEST_F(AppUpdateCoordinatorTest, OfflineIsSaidAndTriedAgainSoon) {
    names = {u"Store"_s, u"Feed"_s, u"Plain"_s};
    brew({});
    const auto fail = [&] {
        settle();
        for (int i = 0; i < 2; ++i) {
            mac.http.answer(u"test"_s, FakeHttp::Answer(std::unexpected(HttpError::transport)));
            mac.http.answer(u"lookup"_s, FakeHttp::Answer(std::unexpected(HttpError::transport)));
        }
        settle();
    };
    start();
    fail();
    EXPECT_EQ(sketch(), u"- failed failed -"_s);
    EXPECT_EQ(coordinator->known().lastCheck(), std::nullopt) << "it could not find anything";
    const auto summary = [&] {
        return update_texts::summary(coordinator->known().tally(), coordinator->known().problems(),
                                     coordinator->known().lastCheck() ? u"now"_s : QString());
    };
    EXPECT_EQ(summary(), u"2 apps could not be checked. The server could not be reached."_s);
    // After a minute, after five more, and when the network returns.
    for (const auto pause : {60s, 300s}) {
        pass(pause - 1s);
        EXPECT_FALSE(coordinator->isChecking());
        mac.time.advance(1s);
        EXPECT_TRUE(coordinator->isChecking());
        fail();
    }
    coordinator->networkReturned();
    EXPECT_TRUE(coordinator->isChecking());
    settle();
    answerStore("1.9");
    mac.http.answer(u"feeds"_s, HttpResponse{503, {}});
    settle();
    mac.time.advance(250ms);
    EXPECT_EQ(summary(), u"Last checked now. No updates found. 1 app could not be checked. The server "
                         "accepts no more requests for now."_s);
    // Now only the one that failed is asked for again.
    pass(1min);
    EXPECT_EQ(mac.http.waiting(), QStringList{u"https://feeds.test/Feed"_s});
    answerFeed("100");
    mac.time.advance(250ms);
    EXPECT_EQ(summary(), u"Last checked now. No updates found."_s);
    coordinator->networkReturned();
    EXPECT_EQ(mac.http.waiting(), QStringList());
}

TEST_F(AppUpdateCoordinatorTest, AServerThatThrottlesIsAskedNoMoreForNow) {
    addStoreApps({u"Feed"_s}, numbered(10, 40));
    load();
    beginCheck();
    mac.http.answer(u"lookup"_s, HttpResponse{403, {}});
    settle();
    while (mac.http.answer(u"lookup"_s, QByteArray(R"({"results":[{"version":"1"}]})")))
        settle();
    answerFeed("101");
    EXPECT_FALSE(coordinator->isChecking());
    EXPECT_EQ(mac.http.requests.size(), 5) << "four of the store, and one of another server";
    EXPECT_EQ(coordinator->known().tally().failed, 27);
    EXPECT_EQ(coordinator->known().tally().reason->code, AppUpdateReason::Code::throttled);
}

TEST_F(AppUpdateCoordinatorTest, AFailingBrewIsNotSilence) {
    brew({});
    names = {u"Cask"_s};
    mac.tool(brewPath, exited(1, {}, "Error: Permission denied\n"));
    load();
    beginCheck();
    answerFeed("100");
    ASSERT_EQ(coordinator->known().problems().size(), 1);
    EXPECT_EQ(message(coordinator->known().problems().first().reason),
              u"Homebrew reported an error. Error: Permission denied."_s);
    EXPECT_EQ(sketch(), u"upToDate - - -"_s) << "its feed can tell, as long as no cask is known";
    EXPECT_EQ(
        update_texts::summary(coordinator->known().tally(), coordinator->known().problems(), u"now"_s),
        u"Last checked now. No updates found. Homebrew reported an error. Error: Permission "
        "denied."_s);

    // It is asked again soon, and only it.
    coordinator->start();
    const auto asked = mac.http.requests.size();
    for (const auto pause : {1min, 5min}) {
        pass(pause);
        EXPECT_FALSE(coordinator->isChecking());
    }
    EXPECT_EQ(brewRuns("info"), 3);
    EXPECT_EQ(mac.http.requests.size(), asked);

    // When it lists its casks, but not which are outdated, they are its own and have failed.
    brewBut("outdated", exited(1, {}, "Error: no network"));
    beginCheck();
    EXPECT_EQ(sketch(), u"failed - - -"_s);
    EXPECT_EQ(coordinator->known().reason(key(u"Cask"_s))->detail, u"Error: no network"_s);
}

TEST_F(AppUpdateCoordinatorTest, WhatIsSkippedOrPinnedIsNoUpdate) {
    load();
    check();
    mac.time.advance(250ms);
    EXPECT_EQ(coordinator->known().tally().available, 3);
    coordinator->known().skip(key(u"Store"_s), u"1.10"_s);
    coordinator->known().skip(key(u"Feed"_s), std::nullopt);
    mac.time.advance(250ms);
    EXPECT_EQ(coordinator->known().tally().available, 1);
    EXPECT_EQ(coordinator->known().statuses()[key(u"Store"_s)], AppUpdateStatus(UpToDate()));
    EXPECT_TRUE(coordinator->known().isHeld(key(u"Store"_s)));

    brewBut("outdated",
            exited(0, R"({"casks":[{"name":"cask","current_version":"2.0","pinned":true}]})"));
    beginCheck();
    answerStore("1.11"); // another version than the one that is skipped
    answerFeed("102");
    mac.time.advance(1s);
    EXPECT_EQ(coordinator->known().tally().available, 1);
    EXPECT_EQ(coordinator->known().tally().held, 2);
    restart();
    EXPECT_TRUE(coordinator->known().isHeld(key(u"Feed"_s))) << "as the file says";
    coordinator->known().changeKeys({{key(u"Feed"_s), u"other"_s}, {u"nobody"_s, key(u"Cask"_s)}});
    EXPECT_EQ(coordinator->known().skipped(u"other"_s), AppUpdateCache::everyVersion);
    coordinator->known().changeKeys({{u"other"_s, key(u"Feed"_s)}});
    coordinator->known().unskip(key(u"Feed"_s));
    mac.time.advance(250ms);
    EXPECT_EQ(coordinator->known().tally().available, 2);
}

} // namespace
} // namespace tessellar::test
