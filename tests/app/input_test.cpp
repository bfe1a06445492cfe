#include "app/activation_triggers.h"
#include "app/menu_model.h"
#include "app/page_motion.h"
#include "app/wheel_paging.h"

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
    using enum Qt::Key;
    for (const auto& [key, line] :
         {std::pair(Key_Down, 1), std::pair(Key_Down, 3), std::pair(Key_Down, 1), std::pair(Key_Up, 3),
          std::pair(Key_Home, 1), std::pair(Key_Up, 3), std::pair(Key_Up, 1), std::pair(Key_End, 3)}) {
        menu.pressKey(key);
        EXPECT_EQ(menu.current(), line) << key;
    }
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

PageMotion onPage(int page, int count = 5) {
    PageMotion motion;
    motion.setCount(count);
    motion.jumpTo(page);
    return motion;
}

/// Frames until rest; a bound that a motion without end exceeds.
int framesToRest(PageMotion& motion) {
    int frames = 0;
    for (; frames < 600 && !motion.isAtRest(); ++frames)
        motion.advance(1.0 / 60);
    return frames;
}

TEST(PageMotion, ASwipeRestsWhereItDriftsToAndAtMostOnePageOn) {
    struct Swipe {
        double distance;
        double velocity;
        int page;
    };
    for (const Swipe& swipe : {Swipe{0.2, 0, 2}, Swipe{0.6, 0, 3}, Swipe{0.1, 3, 3}, Swipe{0.4, -3, 2},
                               Swipe{-0.6, 0, 1}, Swipe{0.9, 30, 3}, Swipe{-1.9, -9, 1}}) {
        PageMotion motion = onPage(2);
        motion.drag(swipe.distance);
        EXPECT_DOUBLE_EQ(motion.position(), 2 + swipe.distance);
        motion.release(swipe.velocity);
        EXPECT_EQ(motion.page(), swipe.page) << swipe.distance << " at " << swipe.velocity;
        const int frames = framesToRest(motion);
        EXPECT_GT(frames, 3);
        EXPECT_LT(frames, 90);
        EXPECT_EQ(motion.position(), swipe.page);
    }
}

TEST(PageMotion, GivesWayReluctantlyPastTheEnds) {
    PageMotion motion = onPage(0, 2);
    motion.drag(-0.5);
    EXPECT_LT(motion.position(), 0);
    EXPECT_GT(motion.position(), -0.25);
    motion.drag(-20);
    EXPECT_GT(motion.position(), -0.5);
    motion.drag(20.5); // the finger is back where it began
    EXPECT_NEAR(motion.position(), 0, 1e-9);
    motion.drag(-1);
    motion.release(-50);
    EXPECT_EQ(motion.page(), 0);
    while (!motion.isAtRest()) {
        motion.advance(1.0 / 60);
        EXPECT_LE(motion.position(), 0.001) << "it does not swing past its rest";
    }
}

TEST(WheelPaging, TurnsOnePageANotchAndOnePageAStroke) {
    WheelPaging notches;
    EXPECT_EQ(notches.turn(120, 1000), 1);
    EXPECT_EQ(notches.turn(120, 1020), 0) << "a wheel that is flung";
    EXPECT_EQ(notches.turn(120, 1200), 1);
    EXPECT_EQ(notches.turn(-120, 1210), -1);
    EXPECT_EQ(notches.turn(-240, 2000), -1);

    WheelPaging stroke;
    int turned = 0;
    for (std::uint64_t time = 0; time < 600; time += 10)
        turned += stroke.turn(8, time);
    EXPECT_EQ(turned, 1) << "however long it coasts";
    EXPECT_EQ(stroke.turn(100, 1000), 1) << "after a pause";
    EXPECT_EQ(stroke.turn(-100, 1010), -1) << "back";
    EXPECT_EQ(stroke.turn(30, 2000), 0);
    EXPECT_EQ(stroke.turn(80, 3000), 0) << "a stroke does not add to the one before";
    EXPECT_EQ(stroke.turn(0, 3010), 0);
}

TEST(HotCorner, SummonsOncePerPushIntoTheCornerOfAnyScreen) {
    const QList<QRect> screens{{0, 0, 1440, 900}, {1440, 0, 1920, 1080}};
    auto corner = HotCorner::named(u"bottomRight"_s);
    ASSERT_TRUE(corner);
    EXPECT_FALSE(corner->isEntered({700, 400}, screens));
    EXPECT_TRUE(corner->isEntered({1439, 899}, screens));
    EXPECT_FALSE(corner->isEntered({1438, 898}, screens)); // still there
    EXPECT_FALSE(corner->isEntered({1430, 899}, screens));
    EXPECT_TRUE(corner->isEntered({1439, 899}, screens));
    EXPECT_FALSE(corner->isEntered({1440, 1079}, screens)); // another corner
    EXPECT_TRUE(corner->isEntered({3359, 1079}, screens));
    EXPECT_EQ(HotCorner::named(u"top"_s).has_value(), false);
}

} // namespace
} // namespace tessellar
