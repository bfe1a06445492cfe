// Brews that misbehave, as real processes.

#include "updates_fixture.h"

namespace tessellar {
namespace {

using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

const QString badBrew = u"/opt/homebrew/bin/brew"_s;
const QString goodBrew = u"/usr/local/bin/brew"_s;

/// Two brews, each with a cask of its own: one that does well, and one that does what a test says.
class HomebrewProcessTest : public testing::Test {
protected:
    HomebrewProcessTest() {
        sample::MacBuilder builder(mac.root.path());
        for (const auto& name : {u"Good"_s, u"Bad"_s})
            builder.addApplication({.name = name, .identifier = u"org.example."_s + name.toLower()});
        script(goodBrew, answers("Good"));
        // What an earlier check found: whose application it is must not depend on today's answer.
        const AppUpdateCache cache{
            .records = {{u"org.example.bad"_s,
                         {.status = UpToDate(),
                          .installedVersion = u"1.0"_s,
                          .sourceFingerprint = u"homebrew:%1:2.0"_s.arg(badBrew)}}},
            .lastCheck = {}};
        mac.write(AppUpdateStore::defaultPath(mac.machine.places), json::write(json::encode(cache)));
    }

    /// It is run as it is, with less patience.
    void script(const QString& path, const QByteArray& body) {
        mac.tool(path, [](Command command, std::stop_token stop) {
            command.timeout = 1'500ms;
            command.terminationGrace = command.finalGrace = 100ms;
            return ProcessRunner().run(command, std::move(stop));
        });
        mac.write(path, "#!/bin/sh\n" + body);
    }
    static QByteArray answers(const QByteArray& name) {
        return R"(if [ "$1" = outdated ]; then
    echo '{"casks":[{"name":"NAME","current_version":"2.0"}]}'
else
    echo '{"casks":[{"token":"NAME","version":"2.0","artifacts":[{"app":["NAME.app"]}]}]}'
fi
)"_ba.replace("NAME", name);
    }

    /// One check of both, to its end; "FIRST/SECOND".
    QString check() {
        AppUpdateCoordinator coordinator(mac.machine);
        coordinator.updateApps({test::app(u"Good"_s), test::app(u"Bad"_s)});
        return check(coordinator);
    }
    QString check(AppUpdateCoordinator& coordinator) {
        bool isOver = false;
        EXPECT_TRUE(coordinator.check({.channel = AppUpdateChannelKind::homebrewCask},
                                      [&](bool) { isOver = true; }));
        mac.time.advance(0ms);
        mac.until([&] {
            mac.time.advance(0ms);
            return isOver;
        });
        QStringList parts;
        for (const auto& key : {u"org.example.bad"_s, u"org.example.good"_s})
            parts += test::sketch(coordinator.record(key));
        return parts.join(u'/');
    }

    test::TestMachine mac;
};

TEST_F(HomebrewProcessTest, WhatAnswersIsBelievedWhateverElseItDoes) {
    const QByteArray usual = answers("Bad");
    for (const QByteArray& body : {
             usual, "echo '==> Homebrew collects {anonymous} analytics.'\necho\n" + usual,
             "head -c 1000000 /dev/zero >&2\n" + usual,
             "setsid sleep 20 &\n" + usual, // out of the group, with both pipes in its hands
             "(trap '' TERM HUP; sleep 20) &\n" + usual, // in the group
         })
        EXPECT_EQ((script(badBrew, body), check()), u"2.0/2.0"_s) << body.toStdString();
}

TEST_F(HomebrewProcessTest, WhatFailsCostsItsOwnApplicationsAlone) {
    for (const QByteArray& body : {
             "sleep 60\n"_ba,
             "trap '' TERM\nwhile :; do sleep 1; done\n"_ba,
             "head -c 100000000 /dev/zero\n"_ba,
             "echo garbage\n"_ba,
             "echo '{\"casks\":['\n"_ba,
             "exit 1\n"_ba,
             answers("Bad") + "kill -9 $$\n",
             "if [ $1 = outdated ]; then exit 1; fi\n" + answers("Bad"),
             "if [ $1 = info ]; then sleep 60; fi\n" + answers("Bad"),
         })
        EXPECT_EQ((script(badBrew, body), check()), u"failed/2.0"_s) << body.toStdString();
}

TEST_F(HomebrewProcessTest, ACheckThatEndsOverAnAnswerLeavesTheBrewsToTheNext) {
    script(badBrew, answers("Bad"));
    AppUpdateCoordinator coordinator(mac.machine);
    coordinator.updateApps({test::app(u"Good"_s), test::app(u"Bad"_s)});
    bool isCancelled = false;
    const Subscription cancels = coordinator.events.connect([&](const AppUpdateEvent& event) {
        if (event.kind == AppUpdateEvent::Kind::recorded && !std::exchange(isCancelled, true))
            coordinator.cancelCheck();
    });
    check(coordinator);
    ASSERT_TRUE(isCancelled);
    EXPECT_EQ(check(coordinator), u"2.0/2.0");
}

TEST_F(HomebrewProcessTest, ListingsGetTheirTimeAndBothPeriodsOfGrace) {
    const Command listing = HomebrewUpdateChecker::listing(mac.machine, goodBrew, {"outdated"});
    EXPECT_EQ(listing.timeout, 90s);
    EXPECT_EQ(listing.terminationGrace, 2s);
    EXPECT_EQ(listing.environment.at("LC_ALL"), "C");
    EXPECT_EQ(listing.environment.at("USER"), "ada") << "beside all of its own";
}

} // namespace
} // namespace tessellar
