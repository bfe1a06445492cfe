#include "editing/grid_geometry.h"

#include "editing/arrangements.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace tessellar {
namespace {

using test::app;

QList<QUuid> shownIDs(const ShownPages& shown) {
    QList<QUuid> result;
    for (qsizetype page = 0; page < shown.count(); ++page)
        for (const LaunchpadItem& item : shown.tiles(page))
            result.append(item.id());
    return result;
}

TEST(ShownPages, ALongPageIsShownAsSeveral) {
    const Pages pages = test::drawn(u"1 2 3 4 5|6");
    const ShownPages small(pages, {}, 2);
    EXPECT_EQ(small.count(), 4);
    EXPECT_EQ(small.tiles(2), Page{app(5)});
    EXPECT_EQ(small.placeOf(test::tileID(6)), (ShownPlace{3, 0}));
    // Past the last tile of a shown page that continues, and of one that does not; past the last page.
    EXPECT_EQ(small.insertionAt({0, 2}), (StoredPlace{0, 2}));
    EXPECT_EQ(small.insertionAt({2, 1}), (StoredPlace{0, 5}));
    EXPECT_EQ(small.insertionAt({4, 0}), (StoredPlace{2, 0}));
    EXPECT_EQ(small.tileAt({2, 1}), std::nullopt);
    EXPECT_EQ(small.tileAt({-1, 0}), std::nullopt);
    EXPECT_EQ(ShownPages(pages, {}, 5).count(), 2);

    // Hidden tiles have no place, and those behind them close up.
    const ShownPages some(pages, {appKey(app(2)), appKey(app(6))}, 2);
    EXPECT_EQ(some.count(), 2);
    EXPECT_EQ(some.tiles(0), (Page{app(1), app(3)}));
    EXPECT_EQ(some.tileAt({0, 1}), (StoredPlace{0, 2}));
    EXPECT_EQ(some.placeOf(StoredPlace{0, 4}), (ShownPlace{1, 1}));
    EXPECT_EQ(some.placeOf(StoredPlace{0, 1}), std::nullopt);
    EXPECT_EQ(some.placeOf(StoredPlace{0, 5}), std::nullopt);
    EXPECT_EQ(some.placeOf(test::tileID(6)), std::nullopt);
}

TEST(ShownPages, AFolderIsHiddenWithTheLastOfItsTiles) {
    const Pages pages = test::drawn(u"[10: 1|[11: 2]] [12: ]|3");
    const QString one = appKey(app(1)), two = appKey(app(2)), three = appKey(app(3));
    EXPECT_EQ(shownIDs(ShownPages(pages, {one}, 9)).size(), 3);
    EXPECT_EQ(shownIDs(ShownPages(pages, {one, two, three}, 9)), QList{test::tileID(12)});
}

} // namespace
} // namespace tessellar
