#include "launcher_fixture.h"

#include "launcher/installed_applications.h"
#include "launcher/launcher_editor.h"
#include "launcher/layout_archive.h"
#include "launcher/live_layout.h"
#include "launcher/small_launcher.h"
#include "launcher/smart_folder_library.h"
#include "smartfolders/smart_folder_rule.h"

namespace tessellar::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class TileDragTest : public LauncherFixture {
protected:
    TileDragTest() { install(manyNames(6)); }

    void showTwoPagesAndAFolder() {
        store({{app(u"A01"_s), app(u"A02"_s), folder(u"F"_s, {{app(u"A03"_s), app(u"A04"_s)}})},
               {app(u"A05"_s), app(u"A06"_s)}});
        start();
    }
    QPoint at(const QString& label) { return middle(tile(label)); }
    QPoint beside(const QString& label, int pixels) { return at(label) + QPoint(pixels, 0); }
};

TEST_F(TileDragTest, ATileGoesBetweenOthersAndBackByUndo) {
    showTwoPagesAndAFolder();
    drag(at(u"A01"_s), beside(u"A02"_s, 50));
    EXPECT_EQ(shownTiles(), u"A02 A01 [F: A03 A04]|A05 A06");
    EXPECT_EQ(opened(), QStringList()) << "it was no click";
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(shownTiles(), u"A01 A02 [F: A03 A04]|A05 A06");
    EXPECT_EQ(launcher().notice(), u"Undo Move Tile");
    press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(shownTiles(), u"A02 A01 [F: A03 A04]|A05 A06");
    EXPECT_EQ(launcher().notice(), u"Redo Move Tile");
}

TEST_F(TileDragTest, OthersMakeRoomUnderTheTile) {
    showTwoPagesAndAFolder();
    const int second = at(u"A02"_s).x();
    const int first = at(u"A01"_s).x();
    QTest::mousePress(&view(), Qt::LeftButton, {}, at(u"A01"_s));
    carry({first, at(u"A02"_s).y()}, beside(u"A02"_s, 50));
    ASSERT_TRUE(launcher().drag()->isLifted());
    mac.time.advance(TileDrag::roomDelay);
    EXPECT_TRUE(QTest::qWaitFor([&] { return std::abs(at(u"A02"_s).x() - first) < 2; }));
    press(Qt::Key_Escape);
    EXPECT_FALSE(launcher().drag()->isLifted());
    EXPECT_TRUE(QTest::qWaitFor([&] { return at(u"A02"_s).x() == second; }));
    QTest::mouseRelease(&view(), Qt::LeftButton, {}, beside(u"A02"_s, 50));
    EXPECT_EQ(shownTiles(), u"A01 A02 [F: A03 A04]|A05 A06") << "Escape puts everything back";
    EXPECT_TRUE(view().isVisible());
}

TEST_F(TileDragTest, OnTheMiddleOfATileAFolderIsMadeAndAFolderTakesTheTileIn) {
    showTwoPagesAndAFolder();
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
    showTwoPagesAndAFolder();
    const QPoint from = at(u"A02"_s);
    const QPoint edge(view().width() - 4, from.y());
    QTest::mousePress(&view(), Qt::LeftButton, {}, from);
    carry(from, edge);
    EXPECT_EQ(viewModel().shown().currentPage(), 0);
    mac.time.advance(TileDrag::turnDelay);
    EXPECT_EQ(viewModel().shown().currentPage(), 1);
    mac.time.advance(TileDrag::turnDelay);
    EXPECT_TRUE(launcher().drag()->isOnNewPage());
    EXPECT_EQ(launcher().grid()->pageCount(), 3);
    mac.time.advance(TileDrag::turnDelay);
    EXPECT_EQ(launcher().grid()->pageCount(), 3) << "there is one new page, not a second";
    QTest::mouseRelease(&view(), Qt::LeftButton, {}, edge);
    EXPECT_EQ(shownTiles(), u"A01 [F: A03 A04]|A05 A06|A02");
    EXPECT_EQ(viewModel().shown().currentPage(), 2);
}

