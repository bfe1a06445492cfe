#include "control/shell_words.h"
#include "launcher/launcher_history.h"
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
    for (const QStringList& words : {QStringList{u"arrangements"_qs},
                                     {u"arrangements"_qs, u"bogus"_qs},
                                     {u"arrangements"_qs, u"--bogus"_qs}}) {
        const Result family = run(words);
        EXPECT_EQ(family.status, 2);
        EXPECT_EQ(family.error, "“arrangements” takes one of these words: list, save, replace, rename, "
                                "delete, restore, export, "
                                "import, undo, redo.\n");
    }
    EXPECT_EQ(run({u"arrangements"_qs, u"--help"_qs}).status, 0);
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

/// In words of its own, not in those of the parser, which has no languages.
TEST_F(TessellarctlTest, SaysWhatIsWrongWithACommand) {
    const auto said = [&](const char* line) {
        return run(QString::fromUtf8(line).split(u' ')).error.trimmed();
    };
    EXPECT_EQ(said("rename"), "“tile” is missing.");
    EXPECT_EQ(said("move x --to"), "--to needs a value.");
    EXPECT_EQ(said("settings get a %1"), "There is no use for: %1");
    EXPECT_EQ(said("arrange sideways"),
              "way cannot be “sideways”, but one of these: by-category,by-name.");
    EXPECT_EQ(said("updates run --all x"), "appkey and --all do not go together.");
}

TEST_F(TessellarctlTest, SpeaksTheLanguageOfItsUserAndCodesTheSame) {
    const QStringList german{u"--locale"_qs, u"de_DE"_qs};
    const QByteArray help = run(german + QStringList{u"--help"_qs}, {}, false).out;
    EXPECT_TRUE(help.contains("Vor dem Befehl:")) << help.toStdString();
    EXPECT_TRUE(help.contains("Die letzte Änderung zurücknehmen")) << "of a command";
    EXPECT_TRUE(run(german + QStringList{u"move"_qs, u"--help"_qs}, {}, false)
                    .out.contains("Kacheln nach Kennung oder App-Schlüssel"))
        << "of its words";
    const Result refused = run(german + QStringList{u"hide"_qs, u"nobody"_qs});
    EXPECT_EQ(refused.code(), u"noSuchTile");
    EXPECT_EQ(refused.error, "Es gibt keine Kachel „nobody“.\n");
    EXPECT_EQ(run(german + QStringList{u"sort"_qs, u"99"_qs}).error,
              "Diesen Platz gibt es in diesem Layout nicht.\n");
    // What is set comes before what the system says.
    EXPECT_EQ(run({u"settings"_qs, u"set"_qs, u"language"_qs, u"de"_qs}).status, 0);
    EXPECT_EQ(run({u"hide"_qs, u"nobody"_qs}).error, "Es gibt keine Kachel „nobody“.\n");
    EXPECT_EQ(run({u"settings"_qs, u"set"_qs, u"language"_qs, u"tlh"_qs}).code(), u"outOfRange");
}

TEST_F(TessellarctlTest, WritesItsOwnManualAndCompletions) {
    const QByteArray page = run({u"--generate"_qs, u"man"_qs}, {}, false).out;
    EXPECT_TRUE(page.startsWith(".TH TESSELLARCTL 1"));
    for (const char* part : {"\\fBupdates check\\fR", "\\fB\\-\\-channel\\fR",
                             "\\fB\\-\\-root\\fR \\fIDIR\\fR", "\\fBbatch\\fR \\fIfile\\fR"})
        EXPECT_TRUE(page.contains(part)) << part;
    EXPECT_FALSE(page.contains("ALL\\-MATCHES")) << "a flag takes no value";

    QFile script(root.path() + u"/completion"_qs);
    ASSERT_TRUE(script.open(QFile::WriteOnly));
    script.write(
        run({u"--generate"_qs, u"bash"_qs}, {}, false).out +
        "COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); _tessellarctl; echo \"${COMPREPLY[*]}\"\n");
    script.close();
    const auto completed = [&](const QStringList& words) {
        QProcess bash;
        bash.start(u"bash"_qs, QStringList{script.fileName(), u"tessellarctl"_qs} + words);
        bash.waitForFinished();
        return bash.readAllStandardOutput().trimmed();
    };
    EXPECT_EQ(completed({u"arrangem"_qs}), "arrangements");
    EXPECT_EQ(completed({u"--mode"_qs, u""_qs}), "fullScreen windowed");
    EXPECT_EQ(completed({u"--root"_qs, u"list"_qs, u"updates"_qs, u"ch"_qs}), "check channels");
    EXPECT_EQ(completed({u"updates"_qs, u"check"_qs, u"--ch"_qs}), "--channel");
    EXPECT_EQ(run({u"--version"_qs}, {}, false).out.split(' ').first(), "tessellarctl");
}

