#include "control/command_interpreter.h"
#include "control/control_socket.h"
#include "control/shell_words.h"
#include "platform/file_lock.h"
#include "platform/host_machine.h"

#include "sample/mac_builder.h"
#include "support/printers.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tessellar {
namespace {

TEST(ShellWords, SplitAsAShellWould) {
    const std::pair<const char*, QStringList> cases[] = {
        {"", {}},
        {"  move  a b ", {u"move"_qs, u"a"_qs, u"b"_qs}},
        {R"(rename x 'My "Tools"' "a \"b\" \\ \n" c\ d '')",
         {u"rename"_qs, u"x"_qs, u"My \"Tools\""_qs, u"a \"b\" \\ \\n"_qs, u"c d"_qs, u""_qs}},
        {"undo # what was done", {u"undo"_qs}},
        {"a#b", {u"a#b"_qs}},
    };
    for (const auto& [line, words] : cases)
        EXPECT_EQ(splitWords(QString::fromUtf8(line)).value_or(QStringList{u"error"_qs}), words)
            << line;
    for (const char* bad : {"'open", "\"open", "end\\"})
        EXPECT_FALSE(splitWords(QString::fromUtf8(bad))) << bad;
}

/// The program itself, on a small Mac.
class TessellarctlTest : public testing::Test {
protected:
    struct Result {
        int status = -1;
        QByteArray out;
        QByteArray error;

        QJsonObject json() const { return json::parse(out).value_or(QJsonValue()).toObject(); }
        QString code() const { return json().value(u"error").toObject().value(u"code").toString(); }
    };

    QTemporaryDir root;
    sample::MacBuilder builder{root.path()};

    TessellarctlTest() {
        builder.addStandardFolders();
        for (const QString& name : {u"Ash"_qs, u"Beech"_qs})
            builder.addApplication(
                {.name = name, .identifier = QStringLiteral("org.example.") + name.toLower()});
    }

    Result run(QStringList words, const QByteArray& input = {}, bool json = true) {
        QProcess process;
        words = QStringList{u"--root"_qs, root.path()} +
                (json ? QStringList{u"--json"_qs} : QStringList()) + words;
        process.start(QStringLiteral(TESSELLARCTL), words);
        process.write(input);
        process.closeWriteChannel();
        // A launcher in this process may have to answer it.
        while (process.state() != QProcess::NotRunning)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
    }
};

TEST_F(TessellarctlTest, PrintsTheLayoutInTheFormOfItsFile) {
    const Result list = run({u"list"_qs});
    EXPECT_EQ(list.status, 0);
    QFile file(root.path() +
               u"/Users/ada/Library/Application Support/com.tessellar.app/layout.json"_qs);
    ASSERT_TRUE(file.open(QFile::ReadOnly));
    EXPECT_EQ(list.out, file.readAll());
    EXPECT_EQ(run({u"list"_qs}, {}, false).out, "Page 1\n  Ash\n  Beech\n");
    const Result scan = run({u"scan"_qs});
    EXPECT_EQ(scan.json().value(u"apps").toArray().size(), 2);
    EXPECT_EQ(scan.json().keys(),
              QStringList({u"apps"_qs, u"incompleteBundles"_qs, u"watchableDirectories"_qs}));
}

TEST_F(TessellarctlTest, TellsWrongUsageFromRefusal) {
    EXPECT_EQ(run({}).status, 2);
    EXPECT_EQ(run({u"bogus"_qs}).status, 2);
    EXPECT_EQ(run({u"open"_qs}).status, 2);
    EXPECT_EQ(run({u"--mode"_qs, u"sideways"_qs, u"list"_qs}).status, 2);
    EXPECT_EQ(run({u"bogus"_qs}).code(), u"wrongUsage");
    const Result refused = run({u"hide"_qs, u"nobody"_qs});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.code(), u"noSuchTile");
    EXPECT_FALSE(refused.error.isEmpty());
    EXPECT_EQ(run({u"--help"_qs}).status, 0);
    builder.addDirectory(u"/Users/bob"_qs);
    const Result homes = run({u"list"_qs});
    EXPECT_EQ(homes.status, 1);
    EXPECT_EQ(homes.code(), u"noMachine");
    EXPECT_EQ(run({u"--sideways"_qs, u"list"_qs}).code(), u"wrongUsage");
    EXPECT_TRUE(homes.error.contains("--home"));
    EXPECT_EQ(run({u"--home"_qs, u"/Users/bob"_qs, u"list"_qs}).status, 0);
}

TEST_F(TessellarctlTest, IsDoneOnlyWhenItsEditIsOnTheDisk) {
    const Result before = run({u"list"_qs});
    // Folders under every temporary name: nothing can be saved, whoever tries.
    QDir folder(root.path() + u"/Users/ada/Library/Application Support/com.tessellar.app"_qs);
    for (int i = 0; i < 64; ++i)
        ASSERT_TRUE(folder.mkdir(QStringLiteral(".tessellar-save-%1").arg(i)));
    const Result list = run({u"list"_qs});
    EXPECT_EQ(list.status, 0) << "what only shows works";
    EXPECT_EQ(list.out, before.out);
    EXPECT_FALSE(list.error.isEmpty());
    const Result rename = run({u"rename"_qs, u"org.example.ash"_qs, u"Tree"_qs});
    EXPECT_EQ(rename.status, 1);
    EXPECT_FALSE(rename.code().isEmpty()) << "one document, the error: " << rename.out.toStdString();
}

