#pragma once

#include "platform/move_only_function.h"

#include <mutex>
#include <utility>

namespace tessellar {

/// Settles a race: calls `waiting` with the first event's values and ignores later ones. Thread-safe;
/// the first caller's thread makes the call.
template <typename... Values>
class ResumeOnce {
public:
    explicit ResumeOnce(MoveOnlyFunction<void(Values...)> waiting) : _waiting(std::move(waiting)) {}

    /// True for the first call.
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