TEST_F(TessellarctlTest, IsDoneOnlyWhenItsEditIsOnTheDisk) {
    const Result before = run({u"list"_qs});
    // Folders under every temporary name: nothing can be saved, whoever tries.
    QDir folder(supportFolder());
    for (int i = 0; i < 64; ++i)
        ASSERT_TRUE(folder.mkdir(QStringLiteral(".tessellar-save-%1").arg(i)));
    const Result list = run({u"list"_qs});
    EXPECT_EQ(list.status, 0) << "what only shows works";
    EXPECT_EQ(list.out, before.out);
    EXPECT_EQ(list.error, "") << "nothing has changed, so nothing is written";
    const Result rename = run({u"rename"_qs, u"org.example.ash"_qs, u"Tree"_qs});
    EXPECT_EQ(rename.status, 1);
    EXPECT_FALSE(rename.code().isEmpty()) << "one document, the error: " << rename.out.toStdString();
}

TEST_F(TessellarctlTest, SaysOnceThatALayoutCannotBeReadButRefusesEachCommandOfABatch) {
    const QString path = u"/Users/ada/Library/Application Support/com.tessellar.app/layout.json"_qs;
    builder.addFile(path, "no layout");
    const QByteArray sentence = "The current layout file could not be read. ";
    const Result refused = run({u"rename"_qs, u"org.example.ash"_qs, u"Tree"_qs}, {}, false);
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.error.count(sentence), 1) << refused.error.toStdString();
    const QByteArray rename = "rename org.example.ash Tree\n";
    const Result batch = run({u"batch"_qs, u"-"_qs}, rename + rename, false);
    EXPECT_EQ(batch.error.count(sentence), 3) << batch.error.toStdString();
    EXPECT_EQ(run({u"rename"_qs, u"org.example.ash"_qs, u"Tree"_qs}).code(),
              u"workingDocumentUnreadable");
}

TEST_F(TessellarctlTest, SaysThatSettingsCannotBeReadAndKeepsTheTilesOfTheirFolders) {
    builder.addApplication(
        {.name = u"Cedar"_qs, .folder = u"/Users/ada/Extra"_qs, .identifier = u"org.example.cedar"_qs});
    run({u"settings"_qs, u"set"_qs, u"appDiscovery.additionalSearchPaths"_qs,
         u"[\"/Users/ada/Extra\"]"_qs});
    const Result before = run({u"list"_qs});
    EXPECT_TRUE(before.out.contains("Cedar"));
    EXPECT_TRUE(before.error.isEmpty());
    QFile file(root.path() + u"/Users/ada/Library/Preferences/com.tessellar.app.json"_qs);
    ASSERT_TRUE(file.resize(file.size() - 3));
    const Result after = run({u"list"_qs});
    EXPECT_EQ(after.status, 0);
    EXPECT_TRUE(after.out.contains("Cedar"));
    EXPECT_TRUE(after.error.contains("The settings could not be read"));
    // What cannot be read is not unset.
    for (const QStringList& words : {QStringList{u"list"_qs}, {u"get"_qs, u"gridRows"_qs}})
        EXPECT_EQ(run(QStringList{u"settings"_qs} + words).code(), u"settingsUnreadable");
    EXPECT_EQ(run({u"settings"_qs, u"set"_qs, u"gridRows"_qs, u"4"_qs}).status, 0);
    EXPECT_TRUE(QFile::exists(file.fileName() + u".damaged"_qs));
    EXPECT_TRUE(run({u"list"_qs}).out.contains("Cedar"));
}

