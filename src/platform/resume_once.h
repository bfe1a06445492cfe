#pragma once

#include "platform/move_only_function.h"

#include <mutex>
#include <utility>

namespace tessellar {

/// Settles a race: the first of several events resumes what waits, with its value; later ones do
/// nothing. Any thread; what waits is called by the thread that came first.
template <typename... Values>
class ResumeOnce {
public:
    explicit ResumeOnce(MoveOnlyFunction<void(Values...)> waiting) : _waiting(std::move(waiting)) {}

    /// True for the first event.
    bool resume(Values... values) {
        MoveOnlyFunction<void(Values...)> waiting;
        {
            const std::lock_guard lock(_mutex);
            waiting = std::exchange(_waiting, nullptr);
        }
        if (!waiting)
            return false;
        waiting(std::move(values)...);
        return true;
    }

private:
    std::mutex _mutex;
    MoveOnlyFunction<void(Values...)> _waiting;
};

} // namespace tessellar
