#include "platform/move_only_function.h"
#include "platform/scheduler.h"
#include "platform/signal.h"

#include <QEventLoop>

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace tessellar {
namespace {

using namespace std::chrono_literals;

class SignalTest : public testing::Test {
protected:
    std::optional<Signal<std::string>> signal{std::in_place};
    std::string heard;

    Subscription hear(const char* name) {
        return signal->connect([this, name](const std::string& text) { heard += name + text + ' '; });
    }
    std::string said(const std::string& text) {
        heard.clear();
        signal->notify(text);
        return heard;
    }
};

TEST_F(SignalTest, ListenersAreCalledInOrderUntilTheySubscribeNoMore) {
    Subscription a = hear("a");
    Subscription b = hear("b");
    EXPECT_EQ(said("1"), "a1 b1 ");
    Subscription moved = std::move(a);
    EXPECT_EQ(said("2"), "a2 b2 ");
    moved = {};
    EXPECT_EQ(said("3"), "b3 ");
    signal.reset();
    EXPECT_TRUE(b.isActive()); // outlives its signal
}

TEST_F(SignalTest, AListenerMayUnsubscribeItselfAndOthersAndSubscribe) {
    Subscription first, second, late;
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = held;
    first = signal->connect([&, held = std::move(held)](const std::string&) {
        first = {};
        second = {};
        late = hear("late");
        heard += watched.expired() ? "gone " : "here "; // what runs stays while it runs
    });
    second = hear("second");
    Subscription third = hear("third");
    EXPECT_EQ(said("1"), "here third1 ");
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(said("2"), "third2 late2 ");
}

TEST_F(SignalTest, ANotificationInsideAnotherReachesEverybody) {
    Subscription gone = hear("gone");
    Subscription again = signal->connect([&](const std::string& text) {
        gone = {};
        if (text == "1")
            signal->notify("2");
    });
    Subscription last = hear("last");
    EXPECT_EQ(said("1"), "gone1 last2 last1 ");
}

TEST_F(SignalTest, NobodyIsCalledOnceAListenerDestroyedTheSignal) {
    Subscription end = signal->connect([&](const std::string&) { signal.reset(); });
    Subscription after = hear("after");
    signal->notify("1");
    EXPECT_EQ(heard, "");
}

TEST(MoveOnlyFunctionTest, OwnsWhatCannotBeCopiedAndIsEmptyAfterNothing) {
    MoveOnlyFunction<int(std::unique_ptr<int>)> add =
        [base = std::make_unique<int>(40)](std::unique_ptr<int> more) { return *base + *more; };
    auto moved = std::move(add);
    EXPECT_FALSE(add);
    EXPECT_EQ(moved(std::make_unique<int>(2)), 42);
    EXPECT_FALSE((MoveOnlyFunction<void()>(std::function<void()>())));
    EXPECT_FALSE((MoveOnlyFunction<void()>(static_cast<void (*)()>(nullptr))));
    moved = nullptr;
    EXPECT_FALSE(moved);
}

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

} // namespace
} // namespace tessellar
