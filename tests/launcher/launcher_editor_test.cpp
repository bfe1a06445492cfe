#include "launcher/launcher_editor.h"

#include "small_launcher.h"

namespace tessellar {
namespace {

using namespace std::chrono_literals;
using test::app;
using test::idOf;
using test::sketch;

class EditorTest : public test::SmallLauncher {
protected:
    EditorTest() {
        for (const QString& name : {u"Ash"_qs, u"Beech"_qs, u"Cedar"_qs, u"Dogwood"_qs})
            install(name);
        store({{app(u"Ash"_qs), app(u"Beech"_qs)}, {app(u"Cedar"_qs), app(u"Dogwood"_qs)}});
        start();
    }
    LauncherEditor& editor() { return launcher->editor(); }
    QString stored(const char* name = "layout.json") {
        return sketch(SmallLauncher::stored(name).pages);
    }
};

TEST_F(EditorTest, AnEditIsSavedAfterTheDelayAndUndoneAtOnce) {
    ASSERT_TRUE(editor().groupTiles({idOf(u"Ash"_qs)}, idOf(u"Cedar"_qs)));
    EXPECT_EQ(sketched(), u"Beech|[Folder: Cedar Ash] Dogwood");
    EXPECT_EQ(stored(), u"Ash Beech|Cedar Dogwood");
    mac.time.advance(300ms);
    EXPECT_EQ(stored(), sketched());
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(sketched(), u"Ash Beech|Cedar Dogwood");
    EXPECT_EQ(stored(), sketched());
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
    mac.write(data + u"/layout.json"_qs, "damaged");
    start();
    const auto outcome = editor().sortEverything();
    ASSERT_FALSE(outcome);
    EXPECT_EQ(outcome.error().code, u"workingDocumentUnreadable");
}

TEST_F(EditorTest, UndoReachesAcrossTheModesInTheOrderOfTime) {
    ASSERT_TRUE(editor().hideApps({idOf(u"Ash"_qs)}));
    launcher->setMode(LauncherWindowMode::windowed);
    const QString windowed = sketched();
    ASSERT_TRUE(editor().moveTiles({launcher->pages()[0][0].id()}, {.page = 1}));
    launcher->setMode(LauncherWindowMode::fullScreen);
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(launcher->mode(), LauncherWindowMode::windowed);
    EXPECT_EQ(sketched(), windowed);
    EXPECT_EQ(stored("layout-windowed.json"), windowed);
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(launcher->mode(), LauncherWindowMode::fullScreen);
    EXPECT_TRUE(launcher->hiddenKeys().isEmpty());
}

TEST_F(EditorTest, AStepThatCannotBeSavedIsNotTaken) {
    ASSERT_TRUE(editor().moveTiles({idOf(u"Ash"_qs)}, {.page = 1}));
    mac.time.advance(300ms);
    mac.remove(data + u"/layout.json"_qs);
    mac.makeFolder(data + u"/layout.json/in the way"_qs);
    const QString edited = sketched();
    EXPECT_EQ(undo(), u"notApplied");
    EXPECT_EQ(sketched(), edited);
    mac.remove(data + u"/layout.json"_qs);
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(stored(), u"Ash Beech|Cedar Dogwood");
}

TEST_F(EditorTest, ARescanBetweenAnEditAndItsUndoLosesNoApplication) {
    ASSERT_TRUE(editor().moveTiles({idOf(u"Ash"_qs)}, {.page = 1, .index = 0}));
    mac.remove(u"/Applications/Beech.app"_qs);
    install(u"Elm"_qs);
    launcher->rescan();
    mac.settle();
    EXPECT_EQ(sketched(), u"Ash Cedar Dogwood Elm");
    EXPECT_EQ(undo(), u"done");
    // The state put back knows an application that is gone and lacks one that came: it is looked at
    // again.
    EXPECT_EQ(sketched(), u"Ash|Cedar Dogwood Elm");
}

TEST_F(EditorTest, AFailedSaveIsSaidAtTheNextEdit) {
    mac.remove(data + u"/layout.json"_qs);
    mac.makeFolder(data + u"/layout.json/in the way"_qs);
    ASSERT_TRUE(editor().moveTiles({idOf(u"Ash"_qs)}, {.page = 1}));
    mac.time.advance(1s);
    EXPECT_TRUE(launcher->takeAlerts().isEmpty());
    mac.remove(data + u"/layout.json"_qs);
    ASSERT_TRUE(editor().moveTiles({idOf(u"Cedar"_qs)}, {.page = 0}));
    EXPECT_EQ(launcher->takeAlerts().size(), 1);
    mac.time.advance(1s);
    EXPECT_EQ(stored(), sketched());
}

TEST_F(EditorTest, DroppingOntoAFolderIsAMove) {
    ASSERT_TRUE(editor().groupTiles({idOf(u"Ash"_qs)}, idOf(u"Cedar"_qs)));
    const QUuid folder = launcher->pages()[1][0].id();
    ASSERT_TRUE(editor().groupTiles({idOf(u"Beech"_qs), folder}, folder));
    EXPECT_EQ(sketched(), u"[Folder: Cedar Ash Beech] Dogwood");
    EXPECT_EQ(editor().history().undoStack()[0].name, u"Group Tiles");
    EXPECT_EQ(editor().history().undoStack()[1].name, u"Move Tile");
}

TEST_F(EditorTest, NothingElseIsDoneWhileAStepWaits) {
    LayoutUndoActions::TrashDone answer;
    const auto later = [&](const QList<TrashedAppRecord>&, const LayoutUndoActions::TrashDone& done) {
        answer = done;
    };
    editor().setTrash(later, later);
    const TrashedAppRecord gone{u"Elm"_qs, u"/Applications/Elm.app"_qs, AppInstallKind::manual, {}};
    editor().record(EditKind::moveToTrash, 1, editor().snapshot(), {gone});
    EXPECT_EQ(undo(), QString());
    EXPECT_EQ(undo(), u"stepInProgress");
    EXPECT_EQ(redo(), u"stepInProgress");
    EXPECT_FALSE(editor().sortEverything());
    answer({{gone, {}}});
    EXPECT_TRUE(editor().history().canRedo());
    EXPECT_TRUE(editor().sortEverything());
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

/// One smart folder with a tile in each mode.
class SmartFolderEditorTest : public EditorTest {
protected:
    const SmartFolderDefinition games =
        templateDefinition(SmartFolderTemplate::games, mac.uuids.next(), mac.time.now(), mac.uuids);
    const QString registry = data + u"/computed-folders.json"_qs;

    SmartFolderEditorTest() {
        EXPECT_TRUE(editor().addSmartFolder(games));
        launcher->setMode(LauncherWindowMode::windowed);
        EXPECT_TRUE(editor().addSmartFolderTile(games.id, {.page = 0, .index = 1}));
        launcher->setMode(LauncherWindowMode::fullScreen);
        mac.settle();
    }
    QList<SmartFolderDefinition> definitions() { return launcher->smartFolders().definitions(); }
    /// The layouts of both modes, as they are stored.
    QString bothStored() {
        mac.time.advance(1s);
        return stored() + u" / "_qs + stored("layout-windowed.json");
    }
    void blockRegistry() {
        mac.remove(registry);
        mac.makeFolder(registry + u"/in the way"_qs);
    }
};

TEST_F(SmartFolderEditorTest, ADeletedOneComesBackWithItsTilesInBothModes) {
    const QString before = bothStored();
    EXPECT_EQ(before, u"Ash Beech *|Cedar Dogwood / Ash * Beech Cedar Dogwood");
    ASSERT_TRUE(editor().deleteSmartFolder(games.id));
    const QString after = bothStored();
    EXPECT_EQ(after, u"Ash Beech|Cedar Dogwood / Ash Beech Cedar Dogwood");
    EXPECT_TRUE(definitions().isEmpty());
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(undo(), u"done");
        EXPECT_EQ(bothStored(), before);
        EXPECT_EQ(definitions(), QList{games});
        EXPECT_TRUE(mac.read(registry).contains(toText(games.id).toUtf8()));
        EXPECT_EQ(redo(), u"done");
        EXPECT_EQ(bothStored(), after);
        EXPECT_TRUE(definitions().isEmpty());
    }
}

TEST_F(SmartFolderEditorTest, ADeletionThatTheRegistryRefusesChangesNeitherMode) {
    const QString before = bothStored();
    const auto history = editor().history().undoStack().size();
    blockRegistry();
    EXPECT_FALSE(editor().deleteSmartFolder(games.id));
    EXPECT_EQ(bothStored(), before);
    EXPECT_EQ(definitions(), QList{games});
    EXPECT_EQ(editor().history().undoStack().size(), history);
}

TEST_F(SmartFolderEditorTest, AStepThatTheRegistryRefusesIsNotTakenInEitherMode) {
    const QString before = bothStored();
    ASSERT_TRUE(editor().deleteSmartFolder(games.id));
    const QString after = bothStored();
    blockRegistry();
    EXPECT_EQ(undo(), u"notApplied");
    EXPECT_EQ(bothStored(), after);
    EXPECT_EQ(sketched(), stored());
    EXPECT_TRUE(definitions().isEmpty());
    EXPECT_TRUE(editor().history().canUndo());
    EXPECT_FALSE(editor().history().canRedo());
    mac.remove(registry);
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(bothStored(), before);
    EXPECT_EQ(definitions(), QList{games});
}

TEST_F(SmartFolderEditorTest, APastedCopyHasItsOwnDefinitionInOneStep) {
    ASSERT_TRUE(editor().copy({games.id}));
    launcher->setMode(LauncherWindowMode::windowed);
    blockRegistry();
    EXPECT_FALSE(editor().paste());
    const auto alerts = launcher->takeAlerts();
    ASSERT_EQ(alerts.size(), 1);
    EXPECT_EQ(alerts[0].title, u"Could not save Smart Folders");
    EXPECT_EQ(sketched(), u"Ash * Beech Cedar Dogwood");

    mac.remove(registry);
    ASSERT_TRUE(editor().paste());
    EXPECT_EQ(sketched(), u"Ash * Beech Cedar Dogwood *");
    ASSERT_EQ(definitions().size(), 2);
    SmartFolderDefinition copy = definitions().last();
    EXPECT_EQ(launcher->pages()[0].last().id(), copy.id);
    EXPECT_NE(copy.id, games.id);
    EXPECT_NE(copy.rules[0].id(), games.rules[0].id());
    EXPECT_EQ(editor().history().undoStack().last().name, u"Paste Tile");
    const auto both = definitions();
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(definitions(), QList{games});
    EXPECT_EQ(sketched(), u"Ash * Beech Cedar Dogwood");
    EXPECT_EQ(redo(), u"done");
    EXPECT_EQ(definitions(), both);

    // Cut tiles only move where they were cut.
    ASSERT_TRUE(editor().cut({games.id}));
    launcher->setMode(LauncherWindowMode::fullScreen);
    EXPECT_FALSE(editor().paste());
    EXPECT_EQ(sketched(), u"Ash Beech *|Cedar Dogwood");
}

} // namespace
} // namespace tessellar
