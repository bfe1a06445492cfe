#include "launcher/launcher_clipboard.h"

#include "small_launcher.h"

namespace tessellar::test {
namespace {

class EditorTest : public SmallLauncher {
protected:
    EditorTest() {
        installAll(u"Ash Beech Cedar Dogwood"_s);
        store(drawn(u"Ash Beech|Cedar Dogwood"));
        start();
    }
    QString stored(const char* name = "layout.json") {
        return sketch(SmallLauncher::stored(name).pages);
    }
    void show(LauncherWindowMode mode) { launcher->layouts().show(mode); }
    /// Lets the time pass after which an edit is saved.
    void pass() {
        time.advance(1s);
        mac.settle();
    }
    /// "Ash" on "Cedar".
    void group() { ASSERT_TRUE(editor().groupTiles(mode(), {idOf(u"Ash"_s)}, idOf(u"Cedar"_s))); }
};

TEST_F(EditorTest, AnEditIsSavedAfterTheDelayAndUndoneAtOnce) {
    group();
    EXPECT_EQ(sketched(), u"Beech|[Folder: Cedar Ash] Dogwood");
    EXPECT_EQ(stored(), u"Ash Beech|Cedar Dogwood");
    time.advance(300ms);
    EXPECT_EQ(stored(), sketched());
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(sketched(), u"Ash Beech|Cedar Dogwood");
    EXPECT_EQ(stored(), sketched());
    EXPECT_EQ(launcher->history().steps().feedback()->text(), u"Undo Group Tiles");
    EXPECT_EQ(undo(), u"nothingToUndo");
}

TEST_F(EditorTest, RefusalsAndEditsWithoutEffectLeaveNoHistory) {
    EXPECT_FALSE(editor().moveTiles(mode(), {QUuid::createUuid()}, {.page = 0}));
    EXPECT_FALSE(editor().rename(mode(), idOf(u"Ash"_s), u"  "_s));
    EXPECT_FALSE(editor().moveTiles(mode(), {idOf(u"Ash"_s)}, {.page = 99}));
    EXPECT_TRUE(editor().rename(mode(), idOf(u"Ash"_s), u"Ash"_s));
    EXPECT_TRUE(steps().isEmpty());
    EXPECT_EQ(time.pendingCount(), 0u);
}

TEST_F(EditorTest, UndoTakesTheNewestStepOfTheModeThatIsShown) {
    ASSERT_TRUE(editor().hideApps(mode(), {idOf(u"Ash"_s)}));
    show(windowed);
    const QString before = sketched();
    ASSERT_TRUE(editor().moveTiles(mode(), {launcher->shown().pages()[0][0].id()}, {.page = 1}));
    const QString moved = sketched();
    show(fullScreen);
    EXPECT_EQ(undo(), u"done"); // the older one, and the window stays where it is
    EXPECT_TRUE(launcher->shown().hiddenKeys().isEmpty());
    EXPECT_EQ(mode(), fullScreen);
    EXPECT_EQ(undo(), u"nothingToUndo");
    show(windowed);
    EXPECT_EQ(sketched(), moved);
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(sketched(), before);
    EXPECT_EQ(stored("layout-windowed.json"), before);
}

TEST_F(EditorTest, ResetAndRestoredArrangementsAreStepsWithACopyKeptFirst) {
    group();
    ASSERT_TRUE(editor().hideApps(mode(), {idOf(u"Beech"_s)}));
    const QString grouped = u"Beech|[Folder: Cedar Ash] Dogwood"_s;
    const auto kept = saveArrangement(*launcher, mac, u"  Mine "_s);
    ASSERT_TRUE(kept);
    EXPECT_EQ(kept->name, u"Mine");
    ASSERT_TRUE(launcher->archive().reset(mode()));
    EXPECT_EQ(sketched(), u"Ash Beech Cedar Dogwood");
    EXPECT_EQ(stored(), sketched());
    ASSERT_TRUE(mac.settings.set(u"gridRows"_s, 6));
    launcher->settings().stored.notify();
    install(u"Elm"_s);
    rescan();
    const QString before = u"Ash Beech Cedar Dogwood Elm"_s;
    const QString restored = grouped + u"|Elm"_s;
    const auto expectRestored = [&] {
        EXPECT_EQ(sketched(), restored);
        EXPECT_EQ(launcher->shown().hiddenKeys(), QSet<QString>{u"org.example.beech"_s});
        EXPECT_EQ(launcher->shown().settings().rows, 5);
        EXPECT_EQ(stored(), restored);
    };
    ASSERT_TRUE(restoreArrangement(*launcher, mac, kept->id));
    expectRestored();
    QHash<QString, QString> copies;
    for (const QString& name : mac.names(data + u"/Backups"_s))
        if (const auto copy =
                json::decodeDocument<BackupDocument>(mac.read(data + u"/Backups/"_s + name)))
            copies.insert(copy->reason, sketch(copy->document.pages));
    EXPECT_EQ(copies,
              (QHash<QString, QString>{{u"arrangement-restore"_s, before}, {u"reset"_s, grouped}}));

    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(sketched(), before);
    EXPECT_EQ(launcher->shown().settings().rows, 6);
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(sketched(), grouped + u" Elm"_s) << "which came meanwhile";
    EXPECT_EQ(redo(), u"done");
    EXPECT_EQ(redo(), u"done");
    expectRestored();

    mac.write(data + u"/Arrangements/"_s + toText(kept->id) + u".json"_s, "{");
    const auto unreadable = restoreArrangement(*launcher, mac, kept->id);
    ASSERT_FALSE(unreadable);
    EXPECT_EQ(unreadable.error().title, u"Could not restore arrangement");
    EXPECT_EQ(mac.names(data + u"/Backups"_s).size(), 2);
    EXPECT_EQ(sketched(), restored);
}

TEST_F(EditorTest, ARescanBetweenAnEditAndItsUndoLosesNoApplication) {
    ASSERT_TRUE(editor().moveTiles(mode(), {idOf(u"Ash"_s)}, {.page = 1, .index = 0}));
    uninstall(u"Beech"_s);
    install(u"Elm"_s);
    rescan();
    EXPECT_EQ(sketched(), u"Ash Cedar Dogwood Elm");
    EXPECT_EQ(undo(), u"done");
    // The state put back knows an application that is gone and lacks one that came: it is looked at
    // again.
    EXPECT_EQ(sketched(), u"Ash|Cedar Dogwood Elm");
}

TEST_F(EditorTest, NothingElseIsDoneWhileAStepWaits) {
    LayoutUndoActions::TrashDone answer;
    const auto later = [&](const QList<TrashedAppRecord>&, const LayoutUndoActions::TrashDone& done) {
        answer = done;
    };
    launcher->history().setTrash(later, later);
    const TrashedAppRecord gone{u"Elm"_s, u"/Applications/Elm.app"_s, AppInstallKind::manual, {}};
    ASSERT_TRUE(launcher->history().make(
        {.name = editName(EditKind::moveToTrash), .mode = mode(), .trashedApps = {gone}}));
    EXPECT_EQ(undo(), QString());
    EXPECT_EQ(undo(), u"stepInProgress");
    EXPECT_EQ(redo(), u"stepInProgress");
    EXPECT_FALSE(editor().sortEverything(mode()));
    answer({{gone, {}}});
    mac.settle();
    EXPECT_TRUE(launcher->history().steps().canRedo(mode()));
    EXPECT_TRUE(editor().sortEverything(mode()));
}

/// One smart folder with a tile in each mode.
class SmartFolderEditorTest : public EditorTest {
protected:
    const SmartFolderDefinition games = newGames();
    const QString registry = data + u"/computed-folders.json"_s;

