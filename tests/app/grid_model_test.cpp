#include "app/grid_model.h"

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
    GridModel model;
    model.setPages(
        ShownPages({{app(u"Oak"_s), trees, SmartFolderReference{idOf(u"smart"_s)}}}, {}, 40),
        {u"org.example.oak"_s},
        [](const LaunchpadItem&) {
            return folder(u"Large"_s, {{app(u"Elm"_s), app(u"Fir"_s)}});
        },
        [](const QString& appKey) { return appKey.right(3); });
    ASSERT_EQ(model.pageCount(), 1);
    const QList<TileView>& tiles = model.page(0)->tiles();
    ASSERT_EQ(tiles.size(), 3);
    EXPECT_EQ(tiles[0].label, u"Oak");
    EXPECT_EQ(tiles[0].appKeys, QStringList{u"org.example.oak"_s});
    EXPECT_TRUE(tiles[0].isUnavailable);
    EXPECT_EQ(tiles[0].badge, u"oak");
    EXPECT_EQ(tiles[1].kind, IconItem::Folder);
    EXPECT_EQ(tiles[1].appKeys, (QStringList{u"org.example.ash"_s, u"org.example.elm"_s}));
    EXPECT_EQ(tiles[1].symbolName, u"star");
    EXPECT_EQ(tiles[2].kind, IconItem::SmartFolder);
    EXPECT_EQ(tiles[2].label, u"Large");
    EXPECT_EQ(tiles[2].appKeys, (QStringList{u"org.example.elm"_s, u"org.example.fir"_s}));
    EXPECT_EQ(tiles[2].badge, u"2");
    EXPECT_EQ(model.page(1), nullptr);
}

TEST(GridModel, ReportsOnlyTheTilesThatChanged) {
    GridModel model;
    const auto show = [&](const Pages& pages) {
        model.setPages(ShownPages(pages, {}, 40), {},
                       [](const LaunchpadItem&) { return FolderEntry(); });
    };
    show({{app(u"Ash"_s), app(u"Elm"_s), app(u"Oak"_s)}});
    QSignalSpy changed(model.page(0), &PageModel::dataChanged);
    QSignalSpy inserted(model.page(0), &PageModel::rowsInserted);
    QSignalSpy removed(model.page(0), &PageModel::rowsRemoved);
    QSignalSpy counted(&model, &GridModel::pageCountChanged);
    show({{app(u"Ash"_s), app(u"Fir"_s), app(u"Oak"_s), app(u"Yew"_s)}});
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed[0][0].toModelIndex().row(), 1);
    ASSERT_EQ(inserted.count(), 1);
    EXPECT_EQ(inserted[0][1].toInt(), 3);
    show({{app(u"Ash"_s)}, {app(u"Fir"_s)}});
    EXPECT_EQ(removed.count(), 1);
    EXPECT_EQ(counted.count(), 1);
    EXPECT_EQ(model.page(0)->rowCount(), 1);
}

} // namespace
} // namespace tessellar::test
