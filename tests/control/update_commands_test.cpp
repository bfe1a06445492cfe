#include "launcher/launcher_updates.h"
#include "launcher/live_layout.h"

#include "sample/tools.h"
#include "tessellarctl_fixture.h"

#include <QDir>
#include <QFile>
#include <QTimer>

#include <csignal>

namespace tessellar {
namespace {

class TessellarctlUpdatesTest : public TessellarctlTest {
protected:
    /// A brew that has a newer version of Ash, and brings it.
    void addBrew() {
        const QString info = u"/Applications/Ash.app/Contents/Info.plist"_qs;
        QFile plist(root.path() + info);
        ASSERT_TRUE(plist.open(QFile::ReadOnly));
        sample::addHomebrew(
            builder, {{.token = u"ash"_qs,
                       .version = u"1.1"_qs,
                       .installedVersion = u"1.0"_qs,
                       .artifacts = {QJsonObject{{u"app"_qs, QJsonArray{u"Ash.app"_qs}}}},
                       .update = sample::PendingUpdate{u"ash"_qs, u"1.1"_qs, info,
                                                       plist.readAll().replace(">1.0<", ">1.1<")}}});
    }
    QList<QJsonObject> lines(const Result& result) {
        QList<QJsonObject> documents;
        for (const QByteArray& line : result.out.trimmed().split('\n'))
            documents.append(json::parse(line).value_or(QJsonValue()).toObject());
        return documents;
    }
};

TEST_F(TessellarctlUpdatesTest, ACheckSaysWhatItFindsAndARunBringsIt) {
    addBrew();
    const QString ash = u"org.example.ash"_qs;
    const QJsonObject channel{{u"homebrewCask"_qs, QJsonObject{{u"token"_qs, u"ash"_qs}}}};
    const QJsonObject available{{u"updateAvailable"_qs, QJsonObject{{u"latestVersion"_qs, u"1.1"_qs}}}};
    EXPECT_EQ(run({u"updates"_qs, u"channels"_qs}).json(), (QJsonObject{{ash, channel}}));
    EXPECT_EQ(
        run({u"updates"_qs, u"status"_qs, u"org.example.beech"_qs}).json(),
        (QJsonObject{{u"action"_qs, u"openApp"_qs},
                     {u"source"_qs, u"Version information comes from the app bundle. Open the app "
                                    "or its vendor updater to check for updates."_qs},
                     {u"reason"_qs,
                      QJsonObject{{u"code"_qs, u"noChannel"_qs},
                                  {u"message"_qs, u"The app declares no source of updates that can "
                                                  "be checked."_qs}}}}));
    EXPECT_EQ(lines(run({u"updates"_qs, u"check"_qs, u"--channel"_qs, u"sparkle"_qs})),
              (QList<QJsonObject>{{{u"availableUpdateCount"_qs, 0}}}));

    const auto check = lines(run({u"updates"_qs, u"check"_qs}));
    ASSERT_EQ(check.size(), 2);
    EXPECT_EQ(check[0][u"appKey"], ash);
    EXPECT_EQ(check[0][u"status"], available);
    EXPECT_EQ(check[1][u"availableUpdateCount"], 1);
    EXPECT_TRUE(check[1][u"lastCheck"].isDouble());

    // The cache, with the channel and the action beside each record.
    QJsonObject status = run({u"updates"_qs, u"status"_qs}).json();
    QFile cache(root.path() +
                u"/Users/ada/Library/Application Support/com.tessellar.app/app-updates.json"_qs);
    ASSERT_TRUE(cache.open(QFile::ReadOnly));
    QJsonObject stored = json::parse(cache.readAll()).value_or(QJsonValue()).toObject();
    QJsonObject record = stored[u"records"].toObject()[ash].toObject();
    record[u"channel"_qs] = channel;
    record[u"action"_qs] = u"homebrew"_qs;
    record[u"source"_qs] = u"Version information comes from the app bundle. Homebrew manages update "
                           "checks for this cask."_qs;
    EXPECT_EQ(status, (QJsonObject{{u"lastCheck"_qs, stored[u"lastCheck"]},
                                   {u"records"_qs, QJsonObject{{ash, record}}}}));
    EXPECT_EQ(run({u"updates"_qs, u"status"_qs, ash}, {}, false).out,
              "Update available: 1.0 → 1.1\nhomebrewCask ash\nUpdate with Homebrew\nVersion "
              "information comes from the app bundle. Homebrew manages update checks for this cask.\n");
    EXPECT_TRUE(run({u"updates"_qs, u"status"_qs, u"--unchecked"_qs}, {}, false)
                    .out.startsWith("Beech  The app declares no source of updates"));
    // A version that is skipped.
    EXPECT_EQ(run({u"updates"_qs, u"skip"_qs, ash}).status, 0);
    EXPECT_EQ(run({u"updates"_qs, u"status"_qs}, {}, false).out.split('\n').first(),
              "Ash  Held back. Update available: 1.0 → 1.1");
    EXPECT_EQ(run({u"updates"_qs, u"run"_qs, u"--all"_qs, u"--yes"_qs}, {}, false).out,
              "There is nothing to update.\n");
    EXPECT_EQ(run({u"updates"_qs, u"unskip"_qs, ash}).status, 0);
    const QJsonObject facts = run({u"facts"_qs, ash}).json();
    EXPECT_EQ(facts[u"updateStatus"], u"updateAvailable"_qs);
    EXPECT_EQ(facts[u"distributionChannel"], u"homebrew"_qs);
    EXPECT_EQ(run({u"search"_qs, u"ash"_qs}).json()[u"hits"].toArray()[0].toObject()[u"updateStatus"],
              available);

    const Result refused = run({u"updates"_qs, u"run"_qs, ash});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.code(), u"confirmationRequired");
    EXPECT_EQ(refused.error, "Update “Ash”? Homebrew may quit the app while it downloads and installs "
                             "the update. --yes goes on.\n");
    const Result updated = run({u"updates"_qs, u"run"_qs, ash, u"--yes"_qs});
    EXPECT_EQ(updated.status, 0) << updated.error.toStdString();
    EXPECT_EQ(updated.json()[u"installedVersion"], u"1.1"_qs);
    EXPECT_EQ(updated.json()[u"message"], u"Updated to version 1.1."_qs);
    EXPECT_EQ(updated.json()[u"status"], (QJsonObject{{u"upToDate"_qs, QJsonObject()}}));

