#include "app/grid_model.h"

#include "app/icon_requests.h"

#include "support/items.h"
#include "support/printers.h"

#include <QSignalSpy>

#include <gmock/gmock.h>

namespace tessellar::test {
namespace {

using namespace Qt::StringLiterals;

TEST(GridModel, SaysWhatATileShows) {
    FolderEntry trees =
        folder(u"Trees"_s, {{app(u"Ash"_s), folder(u"Inner"_s, {{app(u"Elm"_s), app(u"Fir"_s)}})}});
    trees.customSymbolName = u"star"_s;
    GridModel model({.isUnavailable = [](const QString& key) { return key == u"org.example.oak"; },
                     .badge = [](const QString& key) { return key.right(3); },
                     .smartFolder =
                         [](const QUuid&) {
                             return TileFacts::SmartFolder{.name = u"Large"_s,
                                                           .symbolName = u"moon"_s,
                                                           .icons = {iconRequest(app(u"Elm"_s))},
                                                           .count = 2000};
                         }});
    model.setPages(
        ShownPages({{app(u"Oak"_s), trees, SmartFolderReference{idOf(u"smart"_s)}}}, {}, 40));
    ASSERT_EQ(model.pageCount(), 1);
    PageModel& page = *model.tilesOf(0);
    const auto keys = [&](int row) { return page.data(page.index(row), PageModel::AppKeysRole); };
    const QList<TileView>& tiles = page.tiles();
    ASSERT_EQ(tiles.size(), 3);
    EXPECT_EQ(tiles[0].label, u"Oak");
    EXPECT_EQ(keys(0), QStringList{u"org.example.oak"_s});
    EXPECT_TRUE(tiles[0].isUnavailable);
    EXPECT_EQ(tiles[0].badge, u"oak");
    EXPECT_EQ(tiles[1].kind, IconItem::Folder);
    EXPECT_EQ(keys(1), (QStringList{u"org.example.ash"_s, u"org.example.elm"_s}));
    EXPECT_EQ(tiles[1].symbolName, u"star");
    EXPECT_EQ(tiles[2].kind, IconItem::SmartFolder);
    EXPECT_EQ(tiles[2].label, u"Large");
    EXPECT_EQ(keys(2), QStringList{u"org.example.elm"_s});
    EXPECT_EQ(tiles[2].symbolName, u"moon");
    EXPECT_EQ(tiles[2].badge, u"2000");
    EXPECT_EQ(model.tilesOf(1), nullptr);
}

TEST(GridModel, ReportsOnlyTheTilesThatChanged) {
    GridModel model({});
    const auto show = [&](const Pages& pages) { model.setPages(ShownPages(pages, {}, 40)); };
    show({{app(u"Ash"_s), app(u"Elm"_s), app(u"Oak"_s)}});
    QSignalSpy changed(model.tilesOf(0), &PageModel::dataChanged);
    QSignalSpy inserted(model.tilesOf(0), &PageModel::rowsInserted);
    QSignalSpy removed(model.tilesOf(0), &PageModel::rowsRemoved);
    QSignalSpy counted(&model, &GridModel::pageCountChanged);
    ASSERT_EQ(model.tilesOf(0)->rowCount(), 3);
    show({{app(u"Ash"_s), app(u"Fir"_s), app(u"Oak"_s), app(u"Yew"_s)}});
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed[0][0].toModelIndex().row(), 1);
    EXPECT_FALSE(changed[0][2].value<QList<int>>().contains(PageModel::BadgeRole));
    ASSERT_EQ(inserted.count(), 1);
    EXPECT_EQ(inserted[0][1].toInt(), 3);
    show({{app(u"Ash"_s)}, {app(u"Fir"_s)}});
    EXPECT_EQ(removed.count(), 1);
    EXPECT_EQ(counted.count(), 1);
    EXPECT_EQ(model.tilesOf(0)->rowCount(), 1);
    model.setHasNewPage(true);
    show({{app(u"Ash"_s), app(u"Elm"_s)}});
    EXPECT_EQ(model.pageCount(), 2) << "the new page stays when pages change under it";
    EXPECT_EQ(model.tilesOf(1)->rowCount(), 0);
}

TEST(GridModel, RowsGoWithTheirTiles) {
    GridModel model({});
    const auto show = [&](const QStringList& names) {
        Page tiles;
        for (const QString& name : names)
            tiles.append(app(name));
        model.setPages(ShownPages({tiles}, {}, 40));
    };
    const QStringList all{u"A"_s, u"B"_s, u"C"_s, u"D"_s, u"E"_s};
    show(all);
    PageModel& page = *model.tilesOf(0);
    ASSERT_EQ(page.rowCount(), 5);
    QSignalSpy changed(&page, &PageModel::dataChanged);
    QSignalSpy moved(&page, &PageModel::rowsMoved);
    QSignalSpy inserted(&page, &PageModel::rowsInserted);
    const QPersistentModelIndex held = page.index(2);
    const auto labels = [&] {
        QStringList result;
        for (int row = 0; row < page.rowCount(); ++row)
            result += page.data(page.index(row), PageModel::LabelRole).toString();
        return result;
    };
    const auto expect = [&](const QStringList& names, int moves, int changes) {
        moved.clear();
        changed.clear();
        show(names);
        EXPECT_EQ(labels(), names);
        EXPECT_EQ(moved.count(), moves) << names.join(u' ').toStdString();
        EXPECT_EQ(changed.count(), changes) << names.join(u' ').toStdString();
    };
    expect({u"B"_s, u"C"_s, u"D"_s, u"E"_s, u"A"_s}, 1, 0);
    EXPECT_EQ(held.row(), 1);
    expect(all, 1, 0);
    expect({u"A"_s, u"X"_s, u"B"_s, u"C"_s, u"D"_s}, 1, 1); // E makes room
    expect({u"A"_s, u"B"_s, u"C"_s, u"D"_s, u"E"_s}, 1, 1); // and returns
    expect({u"B"_s, u"C"_s, u"D"_s, u"E"_s}, 0, 0);
    expect(all, 1, 0);
    EXPECT_EQ(inserted.count(), 1);
    expect({u"E"_s, u"C"_s, u"A"_s, u"D"_s, u"B"_s}, 3, 0);
    EXPECT_EQ(held.row(), 1) << "it is still where C is";
}

/// What a letter more or less changes is how many tiles there are: their items are not made anew.
TEST(GridModel, KeptPagesKeepTheirRows) {
    GridModel model({});
    model.keepPages(2, 3);
    EXPECT_EQ(model.pageCount(), 0);
    ASSERT_EQ(model.tilesOf(0)->rowCount(), 3);
    QSignalSpy changed(model.tilesOf(0), &PageModel::dataChanged);
    QSignalSpy inserted(model.tilesOf(0), &PageModel::rowsInserted);
    QSignalSpy removed(model.tilesOf(0), &PageModel::rowsRemoved);
    const ShownPages pages({{app(u"Ash"_s), app(u"Elm"_s)}}, {}, 40);
    model.setPages(pages);
    EXPECT_EQ(model.pageCount(), 1);
    EXPECT_EQ(changed.count(), 2);
    model.setPages({});
    ASSERT_EQ(changed.count(), 4);
    EXPECT_EQ(changed[2][2].value<QList<int>>(), QList<int>{PageModel::VacantRole});
    model.setPages(pages);
    EXPECT_EQ(changed.count(), 6);
    EXPECT_FALSE(model.tilesOf(0)->tiles().at(1).isVacant);
    EXPECT_TRUE(model.tilesOf(0)->tiles().at(2).isVacant);
    EXPECT_EQ(inserted.count() + removed.count(), 0);
}

TEST(GridModel, FillsAPageWhenItIsLookedAt) {
    int asked = 0;
    GridModel model({.isUnavailable = {},
                     .badge = [&](const QString&) { return QString::number(++asked); },
                     .smartFolder = {}});
    const ShownPages pages({{app(u"Ash"_s)}, {app(u"Elm"_s), app(u"Fir"_s)}}, {}, 40);
    model.setPages(pages);
    EXPECT_EQ(asked, 0);
    EXPECT_EQ(model.tilesOf(1)->rowCount(), 2);
    EXPECT_EQ(asked, 2);
    model.setPages(pages);
    EXPECT_EQ(asked, 2) << "nobody watches that page";
    EXPECT_EQ(model.tilesOf(1)->tiles().last().badge, u"4") << "yet what it says is so now";
    const QSignalSpy watcher(model.tilesOf(1), &PageModel::dataChanged);
    model.refresh();
    EXPECT_EQ(asked, 6);
    EXPECT_EQ(watcher.count(), 2);
}

} // namespace
} // namespace tessellar::test
