#include "app/menu_model.h"
#include "app/pager_item.h"
#include "launcher/actions.h"
#include "launcher/launcher_clipboard.h"
#include "launcher_fixture.h"

#include <QClipboard>

namespace tessellar::test {
namespace {

using testing::UnorderedElementsAre;

/// What the hands do to tiles with menus, keys and clicks, apart from dragging them.
class WindowEditingTest : public LauncherFixture {
protected:
    void SetUp() override {
        install(manyNames(12));
        store({{app(u"A01"_s), app(u"A02"_s), app(u"A03"_s), app(u"A04"_s), app(u"A05"_s),
                app(u"A06"_s), app(u"A07"_s), app(u"A08"_s), app(u"A09"_s)},
               {app(u"A10"_s), folder(u"Both"_s, {{app(u"A11"_s), app(u"A12"_s)}})}});
        start();
    }
    QStringList selected() {
        QStringList labels;
        for (const QString& id : launcher().selection()->ids())
            labels += launcher().tileView(id).value(u"label"_s).toString();
        return labels;
    }
    testing::AssertionResult begins(const QString& tiles) {
        return shownTiles().startsWith(tiles)
                   ? testing::AssertionSuccess()
                   : testing::AssertionFailure() << shownTiles().toStdString();
    }
    bool isCut(const QString& label) { return tile(label)->property("isCut").toBool(); }

