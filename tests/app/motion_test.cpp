#include "app/page_motion.h"
#include "app/wheel_paging.h"

#include <gtest/gtest.h>

namespace tessellar {
namespace {

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

TEST(PageMotion, FollowsALateFrameAndAChangeOfMind) {
    PageMotion late = onPage(0);
    late.goTo(1);
    late.advance(10);
    EXPECT_EQ(late.position(), 1);

    PageMotion motion = onPage(0);
    motion.goTo(4);
    motion.advance(0.05);
    const double between = motion.position();
    motion.goTo(1);
    EXPECT_EQ(motion.position(), between);
    motion.setCount(1);
    framesToRest(motion);
    EXPECT_EQ(motion.position(), 0);
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

} // namespace
} // namespace tessellar