TEST_F(TessellarctlTest, SettingsStoredAtTheSameTimeAllStay) {
    std::array<QProcess, 6> processes;
    for (std::size_t i = 0; i < processes.size(); ++i)
        processes[i].start(QStringLiteral(TESSELLARCTL),
                           {u"--root"_qs, root.path(), u"settings"_qs, u"set"_qs,
                            QStringLiteral("key%1").arg(i), u"1"_qs});
    for (QProcess& process : processes)
        ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(run({u"settings"_qs, u"list"_qs}).json().size(), 6);
}

TEST_F(TessellarctlTest, ABatchIsOneProcessWithOneHistory) {
    const Result batch = run({u"batch"_qs, u"-"_qs}, R"(
        group org.example.ash --with org.example.beech
        # a comment
        rename org.example.ash "My Tree"
        hide nobody
        'unclosed
        history
        undo
        undo
        --mode windowed copy org.example.ash org.example.ash
        paste
        history
        alias remove org.example.ash
        --mode sideways undo
    )");
    const QList<QByteArray> lines = batch.out.trimmed().split('\n');
    ASSERT_EQ(lines.size(), 12) << batch.out.toStdString();
    EXPECT_EQ(lines[0], "{}");
    EXPECT_TRUE(lines[2].contains("noSuchTile"));
    EXPECT_TRUE(lines[3].contains("wrongUsage"));
    EXPECT_EQ(lines[4], R"({"redo":[],"undo":["Group Tiles","Rename App"]})");
    EXPECT_EQ(lines[9], R"({"redo":[],"undo":["Paste Tile"]})");
    EXPECT_EQ(lines[10], "{}");
    EXPECT_TRUE(lines[11].contains("wrongUsage"));
    EXPECT_EQ(batch.status, 2);
    EXPECT_EQ(run({u"list"_qs}, {}, false).out, "Page 1\n  Ash\n  Beech\n");
}

TEST_F(TessellarctlTest, SettingsAreJsonOrElseText) {
    EXPECT_EQ(run({u"settings"_qs, u"set"_qs, u"gridRows"_qs, u"3"_qs}).status, 0);
    EXPECT_EQ(run({u"settings"_qs, u"set"_qs, u"note"_qs, u"hello there"_qs}).status, 0);
    EXPECT_EQ(run({u"settings"_qs, u"get"_qs, u"gridRows"_qs}).json(),
              (QJsonObject{{u"gridRows"_qs, 3}}));
    EXPECT_EQ(run({u"settings"_qs, u"list"_qs}).json(),
              (QJsonObject{{u"gridRows"_qs, 3}, {u"note"_qs, u"hello there"_qs}}));
    EXPECT_EQ(run({u"settings"_qs, u"set"_qs, u"note"_qs, u"null"_qs}).status, 0);
    EXPECT_EQ(run({u"settings"_qs, u"get"_qs, u"note"_qs}).code(), u"notSet");
}

TEST_F(TessellarctlTest, TheLauncherThatIsRunningCarriesCommandsOut) {
    auto host = HostMachine::make({.root = root.path(), .home = {}, .locale = {}, .now = {}});
    ASSERT_TRUE(host);
    Machine& machine = (*host)->machine();
    LauncherViewModel launcher(machine);
    launcher.startAndWait();
    const auto lock = FileLock::tryLock(
        machine.files, FileSystem::joined(machine.places.applicationFolder(), QStringLiteral("lock")));
    ASSERT_TRUE(lock && *lock);
    CommandInterpreter interpreter(machine, launcher);
    ControlServer server(machine, interpreter);
    ASSERT_TRUE(server.listen());

    EXPECT_EQ(run({u"group"_qs, u"org.example.ash"_qs, u"--with"_qs, u"org.example.beech"_qs}).status,
              0);
    EXPECT_EQ(launcher.editor().history().undoStack().size(), 1);
    EXPECT_EQ(run({u"undo"_qs}).status, 0);
    EXPECT_EQ(run({u"undo"_qs}).code(), u"nothingToUndo");
    EXPECT_EQ(launcher.pages()[0].size(), 2);
    EXPECT_EQ(run({u"--mode"_qs, u"windowed"_qs, u"hide"_qs, u"org.example.ash"_qs}).status, 0);
    EXPECT_EQ(launcher.mode(), LauncherWindowMode::fullScreen);
    EXPECT_TRUE(launcher.hiddenKeys().isEmpty());
    EXPECT_EQ(run({u"batch"_qs, u"-"_qs}, "undo\nredo\n").out, "{}\n{}\n");
}

} // namespace
} // namespace tessellar
