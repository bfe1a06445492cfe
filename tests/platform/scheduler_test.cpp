#include "platform/scheduler.h"

#include <QEventLoop>

#include <gtest/gtest.h>

#include <vector>

namespace tessellar {
namespace {

using namespace std::chrono_literals;

TEST(EventLoopScheduler, RunsCallsInTheOrderOfTheirTimesAndNoneThatIsCancelled) {
    EventLoopScheduler scheduler;
    std::vector<int> ran;
    QEventLoop loop;

    Timer second = scheduler.after(12ms, [&] { ran.push_back(2); });
    Timer first = scheduler.after(4ms, [&] { ran.push_back(1); });
    Timer negative = scheduler.after(-5ms, [&] { ran.push_back(0); });
    Timer cancelled = scheduler.after(1ms, [&] { ran.push_back(-1); });
    Timer replaced = scheduler.after(1ms, [&] { ran.push_back(-2); });
    // Longer than Qt's own timers can count.
    Timer distant = scheduler.after(24h * 60, [&] { ran.push_back(-3); });
    cancelled.cancel();
    replaced = scheduler.after(16ms, [&] { ran.push_back(3); });
    Timer last = scheduler.after(20ms, [&] { loop.quit(); });
    loop.exec();

    EXPECT_EQ(ran, (std::vector{0, 1, 2, 3}));
    EXPECT_FALSE(first.isActive());
    EXPECT_FALSE(cancelled.isActive());
    EXPECT_TRUE(distant.isActive());
}

TEST(EventLoopScheduler, ACallMaySetItsOwnTimerAnew) {
    EventLoopScheduler scheduler;
    QEventLoop loop;
    Timer timer;
    int count = 0;
    std::function<void()> tick = [&] {
        if (++count == 3)
            loop.quit();
        else
            timer = scheduler.after(0ms, tick);
    };
    timer = scheduler.after(0ms, tick);
    loop.exec();
    EXPECT_EQ(count, 3);
    EXPECT_FALSE(timer.isActive());
}

} // namespace
} // namespace tessellar
