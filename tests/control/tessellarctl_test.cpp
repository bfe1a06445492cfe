#include "control/shell_words.h"
#include "launcher/actions.h"
#include "launcher/launcher_cleanup.h"
#include "launcher/launcher_history.h"
#include "launcher/live_layout.h"

#include "tessellarctl_fixture.h"

#include <QTimer>

namespace tessellar {
namespace {

TEST(ShellWords, SplitAsAShellWould) {
    const std::pair<const char*, QStringList> cases[] = {
        {"", {}},
        {"  move  a b ", {u"move"_s, u"a"_s, u"b"_s}},
        {R"(rename x 'My "Tools"' "a \"b\" \\ \n" c\ d '')",
         {u"rename"_s, u"x"_s, u"My \"Tools\""_s, u"a \"b\" \\ \\n"_s, u"c d"_s, u""_s}},
        {"undo # what was done", {u"undo"_s}},
        {"a#b", {u"a#b"_s}},
    };
    for (const auto& [line, words] : cases)
        EXPECT_EQ(splitWords(QString::fromUtf8(line)).value_or(QStringList{u"error"_s}), words) << line;
    for (const char* bad : {"'open", "\"open", "end\\"})
        EXPECT_FALSE(splitWords(QString::fromUtf8(bad))) << bad;
}

TEST_F(TessellarctlTest, PrintsTheLayoutInTheFormOfItsFile) {
    const Result list = run(u"list"_s);
    EXPECT_EQ(list.status, 0);
    EXPECT_EQ(list.out, read(layout));
    EXPECT_EQ(text(u"list"_s), "Page 1\n  Ash\n  Beech\n");
    const QJsonObject scan = run(u"scan"_s).json();
    EXPECT_EQ(scan[u"apps"].toArray().size(), 2);
    EXPECT_EQ(scan.keys(), QStringList({u"apps"_s, u"incompleteBundles"_s, u"watchableDirectories"_s}));
}

/// In words of its own, not in those of the parser, which has no languages.
TEST_F(TessellarctlTest, TellsWrongUsageFromRefusalAndSaysWhatIsWrong) {
    const QByteArray family = "“arrangements” takes one of these words: list, save, replace, rename, "
                              "delete, restore, export, import, undo, redo.\n";
    const std::pair<QString, QByteArray> wrong[] = {
        {u""_s, {}},
        {u"--mode sideways list"_s, {}},
        {u"arrangements bogus"_s, family},
        {u"rename"_s, "“tile” is missing.\n"},
        {u"move x --to"_s, "--to needs a value.\n"},
        {u"settings get a %1"_s, "Unexpected: %1\n"},
        {u"arrange sideways"_s, "way cannot be “sideways”, but one of these: by-category,by-name.\n"},
        {u"updates run --all x"_s, "appkey and --all do not go together.\n"}};
    for (const auto& [line, sentence] : wrong) {
        SCOPED_TRACE(line.toStdString());
        const Result result = run(line);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.code(), u"wrongUsage");
        EXPECT_TRUE(sentence.isEmpty() || result.error == sentence) << result.error.toStdString();
    }
    for (const auto& help : {u"--help"_s, u"arrangements --help"_s})
        EXPECT_EQ(run(help).status, 0);
    const Result refused = run(u"hide nobody"_s);
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.code(), u"noSuchTile");
    EXPECT_FALSE(refused.error.isEmpty());

    builder.addDirectory(u"/Users/bob"_s);
    const Result homes = run(u"list"_s);
    EXPECT_EQ(homes.status, 1);
    EXPECT_EQ(homes.code(), u"noMachine");
    EXPECT_TRUE(homes.error.contains("--home"));
    EXPECT_EQ(run(u"--home /Users/bob list"_s).status, 0);
}

TEST_F(TessellarctlTest, SpeaksTheLanguageOfItsUserAndCodesTheSame) {
    const QString german = u"--locale de_DE "_s;
    const QByteArray help = text(german + u"--help"_s);
    EXPECT_TRUE(help.contains("Vor dem Befehl:")) << help.toStdString();
    EXPECT_TRUE(help.contains("Die letzte Änderung zurücknehmen")) << "of a command";
    EXPECT_TRUE(text(german + u"move --help"_s).contains("Kacheln nach Kennung oder App-Schlüssel"))
        << "of its words";
    const Result refused = run(german + u"hide nobody"_s);
    EXPECT_EQ(refused.code(), u"noSuchTile");
    EXPECT_EQ(refused.error, "Es gibt keine Kachel „nobody“.\n");
}

