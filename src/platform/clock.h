#pragma once

#include "platform/instant.h"

namespace tessellar {

/// Where the present moment comes from. Nothing else in the system reads a clock.
class Clock {
public:
    virtual ~Clock() = default;
    virtual Instant now() const = 0;
};

class SystemClock final : public Clock {
public:
    Instant now() const override;
};

} // namespace tessellar
