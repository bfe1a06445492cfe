#include "app/matched_letters.h"
#include "launcher/launcher_search.h"
#include "launcher/small_launcher.h"
#include "launcher_fixture.h"

namespace tessellar::test {
namespace {

/// Search as a user meets it, and what stands behind it.
class SearchTest : public LauncherFixture {
protected:
    void show() {
        store({{app(u"Ash"_s), folder(u"Trees"_s, {{app(u"Beech"_s), app(u"Oak"_s)}})}});
        install({u"Ash"_s, u"Beech"_s, u"Oak"_s});
        start();
    }
    QString property(const QString& label, const char* name) {
        return tile(label)->property(name).toString();
    }
};

TEST_F(SearchTest, TypingSearches) {
    show();
    type(u"oa"_s);
    EXPECT_TRUE(isSeen(u"Oak"_s)) << "out of its folder";
    EXPECT_FALSE(tile(u"Trees"_s)) << "the grid is hidden";
    press(Qt::Key_Escape);
    EXPECT_FALSE(launcher().search()->isActive());
    EXPECT_TRUE(view().isVisible());
    EXPECT_TRUE(tile(u"Trees"_s));

    // With the field that has the keyboard by now, as well as before there was time for it.
    ASSERT_TRUE(QTest::qWaitFor([&] {
        return view().activeFocusItem() && view().activeFocusItem()->objectName() == u"searchInput";
    }));
    type(u" e"_s);
    EXPECT_EQ(launcher().search()->text().trimmed(), u"e");
    press(Qt::Key_Backspace);
    type(u"a"_s);
    ASSERT_TRUE(tile(u"Ash"_s));
    press({Qt::Key_Right, Qt::Key_Left, Qt::Key_Return});
    EXPECT_TRUE(opens(u"Ash"_s)) << "the first is the best";
    EXPECT_TRUE(QTest::qWaitFor([&] { return !view().isVisible(); }));
    EXPECT_FALSE(launcher().search()->isActive()) << "it begins afresh next time";
}

TEST_F(SearchTest, WhatIsFoundIsClickedOrThereIsNothing) {
    show();
    type(u"zzz"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return itemWith("text", u"No results for “zzz”"_s); }));
    press(Qt::Key_Return);
    EXPECT_EQ(opened(), QStringList());
    clickAt({20, 700});
    EXPECT_FALSE(launcher().search()->isActive());
    EXPECT_TRUE(view().isVisible());
    openFolder(u"Trees"_s);
    type(u"bee"_s);
    EXPECT_FALSE(launcher().folder()->isOpen()) << "what is found lies over everything";
    ASSERT_TRUE(isSeen(u"Beech"_s));
    ASSERT_TRUE(rests());
    click(u"Beech"_s);
    EXPECT_TRUE(opens(u"Beech"_s));
}

TEST_F(SearchTest, AResultIsRenamedNumberedAndFoundInItsPlace) {
    install(manyNames(12));
    store({{app(u"A01"_s), app(u"A02"_s)},
           {app(u"A10"_s), folder(u"Both"_s, {{app(u"A11"_s), app(u"A12"_s)}})}});
    start();
    type(u"a1"_s);
    ASSERT_TRUE(isSeen(u"A11"_s));
    EXPECT_EQ(property(u"A11"_s, "place"), u"Both");
    EXPECT_EQ(property(u"A11"_s, "markedLabel"), u"<b>A1</b>1");
    chooseAt(u"A10"_s, u"Rename…"_s);
    type(u"a1den"_s);
    press(Qt::Key_Return);
    EXPECT_EQ(launcher().search()->text(), u"a1");
    ASSERT_TRUE(isSeen(u"a1den"_s));
    chooseAt(u"A12"_s, u"Show Where It Is"_s);
    EXPECT_FALSE(launcher().search()->isActive());
    EXPECT_EQ(launcher().folder()->title(), u"Both");
    EXPECT_EQ(launcher().grid()->page(), 1);
    EXPECT_EQ(selectedLabel(), u"A12");
    type(u"a"_s);
    ASSERT_TRUE(isSeen(u"A02"_s));
    press(Qt::Key_2, Qt::ControlModifier);
    EXPECT_TRUE(opens(u"A02"_s));
}

TEST_F(SearchTest, ComposedTextIsSeenInTheField) {
    const QFont before = QGuiApplication::font();
    QGuiApplication::setFont(QFont(u"Inter"_s));
    show();
    ASSERT_TRUE(comes(u"searchInput"_s));
    QQuickItem* field = named(u"searchInput"_s);
    EXPECT_EQ(field->opacity(), 0) << "no cursor without a search";
    EXPECT_EQ(field->property("font").value<QFont>().family(), u"Inter") << "as all text around it";
    QInputMethodEvent composing(u"あ"_s, {});
    QCoreApplication::sendEvent(field, &composing);
    EXPECT_EQ(field->opacity(), 1);
    QInputMethodEvent committed;
    committed.setCommitString(u"oak"_s);
    QCoreApplication::sendEvent(field, &committed);
    EXPECT_EQ(launcher().search()->text(), u"oak");
    QGuiApplication::setFont(before);
}

