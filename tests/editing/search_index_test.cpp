#include "editing/search_index.h"

#include "editing/arrangements.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace tessellar {
namespace {

using namespace Qt::Literals::StringLiterals;
using test::app;
using test::folder;

TEST(SearchIndex, ScoresEqualNamesThenBeginningsThenWordsThenPartsThenLettersInOrder) {
    const struct {
        QString name;
        QString query;
        double score;
        QString locale = u"en_US"_s;
    } cases[] = {
        {u"Ünïcode"_s, u"  unicode\n"_s, 1000},
        {u"Calendar"_s, u"cal"_s, 900 - 0.5 * 5},
        {u"App-Store 2"_s, u"store"_s, 800 - 10},
        {u"Calendar"_s, u"lend"_s, 600 - 0.2 * 8},
        {u"A two words"_s, u"two w"_s, 600 - 0.2 * 11},
        {u"Calendar"_s, u"cdr"_s, 300 + 12 - 2 * 4 - 2},
        {u"Calendar"_s, u"calendars"_s, -1},
        {u"Calendar"_s, u"radnelac"_s, -1},
        {u"カレンダー"_s, u"カレ"_s, 900 - 0.5 * 3},
        {u"\U0001F600 smile"_s, u"smile"_s, 790},
        {u"c"_s + QString(400, u'x') + u"al"_s, u"cal"_s, 1},
        {u"Calendar"_s, u" \n\t"_s, -1},
        // A family is one character, and half of one is none.
        {u"👩‍👩‍👧 ab"_s, u"👩‍👩‍👧"_s, 900 - 0.5 * 3},
        {u"👩‍👩‍👧 ab"_s, u"👩"_s, -1},
        {u"👩‍👩‍👧 ab"_s, u"ab"_s, 790},
        // Words end at hyphens and full stops too; a negative score is a match all the same.
        {u"a--b.cal"_s, u"cal"_s, 780},
        {u"x "_s.repeated(95) + u"y"_s, u"y"_s, 800 - 950},
        // Dotted and dotless letters go by locale.
        {u"I"_s, u"i"_s, 1000},
        {u"Isparta"_s, u"\u0131sparta"_s, 1000, u"tr_TR"_s},
        {u"Isparta"_s, u"\u0131sparta"_s, -1},
    };
    for (const auto& c : cases) {
        AppEntry entry = app(1, c.name);
        entry.bundleIdentifier.reset();
        const auto hits = SearchIndex({.pages = {{entry}}}, Locale(c.locale)).search(c.query);
        EXPECT_EQ(hits.isEmpty() ? -1 : hits[0].score, c.score)
            << c.name.toStdString() << " by " << c.query.toStdString();
    }
}

TEST(SearchIndex, ALongRunInALesserNameBeatsAnEqualName) {
    const QString query = u"Interactive Data Viewer"_s;
    const SearchIndex index({.pages = {{folder(2, {{app(1, query)}}, u"Interactive Data Reviewer"_s)}}},
                            Locale(u"en_US"_s));
    const double inOrder = 300 + 12 * 17 * 18 / 2 - 2 * 2 + 12 * 5 * 6 / 2;
    EXPECT_EQ(index.search(query)[0].score, inOrder * 0.7);
}

TEST(SearchIndex, OneHitForEachApplicationWithItsBestName) {
    AppEntry renamed = app(1, u"Planner"_s);
    renamed.originalName = u"Agenda"_s;
    renamed.category = u"public.app-category.games"_s;
    AppEntry alias = renamed;
    alias.id = test::tileID(2);
    alias.alias = AppAliasReference{appKey(renamed)};
    AppEntry lost = app(3, u"Agenda lost"_s);
    lost.alias = AppAliasReference{u"org.example.gone"_s};
    AppEntry hidden = app(4, u"Secret"_s);
    AppEntry game = app(5, u"Chess"_s);
    game.category = u"public.app-category.board-games"_s;
    AppEntry gamesApp = app(6, u"The Games"_s);
    gamesApp.category = u"public.app-category.music"_s;
    const LayoutDocument layout{
        .pages = {{renamed, gamesApp, folder(20, {{alias, hidden, game}}, u"Games"_s), lost}},
        .hiddenKeys = {appKey(hidden)}};
    AppEntry scanned = renamed;
    scanned.name = scanned.originalName;
    const SearchIndex index(searchInput(layout, {scanned}, {{appKey(game), {u"Board"_s}}}),
                            Locale(u"en_US"_s));
    const auto found = [&](const QString& query) {
        QStringList hits;
        for (const auto& hit : index.search(query))
            hits += u"%1 %2"_s.arg(hit.entry->name).arg(hit.score);
        return hits.join(u", ");
    };
    EXPECT_EQ(found(u"agenda"_s), u"Planner 850");
    EXPECT_EQ(found(u"games"_s), u"The Games 790, Chess 700, Planner 700");
    EXPECT_EQ(found(u"board"_s), u"Chess 700");
    EXPECT_EQ(found(u"music"_s), u"The Games 400");
    EXPECT_EQ(found(u"secret"_s), u"Secret 1000");
    EXPECT_EQ(found(u"org.example.6"_s), u"The Games 500");
    EXPECT_TRUE(SearchIndex().search(u"x"_s).isEmpty());
}

} // namespace
} // namespace tessellar