TEST_F(TileDragTest, WhatIsPutBackIsSeenWhereItWasAndThePointerHoversOverWhatItIsOn) {
    showTwoPagesAndAFolder();
    const QPoint edge(view().width() - 4, 300);
    const auto carryToTheNextPage = [&](const QString& label) {
        const QPoint from = at(label);
        QTest::mouseMove(&view(), from);
        QTest::mousePress(&view(), Qt::LeftButton, {}, from);
        carry(from, edge);
        mac.time.advance(TileDrag::leaveDelay); // beside the folder's panel it closes
        mac.time.advance(TileDrag::turnDelay);
        ASSERT_EQ(viewModel().shown().currentPage(), 1);
    };
    carryToTheNextPage(u"A01"_s);
    press(Qt::Key_Escape);
    EXPECT_EQ(viewModel().shown().currentPage(), 0);
    QTest::mouseRelease(&view(), Qt::LeftButton, {}, edge);
    ASSERT_TRUE(rests());
    carryToTheNextPage(u"A02"_s);
    ASSERT_TRUE(rests());
    carry(edge, beside(u"A05"_s, 50));
    QTest::mouseRelease(&view(), Qt::LeftButton, {}, beside(u"A05"_s, 50));
    EXPECT_EQ(shownTiles(), u"A01 [F: A03 A04]|A05 A02 A06");
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(viewModel().shown().currentPage(), 0) << "by an undo, too";
    press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(viewModel().shown().currentPage(), 1);
    press(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(rests());
    click(u"F"_s);
    ASSERT_TRUE(rests());
    carryToTheNextPage(u"A03"_s);
    QTest::mouseRelease(&view(), Qt::LeftButton, {}, {view().width() + 50, 300}); // out of the window
    EXPECT_EQ(shownTiles(), u"A01 A02 [F: A03 A04]|A05 A06");
    EXPECT_EQ(viewModel().shown().currentPage(), 0);
    EXPECT_TRUE(launcher().folder()->isOpen());
    press(Qt::Key_Escape);
    ASSERT_TRUE(rests());

    const auto isHovered = [&](const QString& label) {
        for (QObject* handler : tile(label)->findChildren<QObject*>())
            if (handler->inherits("QQuickHoverHandler"))
                return handler->property("hovered").toBool();
        return false;
    };
    const QPoint from = at(u"A01"_s);
    QTest::mouseMove(&view(), from);
    ASSERT_TRUE(QTest::qWaitFor([&] { return isHovered(u"A01"_s); }));
    QTest::mousePress(&view(), Qt::LeftButton, {}, from);
    carry(from, {900, 600});
    press(Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !isHovered(u"A01"_s); })) << "it was left behind";
    QTest::mouseRelease(&view(), Qt::LeftButton, {}, {900, 600});
    EXPECT_TRUE(view().isVisible());
}

TEST_F(TileDragTest, OutsideAnOpenFoldersPanelATileComesOut) {
    showTwoPagesAndAFolder();
    click(u"F"_s);
    ASSERT_TRUE(rests());
    drag(at(u"A04"_s), beside(u"A03"_s, -50));
    EXPECT_EQ(shownTiles(), u"A01 A02 [F: A04 A03]|A05 A06") << "within it they change places";
    const QPoint from = at(u"A03"_s);
    const QPoint outside(view().width() / 2, view().height() - 30);
    QTest::mousePress(&view(), Qt::LeftButton, {}, from);
    carry(from, outside);
    EXPECT_TRUE(launcher().folder()->isOpen());
    mac.time.advance(TileDrag::leaveDelay);
    EXPECT_FALSE(launcher().folder()->isOpen());
    ASSERT_TRUE(rests());
    const QPoint first = beside(u"A01"_s, -50);
    QTest::mouseMove(&view(), first);
    QTest::mouseRelease(&view(), Qt::LeftButton, {}, first);
    EXPECT_EQ(shownTiles(), u"A03 A01 A02 A04|A05 A06");
}

TEST_F(TileDragTest, LetGoBesideThePanelAtOnceItComesOutTooAndAFolderOpensUnderATile) {
    showTwoPagesAndAFolder();
    const QPoint folder = at(u"F"_s);
    QTest::mousePress(&view(), Qt::LeftButton, {}, at(u"A01"_s));
    carry(at(u"A01"_s), folder);
    mac.time.advance(TileDrag::openDelay);
    EXPECT_TRUE(launcher().folder()->isOpen());
    ASSERT_TRUE(rests());
    const QPoint first = beside(u"A03"_s, -50);
    QTest::mouseMove(&view(), first);
    QTest::mouseRelease(&view(), Qt::LeftButton, {}, first);
    EXPECT_EQ(shownTiles(), u"A02 [F: A01 A03 A04]|A05 A06");
    drag(at(u"A04"_s), {view().width() / 2, view().height() - 30});
    EXPECT_FALSE(launcher().folder()->isOpen());
    EXPECT_EQ(shownTiles(), u"A02 [F: A01 A03] A04|A05 A06");
}

