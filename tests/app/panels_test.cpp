#include "app/alert_panel.h"
#include "app/backups_panel.h"
#include "app/past_removals_panel.h"
#include "app/removal_panel.h"
#include "app/tile_search.h"
#include "app/updates_panel.h"
#include "launcher/launcher_cleanup.h"
#include "launcher/launcher_editor.h"
#include "launcher/launcher_messages.h"
#include "launcher/launcher_search.h"
#include "launcher/launcher_updates.h"
#include "launcher/layout_archive.h"
#include "launcher/small_launcher.h"

#include <QCoreApplication>
#include <QSignalSpy>

#include <gmock/gmock.h>

namespace tessellar::test {
namespace {

/// What the window's parts say, without a window.
class PanelsTest : public SmallLauncher {
protected:
    QStringList found(TileSearch& search) {
        QStringList labels;
        if (const PageModel* page = search.results()->tilesOf(search.results()->page()))
            for (const TileView& tile : page->tiles())
                labels += tile.label;
        return labels;
    }
};

TEST_F(PanelsTest, AllThatIsFoundIsReachedByPagingInTheOrderOfTheIndex) {
    for (int i = 0; i < 90; ++i)
        install(u"App %1"_s.arg(i, 2, 10, QLatin1Char('0')));
    install(u"Zebra"_s);
    int asked = 0;
    TileSearch search(start(),
                      {.isUnavailable = {},
                       .badge =
                           [&](const QString&) {
                               ++asked;
                               return QString();
                           },
                       .smartFolder = {}},
                      mac.machine);
    const QSignalSpy changed(&search, &TileSearch::changed);
    search.setText(u"app"_s);
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(search.results()->pageCount(), 3);
    QStringList all = found(search);
    EXPECT_EQ(asked, 40) << "only the page that is seen is made";
    EXPECT_EQ(search.selected(), QUuid::fromString(search.results()->tilesOf(0)->tiles().first().id))
        << "the best one is selected";
    for (const int page : {1, 2}) {
        search.results()->turnTo(page);
        all += found(search);
    }
    QStringList expected;
    for (const SearchIndex::Hit& hit : launcher->search().search(launcher->shown().mode(), u"app"_s))
        expected += hit.entry->name;
    EXPECT_EQ(all.size(), 90);
    EXPECT_EQ(all, expected);
    search.results()->turnTo(7);
    EXPECT_EQ(search.results()->page(), 2) << "the nearest there is";

    search.setText(u"app 0"_s);
    EXPECT_EQ(search.results()->page(), 0) << "another query begins at its best";
    search.setText(u"  "_s);
    EXPECT_FALSE(search.isActive()) << "blanks are no query";
    EXPECT_EQ(search.results()->pageCount(), 0);
    search.setText(u"nothing"_s);
    EXPECT_TRUE(search.isActive());
    EXPECT_EQ(search.selected(), std::nullopt);
}

TEST_F(PanelsTest, ASearchFollowsTheScan) {
    install(u"Ash"_s);
    TileSearch search(start(), {}, mac.machine);
    search.setText(u"as"_s);
    EXPECT_EQ(found(search), QStringList{u"Ash"_s});
    install(u"Aspen"_s);
    rescan();
    search.refresh();
    EXPECT_EQ(found(search), (QStringList{u"Ash"_s, u"Aspen"_s}));
}

TEST_F(PanelsTest, ItemsOfARemovalChangeRowByRow) {
    install(u"Ash"_s);
    mac.write(mac.machine.places.home + u"/Library/Preferences/org.example.ash.plist"_s, "12345");
    start();
    RemovalPanel panel(*launcher);
    const auto subscription = launcher->cleanup().changed.connect([&] { panel.refresh(); });
    RemovalItems& items = *panel.items();
    const QSignalSpy reset(&items, &QAbstractItemModel::modelReset);
    const QSignalSpy rows(&items, &QAbstractItemModel::dataChanged);
    const auto turn = [&] {
        mac.settle();
        QCoreApplication::sendPostedEvents(&panel);
    };
    launcher->cleanup().open(u"org.example.ash"_s);
    turn();
    ASSERT_EQ(panel.phase(), u"review");
    ASSERT_EQ(items.rowCount(), 2);
    EXPECT_EQ(reset.count(), 1) << "sizes that come in change rows";
    const auto value = [&](RemovalItems::Role role) { return items.data(items.index(1), role); };
    EXPECT_EQ(value(RemovalItems::NameRole), u"org.example.ash.plist"_s);
    EXPECT_NE(value(RemovalItems::SizeRole), u"…"_s);
    EXPECT_EQ(value(RemovalItems::SelectedRole), true);

    const qsizetype before = rows.count();
    panel.select(value(RemovalItems::PathRole).toString(), false);
    turn();
    EXPECT_EQ(value(RemovalItems::SelectedRole), false);
    ASSERT_EQ(rows.count(), before + 1);
    EXPECT_EQ(rows.last().at(0).toModelIndex().row(), 1);
    EXPECT_EQ(rows.last().at(2).value<QList<int>>(), QList<int>{RemovalItems::SelectedRole});

    panel.cancel();
    EXPECT_EQ(items.data(items.index(1), RemovalItems::NameRole), QVariant())
        << "gone, though nobody was told yet";
    turn();
    EXPECT_EQ(items.rowCount(), 0);
    EXPECT_EQ(reset.count(), 2);
}

TEST_F(PanelsTest, AReviewIsReadAndChosenFromByKeyboard) {
    install(u"Ash"_s);
    const QString library = mac.machine.places.home + u"/Library/"_s;
    mac.write(library + u"Preferences/org.example.ash.plist"_s, "12345");
    mac.makeFolder(library + u"Application Support/Ash"_s);
    QList<QByteArray> shown;
    mac.tool(u"/usr/bin/open"_s, [&](const Command& command, std::stop_token) {
        shown = command.arguments;
        return exited(0);
    });
    start();
    RemovalPanel panel(*launcher);
    const auto subscription = launcher->cleanup().changed.connect([&] { panel.refresh(); });
    RemovalItems& items = *panel.items();
    const auto press = [&](int key, bool withControl = false) {
        panel.pressKey(key, withControl);
        mac.settle();
        QCoreApplication::sendPostedEvents(&panel);
    };
    launcher->cleanup().open(u"org.example.ash"_s);
    press(Qt::Key_Down); // nothing yet: a turn for the scan
    ASSERT_EQ(items.rowCount(), 3);
    EXPECT_EQ(items.data(items.index(1), RemovalItems::FolderRole), library + u"Application Support"_s);
    EXPECT_EQ(panel.staying(), u"1 item will stay");
    EXPECT_FALSE(panel.isAllSelected());

    press(Qt::Key_Home);
    press(Qt::Key_Down);
    press(Qt::Key_Space);
    EXPECT_TRUE(panel.isAllSelected());
    EXPECT_EQ(panel.staying(), QString());
    press(Qt::Key_R, true);
    EXPECT_EQ(shown,
              (QList<QByteArray>{"-R", mac.hostPath(library + u"Application Support/Ash"_s).toUtf8()}));
    press(Qt::Key_A, true);
    EXPECT_FALSE(panel.canRemove());
    press(Qt::Key_Backspace, true);
    EXPECT_EQ(panel.phase(), u"review") << "nothing is chosen";
    press(Qt::Key_End);
    press(Qt::Key_Down);
    EXPECT_EQ(panel.currentRow(), 2);
    press(Qt::Key_Space);
    EXPECT_TRUE(panel.total().startsWith(u"1 item,"));
    press(Qt::Key_Backspace, true);
    EXPECT_EQ(panel.phase(), u"done");
    EXPECT_FALSE(mac.exists(library + u"Preferences/org.example.ash.plist"_s));
    press(Qt::Key_Return);
    EXPECT_FALSE(panel.isOpen());

    // Once more, after a restart.
    start();
    PastRemovalsPanel past(*launcher);
    const auto following = launcher->cleanup().changed.connect([&] { past.refresh(); });
    past.open();
    mac.settle();
    ASSERT_EQ(past.removals().size(), 1);
    EXPECT_EQ(past.removals().first().toMap()[u"name"_s], u"Ash"_s);
    EXPECT_EQ(past.removals().first().toMap()[u"canPutBack"_s], true);
    past.putBack(past.removals().first().toMap()[u"id"_s].toString());
    mac.settle();
    EXPECT_TRUE(mac.exists(library + u"Preferences/org.example.ash.plist"_s));
    EXPECT_EQ(past.removals().first().toMap()[u"canPutBack"_s], false);
}

TEST_F(PanelsTest, TheIntervalOfChecksIsChosenFromFour) {
    start();
    UpdatesPanel panel(*launcher);
    const auto chosen = [&] {
        for (const QVariant& interval : panel.intervals())
            if (interval.toMap()[u"isChosen"_s].toBool())
                return interval.toMap()[u"title"_s].toString();
        return QString();
    };
    panel.chooseInterval(7 * 24 * 3600);
    EXPECT_EQ(chosen(), u"Week");
    panel.chooseInterval(5);
    EXPECT_EQ(chosen(), u"Week") << "no such interval";
    panel.stepInterval(1);
    EXPECT_EQ(chosen(), u"Week");
    panel.stepInterval(-1);
    EXPECT_EQ(chosen(), u"3 Days");
}

TEST_F(PanelsTest, BackupsAreListedAndRestoredAfterAQuestion) {
    install(u"Ash"_s);
    install(u"Oak"_s);
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
    panel.refresh();
    mac.settle();
    EXPECT_EQ(panel.backups().first().toMap()[u"text"_s],
              u"Before a backup was restored · 2 applications, 1 page"_s);
}

TEST_F(PanelsTest, AlertsOfferTheWayOut) {
    install(u"Ash"_s);
    install(u"Oak"_s);
    mac.write(data + u"/layout.json"_s, "no layout");
    start();
    AlertPanel alert(*launcher);
    alert.refresh();
    EXPECT_EQ(alert.title(), u"Reset the Launchpad layout?");
    EXPECT_EQ(alert.accept(), u"Reset");
    EXPECT_FALSE(alert.isAcceptDefault());
    alert.answer(true);
    EXPECT_EQ(sketched(), u"Ash Oak");

    const auto block = [&](bool isBlocked) { // every name that a save may take for a while
        for (int i = 0; i < 64; ++i) {
            const QString path = data + u"/.tessellar-save-%1"_s.arg(i);
            isBlocked ? mac.makeFolder(path) : mac.remove(path);
        }
    };
    const auto rename = [&](const QString& name) {
        const QUuid oak = launcher->shown().tileOf(u"org.example.oak"_s)->id;
        ASSERT_TRUE(launcher->editor().rename(launcher->shown().mode(), oak, name));
        time.advance(1s);
        mac.settle();
    };
    block(true);
    rename(u"Elm"_s);
    rename(u"Fir"_s);
    alert.refresh();
    EXPECT_EQ(alert.title(), u"Could not save the layout");
    EXPECT_EQ(alert.accept(), u"Try Again");
    alert.answer(true);
    mac.settle();
    alert.refresh();
    EXPECT_EQ(alert.accept(), u"Try Again") << "it is not there yet";
    block(false);
    alert.answer(true);
    mac.settle();
    alert.refresh();
    EXPECT_FALSE(alert.isOpen());
    EXPECT_EQ(sketch(stored().pages), u"Ash Fir");
}

} // namespace
} // namespace tessellar::test
