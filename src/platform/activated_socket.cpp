#include "platform/activated_socket.h"

#include "platform/local_socket.h"

#include <cstdlib>

namespace tessellar {

std::optional<Descriptor> activatedSocket() {
    return inheritedSocket(std::getenv("LISTEN_PID"), std::getenv("LISTEN_FDS"));
}

} // namespace tessellar