TEST_F(SearchTest, ScatteredHitsStandApartAndHiddenOnesSayIt) {
    install({u"Nine Oaks Wide"_s, u"Nowhere"_s, u"Unknown"_s});
    start();
    ASSERT_TRUE(
        editor().hideApps(mode(), {*findTile(viewModel().shown().pages(), u"org.example.nowhere"_s)}));
    type(u"now"_s);
    ASSERT_TRUE(isSeen(u"Nowhere"_s) && isSeen(u"Nine Oaks Wide"_s) && isSeen(u"Unknown"_s));
    EXPECT_EQ(property(u"Nowhere"_s, "place"), u"Hidden");
    EXPECT_EQ(property(u"Nowhere"_s, "isWeakMatch"), u"false");
    EXPECT_EQ(property(u"Unknown"_s, "isWeakMatch"), u"false");
    EXPECT_EQ(property(u"Nine Oaks Wide"_s, "isWeakMatch"), u"true");
    QQuickItem* divider = named(u"matchDivider"_s);
    ASSERT_TRUE(divider);
    const QPointF before = tile(u"Nine Oaks Wide"_s)->mapToItem(divider, {});
    EXPECT_NEAR(before.x(), 1, 1) << "at its left";
}

TEST(MatchedLetters, AreSetOffAsAWholeAtAWordOrOneByOne) {
    const Locale locale(u"en_US"_s);
    EXPECT_EQ(markedLabel(u"Local Notes"_s, u"no"_s, locale), u"Local <b>No</b>tes");
    EXPECT_EQ(markedLabel(u"Piano Note"_s, u"no"_s, locale), u"Piano <b>No</b>te") << "a word first";
    EXPECT_EQ(markedLabel(u"Café & <Bar>"_s, u"CAFE"_s, locale), u"<b>Café</b> &amp; &lt;Bar&gt;");
    EXPECT_EQ(markedLabel(u"Chart Lab"_s, u"ctl"_s, locale), u"<b>C</b>har<b>t</b> <b>L</b>ab");
    EXPECT_EQ(markedLabel(u"Straße"_s, u"strass"_s, locale), u"<b>Straß</b>e");
    EXPECT_EQ(markedLabel(u"Oak"_s, u"oaks"_s, locale), QString());
}

class TileSearchTest : public SmallLauncher {
protected:
    static QStringList found(TileSearch& search) {
        QStringList labels;
        if (const PageModel* page = search.results()->tilesOf(search.results()->page()))
            for (const TileView& tile : page->tiles())
                labels += tile.label;
        return labels;
    }
};

TEST_F(TileSearchTest, AllThatIsFoundIsReachedByPagingInTheOrderOfTheIndex) {
    for (int i = 0; i < 90; ++i)
        install(u"App %1"_s.arg(i, 2, 10, QLatin1Char('0')));
    install(u"Zebra"_s);
    int asked = 0;
    const auto badge = [&](const QString&) {
        ++asked;
        return QString();
    };
    TileSearch search(start(), {.isUnavailable = {}, .badge = badge, .smartFolder = {}}, mac.machine);
    GridModel& results = *search.results();
    const QSignalSpy changed(&search, &TileSearch::changed);
    search.setText(u"app"_s);
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(results.pageCount(), 3);
    QStringList all = found(search);
    EXPECT_EQ(asked, 40) << "only the page that is seen is made";
    EXPECT_EQ(search.selected(), QUuid::fromString(results.tilesOf(0)->tiles().first().id))
        << "the best one is selected";
    for (const int page : {1, 2}) {
        results.turnTo(page);
        all += found(search);
    }
    QStringList expected;
    for (const SearchIndex::Hit& hit : launcher->search().search(launcher->shown().mode(), u"app"_s))
        expected += hit.entry->name;
    EXPECT_EQ(all.size(), 90);
    EXPECT_EQ(all, expected);
    results.turnTo(7);
    EXPECT_EQ(results.page(), 2) << "the nearest there is";

    search.setText(u"ap"_s); // finds as many
    EXPECT_EQ(results.page(), 0) << "another query begins at its best";
    search.setText(u"  "_s);
    EXPECT_FALSE(search.isActive()) << "blanks are no query";
    search.setText(u"as"_s);
    install(u"Aspen"_s);
    rescan();
    search.refresh();
    EXPECT_EQ(found(search), QStringList{u"Aspen"_s}) << "it follows the scan";
}

} // namespace
} // namespace tessellar::test