TEST_F(TileDragTest, AFolderThatOpensUnderTheHandTakesTheTileInAsAWhole) {
    showTwoPagesAndAFolder();
    const QPoint folder = at(u"F"_s);
    QTest::mousePress(&view(), Qt::LeftButton, {}, at(u"A01"_s));
    carry(at(u"A01"_s), folder);
    mac.time.advance(TileDrag::openDelay);
    ASSERT_TRUE(launcher().folder()->isOpen());
    ASSERT_TRUE(rests());
    EXPECT_EQ(launcher().drag()->targetId(), toText(idOf(u"F"_s)));
    QTest::mouseRelease(&view(), Qt::LeftButton, {}, folder);
    EXPECT_EQ(shownTiles(), u"A02 [F: A03 A04 A01]|A05 A06") << "not with what lay under the pointer";
}

TEST_F(TileDragTest, ASelectionIsCarriedWhole) {
    showTwoPagesAndAFolder();
    QTest::mouseClick(&view(), Qt::LeftButton, Qt::ControlModifier, at(u"A01"_s));
    QTest::mouseClick(&view(), Qt::LeftButton, Qt::ControlModifier, at(u"A02"_s));
    EXPECT_EQ(opened(), QStringList());
    EXPECT_EQ(launcher().selectedIds().size(), 2);
    // Both leave their slots, and the folder takes the place of one of them.
    const int second = at(u"A02"_s).x();
    QTest::mousePress(&view(), Qt::LeftButton, {}, at(u"A02"_s));
    carry(at(u"A02"_s), beside(u"F"_s, 300));
    mac.time.advance(TileDrag::roomDelay);
    ASSERT_TRUE(QTest::qWaitFor([&] { return at(u"F"_s).x() < second; }));
    QTest::mouseMove(&view(), tile(u"A01"_s)->mapToScene({0, 0}).toPoint() + QPoint(5, 60));
    mac.time.advance(TileDrag::roomDelay);
    ASSERT_TRUE(QTest::qWaitFor([&] { return std::abs(at(u"F"_s).x() - second) < 2; }));
    const QPoint folder = at(u"F"_s);
    QTest::mouseMove(&view(), folder);
    EXPECT_EQ(launcher().drag()->targetId(), toText(idOf(u"F"_s)));
    QTest::mouseRelease(&view(), Qt::LeftButton, {}, folder);
    EXPECT_EQ(shownTiles(), u"[F: A03 A04 A01 A02]|A05 A06");
}

TEST_F(TileDragTest, InABlockedArrangementNothingIsLifted) {
    mac.write(mac.machine.places.applicationFolder() + u"/layout.json"_s, "damaged");
    start();
    press(Qt::Key_Return);
    ASSERT_FALSE(launcher().alert()->isOpen());
    const QString before = shownTiles();
    QTest::mousePress(&view(), Qt::LeftButton, {}, at(u"A01"_s));
    carry(at(u"A01"_s), at(u"A02"_s));
    EXPECT_FALSE(launcher().drag()->isLifted());
    QTest::mouseRelease(&view(), Qt::LeftButton, {}, at(u"A02"_s));
    EXPECT_EQ(shownTiles(), before);
    EXPECT_FALSE(launcher().notice().isEmpty()) << "and it is said why";
}

TEST_F(TileDragTest, WhatASmartFolderShowsStaysInIt) {
    showTwoPagesAndAFolder();
    ASSERT_TRUE(viewModel().editor().addSmartFolder(viewModel().shown().mode(),
                                                    SmartFolderTemplate::installedThisWeek));
    const QUuid id = viewModel().smartFolders().definitions().first().id;
    viewModel().shown().openFolder(id);
    SmartFolderDefinition all = *viewModel().smartFolders().definition(id);
    all.rules = {SmartFolderTextRule{idOf(u"rule"_s), "displayName", predicate::BeginsWith(u"A"_s)}};
    ASSERT_TRUE(viewModel().editor().changeSmartFolder(viewModel().shown().mode(), all));
    ASSERT_TRUE(QTest::qWaitFor([&] {
        return viewModel().smartFolders().appKeys(id, viewModel().shown().mode()).size() == 6;
    }));
    ASSERT_TRUE(rests());
    const QString before = shownTiles();
    drag(at(u"A01"_s), {view().width() / 2, view().height() - 30});
    EXPECT_EQ(shownTiles(), before);
    EXPECT_TRUE(launcher().folder()->isOpen());
}

