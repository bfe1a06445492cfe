#pragma once

#include "platform/move_only_function.h"

#include <cstddef>
#include <memory>
#include <stop_token>
#include <type_traits>
#include <utility>

namespace tessellar {

/// The one way from any thread to the main thread: a locked queue of calls and one posted event.
/// Calls run on the thread that made the mailbox, in the order in which they were posted.
class Mailbox {
public:
    Mailbox();
    ~Mailbox();
    Mailbox(const Mailbox&) = delete;
    Mailbox& operator=(const Mailbox&) = delete;

    /// From any thread. Calls still queued when the mailbox is destroyed are dropped.
    void post(MoveOnlyFunction<void()> call);
    /// Runs what is queued, on the owner's thread, and tells how many calls that were; for owners
    /// without an event loop. What the calls themselves post waits for the next time.
    std::size_t drain();
    /// Blocks the owner's thread until something is queued, then drains.
    std::size_t waitAndDrain();

private:
    struct State;
    std::shared_ptr<State> _state;
};

/// A piece of background work. Destroying or cancelling it asks the work to stop and drops its
/// result: once `cancel` has returned on the main thread, its completion will not be called.
class Task {
public:
    Task() = default;
    explicit Task(std::stop_source stop) : _stop(std::move(stop)), _valid(true) {}
    Task(Task&& other) noexcept { swap(other); }
    Task& operator=(Task&& other) noexcept {
        Task(std::move(other)).swap(*this);
        return *this;
    }
    ~Task() { cancel(); }

    void cancel() {
        if (std::exchange(_valid, false))
            _stop.request_stop();
    }

private:
    void swap(Task& other) noexcept {
        std::swap(_stop, other._stop);
        std::swap(_valid, other._valid);
    }

    std::stop_source _stop{std::nostopstate};
    bool _valid = false;
};

/// Threads for work that touches disks, networks or processes. Work gets a stop token and returns a
/// value; the completion gets the value on the main thread, through the mailbox.
class WorkerPool {
public:
    /// `threads` 0 means one for each processor, at least two.
    explicit WorkerPool(Mailbox& mailbox, unsigned threads = 0);
    /// Asks everything to stop and waits for it.
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    unsigned threadCount() const;
    Mailbox& mailbox() const;

    /// Queues bare work. It runs even when a stop was requested meanwhile, by `stop` or by the end of
    /// the pool; it is to look itself.
    void submit(std::stop_token stop, MoveOnlyFunction<void(std::stop_token)> work);

    /// Runs `work(stop)` on a worker, then `done(value)` on the main thread unless the task was
    /// cancelled by then, or the pool ended while it ran.
    template <typename Work, typename Done>
    [[nodiscard]] Task run(Work work, Done done) {
        std::stop_source source;
        submit(source.get_token(), [mailbox = &mailbox(), wanted = source.get_token(),
                                    work = std::move(work),
                                    done = std::move(done)](std::stop_token stop) mutable {
            // Even what is dropped travels to the main thread: `done` may hold what only that may
            // touch.
            if (stop.stop_requested()) {
                mailbox->post([done = std::move(done)] {});
            } else if constexpr (std::is_void_v<std::invoke_result_t<Work&, std::stop_token>>) {
                work(stop);
                mailbox->post([stop, wanted, done = std::move(done)]() mutable {
                    if (!stop.stop_requested() && !wanted.stop_requested())
                        done();
                });
            } else {
                mailbox->post([stop, wanted, done = std::move(done), value = work(stop)]() mutable {
                    if (!stop.stop_requested() && !wanted.stop_requested())
                        done(std::move(value));
                });
            }
        });
        return Task(std::move(source));
    }

    /// Blocks until no work is queued or running. Its results may still lie in the mailbox.
    void waitIdle();

private:
    struct State;
    std::unique_ptr<State> _state;
};

} // namespace tessellar
