#include "launcher/installed_applications.h"
#include "launcher/launcher_clipboard.h"
#include "launcher/launcher_editor.h"
#include "launcher/launcher_history.h"
#include "launcher/launcher_messages.h"
#include "launcher/launcher_search.h"
#include "launcher/layout_archive.h"
#include "launcher/live_layout.h"
#include "launcher/smart_folder_library.h"

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
    LauncherWindowMode mode() { return launcher->shown().mode(); }
    QString stored(const char* name = "layout.json") {
        return sketch(SmallLauncher::stored(name).pages);
    }
};

TEST_F(EditorTest, AnEditIsSavedAfterTheDelayAndUndoneAtOnce) {
    ASSERT_TRUE(editor().groupTiles(mode(), {idOf(u"Ash"_qs)}, idOf(u"Cedar"_qs)));
    EXPECT_EQ(sketched(), u"Beech|[Folder: Cedar Ash] Dogwood");
    EXPECT_EQ(stored(), u"Ash Beech|Cedar Dogwood");
    mac.time.advance(300ms);
    EXPECT_EQ(stored(), sketched());
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(sketched(), u"Ash Beech|Cedar Dogwood");
    EXPECT_EQ(stored(), sketched());
    EXPECT_EQ(launcher->history().steps().feedback()->text(), u"Undo Group Tiles");
    EXPECT_EQ(undo(), u"nothingToUndo");
}

TEST_F(EditorTest, RefusalsAndEditsWithoutEffectLeaveNoHistory) {
    EXPECT_FALSE(editor().moveTiles(mode(), {QUuid::createUuid()}, {.page = 0}));
    EXPECT_FALSE(editor().rename(mode(), idOf(u"Ash"_qs), u"  "_qs));
    EXPECT_FALSE(editor().moveTiles(mode(), {idOf(u"Ash"_qs)}, {.page = 99}));
    EXPECT_TRUE(editor().rename(mode(), idOf(u"Ash"_qs), u"Ash"_qs));
    EXPECT_TRUE(launcher->history().steps().undoStack().isEmpty());
    EXPECT_EQ(mac.time.pendingCount(), 0u);
}

TEST_F(EditorTest, ABlockedModeTakesNoEdits) {
    launcher.reset();
    mac.write(data + u"/layout.json"_qs, "damaged");
    start();
    const auto outcome = editor().sortEverything(mode());
    ASSERT_FALSE(outcome);
    EXPECT_EQ(outcome.error().code, u"workingDocumentUnreadable");
}

TEST_F(EditorTest, UndoTakesTheNewestStepOfTheModeThatIsShown) {
    ASSERT_TRUE(editor().hideApps(mode(), {idOf(u"Ash"_qs)}));
    launcher->layouts().show(LauncherWindowMode::windowed);
    const QString windowed = sketched();
    ASSERT_TRUE(editor().moveTiles(mode(), {launcher->shown().pages()[0][0].id()}, {.page = 1}));
    const QString moved = sketched();
    launcher->layouts().show(LauncherWindowMode::fullScreen);
    EXPECT_EQ(undo(), u"done"); // the older one, and the window stays where it is
    EXPECT_TRUE(launcher->shown().hiddenKeys().isEmpty());
    EXPECT_EQ(mode(), LauncherWindowMode::fullScreen);
    EXPECT_EQ(undo(), u"nothingToUndo");
    launcher->layouts().show(LauncherWindowMode::windowed);
    EXPECT_EQ(sketched(), moved);
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(sketched(), windowed);
    EXPECT_EQ(stored("layout-windowed.json"), windowed);
}

TEST_F(EditorTest, ResetAndRestoredArrangementsAreStepsWithACopyKeptFirst) {
    ASSERT_TRUE(editor().groupTiles(mode(), {idOf(u"Ash"_qs)}, idOf(u"Cedar"_qs)));
    const QString grouped = sketched();
    const auto kept = test::saveArrangement(*launcher, mac, u"Mine"_qs);
    ASSERT_TRUE(kept);
    ASSERT_TRUE(launcher->archive().reset(mode()));
    EXPECT_EQ(sketched(), u"Ash Beech Cedar Dogwood");
    EXPECT_EQ(stored(), sketched());
    EXPECT_EQ(mac.names(data + u"/Backups"_qs).size(), 1);
    ASSERT_TRUE(mac.settings.set(u"gridRows"_qs, 6));
    launcher->applySettings();
    ASSERT_TRUE(test::restoreArrangement(*launcher, mac, kept->id));
    EXPECT_EQ(sketched(), grouped);
    EXPECT_EQ(launcher->shown().settings().rows, 5);

    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(sketched(), u"Ash Beech Cedar Dogwood");
    EXPECT_EQ(launcher->shown().settings().rows, 6);
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(sketched(), grouped);
    EXPECT_EQ(redo(), u"done");
    EXPECT_EQ(redo(), u"done");
    EXPECT_EQ(sketched(), grouped);
    EXPECT_EQ(launcher->shown().settings().rows, 5);
}

