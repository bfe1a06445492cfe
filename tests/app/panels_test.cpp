#include "app/alert_panel.h"
#include "app/backups_panel.h"
#include "app/past_removals_panel.h"
#include "launcher/launcher_cleanup.h"
#include "launcher/layout_archive.h"
#include "launcher/small_launcher.h"
#include "launcher_fixture.h"

#include <QCoreApplication>

namespace tessellar::test {
namespace {

/// What the window's parts say, without a window.
class PanelsTest : public SmallLauncher {
protected:
    PanelsTest() {
        install(u"Ash"_s);
        install(u"Oak"_s);
    }
};

TEST_F(PanelsTest, BackupsAreListedAndRestoredAfterAQuestion) {
    store({{folder(u"Trees"_s, {{app(u"Oak"_s), app(u"Ash"_s)}})}});
    start();
    BackupsPanel panel(*launcher);
    panel.refresh();
    mac.settle();
    EXPECT_EQ(panel.summary(), u"There are no backups yet.");
    ASSERT_TRUE(launcher->archive().reset(LauncherWindowMode::fullScreen));
    panel.refresh();
    EXPECT_TRUE(panel.backups().isEmpty());
    mac.settle();
    EXPECT_EQ(panel.summary(), QString());
    ASSERT_EQ(panel.backups().size(), 1);
    const QVariantMap row = panel.backups().first().toMap();
    EXPECT_EQ(row[u"text"_s], u"Before the layout was reset · 2 applications, 1 folder, 1 page"_s);
    for (const bool isWanted : {false, true}) {
        EXPECT_EQ(sketched(), u"Ash Oak");
        panel.restore(row[u"name"_s].toString());
        ASSERT_TRUE(launcher->messages().question());
        EXPECT_TRUE(launcher->messages().question()->title.contains(row[u"title"_s].toString()));
        launcher->messages().answer(isWanted);
        mac.settle();
    }
    EXPECT_EQ(sketched(), u"[Trees: Oak Ash]");
    time.advance(1s);
    launcher->archive().arrange(
        mode(), [] { return [] { return Pages(); }; }, {}, [](const auto&) {});
    mac.settle();
    panel.refresh();
    mac.settle();
    QStringList texts;
    for (const QVariant& backup : panel.backups())
        texts += backup.toMap()[u"text"_s].toString().section(u" · "_s, 0, 0);
    EXPECT_EQ(texts,
              (QStringList{u"Before the applications were arranged"_s,
                           u"Before a backup was restored"_s, u"Before the layout was reset"_s}));
}

TEST_F(PanelsTest, AlertsOfferTheWayOut) {
    start();
    AlertPanel alert(*launcher);
    const auto rename = [&](const QString& name) {
        const QUuid oak = launcher->shown().tileOf(u"org.example.oak"_s)->id;
        ASSERT_TRUE(editor().rename(mode(), oak, name));
        time.advance(1s);
        mac.settle();
    };
    const QByteArray kept = mac.read(layoutFile);
    block(layoutFile);
    rename(u"Elm"_s);
    rename(u"Fir"_s);
    alert.refresh();
    EXPECT_EQ(alert.title(), u"Could not save the layout");
    EXPECT_EQ(alert.accept(), u"Try Again");
    alert.answer(true);
    mac.settle();
    alert.refresh();
    EXPECT_EQ(alert.accept(), u"Try Again") << "it is not there yet";
    mac.remove(layoutFile);
    mac.write(layoutFile, kept);
    alert.answer(true);
    mac.settle();
    alert.refresh();
    EXPECT_FALSE(alert.isOpen());
    EXPECT_EQ(sketch(stored().pages), u"Ash Fir");
}

/// What the review of a removal says and does, without a window.
class RemovalPanelTest : public SmallLauncher {
protected:
    RemovalPanelTest() {
        install(u"Ash"_s);
        mac.write(preferences, "12345");
    }
    void review() {
        start();
        panel = std::make_unique<RemovalPanel>(*launcher);
        subscription = launcher->cleanup().changed.connect([&] { panel->refresh(); });
        launcher->cleanup().open(u"org.example.ash"_s);
    }
    void turn() {
        mac.settle();
        QCoreApplication::sendPostedEvents(panel.get());
    }
    void press(int key, bool withControl = false) {
        panel->pressKey(key, withControl);
        turn();
    }
    QVariant value(RemovalItems::Role role) {
        return panel->items()->data(panel->items()->index(1), role);
    }