    QStringList answers;
    void ask(bool isDestructive) {
        viewModel().messages().ask({.title = u"Sure?"_s,
                                    .text = u"It cannot be undone."_s,
                                    .accept = u"Do It"_s,
                                    .isDestructive = isDestructive},
                                   [this](bool yes) { answers += yes ? u"yes"_s : u"no"_s; });
    }
};

TEST_F(WindowEditingTest, AQuestionIsAnsweredWithButtonsAndKeysAndReturnDoesNotDestroy) {
    ask(false);
    EXPECT_EQ(launcher().alert()->title(), u"Sure?");
    clickNamed(u"acceptButton"_s);
    ask(false);
    clickNamed(u"cancelButton"_s);
    for (const bool isDestructive : {false, true})
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
            ask(isDestructive);
            press(key);
        }
    EXPECT_EQ(answers, (QStringList{u"yes"_s, u"no"_s, u"yes"_s, u"no"_s, u"no"_s, u"no"_s}));
    answers.clear();
    ask(true);
    press({Qt::Key_Tab, Qt::Key_Return});
    EXPECT_EQ(answers, QStringList{u"yes"_s}) << "one who chose that button means it";
    ask(true);
    ask(false);
    press({Qt::Key_Return, Qt::Key_Return});
    EXPECT_EQ(answers.mid(1), (QStringList{u"no"_s, u"yes"_s})) << "one after the other";
    EXPECT_FALSE(launcher().alert()->isOpen());
    EXPECT_TRUE(view().isVisible());
}

TEST_F(WindowEditingTest, AMenuIsUsedByKeysAloneAndClosedBesideIt) {
    press({Qt::Key_Right, Qt::Key_Menu});
    MenuModel& menu = *launcher().input()->menu();
    ASSERT_TRUE(menu.isOpen());
    type(u"hi"_s);
    EXPECT_EQ(menu.entries().value(menu.current()).toMap()[u"title"_s], u"Hide"_s);
    press(Qt::Key_Escape);
    EXPECT_FALSE(menu.isOpen());
    EXPECT_TRUE(view().isVisible());
    press(Qt::Key_Menu);
    type(u"hi"_s);
    press(Qt::Key_Return);
    EXPECT_FALSE(menu.isOpen());
    EXPECT_FALSE(tile(u"A01"_s));
    type(u"a1"_s);
    ASSERT_TRUE(isSeen(u"A11"_s));
    press({Qt::Key_Right, Qt::Key_Menu});
    ASSERT_TRUE(menu.isOpen());
    const QPointF away = menu.position() - at(selected().value(0));
    EXPECT_LT(away.manhattanLength(), 60) << "at the result that it is about";
    clickAt({20, 780});
    EXPECT_FALSE(menu.isOpen());
    EXPECT_TRUE(view().isVisible() && launcher().search()->isActive())
        << "that click closed the menu and nothing else";
}

TEST_F(WindowEditingTest, ANameIsTypedOverTheLabel) {
    press({Qt::Key_Right, Qt::Key_Menu});
    choose(u"Rename…"_s);
    type(u"Esche"_s);
    press(Qt::Key_Return);
    EXPECT_TRUE(tile(u"Esche"_s));
    EXPECT_EQ(launcher().search()->text(), QString());
    chooseAt(u"Esche"_s, u"Rename…"_s);
    type(u"x"_s);
    press(Qt::Key_Escape);
    EXPECT_TRUE(tile(u"Esche"_s));
    // A click beside a name commits it and does nothing else.
    for (const auto& [label, beside] :
         {std::pair(u"Esche"_s, at(u"A02"_s)), std::pair(u"A03"_s, QPoint(20, 400))}) {
        chooseAt(label, u"Rename…"_s);
        type(u"Ash"_s);
        clickAt(beside);
        EXPECT_EQ(launcher().renaming()->tileId(), QString());
        EXPECT_EQ(opened(), QStringList());
        EXPECT_TRUE(view().isVisible());
    }
    EXPECT_TRUE(begins(u"Ash A02 Ash"_s));
    // The title of an open folder.
    press(Qt::Key_PageDown);
    ASSERT_TRUE(rests());
    openFolder(u"Both"_s);
    clickAt(middle(itemWith("text", u"Both"_s)));
    type(u"Wood"_s);
    press(Qt::Key_Return);
    EXPECT_EQ(launcher().folder()->title(), u"Wood");
    EXPECT_TRUE(launcher().folder()->isOpen());
}

TEST_F(WindowEditingTest, ACommandsActionContinuesHere) {
    const auto& presenter = *viewModel().presenter();
    launcher().search()->setText(u"a"_s);
    ActionTarget target{.item = *viewModel().shown().tileOf(u"org.example.a12"_s)};
    ASSERT_TRUE(presenter.perform(target, ActionRequest::rename));
    EXPECT_TRUE(isSeen(u"A12"_s)) << "in its folder";
    EXPECT_TRUE(presenter.isBusy());
    type(u"Ash"_s);
    press(Qt::Key_Return);
    EXPECT_TRUE(tile(u"Ash"_s));
    ASSERT_TRUE(editor().hideApps(mode(), {target.item->id()}));
    EXPECT_FALSE(presenter.perform(target, ActionRequest::rename));
    EXPECT_FALSE(presenter.isBusy());
    target.mode = LauncherWindowMode::windowed;
    EXPECT_FALSE(presenter.perform(target, ActionRequest::rename));
    EXPECT_FALSE(presenter.perform(target, ActionRequest::none)) << "a question";

    ask(false);
    EXPECT_TRUE(presenter.isBusy());
    viewModel().messages().answer(false);
    EXPECT_FALSE(presenter.isBusy());
    ASSERT_TRUE(presenter.perform(target, ActionRequest::information));
    EXPECT_EQ(launcher().sheets()->current(), Sheets::information);
    EXPECT_TRUE(presenter.isBusy());
}

TEST_F(WindowEditingTest, RangesGrowAndShrinkAndNothingIsStarted) {
    click(u"A03"_s, Qt::ShiftModifier);
    click(u"A05"_s, Qt::ShiftModifier);
    EXPECT_THAT(selected(), UnorderedElementsAre(u"A03"_s, u"A04"_s, u"A05"_s));
    click(u"A02"_s, Qt::ShiftModifier);
    EXPECT_THAT(selected(), UnorderedElementsAre(u"A02"_s, u"A03"_s)) << "from the same anchor";
    press(Qt::Key_Right, Qt::ShiftModifier);
    press(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_THAT(selected(), UnorderedElementsAre(u"A03"_s, u"A04"_s));
    press(Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_EQ(selected(), QStringList{u"A03"_s});
    click(u"A07"_s, Qt::ControlModifier);
    click(u"A03"_s, Qt::ControlModifier);
    EXPECT_EQ(selected(), QStringList{u"A07"_s});
    click(u"A06"_s, Qt::ShiftModifier);
    EXPECT_THAT(selected(), UnorderedElementsAre(u"A06"_s, u"A07"_s));
    click(u"A01"_s, Qt::AltModifier);
    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(selected().size(), 9);
    press(Qt::Key_Escape);
    EXPECT_EQ(selected(), QStringList());
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_PageDown);
    EXPECT_EQ(selected(), QStringList()) << "what is left behind is not selected";
    EXPECT_EQ(opened(), QStringList());
    EXPECT_TRUE(view().isVisible());
}

TEST_F(WindowEditingTest, ABandSelectsAndWhatIsHiddenIsNotSelected) {
    drag(at(u"A02"_s, {-68, -60}), at(u"A04"_s, {10, 10}));
    EXPECT_THAT(selected(), UnorderedElementsAre(u"A02"_s, u"A03"_s, u"A04"_s));
    EXPECT_EQ(launcher().grid()->page(), 0);
    chooseAt(u"A03"_s, u"Hide"_s);
    EXPECT_EQ(selected(), QStringList());
    EXPECT_FALSE(tile(u"A04"_s));
}

TEST_F(WindowEditingTest, KeysCopyCutAndPasteThroughTheDesktop) {
    click(u"A01"_s, Qt::ControlModifier);
    press(Qt::Key_X, Qt::ControlModifier);
    EXPECT_TRUE(isCut(u"A01"_s));
    EXPECT_FALSE(isCut(u"A02"_s));
    press(Qt::Key_PageDown); // it goes where the page is turned
    ASSERT_TRUE(rests());
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(shownTiles(), u"A02 A03 A04 A05 A06 A07 A08 A09|A10 [Both: A11 A12] A01");
    EXPECT_FALSE(isCut(u"A01"_s)) << "it has been pasted";
    undo();
    ASSERT_TRUE(rests());
    EXPECT_FALSE(isCut(u"A01"_s));
    click(u"A01"_s, Qt::ControlModifier);
    press(Qt::Key_X, Qt::ControlModifier);
    EXPECT_TRUE(isCut(u"A01"_s)) << "the same, cut anew";
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_FALSE(isCut(u"A01"_s));
    EXPECT_THAT(QGuiApplication::clipboard()->text().toStdString(), testing::HasSubstr("A01"));
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_TRUE(begins(u"A01 ~A01 A02"_s));
}

TEST_F(WindowEditingTest, APasteOntoAFullPageIsSeenWhereItWentAndUndone) {
    window.reset();
    const QStringList names = manyNames(90);
    install(names);
    Pages pages(3);
    for (qsizetype i = 0; i < names.size(); ++i)
        pages[i / 40].append(app(names[i]));
    store(pages);
    start();
    click(u"A01"_s, Qt::ControlModifier);
    press(Qt::Key_X, Qt::ControlModifier);
    press(Qt::Key_PageDown);
    ASSERT_TRUE(rests());
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(launcher().grid()->page(), 2);
    EXPECT_EQ(selected(), QStringList{u"A01"_s});
    EXPECT_TRUE(isSeen(u"A01"_s));
    press(Qt::Key_Home); // the page that the undo changes goes in the same turn
    undo();
    ASSERT_TRUE(rests());
    EXPECT_TRUE(begins(u"A01 A02"_s));
}

TEST_F(WindowEditingTest, KeysMoveAndGroup) {
    press(Qt::Key_Right);
    press(Qt::Key_Right, Qt::ControlModifier);
    EXPECT_TRUE(begins(u"A02 A01 A03"_s));
    press(Qt::Key_Left, Qt::ControlModifier);
    EXPECT_TRUE(begins(u"A01 A02 A03"_s));
    press(Qt::Key_Right, Qt::ShiftModifier);
    press(Qt::Key_Right, Qt::ControlModifier);
    EXPECT_TRUE(begins(u"A03 A01 A02 A04"_s));
    press(Qt::Key_Left, Qt::ControlModifier);
    press(Qt::Key_Left, Qt::ControlModifier);
    EXPECT_TRUE(begins(u"A01 A02 A03"_s)) << "there is no page before";
    press(Qt::Key_Right, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(launcher().folder()->isOpen()) << "with its name to be typed over";
    type(u"Three"_s);
    press(Qt::Key_Return);
    EXPECT_TRUE(begins(u"[Three: A03 A01 A02]"_s));
    press(Qt::Key_Escape);
    ASSERT_TRUE(rests());
    click(u"A04"_s, Qt::ControlModifier);
    click(u"A05"_s, Qt::ControlModifier);
    press(Qt::Key_G, Qt::ControlModifier);
    EXPECT_FALSE(tile(u"A05"_s));
    undo();
    EXPECT_TRUE(tile(u"A05"_s));
    press({Qt::Key_PageDown, Qt::Key_PageUp}); // which leaves the selection behind
    ASSERT_TRUE(rests());
    click(u"A09"_s, Qt::ControlModifier);
    press(Qt::Key_Right, Qt::ControlModifier);
    ASSERT_EQ(launcher().grid()->page(), 1);
    press(Qt::Key_PageUp);
    undo();
    EXPECT_EQ(launcher().grid()->page(), 0) << "an undo leads to the page where something returned";
    EXPECT_TRUE(shownTiles().contains(u"A08 A09|"));
}

TEST_F(WindowEditingTest, AnUndoSlidesTilesBackAndPagesMoveUnlessMotionIsReduced) {
    const auto shift = [&](const QString& label) { return tile(label)->property("shiftX").toReal(); };
    PagerItem* pager = nullptr;
    for (QQuickItem* item = tile(u"A01"_s); item && !pager; item = item->parentItem())
        pager = qobject_cast<PagerItem*>(item);
    ASSERT_TRUE(pager);
    click(u"A01"_s, Qt::ControlModifier);
    press(Qt::Key_Right, Qt::ControlModifier);
    EXPECT_LT(shift(u"A01"_s), -10) << "it begins where it was";
    EXPECT_GT(shift(u"A02"_s), 10);
    EXPECT_TRUE(QTest::qWaitFor([&] { return shift(u"A01"_s) == 0 && shift(u"A02"_s) == 0; }));
    undo();
    EXPECT_GT(shift(u"A01"_s), 10);
    EXPECT_TRUE(QTest::qWaitFor([&] { return shift(u"A01"_s) == 0; }));
    press(Qt::Key_PageDown);
    EXPECT_TRUE(pager->isMoving());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !pager->isMoving(); }));

    set(u"reducesMotion"_s, true);
    ASSERT_EQ(pager->position(), 1);
    press(Qt::Key_PageUp);
    EXPECT_FALSE(pager->isMoving());
    EXPECT_EQ(pager->position(), 0) << "at once";
    redo();
    EXPECT_EQ(shift(u"A01"_s), 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return tile(u"A01"_s)->opacity() < 1; })) << "it fades in";
    set(u"reducesMotion"_s, QJsonValue());
}

} // namespace
} // namespace tessellar::test
