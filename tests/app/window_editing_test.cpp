#include "launcher/launcher_messages.h"
#include "launcher/layout_archive.h"
#include "launcher_fixture.h"

#include <QClipboard>

namespace tessellar::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// Questions, menus, names and search, as a user meets them.
class WindowEditingTest : public LauncherFixture {
protected:
    void SetUp() override {
        install({u"Ash"_s, u"Beech"_s, u"Oak"_s});
        store({{app(u"Ash"_s), folder(u"Trees"_s, {{app(u"Beech"_s), app(u"Oak"_s)}})}});
        start();
    }
    QStringList answers;
    void ask(bool isDestructive) {
        viewModel().messages().ask({.title = u"Sure?"_s,
                                    .text = u"It cannot be undone."_s,
                                    .accept = u"Do It"_s,
                                    .isDestructive = isDestructive},
                                   [this](bool yes) { answers += yes ? u"yes"_s : u"no"_s; });
    }
};

TEST_F(WindowEditingTest, AQuestionIsAnsweredWithButtonsAndKeys) {
    ask(false);
    EXPECT_EQ(launcher().alert()->title(), u"Sure?");
    click(u"Ash"_s);
    EXPECT_EQ(opened(), QStringList()) << "it stands before everything else";
    clickNamed(u"acceptButton"_s);
    ask(false);
    clickNamed(u"cancelButton"_s);
    ask(false);
    press(Qt::Key_Return);
    ask(false);
    press(Qt::Key_Escape);
    EXPECT_EQ(answers, (QStringList{u"yes"_s, u"no"_s, u"yes"_s, u"no"_s}));
    EXPECT_FALSE(launcher().alert()->isOpen());
    EXPECT_TRUE(view().isVisible());
}

TEST_F(WindowEditingTest, ReturnDoesNotDestroy) {
    ask(true);
    press(Qt::Key_Return);
    EXPECT_EQ(answers, QStringList{u"no"_s});
    ask(true);
    press(Qt::Key_Tab);
    press(Qt::Key_Return);
    EXPECT_EQ(answers.last(), u"yes") << "one who chose that button means it";
    ask(true);
    ask(false);
    press(Qt::Key_Return);
    press(Qt::Key_Return);
    EXPECT_EQ(answers.mid(2), (QStringList{u"no"_s, u"yes"_s})) << "one after the other";
}

TEST_F(WindowEditingTest, TheMenuOfATileEditsIt) {
    rightClick(u"Ash"_s);
    EXPECT_TRUE(launcher().menu()->isOpen());
    EXPECT_FALSE(launcher().drag()->isPressed());
    choose(u"Hide"_s);
    EXPECT_FALSE(tile(u"Ash"_s));
    EXPECT_FALSE(launcher().menu()->isOpen());
    QTest::mouseClick(&view(), Qt::RightButton, {}, {20, 400});
    choose(u"Unhide"_s);
    choose(u"Ash"_s);
    EXPECT_TRUE(tile(u"Ash"_s));
    QTest::mouseClick(&view(), Qt::RightButton, {}, {20, 400});
    choose(u"New Smart Folder from Template"_s);
    choose(u"Games"_s);
    EXPECT_TRUE(tile(u"Games"_s));
    rightClick(u"Games"_s);
    choose(u"Delete…"_s);
    EXPECT_EQ(launcher().alert()->title(), u"Delete “Games”?");
    clickNamed(u"acceptButton"_s);
    EXPECT_FALSE(tile(u"Games"_s));
}

TEST_F(WindowEditingTest, TheMenuClosesBesideItAndOnEscape) {
    rightClick(u"Ash"_s);
    clickAt({20, 780});
    EXPECT_FALSE(launcher().menu()->isOpen());
    EXPECT_TRUE(view().isVisible()) << "that click closed the menu and nothing else";
    press(Qt::Key_Menu);
    EXPECT_TRUE(launcher().menu()->isOpen());
    press(Qt::Key_Escape);
    EXPECT_FALSE(launcher().menu()->isOpen());
    EXPECT_TRUE(view().isVisible());
}

TEST_F(WindowEditingTest, ANameIsTypedOverTheLabel) {
    press(Qt::Key_Right);
    press(Qt::Key_Menu);
    choose(u"Rename…"_s);
    type(u"Esche"_s);
    press(Qt::Key_Return);
    EXPECT_TRUE(tile(u"Esche"_s));
    EXPECT_EQ(launcher().search()->text(), QString());
    rightClick(u"Esche"_s);
    choose(u"Rename…"_s);
    type(u"x"_s);
    press(Qt::Key_Escape);
    EXPECT_TRUE(tile(u"Esche"_s));
    rightClick(u"Esche"_s);
    choose(u"Revert Name"_s);
    EXPECT_TRUE(tile(u"Ash"_s));
    // The title of an open folder.
    click(u"Trees"_s);
    ASSERT_TRUE(rests());
    clickAt(middle(itemWith("text", u"Trees"_s)));
    type(u"Wood"_s);
    press(Qt::Key_Return);
    EXPECT_EQ(launcher().folder()->title(), u"Wood");
    EXPECT_TRUE(launcher().folder()->isOpen());
}

TEST_F(WindowEditingTest, KeysCopyCutAndPasteThroughTheDesktop) {
    press(Qt::Key_Right);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_THAT(QGuiApplication::clipboard()->text().toStdString(), testing::HasSubstr("Ash"));
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(shownTiles(), u"Ash ~Ash [Trees: Beech Oak]");
    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(launcher().selectedIds().size(), 3);
    press(Qt::Key_Escape);
    EXPECT_TRUE(view().isVisible());
    EXPECT_TRUE(launcher().selectedIds().isEmpty());
}