    EXPECT_EQ(run({u"updates"_qs, u"run"_qs, u"nobody"_qs, u"--yes"_qs}).code(), u"unknownApplication");
    EXPECT_EQ(run({u"updates"_qs, u"check"_qs, u"--channel"_qs, u"post"_qs}).status, 2);
    run({u"settings"_qs, u"set"_qs, u"appUpdates.enabled"_qs, u"false"_qs});
    EXPECT_EQ(run({u"updates"_qs, u"check"_qs}).code(), u"updatesDisabled");
}

TEST_F(TessellarctlUpdatesTest, VersionsGiveTheTerminalNoOrders) {
    builder.addExecutable(
        u"/opt/homebrew/bin/brew"_qs,
        "#!/bin/sh\nprintf '%s' '{\"casks\":[{\"token\":\"ash\",\"version\":\"2\",\"artifacts\":"
        "[{\"app\":[\"Ash.app\"]}],\"name\":\"ash\",\"current_version\":\"2\\u001b[31m\"}]}'\n");
    const QStringList check{u"updates"_qs, u"check"_qs};
    // A version that none can be is not taken for one.
    const QByteArray said = run(check, {}, false).out;
    EXPECT_TRUE(said.startsWith("Ash  The check failed. Homebrew’s answer could not be understood.\n"))
        << said.toStdString();
    EXPECT_FALSE(said.contains('\x1b') || run(check).out.contains("u001b"));
}

TEST_F(TessellarctlUpdatesTest, ACheckThatNobodyWaitsForIsCancelled) {
    builder.addExecutable(u"/opt/homebrew/bin/brew"_qs, "#!/bin/sh\nexec sleep 60\n");
    RunningLauncher running(root.path());
    LauncherViewModel& launcher = running.launcher;

    QProcess process;
    process.start(QStringLiteral(TESSELLARCTL),
                  {u"--root"_qs, root.path(), u"updates"_qs, u"check"_qs});
    test::processEventsUntil([&] { return launcher.updates().isChecking(); });
    EXPECT_EQ(run({u"updates"_qs, u"check"_qs}).code(), u"alreadyChecking");
    EXPECT_TRUE(launcher.updates().isChecking()) << "who was refused ends nothing";
    process.kill();
    test::processEventsUntil([&] { return !launcher.updates().isChecking(); });
    process.waitForFinished();

    // Who asks for the end of it hears of that.
    process.start(QStringLiteral(TESSELLARCTL),
                  {u"--root"_qs, root.path(), u"updates"_qs, u"check"_qs});
    test::processEventsUntil([&] { return launcher.updates().isChecking(); });
    ASSERT_EQ(::kill(static_cast<pid_t>(process.processId()), SIGTERM), 0);
    test::processEventsUntil([&] { return process.state() == QProcess::NotRunning; });
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_EQ(process.readAllStandardError(), "The check was cancelled.\n");
    EXPECT_FALSE(launcher.updates().isChecking());
}

class TessellarctlInterruptedTest : public TessellarctlUpdatesTest {
protected:
    struct Ended {
        int tool = 0; ///< which ran when the signal came
        int status = -1;
        QByteArray error;
        bool isToolAlive() const { return ::kill(tool, 0) == 0; }
    };
    /// Runs a command of updates, and sends it a signal once the brew has written its number.
    Ended interrupted(const QStringList& words, int signal) {
        QFile pid(folder + u"pid"_qs);
        pid.remove();
        QProcess process;
        process.start(QStringLiteral(TESSELLARCTL),
                      QStringList{u"--root"_qs, root.path(), u"updates"_qs} + words);
        while (!pid.exists() && process.state() != QProcess::NotRunning)
            process.waitForReadyRead(10);
        EXPECT_TRUE(pid.open(QFile::ReadOnly));
        EXPECT_EQ(::kill(static_cast<pid_t>(process.processId()), signal), 0);
        EXPECT_TRUE(process.waitForFinished(20'000));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        return {pid.readAll().trimmed().toInt(), process.exitCode(), process.readAllStandardError()};
    }

    const QString folder = root.path() + u"/opt/homebrew/bin/"_qs;
    const QStringList runAsh{u"run"_qs, u"org.example.ash"_qs, u"--yes"_qs};
    const QByteArray hang = "cd \"$(dirname \"$0\")\"\necho $$ >pid.new\nmv pid.new pid\n"
                            "exec sleep 60\n";
};

TEST_F(TessellarctlInterruptedTest, AnInterruptionLeavesNoToolBehindAndBeginsNone) {
    builder.addExecutable(u"/opt/homebrew/bin/brew"_qs,
                          "#!/bin/sh\n[ $1 = upgrade ] && touch \"$0.upgraded\"\n" + hang);
    for (const QStringList& words : {QStringList{u"status"_qs, u"--refresh"_qs}, runAsh}) {
        const Ended ended = interrupted(words, SIGTERM);
        EXPECT_EQ(ended.status, 1);
        EXPECT_FALSE(ended.isToolAlive());
        EXPECT_FALSE(QFile::exists(folder + u"brew.upgraded"_qs));
    }
}

TEST_F(TessellarctlInterruptedTest, AnUpgradeIsEndedByWhoSaysSoAndNotByATerminalThatCloses) {
    builder.addExecutable(u"/opt/homebrew/bin/brew"_qs,
                          "#!/bin/sh\nif [ $1 != upgrade ]; then\n"
                          "echo '{\"casks\":[{\"token\":\"ash\",\"version\":\"2\",\"artifacts\":"
                          "[{\"app\":[\"Ash.app\"]}]}]}'\nexit\nfi\n" +
                              hang);
    const Ended stopped = interrupted(runAsh, SIGINT);
    EXPECT_EQ(stopped.status, 1);
    EXPECT_TRUE(stopped.error.endsWith("The update was cancelled.\n")) << stopped.error.toStdString();
    EXPECT_FALSE(stopped.isToolAlive());
    const Ended left = interrupted(runAsh, SIGHUP);
    EXPECT_EQ(left.status, 1);
    EXPECT_EQ(left.error, "The update goes on by itself.\n");
    EXPECT_TRUE(left.isToolAlive());
    ::kill(left.tool, SIGKILL);
}

} // namespace
} // namespace tessellar