TEST_F(EditorTest, AStepThatCannotBeSavedIsNotTaken) {
    ASSERT_TRUE(editor().moveTiles(mode(), {idOf(u"Ash"_qs)}, {.page = 1}));
    mac.time.advance(300ms);
    mac.settle();
    mac.remove(data + u"/layout.json"_qs);
    mac.makeFolder(data + u"/layout.json/in the way"_qs);
    const QString edited = sketched();
    EXPECT_EQ(undo(), u"done"); // and comes back when saving it has failed
    EXPECT_EQ(sketched(), edited);
    mac.remove(data + u"/layout.json"_qs);
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(stored(), u"Ash Beech|Cedar Dogwood");
}

TEST_F(EditorTest, ARescanBetweenAnEditAndItsUndoLosesNoApplication) {
    ASSERT_TRUE(editor().moveTiles(mode(), {idOf(u"Ash"_qs)}, {.page = 1, .index = 0}));
    mac.remove(u"/Applications/Beech.app"_qs);
    install(u"Elm"_qs);
    launcher->applications().rescan();
    mac.settle();
    EXPECT_EQ(sketched(), u"Ash Cedar Dogwood Elm");
    EXPECT_EQ(undo(), u"done");
    // The state put back knows an application that is gone and lacks one that came: it is looked at
    // again.
    EXPECT_EQ(sketched(), u"Ash|Cedar Dogwood Elm");
}

TEST_F(EditorTest, AFailedSaveIsSaidAtOnceAndTriedAgainWithTheNextEdit) {
    mac.remove(data + u"/layout.json"_qs);
    mac.makeFolder(data + u"/layout.json/in the way"_qs);
    ASSERT_TRUE(editor().moveTiles(mode(), {idOf(u"Ash"_qs)}, {.page = 1}));
    mac.time.advance(1s);
    mac.settle();
    const auto alerts = launcher->messages().takeAlerts();
    ASSERT_EQ(alerts.size(), 1);
    EXPECT_EQ(alerts[0].remedy, LauncherError::Remedy::saveAgain);
    mac.remove(data + u"/layout.json"_qs);
    ASSERT_TRUE(editor().moveTiles(mode(), {idOf(u"Cedar"_qs)}, {.page = 0}));
    mac.time.advance(1s);
    EXPECT_EQ(stored(), sketched());
    EXPECT_TRUE(launcher->messages().takeAlerts().isEmpty());
}

TEST_F(EditorTest, DroppingOntoAFolderIsAMove) {
    ASSERT_TRUE(editor().groupTiles(mode(), {idOf(u"Ash"_qs)}, idOf(u"Cedar"_qs)));
    const QUuid folder = launcher->shown().pages()[1][0].id();
    ASSERT_TRUE(editor().groupTiles(mode(), {idOf(u"Beech"_qs), folder}, folder));
    EXPECT_EQ(sketched(), u"[Folder: Cedar Ash Beech] Dogwood");
    EXPECT_EQ(launcher->history().steps().undoStack()[0].name, u"Group Tiles");
    EXPECT_EQ(launcher->history().steps().undoStack()[1].name, u"Move Tile");
}

TEST_F(EditorTest, NothingElseIsDoneWhileAStepWaits) {
    LayoutUndoActions::TrashDone answer;
    const auto later = [&](const QList<TrashedAppRecord>&, const LayoutUndoActions::TrashDone& done) {
        answer = done;
    };
    launcher->history().setTrash(later, later);
    const TrashedAppRecord gone{u"Elm"_qs, u"/Applications/Elm.app"_qs, AppInstallKind::manual, {}};
    ASSERT_TRUE(launcher->history().make(
        {.name = editName(EditKind::moveToTrash), .mode = mode(), .trashedApps = {gone}}));
    EXPECT_EQ(undo(), QString());
    EXPECT_EQ(undo(), u"stepInProgress");
    EXPECT_EQ(redo(), u"stepInProgress");
    EXPECT_FALSE(editor().sortEverything(mode()));
    answer({{gone, {}}});
    EXPECT_TRUE(launcher->history().steps().canRedo(mode()));
    EXPECT_TRUE(editor().sortEverything(mode()));
}

