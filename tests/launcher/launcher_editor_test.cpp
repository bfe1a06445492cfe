#include "launcher/launcher_editor.h"

#include "launcher/launcher_view_model.h"
#include "sample/mac_builder.h"
#include "support/items.h"
#include "support/printers.h"
#include "support/test_machine.h"

#include <gtest/gtest.h>

namespace tessellar {
namespace {

using namespace std::chrono_literals;
using test::app;
using test::idOf;
using test::sketch;

const QString directory = QStringLiteral("/Users/ada/Library/Application Support/com.tessellar.app");

class EditorTest : public testing::Test {
protected:
    test::TestMachine mac;
    sample::MacBuilder builder{mac.root.path()};
    std::unique_ptr<LauncherViewModel> launcher;

    EditorTest() {
        for (const QString& name : {u"Ash"_qs, u"Beech"_qs, u"Cedar"_qs, u"Dogwood"_qs})
            install(name);
        mac.write(
            directory + u"/layout.json"_qs,
            json::write(json::encode(LayoutDocument{
                .pages = {{app(u"Ash"_qs), app(u"Beech"_qs)}, {app(u"Cedar"_qs), app(u"Dogwood"_qs)}},
                .hiddenKeys = {}})));
        launcher = std::make_unique<LauncherViewModel>(mac.machine);
        launcher->startAndWait();
    }
    void install(const QString& name) {
        builder.addApplication(
            {.name = name, .identifier = QStringLiteral("org.example.") + name.toLower()});
    }
    LauncherEditor& editor() { return launcher->editor(); }
    QString shown() { return sketch(launcher->pages()); }
    QString stored(const char* name = "layout.json") {
        const auto document =
            json::decodeDocument<LayoutDocument>(mac.read(directory + u'/' + QLatin1StringView(name)));
        return document ? sketch(document->pages) : QStringLiteral("unreadable");
    }
    QString undo() {
        QString code;
        editor().undo([&](const LauncherEditor::Outcome& outcome) {
            code = outcome ? QStringLiteral("done") : outcome.error().code;
        });
        mac.settle();
        return code;
    }
};

TEST_F(EditorTest, AnEditIsSavedAfterTheDelayAndUndoneAtOnce) {
    ASSERT_TRUE(editor().groupTiles({idOf(u"Ash"_qs)}, idOf(u"Cedar"_qs)));
    EXPECT_EQ(shown(), u"Beech|[Folder: Cedar Ash] Dogwood");
    EXPECT_EQ(stored(), u"Ash Beech|Cedar Dogwood");
    mac.time.advance(300ms);
    EXPECT_EQ(stored(), shown());
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(shown(), u"Ash Beech|Cedar Dogwood");
    EXPECT_EQ(stored(), shown());
    EXPECT_EQ(editor().history().feedback()->text(), u"Undo Group Tiles");
    EXPECT_EQ(undo(), u"nothingToUndo");
}

TEST_F(EditorTest, RefusalsAndEditsWithoutEffectLeaveNoHistory) {
    EXPECT_FALSE(editor().moveTiles({QUuid::createUuid()}, {.page = 0}));
    EXPECT_FALSE(editor().renameApp(idOf(u"Ash"_qs), u"  "_qs));
    EXPECT_FALSE(editor().moveTiles({idOf(u"Ash"_qs)}, {.page = 99}));
    EXPECT_TRUE(editor().renameApp(idOf(u"Ash"_qs), u"Ash"_qs));
    EXPECT_TRUE(editor().history().undoStack().isEmpty());
    EXPECT_EQ(mac.time.pendingCount(), 0u);
}

TEST_F(EditorTest, ABlockedModeTakesNoEdits) {
    launcher.reset();
    mac.write(directory + u"/layout.json"_qs, "damaged");
    launcher = std::make_unique<LauncherViewModel>(mac.machine);
    launcher->startAndWait();
    const auto outcome = editor().sortEverything();
    ASSERT_FALSE(outcome);
    EXPECT_EQ(outcome.error().code, u"workingDocumentUnreadable");
}

TEST_F(EditorTest, UndoReachesAcrossTheModesInTheOrderOfTime) {
    ASSERT_TRUE(editor().hideApps({idOf(u"Ash"_qs)}));
    launcher->setMode(LauncherWindowMode::windowed);
    const QString windowed = shown();
    ASSERT_TRUE(editor().moveTiles({launcher->pages()[0][0].id()}, {.page = 1}));
    launcher->setMode(LauncherWindowMode::fullScreen);
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(launcher->mode(), LauncherWindowMode::windowed);
    EXPECT_EQ(shown(), windowed);
    EXPECT_EQ(stored("layout-windowed.json"), windowed);
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(launcher->mode(), LauncherWindowMode::fullScreen);
    EXPECT_TRUE(launcher->hiddenKeys().isEmpty());
}

TEST_F(EditorTest, AStepThatCannotBeSavedIsNotTaken) {
    ASSERT_TRUE(editor().moveTiles({idOf(u"Ash"_qs)}, {.page = 1}));
    mac.time.advance(300ms);
    mac.remove(directory + u"/layout.json"_qs);
    mac.makeFolder(directory + u"/layout.json/in the way"_qs);
    const QString edited = shown();
    EXPECT_EQ(undo(), u"notApplied");
    EXPECT_EQ(shown(), edited);
    mac.remove(directory + u"/layout.json"_qs);
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(stored(), u"Ash Beech|Cedar Dogwood");
}

TEST_F(EditorTest, ARescanBetweenAnEditAndItsUndoLosesNoApplication) {
    ASSERT_TRUE(editor().moveTiles({idOf(u"Ash"_qs)}, {.page = 1, .index = 0}));
    mac.remove(u"/Applications/Beech.app"_qs);
    install(u"Elm"_qs);
    launcher->rescan();
    mac.settle();
    EXPECT_EQ(shown(), u"Ash Cedar Dogwood Elm");
    EXPECT_EQ(undo(), u"done");
    // The state put back knows an application that is gone and lacks one that came: it is looked at
    // again.
    EXPECT_EQ(shown(), u"Ash|Cedar Dogwood Elm");
}

TEST_F(EditorTest, AFailedSaveIsSaidAtTheNextEdit) {
    mac.remove(directory + u"/layout.json"_qs);
    mac.makeFolder(directory + u"/layout.json/in the way"_qs);
    ASSERT_TRUE(editor().moveTiles({idOf(u"Ash"_qs)}, {.page = 1}));
    mac.time.advance(1s);
    EXPECT_TRUE(launcher->takeAlerts().isEmpty());
    mac.remove(directory + u"/layout.json"_qs);
    ASSERT_TRUE(editor().moveTiles({idOf(u"Cedar"_qs)}, {.page = 0}));
    EXPECT_EQ(launcher->takeAlerts().size(), 1);
    mac.time.advance(1s);
    EXPECT_EQ(stored(), shown());
}

TEST_F(EditorTest, SearchFollowsEditsAndFindsHiddenApplications) {
    ASSERT_TRUE(editor().renameApp(idOf(u"Ash"_qs), u"Rowan"_qs));
    ASSERT_TRUE(editor().hideApps({idOf(u"Beech"_qs)}));
    const auto first = [&](const QString& query) {
        const auto hits = editor().search(query);
        return hits.isEmpty() ? QString() : hits.first().entry->name;
    };
    EXPECT_EQ(first(u"rowan"_qs), u"Rowan");
    EXPECT_EQ(first(u"ash"_qs), u"Rowan");
    EXPECT_EQ(first(u"beech"_qs), u"Beech");
    EXPECT_EQ(first(u"  "_qs), QString());
}

} // namespace
} // namespace tessellar
