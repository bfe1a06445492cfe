#include "launcher_fixture.h"

#include "launcher/installed_applications.h"
#include "launcher/layout_archive.h"
#include "launcher/small_launcher.h"
#include "launcher/smart_folder_library.h"
#include "smartfolders/smart_folder_rule.h"

namespace tessellar::test {
namespace {

class TileDragTest : public LauncherFixture {
protected:
    void SetUp() override {
        install(manyNames(6));
        store({{app(u"A01"_s), app(u"A02"_s), folder(u"F"_s, {{app(u"A03"_s), app(u"A04"_s)}})},
               {app(u"A05"_s), app(u"A06"_s)}});
        start();
    }
    QPoint beside(const QString& label, int pixels) { return at(label, {pixels, 0}); }
    /// With the pointer on its way there first, as it is where tiles have moved meanwhile.
    void moveAndLetGo(QPoint there) {
        QTest::mouseMove(&view(), there);
        release(there);
    }
    bool isLifted() { return launcher().drag()->isActive(); }
    int page() { return viewModel().shown().navigation().currentPage(); }
};

TEST_F(TileDragTest, OnTheMiddleOfATileAFolderIsMadeAndAFolderTakesTheTileIn) {
    drag(at(u"A01"_s), at(u"F"_s));
    EXPECT_EQ(shownTiles(), u"A02 [F: A03 A04 A01]|A05 A06");
    press(Qt::Key_PageDown);
    ASSERT_TRUE(rests());
    drag(at(u"A06"_s), at(u"A05"_s));
    EXPECT_EQ(shownTiles(), u"A02 [F: A03 A04 A01]|[Folder: A05 A06]");
    // It opens with its name ready to be typed over.
    ASSERT_TRUE(launcher().folder()->isOpen());
    ASSERT_TRUE(QTest::qWaitFor([&] { return itemWith("name", u"Folder"_s) != nullptr; }));
    type(u"mine"_s);
    press(Qt::Key_Return);
    EXPECT_EQ(shownTiles(), u"A02 [F: A03 A04 A01]|[mine: A05 A06]");
}

TEST_F(TileDragTest, AtTheEdgeThePageTurnsAfterAWhileAndANewOneIsMadePastTheLast) {
    const QPoint from = at(u"A02"_s);
    const QPoint edge(view().width() - 4, from.y());
    lift(from, edge);
    EXPECT_EQ(page(), 0);
    mac.time.advance(TileDrag::turnDelay);
    EXPECT_EQ(page(), 1);
    mac.time.advance(TileDrag::turnDelay);
    EXPECT_TRUE(launcher().drag()->isOnNewPage());
    EXPECT_EQ(launcher().grid()->pageCount(), 3);
    mac.time.advance(TileDrag::turnDelay);
    EXPECT_EQ(launcher().grid()->pageCount(), 3) << "there is one new page, not a second";
    release(edge);
    EXPECT_EQ(shownTiles(), u"A01 [F: A03 A04]|A05 A06|A02");
    EXPECT_EQ(page(), 2);
}

TEST_F(TileDragTest, WhatIsPutBackIsSeenWhereItWas) {
    const QPoint edge(view().width() - 4, 300);
    const auto carryToTheNextPage = [&](const QString& label) {
        const QPoint from = at(label);
        QTest::mouseMove(&view(), from);
        lift(from, edge);
        mac.time.advance(TileDrag::leaveDelay); // beside the folder's panel it closes
        mac.time.advance(TileDrag::turnDelay);
        ASSERT_EQ(page(), 1);
    };
    carryToTheNextPage(u"A01"_s);
    press(Qt::Key_Escape);
    EXPECT_EQ(page(), 0);
    release(edge);
    ASSERT_TRUE(rests());
    carryToTheNextPage(u"A02"_s);
    ASSERT_TRUE(rests());
    carry(edge, beside(u"A05"_s, 50));
    release(beside(u"A05"_s, 50));
    EXPECT_EQ(shownTiles(), u"A01 [F: A03 A04]|A05 A02 A06");
    EXPECT_EQ(opened(), QStringList()) << "it was no click";
    undo();
    EXPECT_EQ(launcher().notice(), u"Undo Move Tile");
    EXPECT_EQ(page(), 0) << "by an undo, too";
    redo();
    EXPECT_EQ(page(), 1);
    undo();
    ASSERT_TRUE(rests());
    openFolder(u"F"_s);
    carryToTheNextPage(u"A03"_s);
    release({view().width() + 50, 300}); // out of the window
    EXPECT_EQ(shownTiles(), u"A01 A02 [F: A03 A04]|A05 A06");
    EXPECT_EQ(page(), 0);
    EXPECT_TRUE(launcher().folder()->isOpen());
}

TEST_F(TileDragTest, AFolderOpensUnderTheHandAndTakesTheTileInAsAWholeOrWhereItIsLetGo) {
    const QPoint folder = at(u"F"_s);
    const auto liftOver = [&] {
        lift(at(u"A01"_s), folder);
        mac.time.advance(TileDrag::openDelay);
        ASSERT_TRUE(launcher().folder()->isOpen());
        ASSERT_TRUE(rests());
    };
    liftOver();
    EXPECT_EQ(launcher().drag()->targetId(), toText(idOf(u"F"_s)));
    release(folder);
    EXPECT_EQ(shownTiles(), u"A02 [F: A03 A04 A01]|A05 A06") << "not with what lay under the pointer";
    undo();
    press(Qt::Key_Escape);
    ASSERT_TRUE(rests());

    liftOver();
    moveAndLetGo(beside(u"A03"_s, -50));
    EXPECT_EQ(shownTiles(), u"A02 [F: A01 A03 A04]|A05 A06");
    // Let go beside the panel at once it comes out, too.
    drag(at(u"A04"_s), {view().width() / 2, view().height() - 30});
    EXPECT_FALSE(launcher().folder()->isOpen());
    EXPECT_EQ(shownTiles(), u"A02 [F: A01 A03] A04|A05 A06");
}

TEST_F(TileDragTest, ASelectionIsCarriedWhole) {
    click(u"A01"_s, Qt::ControlModifier);
    click(u"A02"_s, Qt::ControlModifier);
    EXPECT_EQ(opened(), QStringList());
    EXPECT_EQ(launcher().selection()->ids().size(), 2);
    // Both leave their slots, and the folder takes the place of one of them.
    const int second = at(u"A02"_s).x();
    const int third = at(u"F"_s).x();
    const QPoint past = beside(u"F"_s, 300);
    const auto liftBoth = [&] {
        lift(at(u"A02"_s), past);
        mac.time.advance(TileDrag::roomDelay);
        return QTest::qWaitFor([&] { return at(u"F"_s).x() < second; });
    };
    ASSERT_TRUE(liftBoth());
    press(Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([&] { return at(u"F"_s).x() == third; })) << "back in its place";
    release(past);
    ASSERT_TRUE(liftBoth());
    QTest::mouseMove(&view(), tile(u"A01"_s)->mapToScene({0, 0}).toPoint() + QPoint(5, 60));
    mac.time.advance(TileDrag::roomDelay);
    ASSERT_TRUE(QTest::qWaitFor([&] { return std::abs(at(u"F"_s).x() - second) < 2; }));
    const QPoint folder = at(u"F"_s);
    QTest::mouseMove(&view(), folder);
    EXPECT_EQ(launcher().drag()->targetId(), toText(idOf(u"F"_s)));
    release(folder);
    EXPECT_EQ(shownTiles(), u"[F: A03 A04 A01 A02]|A05 A06");
}

TEST_F(TileDragTest, ARescanAndAnEvaluationLeaveTheTileInTheHand) {
    ASSERT_TRUE(editor().addSmartFolder(mode(), SmartFolderTemplate::installedThisWeek));
    SmartFolderDefinition all = viewModel().smartFolders().definitions().first();
    all.rules = {SmartFolderTextRule{idOf(u"rule"_s), "displayName", predicate::BeginsWith(u"A"_s)}};
    ASSERT_TRUE(editor().changeSmartFolder(mode(), all));
    const auto shows = [&](qsizetype count) {
        return QTest::qWaitFor([&] {
            return viewModel().smartFolders().evaluations(mode()).value(all.id).matches.size() == count;
        });
    };
    ASSERT_TRUE(shows(6));
    lift(at(u"A01"_s), beside(u"A02"_s, 50));
    ASSERT_TRUE(isLifted());
    install({u"Birch"_s});
    mac.remove(u"/Applications/A06.app"_s);
    bool isDone = false;
    viewModel().applications().rescan([&] { isDone = true; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return isDone; }));
    ASSERT_TRUE(shows(5));
    EXPECT_TRUE(isLifted());
    EXPECT_EQ(launcher().tileView(launcher().drag()->heldTile()).value(u"label"_s), u"A01"_s);
    moveAndLetGo(beside(u"A02"_s, 50));
    EXPECT_TRUE(shownTiles().startsWith(u"A02 A01 [F: A03 A04]")) << shownTiles().toStdString();
}

TEST_F(TileDragTest, TilesThatGoLeaveTheHandAndTheHeldOneEndsTheDrag) {
    click(u"A01"_s, Qt::ControlModifier);
    click(u"A02"_s, Qt::ControlModifier);
    lift(at(u"A01"_s), {900, 500});
    ASSERT_EQ(launcher().drag()->tileIds().size(), 2);
    ASSERT_TRUE(editor().hideApps(mode(), {idOf(u"A02"_s)}));
    EXPECT_EQ(launcher().drag()->tileIds(), QStringList{toText(idOf(u"A01"_s))});
    ASSERT_TRUE(editor().hideApps(mode(), {idOf(u"A01"_s)}));
    EXPECT_FALSE(isLifted());
    release({200, 300});
    EXPECT_EQ(shownTiles(), u"A01 A02 [F: A03 A04]|A05 A06");
}

TEST_F(TileDragTest, AnArrangementThatIsReplacedTakesTheTileFromTheHand) {
    const auto saved = saveArrangement(viewModel(), mac, u"Before"_s);
    ASSERT_TRUE(saved);
    for (const bool isReset : {false, true}) {
        ASSERT_TRUE(QTest::qWaitFor([&] { return tile(u"A01"_s)->property("shiftX") == 0; }));
        lift(at(u"A01"_s), beside(u"A02"_s, 50));
        ASSERT_TRUE(isLifted());
        ASSERT_TRUE(isReset ? viewModel().archive().reset(mode())
                            : restoreArrangement(viewModel(), mac, saved->id));
        EXPECT_FALSE(isLifted());
        release({200, 300});
    }
}

} // namespace
} // namespace tessellar::test