TEST_F(WindowEditingTest, TabGoesToBackupsThatAreOutOfView) {
    for (int i = 0; i < 14; ++i)
        ASSERT_TRUE(viewModel().archive().reset(LauncherWindowMode::fullScreen));
    QTest::mouseClick(&view(), Qt::RightButton, {}, {20, 700});
    choose(u"Backups…"_s);
    const auto list = [&] { return itemWith("objectName", u"backupsList"_s); };
    ASSERT_TRUE(QTest::qWaitFor([&] { return list() && itemWith("objectName", u"restoreButton"_s); }));
    for (int i = 0; i < 14; ++i) {
        press(Qt::Key_Tab);
        const QQuickItem* focused = view().activeFocusItem();
        ASSERT_EQ(focused->objectName(), u"restoreButton") << i;
        const QRectF shown = focused->mapRectToItem(list(), focused->boundingRect());
        EXPECT_TRUE(list()->boundingRect().contains(shown)) << i;
    }
    press(Qt::Key_Escape);
    EXPECT_EQ(launcher().sheets()->current(), QString());
}

TEST_F(WindowEditingTest, TypingSearches) {
    type(u"oa"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return tile(u"Oak"_s); })) << "out of its folder";
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
    press(Qt::Key_Right);
    press(Qt::Key_Left);
    press(Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !opened().isEmpty(); }));
    EXPECT_EQ(opened(), QStringList{u"Ash.app"_s}) << "the first is the best";
    EXPECT_TRUE(QTest::qWaitFor([&] { return !view().isVisible(); }));
    EXPECT_FALSE(launcher().search()->isActive()) << "it begins afresh next time";
}

TEST_F(WindowEditingTest, WhatIsFoundIsClickedOrThereIsNothing) {
    type(u"zzz"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return itemWith("text", u"No results for “zzz”"_s); }));
    press(Qt::Key_Return);
    EXPECT_EQ(opened(), QStringList());
    clickAt({20, 700});
    EXPECT_FALSE(launcher().search()->isActive());
    EXPECT_TRUE(view().isVisible());
    click(u"Trees"_s);
    ASSERT_TRUE(rests());
    type(u"bee"_s);
    EXPECT_FALSE(launcher().folder()->isOpen()) << "what is found lies over everything";
    ASSERT_TRUE(QTest::qWaitFor([&] { return tile(u"Beech"_s); }));
    ASSERT_TRUE(rests());
    click(u"Beech"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !opened().isEmpty(); }));
    EXPECT_EQ(opened(), QStringList{u"Beech.app"_s});
}

TEST_F(WindowEditingTest, AnApplicationIsReviewedMovedToTheTrashAndPutBack) {
    const QString leftover = mac.machine.places.home + u"/Library/Preferences/org.example.ash.plist"_s;
    mac.write(leftover, "x");
    mac.tool(u"/bin/ps"_s, exited(0));
    rightClick(u"Ash"_s);
    choose(u"Move to Trash…"_s);
    RemovalPanel& removal = *launcher().panels()->removal();
    ASSERT_TRUE(QTest::qWaitFor([&] { return removal.phase() == u"review"; }));
    RemovalItems& items = *removal.items();
    ASSERT_TRUE(QTest::qWaitFor([&] { return items.rowCount() == 2; }));
    const auto isChosen = [&] {
        return items.data(items.index(1), RemovalItems::SelectedRole).toBool();
    };
    EXPECT_TRUE(isChosen());
    (void)window->photograph();   // a frame lays the items out
    clickNamed(u"removalItem"_s); // the last of them
    EXPECT_TRUE(QTest::qWaitFor([&] { return !isChosen(); }));
    clickNamed(u"removalItem"_s);
    EXPECT_TRUE(QTest::qWaitFor(isChosen));
    clickNamed(u"removalAccept"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return removal.phase() == u"done"; }));
    EXPECT_FALSE(mac.exists(leftover));
    EXPECT_FALSE(tile(u"Ash"_s));
    ASSERT_TRUE(QTest::qWaitFor([&] { return itemWith("objectName", u"removalRestore"_s); }));
    clickNamed(u"removalRestore"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return tile(u"Ash"_s); }));
    EXPECT_TRUE(mac.exists(leftover));
    EXPECT_FALSE(removal.isOpen());
}

TEST_F(WindowEditingTest, KeysLeadFromOneEndOfALongReviewToTheOther) {
    for (int i = 0; i < 150; ++i)
        mac.write(mac.machine.places.home + u"/Library/Caches/org.example.ash.%1"_s.arg(i), "x");
    rightClick(u"Ash"_s);
    choose(u"Move to Trash…"_s);
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return launcher().panels()->removal()->items()->rowCount() == 151; }));
    const auto isAt = [&](const char* end) {
        (void)window->photograph(); // a frame lays the items out
        const QQuickItem* items = itemWith("objectName", u"removalItems"_s);
        return items && items->property(end).toBool();
    };
    ASSERT_TRUE(QTest::qWaitFor([&] { return isAt("atYBeginning") && !isAt("atYEnd"); }));
    press(Qt::Key_End);
    EXPECT_TRUE(QTest::qWaitFor([&] { return isAt("atYEnd"); }));
    press(Qt::Key_Home);
    EXPECT_TRUE(QTest::qWaitFor([&] { return isAt("atYBeginning"); }));
}

} // namespace
} // namespace tessellar::test
