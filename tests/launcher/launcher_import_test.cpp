#include "launcher/launcher_import.h"
#include "launcher/layout_proposals.h"

#include "sample/launchpad_database.h"
#include "small_launcher.h"

namespace tessellar::test {
namespace {

using sample::OldFolder;
using sample::OldTile;

OldTile tile(const QString& name) { return {name, u"org.example."_s + name.toLower()}; }

class LauncherImportTest : public SmallLauncher {
protected:
    const QString userFolder = u"/private/var/folders/zz/0/"_s;
    const QString database = userFolder + u"com.apple.dock.launchpad/db/db"_s;

    LauncherImportTest() {
        installAll(u"Ash Beech Cedar Dogwood Elm"_s);
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
        launcher->launchpadImport().run(mode(), {},
                                        [&](Outcome answer) { outcome = std::move(answer); });
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
    Pages arranged = drawn(u"Beech [f: Ash Elm]|Cedar Dogwood");
    arranged[0][0].app()->name = u"Fagus"_s;
    arranged[1][0].app()->name = u"Cedrus"_s;
    store(arranged, {u"org.example.dogwood"_s});
    start();
    launcher->shown().navigation().setCurrentPage(1);
    int previews = 0;
    const LayoutDocument before = launcher->shown().document();

    // A preview shows what the old one held, and changes nothing.
    launcher->launchpadImport().preview(mode(), {}, [&](const auto& found) {
        ASSERT_TRUE(found);
        EXPECT_EQ(sketch(found->pages), u"Elm [Work: Beech|Dogwood]|[Alone: Ash]");
        EXPECT_EQ(found->skippedApps, QStringList({u"Gone"_s, u"Lost"_s}));
        ++previews;
    });
    mac.settle();
    EXPECT_EQ(previews, 1);
    EXPECT_EQ(launcher->shown().document(), before);
    EXPECT_FALSE(mac.exists(data + u"/Backups"_s));
    EXPECT_FALSE(mac.exists(data + u"/legacy-launchpad-import.json"_s));
    EXPECT_TRUE(steps().isEmpty());

    const Outcome imported = run();
    ASSERT_TRUE(imported) << imported.error().message.toStdString();
    // What it did not hold comes on a page of its own, under the user's name for it.
    EXPECT_EQ(sketched(), u"Elm [Work: Fagus|Dogwood]|Ash|Cedrus");
    EXPECT_EQ(launcher->shown().hiddenKeys(), before.hiddenKeys);
    EXPECT_EQ(launcher->shown().navigation().currentPage(), 0);
    EXPECT_EQ(launcher->shown().pages()[1][0].id(), idOf(u"Ash"_s)) << "the same tile elsewhere";
    EXPECT_EQ(stored(), launcher->shown().document());
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

    EXPECT_EQ(steps().size(), 1);
    EXPECT_EQ(steps().last(), u"Import Launchpad Layout");
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(launcher->shown().document(), before);
    EXPECT_EQ(launcher->shown().navigation().currentPage(), 1);
    EXPECT_EQ(redo(), u"done");
    EXPECT_EQ(sketched(), u"Elm [Work: Fagus|Dogwood]|Ash|Cedrus");
}

TEST_F(LauncherImportTest, TakesAVolumeThatIsAwayForWhatWasOnItBefore) {
    install(u"Fern"_s, u"/Volumes/Work/Apps"_s);
    install(u"Moss"_s, u"/Volumes/Work/Apps"_s);
    (void)mac.machine.settings.set(u"appDiscovery.additionalSearchPaths"_s,
                                   QJsonArray{u"/Volumes/Work/Apps"_s});
    start();
    move(u"/Volumes/Work"_s, u"/elsewhere"_s);
    rescan();
    const QSet<QString> away{u"org.example.fern"_s, u"org.example.moss"_s};
    EXPECT_EQ(launcher->shown().unavailableAppKeys(), away);
    sample::addOldLaunchpad(builder, {.pages = {{tile(u"Fern"_s), tile(u"Elm"_s)}}}, database);
    const Outcome outcome = run();
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->unresolvedAppCount, 0);
    EXPECT_EQ(sketched(), u"Fern Elm|Ash Beech Cedar Dogwood Moss");
    EXPECT_EQ(launcher->shown().unavailableAppKeys(), away);
    move(u"/elsewhere"_s, u"/Volumes/Work"_s);
    rescan();
    EXPECT_EQ(sketched(), u"Fern Elm|Ash Beech Cedar Dogwood Moss");
    EXPECT_TRUE(launcher->shown().unavailableAppKeys().isEmpty());
}

TEST_F(LauncherImportTest, AFailureLeavesTheArrangementAsItWas) {
    start();
    const LayoutDocument before = launcher->shown().document();
    EXPECT_EQ(failure(), u"databaseNotFound");
    mac.write(database, QByteArray(9'000, 'x'));
    EXPECT_EQ(failure(), u"unableToOpenDatabase");
    mac.remove(database);
    addOldLaunchpad();

    // The record belongs to it.
    mac.makeFolder(data + u"/legacy-launchpad-import.json/x"_s);
    EXPECT_FALSE(failure().isEmpty());
    EXPECT_EQ(mac.names(data + u"/Backups"_s).size(), 1) << "the backup is all that came of it";
    mac.remove(data + u"/legacy-launchpad-import.json"_s);

    EXPECT_EQ(launcher->shown().document(), before);
    EXPECT_FALSE(mac.exists(data + u"/legacy-launchpad-import.json"_s));
    EXPECT_FALSE(launcher->history().steps().canUndo(mode()));

    EXPECT_TRUE(launcher->quit());
    EXPECT_EQ(stored(), before) << "nor does what failed come later";
    mac.write(layoutFile, "damaged");
    start();
    EXPECT_EQ(failure(), u"workingDocumentUnreadable");
}

TEST_F(LauncherImportTest, GoesToTheModeThatItWasAskedForOneAtATime) {
    addOldLaunchpad();
    start();
    const LayoutDocument other = launcher->layout(windowed).document();
    QStringList codes;
    const auto keep = [&](const Outcome& outcome) { codes += codeOf(outcome); };
    for (int i = 0; i < 2; ++i)
        launcher->launchpadImport().run(fullScreen, {}, keep);
    launcher->layouts().show(windowed);
    mac.settle();
    EXPECT_EQ(codes, QStringList({u"importInProgress"_s, u"done"_s}));
    EXPECT_EQ(launcher->shown().document(), other);
    EXPECT_TRUE(sketch(launcher->layout(fullScreen).pages()).startsWith(u"Elm [Work"));
}

TEST_F(LauncherImportTest, OffersItselfWithAQuestionAndAReport) {
    addOldLaunchpad();
    start();
    auto& import = launcher->launchpadImport();
    import.offer(mode());
    EXPECT_EQ(asked(), u"Import old Launchpad configuration?");
    messages().answer(false);
    mac.settle();
    EXPECT_TRUE(messages().takeAlerts().isEmpty());
    import.offer(mode());
    messages().answer(true);
    mac.settle();
    const QList<LauncherError> told = messages().takeAlerts();
    ASSERT_EQ(told.size(), 1);
    EXPECT_EQ(told[0].title, u"Imported old Launchpad configuration");
    EXPECT_TRUE(told[0].message.contains(u"2 apps were skipped")) << told[0].message.toStdString();
    EXPECT_TRUE(sketched().startsWith(u"Elm [Work"));
}

TEST_F(LauncherImportTest, IsOneOfTheWaysToBeginAndTheOthersKeepWhatIsTheUsersOwn) {
    using Kind = LayoutProposal::Kind;
    LayoutProposals::All all;
    const auto propose = [&] {
        launcher->proposals().propose(mode(), [&](const LayoutProposals::All& found) { all = found; });
        mac.settle();
        return all.proposals.size();
    };
    start();
    EXPECT_TRUE(launcher->proposals().isUnarranged());
    EXPECT_EQ(propose(), 2);
    EXPECT_FALSE(all.importFailure) << "there is no old Launchpad";
    mac.write(database, "no database");
    EXPECT_EQ(propose(), 2);
    EXPECT_TRUE(all.importFailure);
    ASSERT_TRUE(mac.files.remove(database));
    addOldLaunchpad();

    Pages arranged = drawn(u"Cedar [f: Ash Elm]");
    arranged[0][0].app()->name = u"Cedrus"_s;
    store(arranged, {u"org.example.dogwood"_s});
    start();
    EXPECT_FALSE(launcher->proposals().isUnarranged());
    ASSERT_TRUE(editor().addSmartFolder(mode(), SmartFolderTemplate::updatesAvailable));
    const LayoutDocument before = launcher->shown().document();
    ASSERT_EQ(propose(), 3);
    EXPECT_EQ(all.proposals[0].kind, Kind::oldLaunchpad);
    EXPECT_EQ(sketch(all.proposals[0].pages), u"Elm [Work: Beech|Dogwood]|[Alone: Ash]");
    const QString text = explanation(all.proposals[0]);
    EXPECT_TRUE(text.contains(u"Skipped: Gone, Lost\n1 other application comes on a new page"))
        << text.toStdString();

    EXPECT_TRUE(text.endsWith(u"Smart Folders lose their tiles, which can be added again."));

    // What is renamed while it is worked out is taken with its new name.
    const auto take = [&](const LayoutProposal& proposal, const std::function<void()>& meanwhile) {
        std::optional<LayoutProposals::Outcome> outcome;
        launcher->proposals().take({mode()}, proposal,
                                   [&](const LayoutProposals::Outcome& taken) { outcome = taken; });
        meanwhile();
        mac.settle();
        return outcome && *outcome;
    };
    LayoutDocument renamed;
    ASSERT_TRUE(take(all.proposals[2], [&] {
        const QUuid elm = launcher->shown().tileOf(u"org.example.elm"_s)->id;
        ASSERT_TRUE(editor().rename(mode(), elm, u"Ulmus"_s));
        renamed = launcher->shown().document();
    }));
    EXPECT_EQ(sketched(), u"* Ash Beech Cedrus Dogwood Ulmus");
    EXPECT_EQ(launcher->shown().hiddenKeys(), before.hiddenKeys);
    EXPECT_EQ(stored(), launcher->shown().document());
    EXPECT_EQ(mac.names(data + u"/Backups"_s).size(), 1);
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(launcher->shown().document(), renamed);
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(launcher->shown().document(), before);

    // Two at once come one after the other.
    bool isOtherTaken = false;
    ASSERT_TRUE(take(all.proposals[0], [&] {
        launcher->proposals().take(
            {mode()}, all.proposals[2],
            [&](const LayoutProposals::Outcome& taken) { isOtherTaken = taken.has_value(); });
    }));
    EXPECT_TRUE(isOtherTaken);
    EXPECT_EQ(stored(), launcher->shown().document());
    EXPECT_EQ(undo(), u"done");
    EXPECT_NE(launcher->shown().document(), before);
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(launcher->shown().document(), before);

    ASSERT_TRUE(take(all.proposals[0], [] {}));
    EXPECT_EQ(sketched(), u"Elm [Work: Beech|Dogwood]|Ash|Cedrus");
    EXPECT_EQ(alerts(&LauncherError::title).value(0), u"Imported old Launchpad configuration");
}

} // namespace
} // namespace tessellar::test
