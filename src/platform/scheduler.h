#pragma once

#include "platform/move_only_function.h"
#include "platform/task.h"

#include <chrono>

namespace tessellar {

/// A delayed call; inactive once the call has started.
using Timer = Task;

/// Delayed calls on the main thread, in order of their due times.
class Scheduler {
public:
    virtual ~Scheduler() = default;
    [[nodiscard]] virtual Timer after(std::chrono::milliseconds delay,
                                      MoveOnlyFunction<void()> call) = 0;
};

/// Runs the calls in the main thread's Qt event loop.
class EventLoopScheduler final : public Scheduler {
public:
    [[nodiscard]] Timer after(std::chrono::milliseconds delay, MoveOnlyFunction<void()> call) override;
};

} // namespace tessellar
