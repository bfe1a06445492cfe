#pragma once

#include "platform/signal.h"

#include <memory>

namespace tessellar {

/// Tells when the machine is on a network again. An interface, so that tests can say so.
class NetworkWatch {
public:
    virtual ~NetworkWatch() = default;

    Signal<> returned;
};

/// By what the system tells; where it tells nothing, `returned` is never heard. Main thread.
std::unique_ptr<NetworkWatch> makeNetworkWatch();

} // namespace tessellar
