#include "editing/layout_edits.h"

#include "editing/arrangements.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace tessellar {

void PrintTo(EditRefusal refusal, std::ostream* out) { *out << code(refusal).toStdString(); }

namespace {

using namespace Qt::Literals::StringLiterals;
using test::app;
using test::drawn;
using test::folder;
using test::sketch;
using test::tileID;

const Locale english(u"en_US"_s);
constexpr GridCapacities small{4, 3};

std::string sketch(const EditResult& result) {
    return (result ? sketch(result->pages) : code(result.error())).toStdString();
}

QList<QUuid> ids(std::initializer_list<unsigned> numbers) {
    QList<QUuid> result;
    for (const unsigned number : numbers)
        result.append(tileID(number));
    return result;
}

LayoutDocument sample() { return {.pages = drawn(u"1 2 [10: 3 4|5 6]|7 8 9 11|12")}; }

TEST(MoveTiles, StandAtThePlaceInTheOrderOfTheArrangement) {
    const LayoutDocument layout = sample();
    const auto move = [&](std::initializer_list<unsigned> tiles, const LayoutPlace& place) {
        return sketch(moveTiles(layout, ids(tiles), place, small));
    };
    // Within a page: the index is the one that the tile ends at.
    EXPECT_EQ(move({1}, {{}, 0, 2}), "2 [10: 3 4|5 6] 1|7 8 9 11|12");
    EXPECT_EQ(move({10}, {{}, 0, 0}), "[10: 3 4|5 6] 1 2|7 8 9 11|12");
    EXPECT_EQ(move({1}, {{}, 0, 3}), "2 [10: 3 4|5 6] 1|7 8 9 11|12");
    // From several places, named in any order.
    EXPECT_EQ(move({12, 6, 1}, {{}, 2, 0}), "2 [10: 3 4|5]|7 8 9 11|1 6 12");
    // A tile in a moved folder goes with it; an emptied page goes.
    EXPECT_EQ(move({3, 10, 12}, {{}, 3, 0}), "1 2|7 8 9 11|[10: 3 4|5 6] 12");
    // A full page passes its last tiles on, also those just dropped on its end.
    EXPECT_EQ(move({1}, {{}, 1, 0}), "2 [10: 3 4|5 6]|1 7 8 9|11 12");
    EXPECT_EQ(move({1, 2}, {{}, 1, LayoutPlace::end}), "[10: 3 4|5 6]|7 8 9 11|1 2 12");
    EXPECT_EQ(move({1, 2}, {tileID(10), 0, 1}), "[10: 3 1 2|4 5 6]|7 8 9 11|12");
    EXPECT_EQ(move({1}, {tileID(10), 2, 0}), "2 [10: 3 4|5 6|1]|7 8 9 11|12");
    // A folder left with one tile becomes that tile, in its place.
    EXPECT_EQ(move({3, 5, 6}, {{}, 3, 0}), "1 2 4|7 8 9 11|12|3 5 6");
}

TEST(MoveTiles, RefusedWhenThereIsNoSuchThing) {
    const LayoutDocument layout{.pages = drawn(u"1 2 [10: 3 [11: 4 5]] *6")};
    const auto refusal = [&](std::initializer_list<unsigned> tiles, const LayoutPlace& place) {
        return moveTiles(layout, ids(tiles), place, small).error();
    };
    EXPECT_EQ(refusal({}, {{}, 0, 0}), EditRefusal::noTiles);
    EXPECT_EQ(refusal({1, 99}, {{}, 0, 0}), EditRefusal::noSuchTile);
    EXPECT_EQ(refusal({1}, {tileID(99), 0, 0}), EditRefusal::noSuchFolder);
    EXPECT_EQ(refusal({1}, {tileID(2), 0, 0}), EditRefusal::noSuchFolder);
    for (const auto& [page, index] : {std::pair{-1, 0}, {2, 0}, {0, 5}, {0, -1}, {1, 1}})
        EXPECT_EQ(refusal({1}, {{}, page, index}), EditRefusal::noSuchPlace) << page << ':' << index;
    EXPECT_EQ(refusal({10}, {tileID(10), 0, 0}), EditRefusal::intoItself);
    EXPECT_EQ(refusal({1, 10}, {tileID(11), 0, 0}), EditRefusal::intoItself);
}

TEST(MoveTiles, NeverNestFoldersTooDeepToBeReadAgain) {
    Pages deepest{{app(1), app(2)}};
    for (int depth = 0; depth < maximumFolderDepth; ++depth)
        deepest = {{app(10 + 2 * depth), folder(11 + 2 * depth, deepest)}};
    const LayoutDocument layout{
        .pages = {deepest.first() + Page{folder(3, {{app(4), app(5)}}), app(6)}}};
    const QUuid innermost = tileID(11);
    EXPECT_EQ(moveTiles(layout, {tileID(3)}, {innermost, 0, 0}, small).error(), EditRefusal::tooDeep);
    EXPECT_EQ(groupTiles(layout, {tileID(6)}, tileID(1), tileID(7), english, small).error(),
              EditRefusal::tooDeep);
    EXPECT_TRUE(moveTiles(layout, {tileID(6)}, {innermost, 0, 0}, small));
}

TEST(MoveTiles, LeaveThePagesOfALargerGridAlone) {
    // Two full pages and a half under 6 tiles a page, edited while the grid shows 4.
    const LayoutDocument layout{.pages = drawn(u"1 2 3 4 5 6|7 8 9 10 11 12|13")};
    EXPECT_EQ(sketch(moveTiles(layout, ids({13}), {{}, 0, 0}, small)), "13 1 2 3 4 5 6|7 8 9 10 11 12");
    const auto edited = moveTiles(layout, ids({7}), {{}, 2, 0}, small);
    EXPECT_TRUE(edited->pages[0].isSharedWith(layout.pages[0]));
}

TEST(MoveTiles, HiddenTilesTakeNoRoomAndKeepTheirNeighbours) {
    const LayoutDocument layout{.pages = drawn(u"1 2 3 4 5|6 7"), .hiddenKeys = {appKey(app(3))}};
    EXPECT_EQ(sketch(moveTiles(layout, ids({7}), {{}, 0, 2}, small)), "1 2 7 3 4|5 6");
    // Back again, it may be one too many.
    EXPECT_EQ(sketch(unhideApp(layout, appKey(app(3)), small)), "1 2 3 4|5 6 7");
    const auto hidden = hideApps(layout, ids({6, 7}));
    ASSERT_TRUE(hidden);
    EXPECT_EQ(hidden->hiddenKeys.size(), 3);
    EXPECT_EQ(hidden->pages, layout.pages);
}

TEST(GroupTiles, MakeAFolderInTheTargetsPlaceOrJoinOne) {
    const auto group = [](std::initializer_list<unsigned> tiles, unsigned target,
                          const LayoutDocument& layout = sample()) {
        return sketch(groupTiles(layout, ids(tiles), tileID(target), tileID(20), english, small));
    };
    EXPECT_EQ(group({12}, 2), "1 [Folder: 2 12] [10: 3 4|5 6]|7 8 9 11");
    EXPECT_EQ(group({2, 12, 10, 7}, 2), "1 [Folder: 2 [10: 3 4|5 6] 7|12]|8 9 11");
    EXPECT_EQ(group({3}, 4), "1 2 [10: [Folder: 4 3]|5 6]|7 8 9 11|12");
    EXPECT_EQ(group({1, 7}, 10), "2 [10: 3 4|5 6 1|7]|8 9 11|12");
    EXPECT_EQ(group({10}, 3), "intoItself");
    EXPECT_EQ(group({2}, 2), "noTiles");
    EXPECT_EQ(group({1}, 99), "noSuchTile");

    const LayoutDocument withSmart{.pages = drawn(u"1 *2")};
    EXPECT_EQ(group({1}, 2, withSmart), "rulesDecide");
    EXPECT_EQ(group({2}, 1, withSmart), "[Folder: 1 *]");
}

TEST(Ungroup, PutsTheTilesInTheFoldersPlace) {
    EXPECT_EQ(sketch(ungroupFolder(sample(), tileID(10), small)), "1 2 3 4|5 6 7 8|9 11 12");
    EXPECT_EQ(sketch(ungroupFolder(sample(), tileID(1), small)), "notAFolder");
    const LayoutDocument nested{.pages = drawn(u"[10: 1 [11: 2|3 4] 5]")};
    EXPECT_EQ(sketch(ungroupFolder(nested, tileID(11), small)), "[10: 1 2 3|4 5]");
}

TEST(Names, AreTrimmedAndBounded) {
    const LayoutDocument layout = sample();
    const auto renamed = renameFolder(layout, tileID(10), u" \n Tools\tand\nToys "_s);
    ASSERT_TRUE(renamed);
    EXPECT_EQ(locate(renamed->pages, tileID(10))->item->folder()->name, u"Tools and Toys");
    EXPECT_TRUE(renamed->pages[1].isSharedWith(layout.pages[1]));

    for (const QString& blank : {QString(), QString(10'000, u' '), u"\n\u2003\x01"_s})
        EXPECT_EQ(renameApp(layout, tileID(1), blank).error(), EditRefusal::emptyName);
    EXPECT_EQ(renameApp(layout, tileID(1), QString(10'000, u'x')).error(), EditRefusal::nameTooLong);
    EXPECT_EQ(renameApp(layout, tileID(10), u"x"_s).error(), EditRefusal::notAnApplication);
    EXPECT_EQ(renameFolder(layout, tileID(1), u"x"_s).error(), EditRefusal::notAFolder);

    const auto app4 = renameApp(layout, tileID(4), u"Four"_s);
    ASSERT_TRUE(app4);
    EXPECT_EQ(*revertAppName(*app4, tileID(4)), layout);

    const auto symbol = setFolderSymbol(layout, tileID(10), u"hammer"_s);
    ASSERT_TRUE(symbol);
    EXPECT_EQ(locate(symbol->pages, tileID(10))->item->folder()->customSymbolName, u"hammer");
    EXPECT_EQ(*setFolderSymbol(*symbol, tileID(10), u" "_s), layout);
}

TEST(Aliases, StandForTheApplicationAndGoAlone) {
    const LayoutDocument layout = sample();
    const auto aliased = createAlias(layout, tileID(3), tileID(30), {tileID(10), 1, 0}, small);
    ASSERT_TRUE(aliased);
    EXPECT_EQ(sketch(aliased), "1 2 [10: 3 4|~3 5 6]|7 8 9 11|12");
    EXPECT_EQ(appKey(*locate(aliased->pages, tileID(30))->item->app()), appKey(app(3)));
    EXPECT_EQ(findTile(aliased->pages, appKey(app(3))), tileID(3));

    EXPECT_EQ(removeAliases(*aliased, ids({3})).error(), EditRefusal::notAnAlias);
    EXPECT_EQ(*removeAliases(*aliased, ids({30})), layout);
    // An application that is gone takes its aliases along.
    EXPECT_EQ(
        sketch(removeApplications(*aliased, {appKey(app(3)), appKey(app(4))}).pages).toStdString(),
        "1 2 [10: 5 6]|7 8 9 11|12");
}

TEST(InsertTiles, AnApplicationHasOneTileOfItsOwn) {
    AppEntry copy = app(1);
    copy.id = tileID(31);
    AppEntry sameStranger = app(40);
    sameStranger.id = tileID(42);
    const LaunchpadItem box = folder(41, {{app(40), sameStranger}});
    EXPECT_EQ(sketch(insertTiles(sample(), {copy, box}, {{}, 2, 0}, small)),
              "1 2 [10: 3 4|5 6]|7 8 9 11|~1 [41: 40 ~40] 12");
}

TEST(SmartFolderTiles, AreThereOnce) {
    const auto added = addSmartFolder(sample(), tileID(50), {tileID(10), 0, 2}, small);
    EXPECT_EQ(sketch(added), "1 2 [10: 3 4 *|5 6]|7 8 9 11|12");
    EXPECT_EQ(addSmartFolder(*added, tileID(50), {}, small).error(), EditRefusal::alreadyPresent);
    EXPECT_EQ(removeSmartFolder(*added, tileID(50)), sample());
    EXPECT_EQ(removeSmartFolder(sample(), tileID(50)), sample());
}

TEST(Sort, ByNameWithinAPageOrOverAll) {
    LayoutDocument layout{
        .pages = {{app(1, u"pear"_s), app(2, u"Älpler"_s),
                   folder(3, {{app(4, u"z"_s), app(5, u"y"_s)}}, u"Zebra"_s)},
                  {SmartFolderReference{tileID(6)}, app(7, u"apple"_s), app(8, u"Apple"_s)}}};
    const auto names = [](const QUuid&) { return u"banana"_s; };
    EXPECT_EQ(sketch(sortPage(layout, {}, 0, english, names)),
              "Älpler pear [Zebra: z y]|* apple Apple");
    EXPECT_EQ(sketch(sortPage(layout, tileID(3), 0, english, names)),
              "pear Älpler [Zebra: y z]|* apple Apple");
    EXPECT_EQ(sortPage(layout, {}, 2, english, names).error(), EditRefusal::noSuchPlace);
    layout.hiddenKeys = {appKey(app(7))};
    EXPECT_EQ(sketch(sortEverything(layout, english, names, small).pages).toStdString(),
              "Älpler apple Apple * pear|[Zebra: y z]");
}

TEST(Places, ReadFromText) {
    EXPECT_EQ(LayoutPlace::fromText(u"2:17"), (LayoutPlace{{}, 2, 17}));
    EXPECT_EQ(LayoutPlace::fromText(u"2"), (LayoutPlace{{}, 2, LayoutPlace::end}));
    EXPECT_EQ(LayoutPlace::fromText(tileID(7).toString(QUuid::WithoutBraces) + u"/0:1"_s),
              (LayoutPlace{tileID(7), 0, 1}));
    for (const auto* text : {u"", u":1", u"-1:0", u"1:-1", u"1:2:3", u"+1:0", u"x/0:1", u"/0:1",
                             u" 1:1", u"99999999999:0"})
        EXPECT_EQ(LayoutPlace::fromText(text), std::nullopt) << QString::fromUtf16(text).toStdString();
}

} // namespace
} // namespace tessellar
