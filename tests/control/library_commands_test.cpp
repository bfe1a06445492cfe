#include "sample/launchpad_database.h"
#include "tessellarctl_fixture.h"
#include "tests/icons/icns_bytes.h"

#include <csignal>

namespace tessellar {
namespace {

class LibraryCommandsTest : public TessellarctlTest {
protected:
    /// The program going on until it is stopped.
    std::unique_ptr<QProcess> startWatching() {
        auto process = std::make_unique<QProcess>();
        start(*process, {u"--json"_s, u"watch"_s});
        return process;
    }
    /// What it says of one kind of event, once it does.
    QJsonArray heard(QProcess& process, const QString& event) {
        QJsonArray paths;
        while (process.state() != QProcess::NotRunning && paths.isEmpty()) {
            while (process.canReadLine()) {
                const QJsonObject line = object(process.readLine());
                if (line[u"event"] == event)
                    paths = line[u"paths"].toArray();
            }
            if (paths.isEmpty())
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        return paths;
    }
};

TEST_F(LibraryCommandsTest, ImportsTheOldLaunchpadOrOnlyShowsIt) {
    const QString path = sample::addOldLaunchpad(
        builder, {.pages = {{sample::OldTile{u"Beech"_s, u"org.example.beech"_s}},
                            {sample::OldTile{u"Ash"_s, u"org.example.ash"_s},
                             sample::OldTile{u"Gone"_s, u"org.example.gone"_s}}}});
    const QString preview = u"import-launchpad --preview --database "_s + path;
    const QJsonObject shown = run(preview).json();
    EXPECT_EQ(shown[u"pages"].toArray().size(), 2);
    EXPECT_EQ(shown[u"skippedApps"], (QJsonArray{u"Gone"_s}));
    EXPECT_EQ(shown[u"appCount"], 2);
    EXPECT_FALSE(shown.contains(u"backupPath"));
    EXPECT_TRUE(text(preview).startsWith("Page 1\n  Beech\n\nPage 2\n  Ash\n"));
    EXPECT_EQ(text(u"list"_s), "Page 1\n  Ash\n  Beech\n");

    // The same file as the host names it, and the answer as the record has it.
    const Result done = run(u"import-launchpad --database "_s + hostPath(path));
    EXPECT_EQ(done.status, 0) << done.error.toStdString();
    EXPECT_EQ(done.out, read(data + u"/legacy-launchpad-import.json"_s));
    EXPECT_EQ(done.json()[u"sourceDatabasePath"], path);
    EXPECT_EQ(text(u"list"_s), "Page 1\n  Beech\n\nPage 2\n  Ash\n");

    const Result none = run(u"import-launchpad"_s);
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.code(), u"cannotResolveDarwinUserDirectory") << "this Mac has no tools";
}

TEST_F(LibraryCommandsTest, GivesAndTakesIcons) {
    const QByteArray icon = test::icnsFile(test::icnsEntry("ic07", test::png(128, Qt::red)));
    const auto set = [&](const QString& app, const QString& file) {
        return run({u"icon"_s, u"set"_s, app, file});
    };
    const QString ash = u"org.example.ash"_s;
    builder.addFile(u"/Icon.icns"_s, icon);
    EXPECT_EQ(text(u"icon list"_s), "No application has a custom icon.\n");
    EXPECT_EQ(set(ash, hostPath(u"/Icon.icns"_s)).status, 0);
    EXPECT_EQ(read(run(u"icon show "_s + ash).json()[u"path"].toString()), icon);
    EXPECT_EQ(text(u"icon list"_s), "org.example.ash\n");

    // From outside the machine too.
    const QTemporaryDir outside;
    sample::MacBuilder(outside.path()).addFile(u"/Other.icns"_s, icon);
    EXPECT_EQ(set(u"org.example.beech"_s, outside.filePath(u"Other.icns"_s)).status, 0);

    EXPECT_EQ(set(u"nobody"_s, u"/Icon.icns"_s).code(), u"unknownApplication");
    EXPECT_EQ(run(u"icon remove "_s + ash).status, 0);
    EXPECT_EQ(run(u"icon show "_s + ash).code(), u"noCustomIcon");
}

TEST_F(LibraryCommandsTest, WatchesInAProcessOfItsOwnUntilItIsStopped) {
    const auto watching = startWatching();
    EXPECT_EQ(heard(*watching, u"watching"_s).first().toString(), u"/Applications");
    builder.addApplication({.name = u"Cedar"_s, .identifier = u"org.example.cedar"_s});
    EXPECT_EQ(heard(*watching, u"added"_s), QJsonArray{u"/Applications/Cedar.app"_s});
    // It is in nobody's way: it only looks.
    EXPECT_EQ(run(u"rename org.example.ash Alder"_s).status, 0);
    builder.addApplication({.name = u"Dogwood"_s, .identifier = u"org.example.dogwood"_s});
    EXPECT_EQ(heard(*watching, u"added"_s), QJsonArray{u"/Applications/Dogwood.app"_s});
    ASSERT_EQ(::kill(static_cast<pid_t>(watching->processId()), SIGINT), 0);
    wait(*watching);
    EXPECT_EQ(watching->exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(watching->exitCode(), 0);
    EXPECT_EQ(text(u"list"_s), "Page 1\n  Alder\n  Beech\n  Cedar\n  Dogwood\n");
}

TEST_F(LibraryCommandsTest, WatchesThroughTheLauncherThatIsRunning) {
    const RunningLauncher running(root.path());

    const auto first = startWatching();
    EXPECT_FALSE(heard(*first, u"watching"_s).isEmpty());
    const auto second = startWatching();
    EXPECT_FALSE(heard(*second, u"watching"_s).isEmpty()) << "what is watched already is said too";
    builder.addApplication({.name = u"Cedar"_s, .identifier = u"org.example.cedar"_s});
    for (const auto* process : {&first, &second})
        EXPECT_EQ(heard(**process, u"added"_s), QJsonArray{u"/Applications/Cedar.app"_s});
    ::kill(static_cast<pid_t>(first->processId()), SIGTERM);
    wait(*first);
    EXPECT_EQ(first->exitCode(), 0);
    second->kill();
    wait(*second);
    EXPECT_EQ(text(u"list"_s), "Page 1\n  Ash\n  Beech\n  Cedar\n");
}

} // namespace
} // namespace tessellar