TEST_F(TessellarctlTest, ABatchHasSavedWhatItDidWhileItWaitsForItsNextLine) {
    QProcess batch;
    batch.start(QStringLiteral(TESSELLARCTL), {u"--root"_qs, root.path(), u"batch"_qs, u"-"_qs});
    batch.write("rename org.example.ash Tree\n");
    QTimer lookAgain; // a file that is written is no event
    lookAgain.start(5);
    test::processEventsUntil([&] {
        QFile file(root.path() +
                   u"/Users/ada/Library/Application Support/com.tessellar.app/layout.json"_qs);
        return file.open(QFile::ReadOnly) && file.readAll().contains("\"Tree\"");
    });
    EXPECT_EQ(batch.state(), QProcess::Running);
    batch.write("rename org.example.ash Bush"); // the last line needs no end
    batch.closeWriteChannel();
    test::processEventsUntil([&] { return batch.state() == QProcess::NotRunning; });
    EXPECT_EQ(batch.exitCode(), 0);
    EXPECT_EQ(run({u"list"_qs}, {}, false).out, "Page 1\n  Bush\n  Beech\n");
}

TEST_F(TessellarctlTest, SavesRestoresAndDeletesArrangementsByName) {
    const QString id = run({u"arrangements"_qs, u"save"_qs, u"My Own"_qs}).json()[u"id"].toString();
    run({u"rename"_qs, u"org.example.ash"_qs, u"Tree"_qs});
    EXPECT_EQ(run({u"arrangements"_qs, u"restore"_qs, id}, {}, false).out, "Restored “My Own”.\n");
    EXPECT_EQ(run({u"list"_qs}, {}, false).out, "Page 1\n  Ash\n  Beech\n");
    EXPECT_EQ(run({u"arrangements"_qs, u"delete"_qs, id}, {}, false).out, "Deleted “My Own”.\n");
    EXPECT_EQ(run({u"arrangements"_qs, u"list"_qs}, {}, false).out,
              "There are no saved arrangements.\n");
    const Result gone = run({u"arrangements"_qs, u"restore"_qs, id}, {}, false);
    EXPECT_EQ(gone.status, 1);
    EXPECT_EQ(gone.out, "");
}

TEST_F(TessellarctlTest, TellsASmartFolderThatIsMissingFromSeveralOfAName) {
    const QStringList add{u"smart-folders"_qs, u"add"_qs, u"--template"_qs, u"installedThisWeek"_qs};
    const QJsonObject first = run(add).json();
    const QStringList show{u"smart-folders"_qs, u"show"_qs};
    EXPECT_EQ(run(show + QStringList{first[u"name"].toString()}).json(), first);
    EXPECT_EQ(run(add).status, 0);
    EXPECT_EQ(run(show + QStringList{first[u"name"].toString()}).code(), u"ambiguousName");
    EXPECT_EQ(run(show + QStringList{first[u"id"].toString()}).json(), first);
    EXPECT_EQ(run(show + QStringList{u"nobody"_qs}).code(), u"noSuchSmartFolder");
}