TEST_F(TessellarctlTest, WritesItsOwnManualAndCompletions) {
    const QByteArray page = text(u"--generate man"_s);
    EXPECT_TRUE(page.startsWith(".TH TESSELLARCTL 1"));
    for (const char* part : {"\\fBupdates check\\fR", "\\fB\\-\\-channel\\fR",
                             "\\fB\\-\\-root\\fR \\fIDIR\\fR", "\\fBbatch\\fR \\fIfile\\fR"})
        EXPECT_TRUE(page.contains(part)) << part;
    EXPECT_FALSE(page.contains("ALL\\-MATCHES")) << "a flag takes no value";

    builder.addFile(
        u"/completion"_s,
        text(u"--generate bash"_s) +
            "COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); _tessellarctl; echo \"${COMPREPLY[*]}\"\n");
    const auto completed = [&](const QString& words) {
        QProcess bash;
        bash.start(u"bash"_s,
                   QStringList{hostPath(u"/completion"_s), u"tessellarctl"_s} + words.split(u' '));
        bash.waitForFinished();
        return bash.readAllStandardOutput().trimmed();
    };
    EXPECT_EQ(completed(u"arrangem"_s), "arrangements");
    EXPECT_EQ(completed(u"--mode "_s), "fullScreen windowed");
    EXPECT_EQ(completed(u"--root list updates ch"_s), "check channels");
    EXPECT_EQ(completed(u"updates check --ch"_s), "--channel");
    EXPECT_TRUE(text(u"--version"_s).startsWith("tessellarctl "));
}

TEST_F(TessellarctlTest, SaysThatSettingsCannotBeReadAndKeepsTheTilesOfTheirFolders) {
    builder.addApplication(
        {.name = u"Cedar"_s, .folder = u"/Users/ada/Extra"_s, .identifier = u"org.example.cedar"_s});
    run(u"settings set appDiscovery.additionalSearchPaths [\"/Users/ada/Extra\"]"_s);
    const Result before = run(u"list"_s);
    EXPECT_TRUE(before.out.contains("Cedar"));
    EXPECT_TRUE(before.error.isEmpty());
    const QString settings = u"/Users/ada/Library/Preferences/com.tessellar.app.json"_s;
    builder.addFile(settings, read(settings).chopped(3));
    const Result after = run(u"list"_s);
    EXPECT_EQ(after.status, 0);
    EXPECT_TRUE(after.out.contains("Cedar"));
    EXPECT_TRUE(after.error.contains("The settings could not be read"));
    // What cannot be read is not unset.
    for (const auto& line : {u"settings list"_s, u"settings get gridRows"_s})
        EXPECT_EQ(run(line).code(), u"settingsUnreadable");
    EXPECT_EQ(run(u"settings set gridRows 4"_s).status, 0);
    EXPECT_TRUE(exists(settings + u".damaged"_s));
    EXPECT_TRUE(run(u"list"_s).out.contains("Cedar"));
}

TEST_F(TessellarctlTest, ABatchHasSavedWhatItDidWhileItWaitsForItsNextLine) {
    QProcess batch;
    start(batch, {u"batch"_s, u"-"_s});
    batch.write("rename org.example.ash Tree\nrename org.example.ash "); // the second is being typed
    QTimer lookAgain; // a file that is written is no event
    lookAgain.start(5);
    test::processEventsUntil([&] { return read(layout).contains("\"Tree\""); });
    EXPECT_EQ(batch.state(), QProcess::Running);
    batch.write("Bush"); // the last line needs no end
    batch.closeWriteChannel();
    wait(batch);
    EXPECT_EQ(batch.exitCode(), 0);
    EXPECT_EQ(text(u"list"_s), "Page 1\n  Bush\n  Beech\n");
}

TEST_F(TessellarctlTest, TellsASmartFolderThatIsMissingFromSeveralOfAName) {
    const QString add = u"smart-folders add --template installedThisWeek"_s;
    const QJsonObject first = run(add).json();
    const auto show = [&](const QString& word) { return run({u"smart-folders"_s, u"show"_s, word}); };
    EXPECT_EQ(show(first[u"name"].toString()).json(), first);
    EXPECT_EQ(run(add).status, 0);
    EXPECT_EQ(show(first[u"name"].toString()).code(), u"ambiguousName");
    EXPECT_EQ(show(first[u"id"].toString()).json(), first);
    EXPECT_EQ(show(u"nobody"_s).code(), u"noSuchSmartFolder");
}

