#pragma once

#include "platform/signal.h"

#include <memory>

namespace tessellar {

/// Notifies when the machine is online again. An interface, so that tests can fake it.
class NetworkWatch {
public:
    virtual ~NetworkWatch() = default;

    Signal<> returned;
};

/// Uses the system's notifications; without them `returned` never fires. Main thread.
std::unique_ptr<NetworkWatch> makeNetworkWatch();

} // namespace tessellar
