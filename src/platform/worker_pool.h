#pragma once

#include "platform/move_only_function.h"
#include "platform/task.h"

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

/// What work waits for. Each lane has threads of its own, made when they are first needed, so that what
/// hangs holds up only its own kind.
enum class Lane {
    files,     ///< reads and changes disks
    computing, ///< waits for nobody
    decoding,  ///< reads icons and makes pictures of them
    tools,     ///< asks external tools about applications
    network,   ///< judges what servers answered
    actions,   ///< does what the user just asked for: opens, removes, brings back
    saving,    ///< writes the user's files; one thread, in the order of the calls
};

/// Threads for work that touches disks, networks or processes. Work gets a stop token and returns a
/// value; the completion gets the value on the main thread, through the mailbox.
///
/// Where no thread can be made, a lane without one is served by the others; where there is none at all,
/// work runs at once on the thread that submits it.
class WorkerPool {
public:
    /// `threads` limits the lane for files; 0 means one for each processor, at least two. Of the lanes
    /// that wait for others rather than compute, some have more.
    explicit WorkerPool(Mailbox& mailbox, unsigned threads = 0);
    /// Asks everything to stop and waits for it.
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    /// How many pieces of work a lane runs at once.
    unsigned threadCount(Lane lane = Lane::files) const;
    Mailbox& mailbox() const;

    /// Queues bare work. It runs even when a stop was requested meanwhile, by `stop` or by the end of
    /// the pool: the work checks its token itself.
    void submit(Lane lane, std::stop_token stop, MoveOnlyFunction<void(std::stop_token)> work);
    void submit(std::stop_token stop, MoveOnlyFunction<void(std::stop_token)> work) {
        submit(Lane::files, std::move(stop), std::move(work));
    }

    /// Runs `work(stop)` on a worker, then `done(value)` on the main thread unless the task was
    /// cancelled by then, or the pool ended while it ran.
    template <typename Work, typename Done>
    [[nodiscard]] Task run(Work work, Done done) {
        return run(Lane::files, std::move(work), std::move(done));
    }
    template <typename Work, typename Done>
    [[nodiscard]] Task run(Lane lane, Work work, Done done) {
        std::stop_source source;
        submit(lane, source.get_token(),
               [mailbox = &mailbox(), wanted = source.get_token(), work = std::move(work),
                done = std::move(done)](std::stop_token stop) mutable {
                   // Even what is dropped travels to the main thread: `done` may hold what only that
                   // may touch.
                   if (stop.stop_requested()) {
                       mailbox->post([done = std::move(done)] {});
                   } else if constexpr (std::is_void_v<std::invoke_result_t<Work&, std::stop_token>>) {
                       work(stop);
                       mailbox->post([stop, wanted, done = std::move(done)]() mutable {
                           if (!stop.stop_requested() && !wanted.stop_requested())
                               done();
                       });
                   } else {
                       mailbox->post(
                           [stop, wanted, done = std::move(done), value = work(stop)]() mutable {
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
