#include "launcher/launcher_icons.h"
#include "launcher/launcher_import.h"
#include "sample/launchpad_database.h"
#include "tessellarctl_fixture.h"
#include "tests/icons/icns_bytes.h"

#include <QDir>
#include <QFile>

#include <csignal>

namespace tessellar {
namespace {

using test::icnsEntry;
using test::icnsFile;
using test::png;

class LibraryCommandsTest : public TessellarctlTest {
protected:
    const QString ash = u"org.example.ash"_qs;

    QString file(const QString& path, const QByteArray& bytes) {
        builder.addFile(path, bytes);
        return path;
    }
    /// The program going on until it is stopped.
    std::unique_ptr<QProcess> startWatching() {
        auto process = std::make_unique<QProcess>();
        process->start(QStringLiteral(TESSELLARCTL),
                       {u"--root"_qs, root.path(), u"--json"_qs, u"watch"_qs});
        return process;
    }
    /// What it says of one kind of event, once it does.
    QJsonArray heard(QProcess& process, const QString& event) {
        QJsonArray paths;
        while (process.state() != QProcess::NotRunning && paths.isEmpty()) {
            while (process.canReadLine()) {
                const auto line = json::parse(process.readLine());
                if (line && line->toObject().value(u"event") == event)
                    paths = line->toObject().value(u"paths").toArray();
            }
            if (paths.isEmpty())
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        return paths;
    }
    static void wait(QProcess& process) {
        test::processEventsUntil([&] { return process.state() == QProcess::NotRunning; });
    }
};

TEST_F(LibraryCommandsTest, ImportsTheOldLaunchpadOrOnlyShowsIt) {
    const QString path = sample::addOldLaunchpad(
        builder, {.pages = {{sample::OldTile{u"Beech"_qs, u"org.example.beech"_qs}},
                            {sample::OldTile{u"Ash"_qs, ash},
                             sample::OldTile{u"Gone"_qs, u"org.example.gone"_qs}}}});
    const QStringList import{u"import-launchpad"_qs, u"--database"_qs, path};
    const Result preview = run(import + QStringList{u"--preview"_qs});
    EXPECT_EQ(preview.status, 0) << preview.error.toStdString();
    const QJsonObject shown = preview.json();
    EXPECT_EQ(shown.value(u"pages").toArray().size(), 2);
    EXPECT_EQ(shown.value(u"skippedApps"), (QJsonArray{u"Gone"_qs}));
    EXPECT_EQ(shown.value(u"appCount"), 2);
    EXPECT_FALSE(shown.contains(u"backupPath"));
    const QByteArray text = run(import + QStringList{u"--preview"_qs}, {}, false).out;
    EXPECT_TRUE(text.startsWith("Page 1\n  Beech\n\nPage 2\n  Ash\n")) << text.toStdString();
    EXPECT_TRUE(text.contains("1 apps were skipped")) << text.toStdString();
    EXPECT_EQ(run({u"list"_qs}, {}, false).out, "Page 1\n  Ash\n  Beech\n");

    // The same file as the host names it, and the answer as the record has it.
    const Result done = run({u"import-launchpad"_qs, u"--database"_qs, builder.hostPath(path)});
    EXPECT_EQ(done.status, 0) << done.error.toStdString();
    QFile record(root.path() + u"/Users/ada/Library/Application Support/com.tessellar.app/"
                               "legacy-launchpad-import.json"_qs);
    ASSERT_TRUE(record.open(QFile::ReadOnly));
    EXPECT_EQ(done.out, record.readAll());
    EXPECT_EQ(done.json().value(u"sourceDatabasePath"), path);
    EXPECT_EQ(run({u"list"_qs}, {}, false).out, "Page 1\n  Beech\n\nPage 2\n  Ash\n");

    const Result none = run({u"import-launchpad"_qs});
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.code(), u"cannotResolveDarwinUserDirectory") << "this Mac has no tools";
    EXPECT_EQ(run({u"import-launchpad"_qs, u"--database"_qs, u"/none"_qs}).code(),
              u"unableToOpenDatabase");
}

TEST_F(LibraryCommandsTest, GivesAndTakesIcons) {
    const QByteArray icon = icnsFile(icnsEntry("ic07", png(128, Qt::red)));
    const QString path = file(u"/Users/ada/Icon.icns"_qs, icon);
    EXPECT_EQ(run({u"icon"_qs, u"list"_qs}, {}, false).out, "No application has a custom icon.\n");
    EXPECT_EQ(run({u"icon"_qs, u"set"_qs, ash, builder.hostPath(path)}).status, 0);
    const QString copy = run({u"icon"_qs, u"show"_qs, ash}).json().value(u"path").toString();
    QFile kept(builder.hostPath(copy));
    ASSERT_TRUE(kept.open(QFile::ReadOnly));
    EXPECT_EQ(kept.readAll(), icon);
    EXPECT_EQ(run({u"icon"_qs, u"list"_qs}, {}, false).out, "org.example.ash\n");

    // From outside the machine too.
    const QTemporaryDir outside;
    QFile foreign(outside.filePath(u"Other.icns"_qs));
    ASSERT_TRUE(foreign.open(QFile::WriteOnly) && foreign.write(icon) == icon.size());
    foreign.close();
    EXPECT_EQ(run({u"icon"_qs, u"set"_qs, u"org.example.beech"_qs, foreign.fileName()}).status, 0);

    EXPECT_EQ(run({u"icon"_qs, u"set"_qs, ash, file(u"/bad.icns"_qs, "icns")}).code(),
              u"invalidICNSFile");
    EXPECT_EQ(run({u"icon"_qs, u"set"_qs, u"nobody"_qs, path}).code(), u"unknownApplication");
    EXPECT_EQ(run({u"icon"_qs, u"remove"_qs, ash}).status, 0);
    EXPECT_EQ(run({u"icon"_qs, u"show"_qs, ash}).code(), u"noCustomIcon");
}

TEST_F(LibraryCommandsTest, WatchesInAProcessOfItsOwnUntilItIsStopped) {
    const auto watching = startWatching();
    EXPECT_EQ(heard(*watching, u"watching"_qs).first().toString(), u"/Applications");
    builder.addApplication({.name = u"Cedar"_qs, .identifier = u"org.example.cedar"_qs});
    EXPECT_EQ(heard(*watching, u"added"_qs), QJsonArray{u"/Applications/Cedar.app"_qs});
    // It is in nobody's way: it only looks.
    EXPECT_EQ(run({u"rename"_qs, u"org.example.ash"_qs, u"Alder"_qs}).status, 0);
    builder.addApplication({.name = u"Dogwood"_qs, .identifier = u"org.example.dogwood"_qs});
    EXPECT_EQ(heard(*watching, u"added"_qs), QJsonArray{u"/Applications/Dogwood.app"_qs});
    ASSERT_EQ(::kill(static_cast<pid_t>(watching->processId()), SIGINT), 0);
    wait(*watching);
    EXPECT_EQ(watching->exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(watching->exitCode(), 0);
    EXPECT_EQ(run({u"list"_qs}, {}, false).out, "Page 1\n  Alder\n  Beech\n  Cedar\n  Dogwood\n");
}

TEST_F(LibraryCommandsTest, WatchesThroughTheLauncherThatIsRunning) {
    const RunningLauncher running(root.path());

    const auto first = startWatching();
    EXPECT_FALSE(heard(*first, u"watching"_qs).isEmpty());
    const auto second = startWatching();
    EXPECT_FALSE(heard(*second, u"watching"_qs).isEmpty()) << "what is watched already is said too";
    builder.addApplication({.name = u"Cedar"_qs, .identifier = u"org.example.cedar"_qs});
    for (const auto* process : {&first, &second})
        EXPECT_EQ(heard(**process, u"added"_qs), QJsonArray{u"/Applications/Cedar.app"_qs});
    ::kill(static_cast<pid_t>(first->processId()), SIGTERM);
    wait(*first);
    EXPECT_EQ(first->exitCode(), 0);
    second->kill();
    wait(*second);
    EXPECT_EQ(run({u"list"_qs}, {}, false).out, "Page 1\n  Ash\n  Beech\n  Cedar\n");
}

} // namespace
} // namespace tessellar
