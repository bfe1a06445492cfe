#include "launcher/step_journal.h"

#include "launcher/small_launcher.h"
#include "smartfolders/smart_folder_rule.h"

#include <latch>

namespace tessellar::test {
namespace {

struct StepJournalTest : SmallLauncher {
    const QString registry = data + u"/computed-folders.json"_s;
    const QString note = data + u"/unfinished-step.json"_s;

    /// The bytes of the layout and of the registry.
    using Files = std::pair<QByteArray, QByteArray>;
    Files files() {
        EXPECT_TRUE(launcher->quit());
        return {mac.read(layoutFile), mac.read(registry)};
    }
    /// With a link to nowhere in the layout's place: what it leads to is never replaced, nor is the
    /// link.
    void startWithoutLayout() {
        install(u"Ash"_s);
        (void)mac.settings.set(u"gridRows"_s, 4);
        start();
        EXPECT_TRUE(launcher->quit());
        mac.remove(layoutFile);
        mac.link(layoutFile, u"/Volumes/Away/layout.json"_s);
    }
    SmartFolderDefinition trees() {
        SmartFolderDefinition result{.id = idOf(u"Trees"_s), .name = u"Trees"_s};
        result.rules = {
            SmartFolderTextRule{mac.uuids.next(), "displayName", predicate::BeginsWith(u"A"_s)}};
        result.sort.field = "name";
        return result;
    }
};

TEST_F(StepJournalTest, AStepThatWasCutOffIsTakenBackUnlessSomebodyHasWorkedOnItsFiles) {
    install(u"Ash"_s);
    start();
    const LayoutDocument before = launcher->shown().document();
    ASSERT_TRUE(editor().addSmartFolder(fullScreen, trees()));
    mac.settle();
    EXPECT_FALSE(mac.exists(note)) << "nothing is left of a step that came to its end";
    const LayoutDocument after = launcher->shown().document();
    // It had come to all files but the settings.
    const QString record = data + u"/legacy-launchpad-import.json"_s;
    mac.write(record, "record");
    using Settings = QMap<QString, QJsonValue>;
    const StepJournal::Files held{.fullScreen = before,
                                  .definitions = QList<SmartFolderDefinition>(),
                                  .settings = Settings{{u"gridRows"_s, QJsonValue()}},
                                  .importRecord = QString()};
    const StepJournal::Files wanted{.fullScreen = after,
                                    .definitions = definitions(),
                                    .settings = Settings{{u"gridRows"_s, 6}},
                                    .importRecord = u"record"_s};
    EXPECT_TRUE(launcher->quit());
    launcher.reset();
    ASSERT_TRUE(StepJournal(mac.machine, data).begin(held, wanted));
    const QByteArray outdated = mac.read(note);
    start();
    EXPECT_TRUE(definitions().isEmpty());
    EXPECT_EQ(launcher->shown().document(), before);
    EXPECT_FALSE(mac.exists(record) || mac.exists(note));

    // A note that could not be removed means nothing then.
    SmartFolderDefinition woods = trees();
    woods.name = u"Woods"_s;
    ASSERT_TRUE(editor().addSmartFolder(fullScreen, woods));
    const Files later = files();
    for (const QByteArray& left : {outdated, QByteArray("{}"), QByteArray("no note")}) {
        mac.write(note, left);
        launcher.reset();
        start();
        EXPECT_EQ(files(), later);
        EXPECT_FALSE(mac.exists(note));
    }
}

TEST_F(StepJournalTest, AStepIsShownWhileItsFilesAreWritten) {
    installAll(u"Ash Beech"_s);
    start();
    const QUuid ash = launcher->shown().tileOf(u"org.example.ash"_s)->id;
    ASSERT_TRUE(editor().rename(fullScreen, ash, u"Mine"_s)); // not yet saved
    std::latch opened{1};
    mac.workers.submit(Lane::saving, {}, [&](std::stop_token) { opened.wait(); });
    ASSERT_TRUE(editor().addSmartFolder(fullScreen, trees()));
    EXPECT_EQ(definitions().size(), 1);
    EXPECT_EQ(steps().size(), 2);
    EXPECT_FALSE(mac.exists(registry));
    // What comes meanwhile waits with its saving, or for the whole step.
    install(u"Cedar"_s);
    launcher->applications().rescan();
    mac.until([&] { return launcher->shown().tileOf(u"org.example.cedar"_s) != nullptr; });
    time.advance(1s);
    EXPECT_FALSE(mac.read(layoutFile).contains("Mine"));
    opened.count_down();
    ASSERT_TRUE(editor().rename(fullScreen, ash, u"Yours"_s));
    EXPECT_TRUE(mac.read(registry).contains("Trees")) << "an edit on top comes after it";
    EXPECT_TRUE(mac.read(layoutFile).contains("Mine"));
    EXPECT_TRUE(launcher->quit());
    EXPECT_EQ(sketch(stored().pages), sketched());
    EXPECT_TRUE(sketched().contains(u"Yours") && sketched().contains(u"Cedar"));
    EXPECT_FALSE(mac.exists(note));
    EXPECT_TRUE(alerts().isEmpty());
}

TEST_F(StepJournalTest, AStepWhoseSecondFileCannotBeWrittenHasChangedNothing) {
    startWithoutLayout();
    const QUuid ash = launcher->shown().tileOf(u"org.example.ash"_s)->id;
    const auto isAsBefore = [&] {
        EXPECT_TRUE(definitions().isEmpty());
        EXPECT_EQ(sketched(), u"Ash");
        EXPECT_FALSE(mac.read(registry).contains("Trees"));
        EXPECT_FALSE(mac.exists(note));
        EXPECT_TRUE(steps().isEmpty());
    };
    EXPECT_TRUE(editor().addSmartFolder(fullScreen, trees()));
    mac.settle();
    isAsBefore();
    EXPECT_EQ(alerts().size(), 1);
    // Nor is anything made on top of it.
    EXPECT_TRUE(editor().addSmartFolder(fullScreen, trees()));
    EXPECT_FALSE(editor().rename(fullScreen, ash, u"On top"_s));
    isAsBefore();
    EXPECT_EQ(alerts().size(), 1);
    // A command learns of it itself, whether it asks at once or later.
    UnsavedEdits& unsaved = launcher->history().unsaved();
    for (const bool isLate : {false, true}) {
        const auto command = std::make_shared<std::byte>();
        unsaved.editAs(command, [&] { EXPECT_TRUE(editor().addSmartFolder(fullScreen, trees())); });
        if (isLate)
            mac.settle();
        bool isTold = false;
        unsaved.whenSaved(command, UnsavedEdits::Whose::step,
                          [&](const UnsavedEdits::Outcome& saved) { isTold = !saved; });
        mac.settle();
        EXPECT_TRUE(isTold);
        EXPECT_TRUE(alerts().isEmpty());
    }
    isAsBefore();
}

TEST_F(StepJournalTest, AStepThatFailsLeavesTheSettingsAsTheyWereStored) {
    startWithoutLayout();
    const auto stored = mac.settings.values();
    const int writes = mac.settings.writes;
    bool isNoted = false;
    const auto watched = launcher->shown().changed.connect(
        [&] { isNoted = isNoted || (mac.settings.values() == stored && mac.exists(note)); });
    EditStep step{.name = u"Restore"_s, .mode = fullScreen};
    step.document = LayoutDocument();
    step.settings = launcher->shown().settings();
    step.settings->columns = 9;
    bool isRefused = false;
    EXPECT_TRUE(launcher->history().make(step, [&](const auto& saved) { isRefused = !saved; }));
    EXPECT_EQ(launcher->shown().settings().columns, 9);
    mac.settle();
    EXPECT_TRUE(isRefused);
    EXPECT_GT(mac.settings.writes, writes + 1);
    EXPECT_EQ(mac.settings.values(), stored) << "what was absent is absent again";
    EXPECT_TRUE(isNoted) << "until all is put back: it may be killed before that";
    EXPECT_FALSE(mac.exists(note));
    EXPECT_EQ(launcher->shown().settings().columns, 8);
}

TEST_F(StepJournalTest, AStepThatCannotBeNotedIsNotUndone) {
    install(u"Ash"_s);
    start();
    ASSERT_TRUE(editor().addSmartFolder(fullScreen, trees()));
    const Files before = files();
    mac.makeFolder(note + u"/in its place"_s);
    undo();
    EXPECT_EQ(alerts().size(), 1);
    EXPECT_EQ(steps().size(), 1);
    EXPECT_EQ(definitions().size(), 1);
    EXPECT_EQ(files(), before);
    mac.remove(note);
    EXPECT_EQ(undo(), u"done");
    EXPECT_TRUE(definitions().isEmpty());
    EXPECT_EQ(sketched(), u"Ash");
    EXPECT_FALSE(mac.exists(note));
}

} // namespace
} // namespace tessellar::test
