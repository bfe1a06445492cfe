#include "app/grid_metrics.h"
#include "app/grid_model.h"
#include "app/icon_requests.h"
#include "app/tile_navigation.h"
#include "support/items.h"
#include "support/printers.h"

#include <QSignalSpy>

#include <gmock/gmock.h>

namespace tessellar::test {
namespace {

using namespace Qt::StringLiterals;

/// A page of applications with names of one letter.
Page tiles(const QString& names) {
    Page page;
    for (const QChar name : names)
        page.append(app(name));
    return page;
}

/// The icon with its label lies in its cell, and the cells lie in the window.
void expectFits(const GridMetrics& metrics, int columns, int rows, QSizeF area, const char* what) {
    EXPECT_GE(metrics.iconSide, 16) << what;
    EXPECT_LE(metrics.iconSide, metrics.cellWidth) << what;
    EXPECT_LE(metrics.iconSide + metrics.labelPixels, metrics.cellHeight) << what;
    EXPECT_GE(metrics.left, 0) << what;
    EXPECT_LE(metrics.left + metrics.cellWidth * columns, area.width()) << what;
    EXPECT_LE(metrics.top + metrics.cellHeight * rows, area.height()) << what;
}

TEST(GridMetrics, FitEverySettingOnEveryScreen) {
    for (const QSizeF screen :
         {QSizeF(1024, 640), QSizeF(1440, 900), QSizeF(3440, 1440), QSizeF(900, 1440)}) {
        for (const int rows : {3, 5, 9}) {
            for (const int columns : {4, 8, 10}) {
                for (const double scale : {0.8, 1.0, 1.2}) {
                    ArrangementLayout layout;
                    layout.rows = rows;
                    layout.columns = columns;
                    layout.iconScale = scale;
                    const GridMetrics full = fullScreenMetrics(screen, pageGeometry(layout), {});
                    expectFits(full, columns, rows, screen, "full screen");
                    expectFits(windowedMetrics(screen, layout), columns, rows, screen, "in a window");
                    for (const auto& [tiles, pages] :
                         {std::pair(0, 1), std::pair(7, 1), std::pair(15, 3)}) {
                        const FolderMetrics folder = folderMetrics(screen, full, layout, tiles, pages);
                        EXPECT_TRUE(QRectF({}, screen).contains(folder.panel));
                        const int used =
                            std::max(1, (tiles + folder.grid.columns - 1) / folder.grid.columns);
                        expectFits(folder.grid, folder.grid.columns, used, folder.panel.size(),
                                   "in a folder");
                    }
                }
            }
        }
    }
}

TEST(GridMetrics, AWindowHasTheSizesOfTheSettings) {
    ArrangementLayout layout;
    layout.columns = 7;
    EXPECT_EQ(windowedMetrics(windowedSize(layout), layout).iconSide, 64);
    layout.windowedIconSize = 96;
    layout.windowedHorizontalSpacing = 60;
    const GridMetrics wide = windowedMetrics(windowedSize(layout), layout);
    EXPECT_EQ(wide.iconSide, 96);
    EXPECT_EQ(wide.cellWidth, 156);
    layout.windowSize = WindowSize{800, 600};
    EXPECT_EQ(windowedSize(layout), QSizeF(800, 600));
}

TEST(GridMetrics, AScaleIsSeenUnlessThereIsNoRoom) {
    const QSizeF screen(1440, 900);
    const int small = fullScreenMetrics(screen, {5, 8, 0.8}, {}).iconSide;
    const int normal = fullScreenMetrics(screen, {5, 8, 1.0}, {}).iconSide;
    const int large = fullScreenMetrics(screen, {5, 8, 1.2}, {}).iconSide;
    EXPECT_LT(small, normal);
    EXPECT_LT(normal, large);
    EXPECT_EQ(fullScreenMetrics(screen, {5, 8, 1.0}, 20.0).labelPixels, 20);
}

TEST(GridModel, SaysWhatATileShows) {
    FolderEntry trees = folder(u"Trees"_s, {{app(u"a"_s), folder(u"Inner"_s, {tiles(u"ef"_s)})}});
    trees.customSymbolName = u"star"_s;
    const TileFacts::SmartFolder large{.name = u"Large"_s,
                                       .symbolName = u"moon"_s,
                                       .icons = {iconRequest(app(u"e"_s))},
                                       .count = 2000};
    GridModel model({.isUnavailable = [](const QString& key) { return key == u"org.example.o"; },
                     .badge = [](const QString& key) { return key.right(3); },
                     .smartFolder = [&](const QUuid&) { return large; }});
    model.setPages(ShownPages({{app(u"o"_s), trees, SmartFolderReference{idOf(u"smart"_s)}}}, {}, 40));
    ASSERT_EQ(model.pageCount(), 1);
    PageModel& page = *model.tilesOf(0);
    const auto keys = [&](int row) {
        return page.data(page.index(row), PageModel::AppKeysRole).toStringList().join(u' ');
    };
    const QList<TileView>& shown = page.tiles();
    ASSERT_EQ(shown.size(), 3);
    EXPECT_EQ(shown[0].label, u"o");
    EXPECT_EQ(keys(0), u"org.example.o");
    EXPECT_TRUE(shown[0].isUnavailable);
    EXPECT_EQ(shown[0].badge, u"e.o");
    EXPECT_EQ(shown[1].kind, IconItem::Folder);
    EXPECT_EQ(keys(1), u"org.example.a org.example.e");
    EXPECT_EQ(shown[1].symbolName, u"star");
    EXPECT_EQ(shown[2].kind, IconItem::SmartFolder);
    EXPECT_EQ(shown[2].label, u"Large");
    EXPECT_EQ(keys(2), u"org.example.e");
    EXPECT_EQ(shown[2].symbolName, u"moon");
    EXPECT_EQ(shown[2].badge, u"2000");
    EXPECT_EQ(model.tilesOf(1), nullptr);
}

/// A grid whose first page is watched.
class GridModelTest : public testing::Test {
protected:
    void show(const Pages& pages) { model.setPages(ShownPages(pages, {}, 40)); }
    void watch() {
        const PageModel* page = model.tilesOf(0);
        ASSERT_GT(page->rowCount(), 0); // which fills it
        changed = std::make_unique<QSignalSpy>(page, &PageModel::dataChanged);
        moved = std::make_unique<QSignalSpy>(page, &PageModel::rowsMoved);
        inserted = std::make_unique<QSignalSpy>(page, &PageModel::rowsInserted);
        removed = std::make_unique<QSignalSpy>(page, &PageModel::rowsRemoved);
    }

