#include "editing/tile_drop.h"

#include "editing/layout_edits.h"
#include "model/drawn.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace tessellar {
namespace {

using namespace Qt::Literals::StringLiterals;
using test::idOf;
using test::sketch;
using Kind = Drop::Kind;

/// Three columns and two rows; "c" is hidden, so that places stored and shown differ.
class TileDropTest : public testing::Test {
protected:
    LayoutDocument layout{.pages = test::drawn(u"a b c d [F: g h]|x *smart z"),
                          .hiddenKeys = {u"org.example.c"_s}};

    DropGrid grid(const QStringList& lifted, qsizetype page = 0, std::optional<int> gap = {}) {
        DropGrid result{.pages = ShownPages(layout.pages, layout.hiddenKeys, 6),
                        .page = page,
                        .columns = 3,
                        .rows = 2,
                        .gap = gap,
                        .folder = {},
                        .rulesDecide = false,
                        .moving = {}};
        for (const QString& name : lifted)
            result.moving.insert(idOf(name));
        return result;
    }
    /// The arrangement after letting go there.
    QString after(const DropGrid& grid, DropPoint point) {
        const Drop drop = dropAt(grid, point);
        const GridCapacities capacities{6, 6};
        const auto result = drop.kind == Kind::onto
                                ? groupTiles(layout, grid.moving.values(), drop.target, idOf(u"new"_s),
                                             Locale(u"en_US"_s), capacities)
                                : moveTiles(layout, grid.moving.values(), drop.place, capacities);
        return result ? sketch(result->pages) : code(result.error());
    }
};

TEST_F(TileDropTest, BeforeAndAfterATileIsWhereThePointerIs) {
    // Shown: a b d / F.
    EXPECT_EQ(after(grid({u"a"_s}, 0, 0), {1.9, 0.5}), u"b c a d [F: g h]|x * z");
    EXPECT_EQ(after(grid({u"a"_s}, 0, 0), {2.1, 0.5}), u"b c a d [F: g h]|x * z");
    EXPECT_EQ(after(grid({u"d"_s}, 0, 2), {0.1, 0.5}), u"d a b c [F: g h]|x * z");
    EXPECT_EQ(after(grid({u"a"_s, u"d"_s}, 1), {2.9, 0.5}), u"b c [F: g h]|x * z a d");
    EXPECT_EQ(after(grid({u"a"_s}, 0, 0), {2.5, 1.5}), u"b c d [F: g h] a|x * z") << "past the last";
    EXPECT_EQ(after(grid({u"a"_s}, 0, 0), {-4, 99}), u"b c d a [F: g h]|x * z") << "beside the cells";
    EXPECT_EQ(after(grid({u"x"_s}, 2), {1, 1}), u"a b c d [F: g h]|* z|x") << "a new page";
}

TEST_F(TileDropTest, TheGapStaysWhileThePointerIsOnItOrOnTheMiddleOfATile) {
    const DropGrid over = grid({u"x"_s}, 0, 1); // a _ b / d F
    EXPECT_EQ(dropAt(over, {1.5, 0.5}).slot, 1);
    EXPECT_EQ(dropAt(over, {1.5, 0.5}).place.index, 1);
    EXPECT_EQ(dropAt(over, {2.5, 0.5}).target, idOf(u"b"_s)) << "drawn after the gap";
    EXPECT_EQ(dropAt(over, {2.1, 0.5}).slot, 1);
    EXPECT_EQ(dropAt(over, {2.9, 0.5}).slot, 2);
    EXPECT_EQ(slotsAround(over.pages.tiles(0), over.moving, 1), (QList<int>{0, 2, 3, 4}));
    EXPECT_EQ(slotsAround(over.pages.tiles(1), over.moving, {}), (QList<int>{-1, 0, 1}));
}

TEST_F(TileDropTest, TheMiddleOfATileGroupsAndThatOfAFolderTakesIn) {
    EXPECT_EQ(after(grid({u"x"_s}), {1.5, 0.5}), u"a [Folder: b x] c d [F: g h]|* z");
    EXPECT_EQ(after(grid({u"x"_s}), {0.5, 1.5}), u"a b c d [F: g h x]|* z");
}

TEST_F(TileDropTest, NothingIsPutIntoASmartFolderOrAFolderIntoItselfOrNothingAnywhere) {
    EXPECT_EQ(dropAt(grid({u"a"_s}, 1), {1.4, 0.5}).kind, Kind::between) << "its tile";
    DropGrid inside = grid({u"a"_s});
    inside.folder = idOf(u"smart"_s);
    inside.rulesDecide = true;
    EXPECT_EQ(dropAt(inside, {0.5, 0.5}).kind, Kind::nowhere) << "its pages";
    inside = grid({u"F"_s});
    inside.folder = idOf(u"F"_s);
    EXPECT_EQ(dropAt(inside, {0.5, 0.5}).kind, Kind::nowhere);
    for (const DropGrid& none : {grid({}), grid({u"a"_s}, -1), grid({u"a"_s}, 3)})
        EXPECT_EQ(dropAt(none, {0.5, 0.5}).kind, Kind::nowhere);
}

} // namespace
} // namespace tessellar