TEST_F(EditorTest, SearchFollowsEditsAndFindsHiddenApplications) {
    ASSERT_TRUE(editor().rename(mode(), idOf(u"Ash"_qs), u"Rowan"_qs));
    ASSERT_TRUE(editor().hideApps(mode(), {idOf(u"Beech"_qs)}));
    mac.settle(); // the index is made on a worker
    const auto first = [&](const QString& query) {
        const auto hits = launcher->search().search(mode(), query);
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
        EXPECT_TRUE(editor().addSmartFolder(mode(), games));
        launcher->layouts().show(LauncherWindowMode::windowed);
        EXPECT_TRUE(editor().addSmartFolderTile(mode(), games.id, LayoutPlace{.page = 0, .index = 1}));
        launcher->layouts().show(LauncherWindowMode::fullScreen);
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
    ASSERT_TRUE(editor().deleteSmartFolder(mode(), games.id));
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
    const auto history = launcher->history().steps().undoStack().size();
    blockRegistry();
    EXPECT_FALSE(editor().deleteSmartFolder(mode(), games.id));
    EXPECT_EQ(bothStored(), before);
    EXPECT_EQ(definitions(), QList{games});
    EXPECT_EQ(launcher->history().steps().undoStack().size(), history);
}

TEST_F(SmartFolderEditorTest, AStepWaitsForALaterOneOfTheOtherModeThatChangedTheSame) {
    SmartFolderDefinition renamed = games;
    renamed.name = u"Play"_qs;
    ASSERT_TRUE(editor().changeSmartFolder(mode(), renamed));
    launcher->layouts().show(LauncherWindowMode::windowed);
    renamed.name = u"Toys"_qs;
    ASSERT_TRUE(editor().changeSmartFolder(mode(), renamed));
    launcher->layouts().show(LauncherWindowMode::fullScreen);
    EXPECT_EQ(undo(), u"stepInTheWay");
    launcher->layouts().show(LauncherWindowMode::windowed);
    EXPECT_EQ(undo(), u"done");
    launcher->layouts().show(LauncherWindowMode::fullScreen);
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(definitions(), QList{games});
}

TEST_F(SmartFolderEditorTest, AStepOfOneDefinitionLeavesLaterOnesOfOthers) {
    SmartFolderDefinition renamed = games;
    renamed.name = u"Play"_qs;
    ASSERT_TRUE(editor().changeSmartFolder(mode(), renamed));
    launcher->layouts().show(LauncherWindowMode::windowed);
    const SmartFolderDefinition other =
        templateDefinition(SmartFolderTemplate::games, mac.uuids.next(), mac.time.now(), mac.uuids);
    ASSERT_TRUE(editor().addSmartFolder(mode(), other));
    launcher->layouts().show(LauncherWindowMode::fullScreen);
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(definitions(), (QList{games, other}));
    EXPECT_EQ(redo(), u"done");
    EXPECT_EQ(definitions(), (QList{renamed, other}));
}

TEST_F(SmartFolderEditorTest, AStepThatTheRegistryRefusesIsNotTakenInEitherMode) {
    const QString before = bothStored();
    ASSERT_TRUE(editor().deleteSmartFolder(mode(), games.id));
    const QString after = bothStored();
    blockRegistry();
    EXPECT_EQ(undo(), u"notApplied");
    EXPECT_EQ(bothStored(), after);
    EXPECT_EQ(sketched(), stored());
    EXPECT_TRUE(definitions().isEmpty());
    EXPECT_TRUE(launcher->history().steps().canUndo(mode()));
    EXPECT_FALSE(launcher->history().steps().canRedo(mode()));
    mac.remove(registry);
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(bothStored(), before);
    EXPECT_EQ(definitions(), QList{games});
}

TEST_F(SmartFolderEditorTest, APastedCopyHasItsOwnDefinitionInOneStep) {
    ASSERT_TRUE(launcher->clipboard().copy(mode(), {games.id}));
    launcher->layouts().show(LauncherWindowMode::windowed);
    blockRegistry();
    EXPECT_FALSE(launcher->clipboard().paste(mode()));
    const auto alerts = launcher->messages().takeAlerts();
    ASSERT_EQ(alerts.size(), 1);
    EXPECT_EQ(alerts[0].title, u"Could not save Smart Folders");
    EXPECT_EQ(sketched(), u"Ash * Beech Cedar Dogwood");

    mac.remove(registry);
    ASSERT_TRUE(launcher->clipboard().paste(mode()));
    EXPECT_EQ(sketched(), u"Ash * * Beech Cedar Dogwood") << "after the one that is selected";
    ASSERT_EQ(definitions().size(), 2);
    SmartFolderDefinition copy = definitions().last();
    EXPECT_EQ(launcher->shown().pages()[0][2].id(), copy.id);
    EXPECT_NE(copy.id, games.id);
    EXPECT_NE(copy.rules[0].id(), games.rules[0].id());
    EXPECT_EQ(launcher->history().steps().undoStack().last().name, u"Paste Tile");
    const auto both = definitions();
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(definitions(), QList{games});
    EXPECT_EQ(sketched(), u"Ash * Beech Cedar Dogwood");
    EXPECT_EQ(redo(), u"done");
    EXPECT_EQ(definitions(), both);

    // Cut tiles only move where they were cut.
    ASSERT_TRUE(launcher->clipboard().cut(mode(), {games.id}));
    launcher->layouts().show(LauncherWindowMode::fullScreen);
    EXPECT_FALSE(launcher->clipboard().paste(mode()));
    EXPECT_EQ(sketched(), u"Ash Beech *|Cedar Dogwood");
}

} // namespace
} // namespace tessellar
