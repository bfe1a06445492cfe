#pragma once

#include "platform/signal.h"

#include <memory>

namespace tessellar {

/// Tells when the clock has leapt: the machine has slept, the clock was set, or its time zone is
/// another one. An interface, so that tests can say so.
class ClockWatch {
public:
    virtual ~ClockWatch() = default;

    Signal<> leapt;
};

/// By what the system tells; where it tells nothing, `leapt` is never heard. Main thread.
std::unique_ptr<ClockWatch> makeClockWatch();

} // namespace tessellar
