#pragma once

#include "platform/signal.h"

#include <memory>

namespace tessellar {

/// Notifies when the clock jumps: after sleep, when the clock is set, or when the time zone changes. An
/// interface, so that tests can fake it.
class ClockWatch {
public:
    virtual ~ClockWatch() = default;

    Signal<> leapt;
};

/// Uses the system's notifications; without them `leapt` never fires. Main thread.
std::unique_ptr<ClockWatch> makeClockWatch();

} // namespace tessellar