TEST_F(TileDragTest, ARescanAndAnEvaluationLeaveTheTileInTheHand) {
    showTwoPagesAndAFolder();
    ASSERT_TRUE(viewModel().editor().addSmartFolder(viewModel().shown().mode(),
                                                    SmartFolderTemplate::installedThisWeek));
    SmartFolderDefinition all = viewModel().smartFolders().definitions().first();
    all.rules = {SmartFolderTextRule{idOf(u"rule"_s), "displayName", predicate::BeginsWith(u"A"_s)}};
    ASSERT_TRUE(viewModel().editor().changeSmartFolder(viewModel().shown().mode(), all));
    const auto count = [&] {
        return viewModel().smartFolders().appKeys(all.id, viewModel().shown().mode()).size();
    };
    ASSERT_TRUE(QTest::qWaitFor([&] { return count() == 6; }));
    QTest::mousePress(&view(), Qt::LeftButton, {}, at(u"A01"_s));
    carry(at(u"A01"_s), beside(u"A02"_s, 50));
    ASSERT_TRUE(launcher().drag()->isLifted());
    install({u"Birch"_s});
    mac.remove(u"/Applications/A06.app"_s);
    bool isDone = false;
    viewModel().applications().rescan([&] { isDone = true; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return isDone; }));
    ASSERT_TRUE(QTest::qWaitFor([&] { return count() == 5; }));
    EXPECT_TRUE(launcher().drag()->isLifted());
    EXPECT_EQ(launcher().tileView(launcher().drag()->heldTile()).value(u"label"_s), u"A01"_s);
    const QPoint after = beside(u"A02"_s, 50);
    QTest::mouseMove(&view(), after);
    QTest::mouseRelease(&view(), Qt::LeftButton, {}, after);
    EXPECT_TRUE(shownTiles().startsWith(u"A02 A01 [F: A03 A04]")) << shownTiles().toStdString();
}

TEST_F(TileDragTest, TilesThatGoLeaveTheHandAndTheHeldOneEndsTheDrag) {
    showTwoPagesAndAFolder();
    QTest::mouseClick(&view(), Qt::LeftButton, Qt::ControlModifier, at(u"A01"_s));
    QTest::mouseClick(&view(), Qt::LeftButton, Qt::ControlModifier, at(u"A02"_s));
    QTest::mousePress(&view(), Qt::LeftButton, {}, at(u"A01"_s));
    carry(at(u"A01"_s), {900, 500});
    ASSERT_EQ(launcher().drag()->liftedIds().size(), 2);
    ASSERT_TRUE(viewModel().editor().hideApps(viewModel().shown().mode(), {idOf(u"A02"_s)}));
    EXPECT_EQ(launcher().drag()->liftedIds(), QStringList{toText(idOf(u"A01"_s))});
    ASSERT_TRUE(viewModel().editor().hideApps(viewModel().shown().mode(), {idOf(u"A01"_s)}));
    EXPECT_FALSE(launcher().drag()->isLifted());
    QTest::mouseRelease(&view(), Qt::LeftButton, {}, {200, 300});
    EXPECT_EQ(shownTiles(), u"A01 A02 [F: A03 A04]|A05 A06");
}

TEST_F(TileDragTest, AnArrangementThatIsReplacedTakesTheTileFromTheHand) {
    showTwoPagesAndAFolder();
    const auto saved = saveArrangement(viewModel(), mac, u"Before"_s);
    ASSERT_TRUE(saved);
    for (const auto& replace : std::initializer_list<std::function<void()>>{
             [&] { ASSERT_TRUE(restoreArrangement(viewModel(), mac, saved->id)); },
             [&] { ASSERT_TRUE(viewModel().archive().reset(viewModel().shown().mode())); }}) {
        ASSERT_TRUE(QTest::qWaitFor([&] { return tile(u"A01"_s)->property("shiftX") == 0; }));
        QTest::mousePress(&view(), Qt::LeftButton, {}, at(u"A01"_s));
        carry(at(u"A01"_s), beside(u"A02"_s, 50));
        ASSERT_TRUE(launcher().drag()->isLifted());
        replace();
        EXPECT_FALSE(launcher().drag()->isLifted());
        QTest::mouseRelease(&view(), Qt::LeftButton, {}, {200, 300});
    }
}

} // namespace
} // namespace tessellar::test
