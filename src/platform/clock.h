#pragma once

#include "platform/instant.h"

namespace tessellar {

/// The source of the current time; nothing else reads a clock.
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
