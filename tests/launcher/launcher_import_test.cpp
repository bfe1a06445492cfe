#include "launcher/launcher_import.h"

#include "sample/launchpad_database.h"
#include "small_launcher.h"

#include <gmock/gmock.h>

namespace tessellar::test {
namespace {

using sample::OldFolder;
using sample::OldItem;
using sample::OldTile;

OldTile tile(const QString& name) { return {name, u"org.example."_s + name.toLower()}; }

class LauncherImportTest : public SmallLauncher {
protected:
    const QString userFolder = u"/private/var/folders/zz/0/"_s;
    const QString database = userFolder + u"com.apple.dock.launchpad/db/db"_s;

    LauncherImportTest() {
        for (const QString& name : {u"Ash"_s, u"Beech"_s, u"Cedar"_s, u"Dogwood"_s, u"Elm"_s})
            install(name);
        mac.tool(u"/usr/bin/getconf"_s, exited(0, userFolder.toUtf8() + '\n'));
    }
    void addOldLaunchpad() {
        sample::addOldLaunchpad(
            builder,
            {.pages = {{tile(u"Elm"_s),
                        OldFolder{u"Work"_s,
                                  {{tile(u"Beech"_s), tile(u"Gone"_s)}, {tile(u"Dogwood"_s)}}}},
                       {OldFolder{u"Alone"_s, {{tile(u"Ash"_s)}}},
                        OldFolder{u"Lost"_s, {{tile(u"Lost"_s)}}}}}},
            database);
    }
    using Outcome = std::expected<LegacyLaunchpadImportMetadata, LauncherError>;
    Outcome run() {
        std::optional<Outcome> outcome;
        launcher->launchpadImport().run({}, [&](Outcome answer) { outcome = std::move(answer); });
        mac.settle();
        return outcome.value_or(std::unexpected(LauncherError{u"noAnswer"_s, {}, {}}));
    }
    QString failure() {
        const Outcome outcome = run();
        EXPECT_FALSE(outcome);
        if (outcome)
            return {};
        EXPECT_EQ(outcome.error().title, u"Could not import old Launchpad configuration");
        return outcome.error().code;
    }
};

TEST_F(LauncherImportTest, ReplacesTheArrangementInOneStepThatCanBeTakenBack) {
    addOldLaunchpad();
    AppEntry beech = app(u"Beech"_s);
    AppEntry cedar = app(u"Cedar"_s);
    beech.name = u"Fagus"_s;
    cedar.name = u"Cedrus"_s;
    store({{beech, test::folder(u"f"_s, {{app(u"Ash"_s), app(u"Elm"_s)}})}, {cedar, app(u"Dogwood"_s)}},
          {u"org.example.dogwood"_s});
    start();
    launcher->setCurrentPage(1);
    const LayoutDocument before = launcher->document();

    const Outcome imported = run();
    ASSERT_TRUE(imported) << imported.error().message.toStdString();
    // What it did not hold comes on a page of its own, under the user's name for it.
    EXPECT_EQ(sketched(), u"Elm [Work: Fagus|Dogwood]|Ash|Cedrus");
    EXPECT_EQ(launcher->hiddenKeys(), before.hiddenKeys);
    EXPECT_EQ(launcher->currentPage(), 0);
    EXPECT_EQ(launcher->pages()[1][0].id(), idOf(u"Ash"_s)) << "the same tile elsewhere";
    EXPECT_EQ(stored(), launcher->document());
    EXPECT_EQ(imported->appCount, 4);
    EXPECT_EQ(imported->folderCount, 2);
    EXPECT_EQ(imported->unresolvedAppCount, 2);

    const QStringList backups = mac.names(data + u"/Backups"_s);
    ASSERT_EQ(backups.size(), 1);
    EXPECT_EQ(imported->backupPath, data + u"/Backups/"_s + backups[0]);
    const auto backup = json::decodeDocument<BackupDocument>(mac.read(*imported->backupPath));
    ASSERT_TRUE(backup);
    EXPECT_EQ(backup->reason, u"legacy-launchpad-import");
    EXPECT_EQ(backup->sourceDatabasePath, database);
    EXPECT_EQ(backup->document.pages, before.pages);
    const auto record = json::decodeDocument<LegacyLaunchpadImportMetadata>(
        mac.read(data + u"/legacy-launchpad-import.json"_s));
    ASSERT_TRUE(record);
    EXPECT_EQ(*record, *imported);

    EXPECT_EQ(launcher->editor().history().undoStack().size(), 1);
    EXPECT_EQ(launcher->editor().history().undoStack().last().name, u"Import Launchpad Layout");
    launcher->editor().undo();
    mac.settle();
    EXPECT_EQ(launcher->document(), before);
    EXPECT_EQ(launcher->currentPage(), 1);
    launcher->editor().redo();
    mac.settle();
    EXPECT_EQ(sketched(), u"Elm [Work: Fagus|Dogwood]|Ash|Cedrus");
}

TEST_F(LauncherImportTest, APreviewShowsTheOldArrangementAndChangesNothing) {
    addOldLaunchpad();
    start();
    const LayoutDocument before = launcher->document();
    std::optional<NativeLaunchpadImportResult> found;
    launcher->launchpadImport().preview({}, [&](const auto& result) {
        ASSERT_TRUE(result);
        found = *result;
    });
    mac.settle();
    ASSERT_TRUE(found);
    EXPECT_EQ(sketch(found->pages), u"Elm [Work: Beech|Dogwood]|[Alone: Ash]");
    EXPECT_EQ(found->skippedApps, QStringList({u"Gone"_s, u"Lost"_s}));
    EXPECT_EQ(launcher->document(), before);
    EXPECT_FALSE(mac.exists(data + u"/Backups"_s));
    EXPECT_FALSE(mac.exists(data + u"/legacy-launchpad-import.json"_s));
    EXPECT_FALSE(launcher->editor().history().canUndo());
}

TEST_F(LauncherImportTest, AFailureLeavesTheArrangementAsItWas) {
    start();
    const LayoutDocument before = launcher->document();
    EXPECT_EQ(failure(), u"databaseNotFound");
    mac.write(database, QByteArray(9'000, 'x'));
    EXPECT_EQ(failure(), u"unableToOpenDatabase");
    mac.remove(database);
    addOldLaunchpad();

    auto& import = launcher->launchpadImport();
    QStringList codes;
    const auto keep = [&](const Outcome& outcome) {
        codes += outcome ? u"done"_s : outcome.error().code;
    };
    import.run({}, keep);
    import.run({}, keep);
    import.cancel();
    mac.settle();
    EXPECT_EQ(codes, QStringList({u"importInProgress"_s, u"cancelled"_s}));
    codes.clear();
    import.run({}, keep);
    launcher->setMode(LauncherWindowMode::windowed);
    mac.settle();
    launcher->setMode(LauncherWindowMode::fullScreen);
    EXPECT_EQ(codes, QStringList{u"cancelled"_s});

    // No backup, no import; and when the save fails, the backup is all that came of it.
    mac.write(data + u"/Backups"_s, "in its place");
    EXPECT_FALSE(failure().isEmpty());
    mac.remove(data + u"/Backups"_s);
    mac.remove(data + u"/layout.json"_s);
    mac.makeFolder(data + u"/layout.json/x"_s);
    EXPECT_FALSE(failure().isEmpty());
    EXPECT_EQ(mac.names(data + u"/Backups"_s).size(), 1);
    mac.remove(data + u"/layout.json"_s);

    EXPECT_EQ(launcher->document(), before);
    EXPECT_FALSE(mac.exists(data + u"/legacy-launchpad-import.json"_s));
    EXPECT_FALSE(launcher->editor().history().canUndo());

    launcher.reset();
    EXPECT_EQ(stored(), before) << "nor does what failed come later";
    mac.write(data + u"/layout.json"_s, "damaged");
    start();
    EXPECT_EQ(failure(), u"workingDocumentUnreadable");
}

TEST_F(LauncherImportTest, OffersItselfWithAQuestionAndAReport) {
    addOldLaunchpad();
    start();
    auto& import = launcher->launchpadImport();
    import.offer();
    ASSERT_TRUE(launcher->question());
    EXPECT_EQ(launcher->question()->title, u"Import old Launchpad configuration?");
    launcher->answer(false);
    mac.settle();
    EXPECT_TRUE(launcher->takeAlerts().isEmpty());
    import.offer();
    launcher->answer(true);
    mac.settle();
    const QList<LauncherError> alerts = launcher->takeAlerts();
    ASSERT_EQ(alerts.size(), 1);
    EXPECT_EQ(alerts[0].title, u"Imported old Launchpad configuration");
    EXPECT_TRUE(alerts[0].message.contains(u"2 apps were skipped")) << alerts[0].message.toStdString();
    EXPECT_TRUE(sketched().startsWith(u"Elm [Work"));
}

} // namespace
} // namespace tessellar::test