TEST_F(TessellarctlTest, SettingsStoredAtTheSameTimeAllStay) {
    const QStringList keys{u"gridRows"_qs,   u"gridColumns"_qs, u"windowed.gridRows"_qs,
                           u"folderRows"_qs, u"iconScale"_qs,   u"appDiscovery.scanDepth"_qs};
    std::vector<std::unique_ptr<QProcess>> processes;
    for (const QString& key : keys) {
        processes.push_back(std::make_unique<QProcess>());
        processes.back()->start(QStringLiteral(TESSELLARCTL),
                                {u"--root"_qs, root.path(), u"settings"_qs, u"set"_qs, key,
                                 key == u"iconScale" ? u"0.9"_qs : u"6"_qs});
    }
    for (const auto& process : processes)
        ASSERT_TRUE(process->waitForFinished());
    const QJsonObject all = run({u"settings"_qs, u"list"_qs}).json();
    for (const QString& key : keys)
        EXPECT_TRUE(all[key][u"isSet"].toBool()) << key.toStdString();
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

TEST_F(TessellarctlTest, SettingsAreCheckedWhereTheyAreSet) {
    const auto set = [&](const QString& key, const QString& value) {
        return run({u"settings"_qs, u"set"_qs, key, value});
    };
    const auto get = [&](const QString& key) { return run({u"settings"_qs, u"get"_qs, key}); };
    EXPECT_EQ(set(u"gridRows"_qs, u"3"_qs).status, 0);
    EXPECT_EQ(set(u"gridRows"_qs, u"99"_qs).code(), u"outOfRange");
    EXPECT_EQ(set(u"gridRow"_qs, u"3"_qs).code(), u"unknownSetting");
    EXPECT_EQ(get(u"windowed.gridRows"_qs).json(), (QJsonObject{{u"windowed.gridRows"_qs, 3}}));
    EXPECT_EQ(set(u"gridRows"_qs, u"null"_qs).status, 0);
    EXPECT_EQ(get(u"gridRows"_qs).json(), (QJsonObject{{u"gridRows"_qs, 5}}));
    EXPECT_EQ(set(u"summon.hotKey"_qs, u"option+space"_qs).status, 0);
    EXPECT_EQ(get(u"summon.hotKey"_qs).json(),
              (QJsonObject{{u"summon.hotKey"_qs, u"option+space"_qs}}));
    EXPECT_EQ(get(u"note"_qs).code(), u"notSet");
    const QJsonObject all = run({u"settings"_qs, u"list"_qs}).json();
    EXPECT_EQ(all[u"gridRows"], (QJsonObject{{u"value"_qs, 5},
                                             {u"default"_qs, 5},
                                             {u"isSet"_qs, false},
                                             {u"type"_qs, u"integer"_qs},
                                             {u"range"_qs, u"3 to 9"_qs},
                                             {u"description"_qs, u"Rows of tiles on a page"_qs}}));
    EXPECT_EQ(run({u"permissions"_qs}).json(), (QJsonObject{{u"fullDiskAccess"_qs, u"notGuarded"_qs}}));
}

TEST_F(TessellarctlTest, TheLauncherThatIsRunningCarriesCommandsOut) {
    RunningLauncher running(root.path());
    LauncherViewModel& launcher = running.launcher;

    EXPECT_EQ(run({u"group"_qs, u"org.example.ash"_qs, u"--with"_qs, u"org.example.beech"_qs}).status,
              0);
    EXPECT_EQ(launcher.history().steps().undoStack().size(), 1);
    EXPECT_EQ(run({u"undo"_qs}).status, 0);
    EXPECT_EQ(run({u"undo"_qs}).code(), u"nothingToUndo");
    EXPECT_EQ(launcher.shown().pages()[0].size(), 2);
    // A command on the other mode moves nothing that the user sees, and its step is that mode's own.
    int shownChanges = 0;
    const auto changed = launcher.shown().changed.connect([&] { ++shownChanges; });
    const auto turned = launcher.layouts().shownModeChanged.connect([&] { ++shownChanges; });
    EXPECT_EQ(run({u"--mode"_qs, u"windowed"_qs, u"hide"_qs, u"org.example.ash"_qs}).status, 0);
    EXPECT_EQ(run({u"undo"_qs}).code(), u"nothingToUndo");
    EXPECT_EQ(shownChanges, 0);
    EXPECT_EQ(launcher.layout(LauncherWindowMode::windowed).hiddenKeys().size(), 1);
    EXPECT_EQ(run({u"batch"_qs, u"-"_qs}, "--mode windowed undo\n--mode windowed redo\n").out,
              "{}\n{}\n");
}

TEST_F(TessellarctlTest, TheLauncherThatIsRunningAnswersOnceItHasSaved) {
    const RunningLauncher running(root.path());
    const auto saved = [&] {
        QFile file(supportFolder() + u"/layout.json"_qs);
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    };
    EXPECT_EQ(run({u"rename"_qs, u"org.example.ash"_qs, u"Tree"_qs}).status, 0);
    EXPECT_TRUE(saved().contains("Tree"));
    const QByteArray before = saved();
    QDir folder(supportFolder());
    const auto temporary = [](int i) { return QStringLiteral(".tessellar-save-%1").arg(i); };
    for (int i = 0; i < 64; ++i)
        ASSERT_TRUE(folder.mkdir(temporary(i)));
    EXPECT_EQ(run({u"rename"_qs, u"org.example.ash"_qs, u"Bush"_qs}).status, 1);
    EXPECT_EQ(run({u"list"_qs}, {}, false).out, "Page 1\n  Tree\n  Beech\n");
    const QByteArray renames = "rename org.example.beech One\nrename org.example.beech Two\n";
    const Result batch = run({u"batch"_qs, u"-"_qs}, renames);
    EXPECT_EQ(batch.status, 1);
    EXPECT_EQ(batch.out, "{}\n{}\n") << "a batch is told at its end";
    EXPECT_NE(batch.error, "");
    EXPECT_EQ(saved(), before);
    for (int i = 0; i < 64; ++i)
        ASSERT_TRUE(folder.rmdir(temporary(i)));
    EXPECT_EQ(run({u"save"_qs}).status, 0);
    EXPECT_EQ(saved(), before) << "that it failed was the last word";
    EXPECT_EQ(running.launcher.history().steps().undoStack().size(), 1);
}

TEST_F(TessellarctlTest, NothingIsWrittenWithoutTheLock) {
    const Result before = run({u"list"_qs});
    QFile::remove(supportFolder() + u"/lock"_qs);
    ASSERT_TRUE(QDir(supportFolder()).mkdir(u"lock"_qs));
    const Result rename = run({u"rename"_qs, u"org.example.ash"_qs, u"Tree"_qs});
    EXPECT_EQ(rename.status, 1);
    EXPECT_TRUE(rename.error.contains("/lock")) << rename.error.toStdString();
    EXPECT_EQ(run({u"list"_qs}).out, before.out);
}

TEST_F(TessellarctlTest, ACommandWaitsForALauncherThatStarts) {
    const auto host =
        HostMachine::make({.root = root.path(), .home = {}, .locale = {}, .now = {}}).value();
    const auto found = findLauncherOrLock(*host, u"a test"_qs);
    ASSERT_TRUE(found && !found->launcher);
    EXPECT_EQ(FileLock::holder(host->machine().files,
                               host->machine().places.applicationFolder() + u"/lock"_qs),
              u"a test");
    LauncherViewModel launcher(host->machine());
    CommandInterpreter interpreter(host->machine(), launcher);
    ControlServer server(host->machine(), interpreter);
    ASSERT_TRUE(server.listen());
    launcher.start();
    EXPECT_EQ(run({u"list"_qs}, {}, false).out, "Page 1\n  Ash\n  Beech\n");
}

TEST_F(TessellarctlTest, OffersWhatTheMenusDo) {
    const QString ash = u"org.example.ash"_qs;
    EXPECT_TRUE(run({u"actions"_qs, u"list"_qs}, {}, false).out.contains("(Ctrl+Z)"));
    EXPECT_EQ(run({u"actions"_qs, u"run"_qs, u"hide"_qs, ash}).status, 0);
    EXPECT_EQ(run({u"actions"_qs, u"run"_qs, u"hide"_qs, ash}).code(), u"noSuchAction");
    EXPECT_EQ(run({u"actions"_qs, u"run"_qs, u"resetLayout"_qs}).code(), u"needsWindow");
    EXPECT_EQ(run({u"list"_qs}, {}, false).out, "Page 1\n  Ash (hidden)\n  Beech\n");
    // After "--" nothing is an option.
    EXPECT_EQ(run({u"rename"_qs, u"org.example.beech"_qs, u"--"_qs, u"--json"_qs}, {}, false).status,
              0);
    EXPECT_EQ(run({u"list"_qs}, {}, false).out, "Page 1\n  Ash (hidden)\n  --json\n");
}

// ---- updates

} // namespace
} // namespace tessellar
