#include "launcher/launcher_updates.h"
#include "sample/tools.h"
#include "tessellarctl_fixture.h"

#include <csignal>

namespace tessellar {
namespace {

using TessellarctlUpdatesTest = TessellarctlTest;

TEST_F(TessellarctlUpdatesTest, ACheckSaysWhatItFindsAndARunBringsIt) {
    // A brew that has a newer version of Ash, and brings it.
    const QString info = u"/Applications/Ash.app/Contents/Info.plist"_s;
    sample::addHomebrew(builder,
                        {{.token = u"ash"_s,
                          .version = u"1.1"_s,
                          .installedVersion = u"1.0"_s,
                          .artifacts = {QJsonObject{{u"app"_s, QJsonArray{u"Ash.app"_s}}}},
                          .update = sample::PendingUpdate{u"ash"_s, u"1.1"_s, info,
                                                          read(info).replace(">1.0<", ">1.1<")}}});
    const QString ash = u"org.example.ash"_s;
    const QJsonObject channel = object(R"({"homebrewCask": {"token": "ash"}})");
    const QJsonObject available = object(R"({"updateAvailable": {"latestVersion": "1.1"}})");
    EXPECT_EQ(run(u"updates channels"_s).json(), (QJsonObject{{ash, channel}}));
    const QJsonObject beech = run(u"updates status org.example.beech"_s).json();
    EXPECT_EQ(beech[u"action"], u"openApp"_s);
    EXPECT_EQ(beech[u"reason"][u"code"], u"noChannel"_s);
    EXPECT_EQ(run(u"updates check --channel sparkle"_s).json(),
              object(R"({"availableUpdateCount": 0})"));

    const auto check = run(u"updates check"_s).out.trimmed().split('\n');
    ASSERT_EQ(check.size(), 2);
    EXPECT_EQ(object(check[0])[u"appKey"], ash);
    EXPECT_EQ(object(check[0])[u"status"], available);
    EXPECT_EQ(object(check[1])[u"availableUpdateCount"], 1);
    EXPECT_TRUE(object(check[1])[u"lastCheck"].isDouble());

    // The cache, with the channel and the action beside each record.
    const QJsonObject stored = object(read(data + u"/app-updates.json"_s));
    const QString source = u"Version information comes from the app bundle. Homebrew manages update "
                           "checks for this cask."_s;
    QJsonObject record = stored[u"records"][ash].toObject();
    record[u"channel"_s] = channel;
    record[u"action"_s] = u"homebrew"_s;
    record[u"source"_s] = source;
    EXPECT_EQ(run(u"updates status"_s).json(),
              (QJsonObject{{u"lastCheck"_s, stored[u"lastCheck"]},
                           {u"records"_s, QJsonObject{{ash, record}}}}));
    EXPECT_EQ(text(u"updates status "_s + ash),
              "Update available: 1.0 → 1.1\nhomebrewCask ash\nUpdate with Homebrew\n" +
                  source.toUtf8() + '\n');
    EXPECT_TRUE(text(u"updates status --unchecked"_s)
                    .startsWith("Beech  The app declares no source of updates"));
    // A version that is skipped.
    EXPECT_EQ(run(u"updates skip "_s + ash).status, 0);
    EXPECT_EQ(text(u"updates status"_s).split('\n').first(),
              "Ash  Held back. Update available: 1.0 → 1.1");
    EXPECT_EQ(text(u"updates run --all --yes"_s), "There is nothing to update.\n");
    EXPECT_EQ(run(u"updates unskip "_s + ash).status, 0);
    const QJsonObject facts = run(u"facts "_s + ash).json();
    EXPECT_EQ(facts[u"updateStatus"], u"updateAvailable"_s);
    EXPECT_EQ(facts[u"distributionChannel"], u"homebrew"_s);
    EXPECT_EQ(run(u"search ash"_s).json()[u"hits"][0][u"updateStatus"], available);

    const Result refused = run(u"updates run "_s + ash);
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.code(), u"confirmationRequired");
    EXPECT_EQ(refused.error, "Update “Ash”? Homebrew may quit the app while it downloads and installs "
                             "the update. Add --yes to continue.\n");
    const Result updated = run(u"updates run "_s + ash + u" --yes"_s);
    EXPECT_EQ(updated.status, 0) << updated.error.toStdString();
    EXPECT_EQ(updated.json()[u"installedVersion"], u"1.1"_s);
    EXPECT_EQ(updated.json()[u"message"], u"Updated to version 1.1."_s);
    EXPECT_EQ(updated.json()[u"status"], object(R"({"upToDate": {}})"));

