#pragma once

#include <functional>
#include <memory>

namespace tessellar {

/// While this object lives, SIGINT, SIGTERM and SIGHUP do not end the program but call `interrupted` in
/// the event loop of the thread that constructed it, for a clean shutdown. One instance at a time.
class Interruption {
public:
    explicit Interruption(std::function<void(int signal)> interrupted);
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    /// Blocks until `descriptor` is writable; false if a signal is pending.
    bool waitToWrite(int descriptor) const;

private:
    struct State;
    std::unique_ptr<State> _state;
};

} // namespace tessellar