    SmartFolderEditorTest() {
        EXPECT_TRUE(editor().addSmartFolder(mode(), games));
        show(windowed);
        EXPECT_TRUE(editor().addSmartFolderTile(mode(), games.id, LayoutPlace{.page = 0, .index = 1}));
        show(fullScreen);
        mac.settle();
    }
    SmartFolderDefinition newGames() {
        return templateDefinition(SmartFolderTemplate::games, mac.uuids.next(), time.now(), mac.uuids);
    }
    SmartFolderDefinition gamesCalled(const QString& name) const {
        SmartFolderDefinition renamed = games;
        renamed.name = name;
        return renamed;
    }
    /// The layouts of both modes, as they are stored.
    QString bothStored() {
        time.advance(1s);
        return stored() + u" / "_s + stored("layout-windowed.json");
    }
};

TEST_F(SmartFolderEditorTest, ADeletedOneComesBackWithItsTilesInBothModesOrNeitherChanges) {
    const QString before = bothStored();
    EXPECT_EQ(before, u"Ash Beech *|Cedar Dogwood / Ash * Beech Cedar Dogwood");
    ASSERT_TRUE(editor().deleteSmartFolder(mode(), games.id));
    const QString after = bothStored();
    EXPECT_EQ(after, u"Ash Beech|Cedar Dogwood / Ash Beech Cedar Dogwood");
    EXPECT_TRUE(definitions().isEmpty());
    block(registry);
    undo();
    EXPECT_EQ(alerts(&LauncherError::title), QStringList{u"Could not save Smart Folders"_s});
    EXPECT_EQ(bothStored(), after);
    EXPECT_EQ(sketched(), stored());
    EXPECT_TRUE(definitions().isEmpty());
    EXPECT_TRUE(launcher->history().steps().canUndo(mode()));
    EXPECT_FALSE(launcher->history().steps().canRedo(mode()));
    mac.remove(registry);
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

TEST_F(SmartFolderEditorTest, AStepWaitsForALaterOneOfTheOtherModeThatChangedTheSame) {
    ASSERT_TRUE(editor().changeSmartFolder(mode(), gamesCalled(u"Play"_s)));
    show(windowed);
    ASSERT_TRUE(editor().changeSmartFolder(mode(), gamesCalled(u"Toys"_s)));
    show(fullScreen);
    EXPECT_EQ(undo(), u"stepInTheWay");
    show(windowed);
    EXPECT_EQ(undo(), u"done");
    // One of another definition is in nobody's way, and stays.
    const SmartFolderDefinition other = newGames();
    ASSERT_TRUE(editor().addSmartFolder(mode(), other));
    show(fullScreen);
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(definitions(), (QList{games, other}));
    EXPECT_EQ(redo(), u"done");
    EXPECT_EQ(definitions(), (QList{gamesCalled(u"Play"_s), other}));
    // A step that changed both modes' tiles waits for later changes of tiles only.
    ASSERT_TRUE(editor().deleteSmartFolder(mode(), games.id));
    SmartFolderDefinition changed = other;
    changed.name = u"Other"_s;
    show(windowed);
    ASSERT_TRUE(editor().changeSmartFolder(mode(), changed));
    show(fullScreen);
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(definitions().size(), 2);
    EXPECT_EQ(definitions().last().name, u"Other");
    EXPECT_EQ(redo(), u"done");
    show(windowed);
    ASSERT_TRUE(editor().hideApps(mode(), {launcher->shown().pages()[0][0].id()}));
    show(fullScreen);
    EXPECT_EQ(undo(), u"stepInTheWay");
}

TEST_F(SmartFolderEditorTest, ADefinitionIsUndoneAfterTheTilesOfTheOtherMode) {
    EXPECT_EQ(undo(), u"stepInTheWay");
    show(windowed);
    EXPECT_EQ(undo(), u"done");
    show(fullScreen);
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(bothStored(), u"Ash Beech|Cedar Dogwood / Ash Beech Cedar Dogwood");
    EXPECT_TRUE(definitions().isEmpty());
    show(windowed);
    EXPECT_EQ(redo(), u"stepInTheWay");
    show(fullScreen);
    EXPECT_EQ(redo(), u"done");
    show(windowed);
    EXPECT_EQ(redo(), u"done");
    EXPECT_EQ(bothStored(), u"Ash Beech *|Cedar Dogwood / Ash * Beech Cedar Dogwood");
}

TEST_F(SmartFolderEditorTest, APastedCopyHasItsOwnDefinitionInOneStep) {
    ASSERT_TRUE(launcher->clipboard().copy(mode(), {games.id}));
    show(windowed);
    block(registry);
    EXPECT_TRUE(launcher->clipboard().paste(mode()));
    mac.settle();
    EXPECT_EQ(alerts(&LauncherError::title), QStringList{u"Could not save Smart Folders"_s});
    EXPECT_EQ(sketched(), u"Ash * Beech Cedar Dogwood");

    mac.remove(registry);
    ASSERT_TRUE(launcher->clipboard().paste(mode()));
    EXPECT_EQ(sketched(), u"Ash * * Beech Cedar Dogwood") << "after the one that is selected";
    const auto both = definitions();
    ASSERT_EQ(both.size(), 2);
    EXPECT_EQ(launcher->shown().pages()[0][2].id(), both[1].id);
    EXPECT_NE(both[1].id, games.id);
    EXPECT_NE(both[1].rules[0].id(), games.rules[0].id());
    EXPECT_EQ(steps().last(), u"Paste Tile");
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(definitions(), QList{games});
    EXPECT_EQ(sketched(), u"Ash * Beech Cedar Dogwood");
    EXPECT_EQ(redo(), u"done");
    EXPECT_EQ(definitions(), both);

    // Cut tiles only move where they were cut.
    ASSERT_TRUE(launcher->clipboard().cut(mode(), {games.id}));
    show(fullScreen);
    EXPECT_FALSE(launcher->clipboard().paste(mode()));
    EXPECT_EQ(sketched(), u"Ash Beech *|Cedar Dogwood");
    show(windowed);
    ASSERT_TRUE(launcher->clipboard().paste(mode()));
    EXPECT_FALSE(launcher->clipboard().copy(mode(), {}));
    EXPECT_THAT(launcher->clipboard().cutTiles(mode()), testing::IsEmpty())
        << "they are pasted already";
}

} // namespace
} // namespace tessellar::test
