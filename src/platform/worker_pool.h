#pragma once

#include "platform/move_only_function.h"
#include "platform/task.h"

#include <cstddef>
#include <memory>
#include <stop_token>
#include <type_traits>
#include <utility>

namespace tessellar {

/// Passes calls from any thread to the main thread: a locked queue and one posted event. Calls run in
/// order, on the thread that constructed the mailbox.
class Mailbox {
public:
    Mailbox();
    ~Mailbox();
    Mailbox(const Mailbox&) = delete;
    Mailbox& operator=(const Mailbox&) = delete;

    /// Thread-safe. Calls still queued when the mailbox is destroyed are dropped.
    void post(MoveOnlyFunction<void()> call);
    /// Runs the queued calls on the owner's thread and returns their number; for owners without an
    /// event loop. Calls posted meanwhile wait for the next time.
    std::size_t drain();
    /// Blocks the owner's thread until a call is queued, then drains.
    std::size_t waitAndDrain();

private:
    struct State;
    std::shared_ptr<State> _state;
};

/// Work is grouped by what it waits for. Each lane has its own threads, created on demand, so hanging
/// work delays only its own kind.
enum class Lane {
    files,     ///< reads and changes disks
    computing, ///< pure computation; never blocks
    decoding,  ///< reads and renders icons
    tools,     ///< queries external tools about applications
    network,   ///< processes servers' responses
    actions,   ///< what the user just asked for: open, remove, restore
    saving,    ///< writes the user's files; one thread, in call order
};

/// Threads for work on disks, networks and processes. Work receives a stop token and returns a value,
/// which its completion receives on the main thread through the mailbox.
///
/// If no thread can be created for a lane, other lanes serve it; with no threads at all, work runs
/// synchronously in `submit`.
class WorkerPool {
public:
    /// `threads` limits the files lane; 0 means one per processor, at least two. Some of the lanes that
    /// mostly wait have more.
    explicit WorkerPool(Mailbox& mailbox, unsigned threads = 0);
    /// Requests a stop of all work and waits for it.
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    /// How many jobs a lane runs at once.
    unsigned threadCount(Lane lane = Lane::files) const;
    Mailbox& mailbox() const;

    /// Queues work without a completion. It runs even if a stop was requested meanwhile, by `stop` or
    /// by the pool's destruction, so it must check its token.
    void submit(Lane lane, std::stop_token stop, MoveOnlyFunction<void(std::stop_token)> work);
    void submit(std::stop_token stop, MoveOnlyFunction<void(std::stop_token)> work) {
        submit(Lane::files, std::move(stop), std::move(work));
    }

    /// Runs `work(stop)` on a worker, then `done(value)` on the main thread, unless the task was
    /// cancelled or the pool destroyed meanwhile.
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
                   // Even a dropped `done` is sent to the main thread: it may own objects that only
                   // that thread may touch.
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

    /// Blocks until no work is queued or running. Results may still be queued in the mailbox.
    void waitIdle();

private:
    struct State;
    std::unique_ptr<State> _state;
};

} // namespace tessellar
