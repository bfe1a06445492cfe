#include "app/menu_model.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;

class MenuModelTest : public testing::Test {
protected:
    MenuModelTest() {
        menu.open({{.id = u"said"_s, .title = u"Said"_s, .isEnabled = false},
                   {.id = u"open"_s, .title = u"Open"_s},
                   {},
                   {.id = u"more"_s,
                    .title = u"More"_s,
                    .entries = {{.id = u"more:1"_s, .title = u"One"_s},
                                {.id = u"more:2"_s, .title = u"Two"_s}}}},
                  {3, 4});
    }
    void press(std::initializer_list<Qt::Key> keys) {
        for (const Qt::Key key : keys)
            menu.pressKey(key);
    }
    QString chosen() { return spy.isEmpty() ? QString() : spy.last().first().toString(); }

    MenuModel menu;
    QSignalSpy spy{&menu, &MenuModel::chosen};
};

TEST_F(MenuModelTest, KeysPassOverWhatCannotBeChosenAndGoAround) {
    press({Qt::Key_Down});
    EXPECT_EQ(menu.current(), 1);
    press({Qt::Key_Down});
    EXPECT_EQ(menu.current(), 3);
    press({Qt::Key_Down});
    EXPECT_EQ(menu.current(), 1);
    press({Qt::Key_Up});
    EXPECT_EQ(menu.current(), 3);
    press({Qt::Key_Up, Qt::Key_Return});
    EXPECT_EQ(chosen(), u"open");
    EXPECT_FALSE(menu.isOpen());
}

TEST_F(MenuModelTest, ASubmenuIsEnteredAndLeft) {
    press({Qt::Key_Up, Qt::Key_Right, Qt::Key_Down});
    EXPECT_EQ(menu.subCurrent(), 1);
    press({Qt::Key_Left, Qt::Key_Return});
    EXPECT_EQ(menu.subCurrent(), 0) << "what has a submenu is not itself chosen";
    EXPECT_EQ(chosen(), QString());
    press({Qt::Key_Return});
    EXPECT_EQ(chosen(), u"more:1");
}

TEST_F(MenuModelTest, ThePointerOpensASubmenuAndAnotherLineClosesIt) {
    menu.hover(false, 3);
    EXPECT_EQ(menu.subEntries().size(), 2);
    menu.hover(true, 1);
    menu.hover(false, 2);
    menu.hover(false, 0);
    EXPECT_EQ(menu.subCurrent(), 1) << "neither a line nor a disabled entry takes the pointer";
    menu.hover(false, 1);
    EXPECT_TRUE(menu.subEntries().isEmpty());
    menu.choose(false, 0);
    EXPECT_TRUE(menu.isOpen());
    press({Qt::Key_Escape});
    EXPECT_FALSE(menu.isOpen());
    EXPECT_EQ(chosen(), QString());
}

} // namespace
} // namespace tessellar
