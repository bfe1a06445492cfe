#pragma once

#include "platform/move_only_function.h"

#include <chrono>
#include <memory>
#include <utility>

namespace tessellar {

/// A delayed call that has not run yet; destroying or cancelling it means that it never runs.
/// Movable; a default-constructed one stands for nothing.
class Timer {
public:
    /// What a scheduler hands out: destroying it cancels the call.
    class Pending {
    public:
        virtual ~Pending() = default;
        virtual bool isActive() const = 0;
    };

    Timer() = default;
    explicit Timer(std::unique_ptr<Pending> pending) : _pending(std::move(pending)) {}

    void cancel() { _pending.reset(); }
    bool isActive() const { return _pending && _pending->isActive(); }

private:
    std::unique_ptr<Pending> _pending;
};

/// Delays on the main thread. Calls run on the main thread, in the order of their times.
class Scheduler {
public:
    virtual ~Scheduler() = default;
    [[nodiscard]] virtual Timer after(std::chrono::milliseconds delay,
                                      MoveOnlyFunction<void()> call) = 0;
};

/// Runs delayed calls in the main thread's Qt event loop.
class EventLoopScheduler final : public Scheduler {
public:
    [[nodiscard]] Timer after(std::chrono::milliseconds delay, MoveOnlyFunction<void()> call) override;
};

} // namespace tessellar
