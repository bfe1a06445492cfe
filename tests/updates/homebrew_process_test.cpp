// Brews that misbehave, as real processes.

#include "updates/app_update_coordinator.h"

#include "sample/mac_builder.h"
#include "tests/support/altered_machine.h"
#include "tests/support/items.h"
#include "tests/support/printers.h"
#include "tests/support/test_machine.h"

#include <QDeadlineTimer>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace tessellar {
namespace {

using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

const QString badBrew = u"/opt/homebrew/bin/brew"_s;
const QString goodBrew = u"/usr/local/bin/brew"_s;

/// Runs commands as they are, with less patience.
class Impatient final : public CommandRunner {
public:
    CommandResult run(const Command& command, std::stop_token stop) override {
        Command shorter = command;
        shorter.timeout = 1'500ms;
        shorter.terminationGrace = shorter.finalGrace = 100ms;
        return _runner.run(shorter, std::move(stop));
    }
    std::expected<std::int64_t, int> start(const Command& command, const QByteArray& file) override {
        return _runner.start(command, file);
    }
    DetachedState poll(std::int64_t number, const QByteArray& file) override {
        return _runner.poll(number, file);
    }
    void terminate(std::int64_t number, const QByteArray& file, bool now) override {
        _runner.terminate(number, file, now);
    }

private:
    ProcessRunner _runner;
};

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

    void script(const QString& path, const QByteArray& body) {
        mac.write(path, "#!/bin/sh\n" + body);
        QFile::setPermissions(mac.hostPath(path),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
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
        AppUpdateCoordinator coordinator(machine);
        coordinator.updateApps({test::app(u"Good"_s), test::app(u"Bad"_s)});
        bool isOver = false;
        EXPECT_TRUE(coordinator.check({.channel = AppUpdateChannelKind::homebrewCask},
                                      [&](bool) { isOver = true; }));
        mac.time.advance(0ms);
        mac.until([&] {
            mac.time.advance(0ms);
            return isOver;
        });
        QStringList parts;
        for (const auto& key : {u"org.example.bad"_s, u"org.example.good"_s}) {
            const auto record = coordinator.record(key);
            const auto* update = record ? std::get_if<UpdateAvailable>(&record->status) : nullptr;
            parts +=
                update ? update->latestVersion
                : record
                    ? QString::fromLatin1(json::Cases<AppUpdateStatus>::names[record->status.index()])
                    : u"-"_s;
        }
        return parts.join(u'/');
    }

    test::TestMachine mac;
    Impatient commands;
    Machine machine = test::altered(mac.machine, {.commands = &commands});
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

TEST_F(HomebrewProcessTest, AnUpgradeOutlivesTheLauncher) {
    // It downloads until the gate opens, and installs then.
    const QString info = u"/Applications/Bad.app/Contents/Info.plist"_s;
    const QString gate = u"/opt/homebrew/gate"_s;
    mac.write(u"/opt/homebrew/new.plist"_s, mac.read(info).replace(">1.0<", ">2.0<"));
    ASSERT_EQ(::mkfifo(mac.hostPath(gate).toUtf8().constData(), 0600), 0);
    script(badBrew, R"(if [ "$1" = upgrade ]; then
    echo '==> Downloading bad.zip'
    read line <"GATE"
    cp "NEW" "INFO"
    exit 0
fi
)"_ba.replace("GATE", mac.hostPath(gate).toUtf8())
                            .replace("NEW", mac.hostPath(u"/opt/homebrew/new.plist"_s).toUtf8())
                            .replace("INFO", mac.hostPath(info).toUtf8()) +
                        answers("Bad"));
    const QString bad = u"org.example.bad"_s;
    using Phase = AppUpdateActionState::Phase;
    const auto until = [&](AppUpdateCoordinator& updates, const auto& isSo) {
        QDeadlineTimer end(20s);
        while (!isSo() && !end.hasExpired()) {
            mac.settle();
            mac.time.advance(AppUpdateRunner::pollInterval);
        }
        EXPECT_TRUE(isSo());
        return updates.runner().state(bad).value_or(AppUpdateActionState());
    };
    {
        AppUpdateCoordinator first(machine);
        first.updateApps({test::app(u"Good"_s), test::app(u"Bad"_s)});
        bool isKnown = false;
        first.learnChannels([&] { isKnown = true; });
        until(first, [&] { return isKnown; });
        EXPECT_TRUE(first.runner().update(
            {bad}, [](const AppUpdateQuestion&, const auto& answer) { answer(true); }));
        until(first, [&] { return first.runner().state(bad)->phase == Phase::downloading; });
    }
    AppUpdateCoordinator second(machine);
    second.start();
    second.updateApps({test::app(u"Good"_s), test::app(u"Bad"_s)});
    until(second, [&] {
        const auto state = second.runner().state(bad);
        return state && state->phase == Phase::downloading;
    });
    {
        QFile opened(mac.hostPath(gate));
        ASSERT_TRUE(opened.open(QIODevice::WriteOnly));
        opened.write("go\n");
    }
    EXPECT_EQ(until(second, [&] { return !second.runner().isBusy(); }).message,
              u"Updated to version 2.0."_s);
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
