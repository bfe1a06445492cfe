#include "platform/worker_pool.h"
#include "tests/support/run_tests.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <latch>
#include <thread>
#include <vector>

namespace tessellar {
namespace {

using testing::ElementsAre;

TEST(Mailbox, CarriesCallsOfManyThreadsInTheOrderOfEach) {
    constexpr int threads = 4;
    constexpr int calls = 2'000;
    Mailbox mailbox;
    std::vector<std::vector<int>> received(threads);
    std::vector<std::jthread> senders;
    for (int sender = 0; sender < threads; ++sender)
        senders.emplace_back([&, sender] {
            for (int i = 0; i < calls; ++i)
                mailbox.post(
                    [&, sender, i] { received[static_cast<std::size_t>(sender)].push_back(i); });
        });
    for (std::size_t count = 0; count < threads * calls;)
        count += mailbox.waitAndDrain();
    for (const std::vector<int>& each : received) {
        EXPECT_EQ(each.size(), calls);
        EXPECT_TRUE(std::ranges::is_sorted(each));
    }
}

TEST(Mailbox, ASlowCallEndsItsTurnOfTheEventLoop) {
    Mailbox mailbox;
    std::vector<int> ran;
    mailbox.post([&] {
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(10);
        while (std::chrono::steady_clock::now() < end) {
        }
        ran.push_back(1);
    });
    mailbox.post([&] { ran.push_back(2); });
    QCoreApplication::sendPostedEvents();
    EXPECT_THAT(ran, ElementsAre(1));
    test::processEventsUntil([&] { return ran.size() > 1; });
    EXPECT_THAT(ran, ElementsAre(1, 2));
}

TEST(Mailbox, ACallMayPostDrainOrDestroyTheMailbox) {
    auto mailbox = std::make_unique<Mailbox>();
    std::vector<int> ran;
    mailbox->post([&] {
        ran.push_back(1);
        mailbox->post([&] { ran.push_back(3); });
    });
    mailbox->post([&] { ran.push_back(2); });
    EXPECT_EQ(mailbox->drain(), 2u);
    EXPECT_THAT(ran, ElementsAre(1, 2));
    mailbox->post([&] {
        mailbox->drain();
        ran.push_back(5);
    });
    mailbox->post([&] { ran.push_back(4); });
    mailbox->drain();
    EXPECT_THAT(ran, ElementsAre(1, 2, 3, 4, 5));

    // What is left in it is dropped with it.
    const auto held = std::make_shared<int>(0);
    mailbox->post([&] { mailbox.reset(); });
    mailbox->post([&, held] { ran.push_back(6); });
    QCoreApplication::processEvents();
    EXPECT_EQ(mailbox, nullptr);
    EXPECT_EQ(ran.size(), 5u);
    EXPECT_EQ(held.use_count(), 1);
}

/// Keeps a worker busy until told to go on.
struct Gate {
    std::latch entered{1};
    std::latch opened{1};
    void pass() {
        entered.count_down();
        opened.wait();
    }
};

TEST(WorkerPool, DropsTheResultOfACancelledTaskAtEveryStage) {
    Mailbox mailbox;
    WorkerPool pool(mailbox, 1);
    Gate gate;
    std::vector<int> done;
    std::atomic<int> worked = 0;
    bool sawStop = false;

    Task running = pool.run(
        [&](std::stop_token stop) {
            gate.pass();
            sawStop = stop.stop_requested();
        },
        [&] { done.push_back(1); });
    Task waiting = pool.run([&](std::stop_token) { ++worked; }, [&] { done.push_back(2); });
    Task finished = pool.run([&](std::stop_token) { ++worked; }, [&] { done.push_back(3); });
    Task kept = pool.run([&](std::stop_token) { ++worked; }, [&] { done.push_back(4); });
    gate.entered.wait();
    running.cancel();
    waiting = Task(); // replaced by another, as a newer search replaces an older one
    gate.opened.count_down();
    pool.waitIdle();
    finished.cancel();
    mailbox.drain();

    EXPECT_TRUE(sawStop);
    EXPECT_EQ(worked, 2);
    EXPECT_THAT(done, ElementsAre(4));
}

TEST(WorkerPool, DestroysCompletionsOnTheMainThread) {
    struct Witness {
        std::thread::id* destroyedOn;
        ~Witness() { *destroyedOn = std::this_thread::get_id(); }
    };
    Mailbox mailbox;
    WorkerPool pool(mailbox, 1);
    Gate gate;
    std::thread::id destroyedOn;
    pool.submit({}, [&](std::stop_token) { gate.pass(); });
    Task task = pool.run([](std::stop_token) {},
                         [witness = std::make_shared<Witness>(&destroyedOn)] { FAIL(); });
    gate.entered.wait();
    task.cancel();
    gate.opened.count_down();
    pool.waitIdle();
    EXPECT_EQ(destroyedOn, std::thread::id());
    mailbox.drain();
    EXPECT_EQ(destroyedOn, std::this_thread::get_id());
}

TEST(WorkerPool, EndsByStoppingWhatRunsAndShowingTheStopToWhatWaits) {
    Mailbox mailbox;
    std::vector<int> done;
    std::atomic<int> stopped = 0;
    std::atomic<bool> ran = false;
    Task running;
    Task waiting;
    {
        WorkerPool pool(mailbox, 1);
        std::latch entered{1};
        running = pool.run(
            [&](std::stop_token stop) {
                std::latch asked{1};
                const std::stop_callback callback(stop, [&] { asked.count_down(); });
                entered.count_down();
                asked.wait();
                return ++stopped;
            },
            [&](int) { done.push_back(1); });
        pool.submit({}, [&](std::stop_token stop) { stopped += stop.stop_requested() ? 1 : 0; });
        waiting = pool.run([&](std::stop_token) { ran = true; }, [&] { done.push_back(2); });
        entered.wait();
    }
    mailbox.drain();
    EXPECT_EQ(stopped, 2);
    EXPECT_FALSE(ran);
    EXPECT_TRUE(done.empty());
}

constexpr std::array allLanes{Lane::files,   Lane::computing, Lane::decoding, Lane::tools,
                              Lane::network, Lane::actions,   Lane::saving};

TEST(WorkerPool, WhatHangsInOneLaneHoldsUpNoOther) {
    Mailbox mailbox;
    WorkerPool pool(mailbox, 1);
    for (const Lane hung : allLanes) {
        std::latch opened{1};
        for (unsigned i = 0; i < pool.threadCount(hung); ++i)
            pool.submit(hung, {}, [&](std::stop_token) { opened.wait(); });
        std::atomic<bool> waited = false;
        pool.submit(hung, {}, [&](std::stop_token) { waited = true; });
        for (const Lane other : allLanes) {
            if (other == hung)
                continue;
            std::latch ran{1};
            pool.submit(other, {}, [&](std::stop_token) { ran.count_down(); });
            ran.wait();
        }
        EXPECT_FALSE(waited);
        opened.count_down();
        pool.waitIdle();
        EXPECT_TRUE(waited);
    }
}

#ifdef __GLIBC__
/// No thread can be made while one of these lives: none has room for such a stack.
struct NoThreads {
    NoThreads() {
        pthread_getattr_default_np(&usual);
        pthread_attr_t vast;
        pthread_attr_init(&vast);
        pthread_attr_setstacksize(&vast, std::size_t(1) << 47);
        pthread_setattr_default_np(&vast);
        pthread_attr_destroy(&vast);
    }
    ~NoThreads() {
        pthread_setattr_default_np(&usual);
        pthread_attr_destroy(&usual);
    }
    pthread_attr_t usual;
};

TEST(WorkerPool, WorksWithTheThreadsThatCanBeMade) {
    Mailbox mailbox;
    WorkerPool pool(mailbox, 2);
    std::thread::id ran;
    const auto work = [&](std::stop_token) { ran = std::this_thread::get_id(); };
    {
        const NoThreads none;
        pool.submit(Lane::tools, {}, work);
        EXPECT_EQ(ran, std::this_thread::get_id()); // the caller's, for want of any other
    }
    pool.submit(Lane::files, {}, work);
    pool.waitIdle();
    const std::thread::id only = ran;
    EXPECT_NE(only, std::this_thread::get_id());
    const NoThreads none;
    pool.submit(Lane::saving, {}, work);
    pool.waitIdle();
    EXPECT_EQ(ran, only); // another lane's
}

TEST(WorkerPool, LeavesNothingToALaneWhoseThreadCameLate) {
    // Often: the late thread has to find its lane at its limit, and wait.
    for (int round = 0; round < 50; ++round) {
        Mailbox mailbox;
        WorkerPool pool(mailbox, 2);
        pool.submit(Lane::files, {}, [](std::stop_token) {});
        std::latch begun(1);
        std::latch ending(1);
        {
            const NoThreads none;
            pool.submit(Lane::saving, {}, [&](std::stop_token) {
                begun.count_down();
                ending.wait();
            });
        }
        begun.wait();
        pool.submit(Lane::saving, {}, [](std::stop_token) {});
        for (int i = 0; i < 100; ++i)
            std::this_thread::yield();
        ending.count_down();
        pool.waitIdle();
    }
}
#endif

#ifdef __linux__
TEST(WorkerPool, GivesWayToTheWindowButNotWhereProgramsWouldInheritIt) {
    Mailbox mailbox;
    WorkerPool workers(mailbox);
    const int own = ::getpriority(PRIO_PROCESS, 0);
    const auto nicenessOf = [&](Lane lane) {
        int niceness = 0;
        workers.submit(lane, {}, [&](std::stop_token) {
            niceness = ::getpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()));
        });
        workers.waitIdle();
        return niceness;
    };
    for (const Lane lane : {Lane::files, Lane::computing, Lane::decoding, Lane::saving})
        EXPECT_GT(nicenessOf(lane), own);
    for (const Lane lane : {Lane::tools, Lane::actions})
        EXPECT_EQ(nicenessOf(lane), own);
}
#endif

} // namespace
} // namespace tessellar
