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

TEST(ShownPagesLaws, EveryShownTileHasOneSlotAndEverySlotItsTile) {
    for (unsigned seed = 0; seed < 200; ++seed) {
        SCOPED_TRACE(seed);
        test::Generator generate(seed);
        const Pages pages = generate.pages(1 + generate.below(4), 0, 9, 2);
        const QSet<QString> hidden = generate.hiddenKeys(pages, 30);
        const int capacity = 1 + generate.below(6);
        const ShownPages shown(pages, hidden, capacity);

        QList<QUuid> expected;
        for (qsizetype page = 0; page < pages.size(); ++page) {
            for (qsizetype index = 0; index < pages[page].size(); ++index) {
                const LaunchpadItem& item = pages[page][index];
                const auto place = shown.placeOf({page, index});
                ASSERT_EQ(place.has_value(), isShown(item, hidden));
                if (!place)
                    continue;
                expected.append(item.id());
                EXPECT_LT(place->slot, capacity);
                EXPECT_EQ(shown.tileAt(*place), (StoredPlace{page, index}));
                EXPECT_EQ(shown.insertionAt(*place), (StoredPlace{page, index}));
                EXPECT_EQ(shown.placeOf(item.id()), place);
                EXPECT_EQ(shown.tiles(place->page)[place->slot], item);
            }
        }
        EXPECT_EQ(shownIDs(shown), expected);
        for (qsizetype page = 0; page < shown.count(); ++page)
            EXPECT_FALSE(shown.tiles(page).isEmpty());
    }
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
}

TEST(ShownPages, AFolderIsHiddenWithTheLastOfItsTiles) {
    const Pages pages = test::drawn(u"[10: 1|[11: 2]] [12: ]|3");
    const QString one = appKey(app(1)), two = appKey(app(2)), three = appKey(app(3));
    EXPECT_EQ(shownIDs(ShownPages(pages, {one}, 9)).size(), 3);
    EXPECT_EQ(shownIDs(ShownPages(pages, {one, two, three}, 9)), QList{test::tileID(12)});
}

} // namespace
} // namespace tessellar