    const QString library = mac.machine.places.home + u"/Library/"_s;
    const QString preferences = library + u"Preferences/org.example.ash.plist"_s;
    std::unique_ptr<RemovalPanel> panel;
    Subscription subscription;
};

TEST_F(RemovalPanelTest, AReviewIsReadAndChosenFromByKeyboard) {
    mac.makeFolder(library + u"Application Support/Ash"_s);
    mac.tool(u"/usr/bin/open"_s, exited(0));
    review();
    const QSignalSpy reset(panel->items(), &QAbstractItemModel::modelReset);
    const QSignalSpy rows(panel->items(), &QAbstractItemModel::dataChanged);
    press(Qt::Key_Down); // nothing yet: a turn for the scan
    ASSERT_EQ(panel->items()->rowCount(), 3);
    EXPECT_EQ(value(RemovalItems::FolderRole), library + u"Application Support"_s);
    EXPECT_NE(value(RemovalItems::SizeRole), u"…"_s);
    EXPECT_EQ(panel->staying(), u"1 item will stay");
    EXPECT_FALSE(panel->isAllSelected());

    const qsizetype before = rows.count();
    for (const Qt::Key key : {Qt::Key_Home, Qt::Key_Down, Qt::Key_Space})
        press(key);
    ASSERT_EQ(rows.count(), before + 1);
    EXPECT_EQ(rows.last().at(0).toModelIndex().row(), 1);
    EXPECT_EQ(rows.last().at(2).value<QList<int>>(), QList<int>{RemovalItems::SelectedRole});
    EXPECT_TRUE(panel->isAllSelected());
    EXPECT_EQ(panel->staying(), QString());
    press(Qt::Key_R, true);
    EXPECT_EQ(mac.commands.commands().last().arguments,
              (QList<QByteArray>{"-R", mac.hostPath(library + u"Application Support/Ash"_s).toUtf8()}));
    press(Qt::Key_A, true);
    EXPECT_FALSE(panel->canRemove());
    press(Qt::Key_Backspace, true);
    EXPECT_EQ(panel->phase(), u"review") << "nothing is chosen";
    press(Qt::Key_End);
    press(Qt::Key_Down);
    EXPECT_EQ(panel->currentRow(), 2);
    press(Qt::Key_Space);
    EXPECT_TRUE(panel->total().startsWith(u"1 item,"));
    EXPECT_EQ(reset.count(), 1) << "sizes and choices change rows, and the list stays where it is";
    press(Qt::Key_Backspace, true);
    EXPECT_EQ(panel->phase(), u"done");
    EXPECT_FALSE(mac.exists(preferences));
    panel->pressKey(Qt::Key_Return, false);
    EXPECT_FALSE(panel->isOpen());
    EXPECT_EQ(panel->items()->rowCount(), 3);
    EXPECT_EQ(value(RemovalItems::NameRole), QVariant()) << "gone, though nobody was told yet";
    turn();
    EXPECT_EQ(panel->items()->rowCount(), 0);

    // Once more, after a restart.
    subscription = {};
    panel.reset();
    start();
    PastRemovalsPanel past(*launcher);
    const auto following = launcher->cleanup().changed.connect([&] { past.refresh(); });
    past.open();
    mac.settle();
    ASSERT_EQ(past.removals().size(), 1);
    const QVariantMap removal = past.removals().first().toMap();
    EXPECT_EQ(removal[u"name"_s], u"Ash"_s);
    EXPECT_EQ(removal[u"canPutBack"_s], true);
    past.putBack(removal[u"id"_s].toString());
    mac.settle();
    EXPECT_TRUE(mac.exists(preferences));
    EXPECT_EQ(past.removals().first().toMap()[u"canPutBack"_s], false);
}

/// The same in the window.
using RemovalSheetTest = LauncherFixture;

TEST_F(RemovalSheetTest, AnApplicationIsMovedToTheTrashAndPutBack) {
    const QString leftover = mac.machine.places.home + u"/Library/Preferences/org.example.ash.plist"_s;
    mac.write(leftover, "x");
    mac.tool(u"/bin/ps"_s, exited(0));
    install({u"Ash"_s});
    start();
    chooseAt(u"Ash"_s, u"Move to Trash…"_s);
    const RemovalPanel& removal = *panels().removal();
    const RemovalItems& items = *panels().removal()->items();
    ASSERT_TRUE(QTest::qWaitFor([&] { return items.rowCount() == 2; }));
    const auto isChosen = [&] {
        return items.data(items.index(1), RemovalItems::SelectedRole).toBool();
    };
    EXPECT_TRUE(isChosen());
    clickNamed(u"removalItem"_s); // the last of them
    EXPECT_TRUE(QTest::qWaitFor([&] { return !isChosen(); }));
    clickNamed(u"removalItem"_s);
    EXPECT_TRUE(QTest::qWaitFor(isChosen));
    clickNamed(u"removalAccept"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return removal.phase() == u"done"; }));
    EXPECT_FALSE(mac.exists(leftover));
    EXPECT_FALSE(tile(u"Ash"_s));
    clickNamed(u"removalRestore"_s);
    EXPECT_TRUE(isSeen(u"Ash"_s));
    EXPECT_TRUE(mac.exists(leftover));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !removal.isOpen(); }));
}

} // namespace
} // namespace tessellar::test