    GridModel model{{}};
    std::unique_ptr<QSignalSpy> changed, moved, inserted, removed;
};

TEST_F(GridModelTest, ReportsOnlyTheTilesThatChanged) {
    show({tiles(u"aeo"_s)});
    watch();
    const QSignalSpy counted(&model, &GridModel::pageCountChanged);
    show({tiles(u"afoy"_s)});
    ASSERT_EQ(changed->count(), 1);
    EXPECT_EQ(changed->at(0)[0].toModelIndex().row(), 1);
    EXPECT_FALSE(changed->at(0)[2].value<QList<int>>().contains(PageModel::BadgeRole));
    ASSERT_EQ(inserted->count(), 1);
    EXPECT_EQ(inserted->at(0)[1].toInt(), 3);
    show({tiles(u"a"_s), tiles(u"f"_s)});
    EXPECT_EQ(removed->count(), 1);
    EXPECT_EQ(counted.count(), 1);
    EXPECT_EQ(model.tilesOf(0)->rowCount(), 1);
    model.setHasNewPage(true);
    show({tiles(u"ae"_s)});
    EXPECT_EQ(model.pageCount(), 2) << "the new page stays when pages change under it";
    EXPECT_EQ(model.tilesOf(1)->rowCount(), 0);
}

TEST_F(GridModelTest, RowsGoWithTheirTiles) {
    show({tiles(u"ABCDE"_s)});
    watch();
    const PageModel& page = *model.tilesOf(0);
    const QPersistentModelIndex held = page.index(2);
    const auto expect = [&](const QString& names, int moves, int changes) {
        SCOPED_TRACE(names.toStdString());
        moved->clear();
        changed->clear();
        show({tiles(names)});
        QString labels;
        for (int row = 0; row < page.rowCount(); ++row)
            labels += page.data(page.index(row), PageModel::LabelRole).toString();
        EXPECT_EQ(labels, names);
        EXPECT_EQ(moved->count(), moves);
        EXPECT_EQ(changed->count(), changes);
    };
    expect(u"BCDEA"_s, 1, 0);
    EXPECT_EQ(held.row(), 1);
    expect(u"ABCDE"_s, 1, 0);
    expect(u"AXBCD"_s, 1, 1); // E makes room
    expect(u"ABCDE"_s, 1, 1); // and returns
    expect(u"BCDE"_s, 0, 0);
    expect(u"ABCDE"_s, 1, 0);
    EXPECT_EQ(inserted->count(), 1);
    expect(u"ECADB"_s, 3, 0);
    EXPECT_EQ(held.row(), 1) << "it is still where C is";
}

TEST(TileNavigation, WalksRowsAndPages) {
    // a b c    h i j    l
    // d e f    k
    // g
    const ShownPages pages({tiles(u"abcdefg"_s), tiles(u"hijk"_s), tiles(u"l"_s)}, {}, 9);
    const GridGeometry geometry{.rows = 3, .columns = 3};
    const auto step = [&](QChar from, Direction direction) {
        const auto place = pages.placeOf(idOf(from));
        const auto to = neighbour(pages, geometry, place->page, place->slot, direction);
        return pages.tiles(to->page).at(to->slot).app()->name;
    };
    using enum Direction;
    struct Step {
        char16_t from;
        Direction direction;
        char16_t to;
    };
    for (const auto& [from, direction, to] :
         {Step{u'a', right, u'b'}, Step{u'c', right, u'h'}, Step{u'f', right, u'k'},
          Step{u'g', right, u'k'}, Step{u'k', left, u'f'}, Step{u'h', left, u'c'},
          Step{u'k', right, u'l'}, Step{u'a', left, u'a'}, Step{u'l', right, u'l'},
          Step{u'l', left, u'j'}, Step{u'e', up, u'b'}, Step{u'b', up, u'b'}, Step{u'd', down, u'g'},
          Step{u'f', down, u'g'}, Step{u'g', down, u'g'}, Step{u'j', down, u'k'}})
        EXPECT_EQ(step(QChar(from), direction), QString(QChar(to))) << char(from) << int(direction);

    const auto first = neighbour(pages, geometry, 1, std::nullopt, left);
    EXPECT_EQ(first, (ShownPlace{1, 0}));
    EXPECT_EQ(neighbour(TilePages(), geometry, 0, std::nullopt, right), std::nullopt);
}

TEST(IconWishes, ComeInTheOrderInWhichTheyAreSeen) {
    const auto letter = [](const IconRequest& wish) {
        return FileSystem::fileName(wish.bundlePath).front();
    };
    const auto letters = [&](const QList<IconRequest>& wishes) {
        QString text;
        for (const IconRequest& wish : wishes)
            text += letter(wish);
        return text;
    };
    const auto smart = [&](const QUuid&) {
        return TileFacts::SmartFolder{.icons = {iconRequest(app(u"z"_s))}};
    };
    const FolderEntry nested = folder(u"nested"_s, {tiles(u"xy"_s)});
    Page inside = tiles(u"mnopqrstu"_s); // nine show in the preview
    inside[1] = nested;
    const FolderEntry open = folder(u"open"_s, {inside, tiles(u"vw"_s)});
    GridModel grid({.isUnavailable = {}, .badge = {}, .smartFolder = smart});
    grid.setPages(ShownPages({tiles(u"ab"_s),
                              {app(u"c"_s), open, SmartFolderReference{idOf(u"smart"_s)}},
                              tiles(u"de"_s),
                              tiles(u"fa"_s)},
                             {}, 40));
    grid.setPage(1);

    const auto closed = iconRequests(grid, nullptr);
    EXPECT_EQ(letters(closed.visible), u"cmxopqrstuz") << "previews count";
    EXPECT_EQ(letters(closed.neighbours), u"deabyvw") << "each only once";
    QString rest;
    while (const auto wish = closed.rest())
        rest += letter(*wish);
    EXPECT_EQ(rest, u"abcmxyopqrstuvwdefa") << "all, one by one";

    GridModel over({});
    over.setPages(ShownPages(open.pages, {}, 15));
    over.setPage(1);
    EXPECT_EQ(letters(iconRequests(grid, &over).visible), u"vwcmxopqrstuz");
}

} // namespace
} // namespace tessellar::test
