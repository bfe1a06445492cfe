#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <stop_token>

namespace tessellar {

/// Sleeps on a worker; false if stopped. Injected, so that tests need not sleep.
using Wait = std::function<bool(std::chrono::milliseconds, std::stop_token)>;

inline bool interruptibleSleep(std::chrono::milliseconds time, std::stop_token stop) {
    std::mutex mutex;
    std::condition_variable_any changed;
    std::unique_lock lock(mutex);
    changed.wait_for(lock, stop, time, [] { return false; });
    return !stop.stop_requested();
}

} // namespace tessellar
