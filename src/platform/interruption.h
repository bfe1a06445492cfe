#pragma once

#include <functional>
#include <memory>

namespace tessellar {

/// While it lives, the signals that ask a program to end (SIGINT, SIGTERM, SIGHUP) do not end it: they
/// call `interrupted` with the signal in the event loop of the thread that made it, so that the program
/// can shut down cleanly. One at a time.
class Interruption {
public:
    explicit Interruption(std::function<void(int signal)> interrupted);
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    /// Blocks until `descriptor` takes some more bytes; false where a signal waits to be told of.
    bool waitToWrite(int descriptor) const;

private:
    struct State;
    std::unique_ptr<State> _state;
};

} // namespace tessellar
