#include "app/tile_navigation.h"

#include "app/icon_requests.h"
#include "support/items.h"
#include "support/printers.h"

#include <gmock/gmock.h>

namespace tessellar::test {
namespace {

using namespace Qt::StringLiterals;

Page tiles(const QString& names) {
    Page page;
    for (const QChar name : names)
        page.append(app(name));
    return page;
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

TEST(IconRequests, ComeInTheOrderInWhichTheyAreSeen) {
    const auto letter = [](const IconRequest& request) {
        return FileSystem::fileName(request.bundlePath).front();
    };
    const auto letters = [&](const QList<IconRequest>& requests) {
        QString text;
        for (const IconRequest& request : requests)
            text += letter(request);
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
    while (const auto request = closed.rest())
        rest += letter(*request);
    EXPECT_EQ(rest, u"abcmxyopqrstuvwdefa") << "all, one by one";

    GridModel over({});
    over.setPages(ShownPages(open.pages, {}, 15));
    over.setPage(1);
    EXPECT_EQ(letters(iconRequests(grid, &over).visible), u"vwcmxopqrstuz");
}

} // namespace
} // namespace tessellar::test