TEST_F(TessellarctlTest, ABatchIsOneProcessWithOneHistory) {
    const Result batch = run(u"batch -"_s, R"(
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
    EXPECT_EQ(text(u"list"_s), "Page 1\n  Ash\n  Beech\n");
}

TEST_F(TessellarctlTest, SettingsAreCheckedWhereTheyAreSetAndAllStayThatAreSetAtTheSameTime) {
    const QStringList keys{u"gridRows"_s,   u"gridColumns"_s, u"windowed.gridRows"_s,
                           u"folderRows"_s, u"iconScale"_s,   u"appDiscovery.scanDepth"_s};
    std::vector<std::unique_ptr<QProcess>> processes;
    for (const QString& key : keys) {
        processes.push_back(std::make_unique<QProcess>());
        start(*processes.back(),
              {u"settings"_s, u"set"_s, key, key == u"iconScale" ? u"0.9"_s : u"6"_s});
    }
    for (const auto& process : processes)
        ASSERT_TRUE(process->waitForFinished());
    const QJsonObject all = run(u"settings list"_s).json();
    for (const QString& key : keys)
        EXPECT_TRUE(all[key][u"isSet"].toBool()) << key.toStdString();

    EXPECT_EQ(run(u"settings set gridRows 99"_s).code(), u"outOfRange");
    EXPECT_EQ(run(u"settings get note"_s).code(), u"notSet");
    EXPECT_EQ(run(u"settings set windowed.gridRows null"_s).status, 0);
    EXPECT_EQ(text(u"settings get windowed.gridRows"_s), "6\n") << "as in full screen";
    EXPECT_EQ(run(u"settings set gridRows null"_s).status, 0);
    EXPECT_EQ(run(u"settings list"_s).json()[u"gridRows"],
              object(R"({"value": 5, "default": 5, "isSet": false, "type": "integer",
                         "range": "3 to 9", "description": "Rows of tiles on a page"})"));
    EXPECT_EQ(run(u"settings set summon.hotKey option+space"_s).status, 0);
    EXPECT_EQ(run(u"settings get summon.hotKey"_s).json(),
              object(R"({"summon.hotKey": "option+space"})"));
    EXPECT_EQ(run(u"permissions"_s).json(), object(R"({"fullDiskAccess": "notGuarded"})"));
}

TEST_F(TessellarctlTest, TheLauncherThatIsRunningCarriesCommandsOut) {
    RunningLauncher running(root.path());
    LauncherViewModel& launcher = running.launcher;

    EXPECT_EQ(run(u"group org.example.ash --with org.example.beech"_s).status, 0);
    EXPECT_EQ(launcher.history().steps().undoStack().size(), 1);
    EXPECT_EQ(run(u"undo"_s).status, 0);
    EXPECT_EQ(run(u"undo"_s).code(), u"nothingToUndo");
    EXPECT_EQ(launcher.shown().pages()[0].size(), 2);
    // A command on the other mode moves nothing that the user sees, and its step is that mode's own.
    int shownChanges = 0;
    const auto changed = launcher.shown().changed.connect([&] { ++shownChanges; });
    const auto turned = launcher.layouts().shownModeChanged.connect([&] { ++shownChanges; });
    EXPECT_EQ(run(u"--mode windowed hide org.example.ash"_s).status, 0);
    EXPECT_EQ(run(u"undo"_s).code(), u"nothingToUndo");
    EXPECT_EQ(shownChanges, 0);
    EXPECT_EQ(launcher.layout(LauncherWindowMode::windowed).hiddenKeys().size(), 1);
    EXPECT_EQ(run(u"batch -"_s, "--mode windowed undo\n--mode windowed redo\n").out, "{}\n{}\n");
}

TEST_F(TessellarctlTest, ABatchMayEndByQuittingTheLauncher) {
    std::optional<RunningLauncher> running(std::in_place, root.path());
    running->launcher.setPresenter({.show = [] {},
                                    .dismiss = [] {},
                                    .isShown = [] { return true; },
                                    .quit = [&] { QTimer::singleShot(0, [&] { running.reset(); }); }});
    QProcess batch;
    start(batch, {u"batch"_s, u"-"_s});
    batch.write("rename org.example.ash Tree\nquit\n");
    test::processEventsUntil([&] { return !running; });
    batch.closeWriteChannel();
    wait(batch);
    EXPECT_EQ(batch.readAllStandardError(), "");
    EXPECT_EQ(batch.exitCode(), 0);
    EXPECT_EQ(text(u"list"_s), "Page 1\n  Tree\n  Beech\n");
}

TEST_F(TessellarctlTest, SavingIsWaitedForWhereOtherCommandsDoNotWait) {
    RunningLauncher running(root.path());
    QByteArray onDisk;
    for (const QStringList& words :
         {QStringList{u"rename"_s, u"org.example.ash"_s, u"Tree"_s}, {u"save"_s}}) {
        bool isFinished = false;
        running.interpreter.run(words, {.answersUnsaved = true},
                                {.out = [](const QByteArray&) {},
                                 .error = [](const QByteArray&) {},
                                 .finished =
                                     [&](int) {
                                         isFinished = true;
                                         onDisk = read(layout);
                                     }});
        test::processEventsUntil([&] { return isFinished; });
    }
    EXPECT_TRUE(onDisk.contains("Tree"));
}

TEST_F(TessellarctlTest, ACommandWaitsForALauncherThatStarts) {
    const auto host =
        HostMachine::make({.root = root.path(), .home = {}, .locale = {}, .now = {}}).value();
    Machine& machine = host->machine();
    const auto found = findLauncherOrLock(*host, u"a test"_s);
    ASSERT_TRUE(found && !found->launcher);
    EXPECT_EQ(FileLock::holder(machine.files, data + u"/lock"_s), u"a test");
    LauncherViewModel launcher(machine);
    CommandInterpreter interpreter(machine, launcher);
    ControlServer server(machine, interpreter);
    ASSERT_TRUE(server.listen());
    QByteArray listed;
    bool isFinished = false;
    interpreter.run({u"list"_s}, {},
                    {.out = [&](const QByteArray& text) { listed += text; },
                     .error = [](const QByteArray&) {},
                     .finished = [&](int) { isFinished = true; }});
    EXPECT_FALSE(isFinished) << "nothing is known yet";
    launcher.start();
    test::processEventsUntil([&] { return isFinished; });
    EXPECT_EQ(listed, "Page 1\n  Ash\n  Beech\n");
    EXPECT_EQ(text(u"list"_s), "Page 1\n  Ash\n  Beech\n");
}

TEST_F(TessellarctlTest, OffersWhatTheMenusDo) {
    EXPECT_TRUE(text(u"actions list"_s).contains("(Ctrl+Z)"));
    EXPECT_EQ(run(u"actions run hide org.example.ash"_s).status, 0);
    EXPECT_EQ(run(u"actions run hide org.example.ash"_s).code(), u"noSuchAction");
    for (const QString& entry :
         {u"resetLayout"_s, u"importLaunchpad"_s, u"arrange"_s, u"moveToTrash org.example.beech"_s})
        EXPECT_EQ(run(u"actions run "_s + entry).code(), u"needsWindow") << entry.toStdString();
    EXPECT_EQ(run(u"actions run moveTo:99 org.example.beech"_s).code(), u"noSuchPlace");
    EXPECT_EQ(run(u"actions run reveal org.example.beech"_s).code(), u"notShown");
    EXPECT_EQ(run(u"actions run open org.example.beech"_s).code(), u"couldNotLaunch");
    EXPECT_TRUE(run(u"batch -"_s, "cut org.example.ash\n--mode windowed actions run paste\n")
                    .out.contains("clipboardRefused"));
    EXPECT_EQ(text(u"list"_s), "Page 1\n  Ash (hidden)\n  Beech\n");
    // After "--" nothing is an option.
    EXPECT_EQ(run(u"rename org.example.beech -- --json"_s, {}, false).status, 0);
    EXPECT_EQ(text(u"list"_s), "Page 1\n  Ash (hidden)\n  --json\n");
}

TEST_F(TessellarctlTest, AnActionContinuesInAWindowThatIsFree) {
    RunningLauncher running(root.path());
    bool isBusy = false;
    QList<ActionRequest> requests;
    running.launcher.setPresenter({.show = [] {},
                                   .isBusy = [&] { return isBusy; },
                                   .perform =
                                       [&](const ActionTarget& target, ActionRequest request) {
                                           requests.append(request);
                                           return target.mode == LauncherWindowMode::fullScreen;
                                       }});
    EXPECT_EQ(text(u"actions run updates"_s), "Continue in the window.\n");
    EXPECT_EQ(run(u"--mode windowed actions run rename org.example.ash"_s).code(), u"notInWindow");
    EXPECT_EQ(requests, QList({ActionRequest::updates, ActionRequest::rename}));
    isBusy = true;
    EXPECT_EQ(run(u"actions run moveToTrash org.example.ash"_s).code(), u"windowBusy");
    EXPECT_EQ(running.launcher.cleanup().phase(), LauncherCleanup::Phase::idle);
}

} // namespace
} // namespace tessellar