    EXPECT_EQ(run(u"updates run nobody --yes"_s).code(), u"unknownApplication");
    EXPECT_EQ(run(u"updates check --channel post"_s).status, 2);
    run(u"settings set appUpdates.enabled false"_s);
    EXPECT_EQ(run(u"updates check"_s).code(), u"updatesDisabled");
}

TEST_F(TessellarctlUpdatesTest, ACheckThatNobodyWaitsForIsCancelled) {
    builder.addExecutable(u"/opt/homebrew/bin/brew"_s, "#!/bin/sh\nexec sleep 60\n");
    RunningLauncher running(root.path());
    LauncherViewModel& launcher = running.launcher;

    QProcess process;
    start(process, {u"updates"_s, u"check"_s});
    test::processEventsUntil([&] { return launcher.updates().isChecking(); });
    EXPECT_EQ(run(u"updates check"_s).code(), u"alreadyChecking");
    EXPECT_TRUE(launcher.updates().isChecking()) << "who was refused ends nothing";
    process.kill();
    test::processEventsUntil([&] { return !launcher.updates().isChecking(); });
    process.waitForFinished();

    // Who asks for the end of it hears of that.
    start(process, {u"updates"_s, u"check"_s});
    test::processEventsUntil([&] { return launcher.updates().isChecking(); });
    ASSERT_EQ(::kill(static_cast<pid_t>(process.processId()), SIGTERM), 0);
    wait(process);
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_EQ(process.readAllStandardError(), "The check was cancelled.\n");
    EXPECT_FALSE(launcher.updates().isChecking());
}

TEST_F(TessellarctlUpdatesTest, AnUpgradeIsEndedByWhoSaysSoAndNotByATerminalThatCloses) {
    builder.addExecutable(
        u"/opt/homebrew/bin/brew"_s,
        "#!/bin/sh\nif [ $1 != upgrade ]; then\n"
        "echo '{\"casks\":[{\"token\":\"ash\",\"version\":\"2\",\"artifacts\":"
        "[{\"app\":[\"Ash.app\"]}]}]}'\nexit\nfi\n"
        "cd \"$(dirname \"$0\")\"\necho $$ >pid.new\nmv pid.new pid\nexec sleep 60\n");
    QFile number(hostPath(u"/opt/homebrew/bin/pid"_s));
    for (const auto& [signal, said] : {std::pair(SIGINT, "The update was cancelled.\n"),
                                       {SIGHUP, "The update continues by itself.\n"}}) {
        QProcess process;
        start(process, {u"updates"_s, u"run"_s, u"org.example.ash"_s, u"--yes"_s});
        while (!number.exists() && process.state() != QProcess::NotRunning)
            process.waitForReadyRead(10);
        ASSERT_TRUE(number.open(QFile::ReadOnly));
        const int tool = number.readAll().trimmed().toInt();
        ASSERT_TRUE(number.remove());
        ASSERT_EQ(::kill(static_cast<pid_t>(process.processId()), signal), 0);
        ASSERT_TRUE(process.waitForFinished(20'000));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(process.exitCode(), 1);
        EXPECT_TRUE(process.readAllStandardError().endsWith(said)) << said;
        const bool isAlive = ::kill(tool, 0) == 0;
        EXPECT_EQ(isAlive, signal == SIGHUP);
        if (isAlive)
            ::kill(tool, SIGKILL);
    }
}

} // namespace
} // namespace tessellar
