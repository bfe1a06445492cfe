#include "platform/clock.h"

namespace tessellar {

Instant SystemClock::now() const {
    const std::chrono::duration<double> sinceEpoch =
        std::chrono::system_clock::now().time_since_epoch();
    return Instant::fromUnixSeconds(sinceEpoch.count());
}

} // namespace tessellar
