#include "platform/activated_socket.h"

#include <launch.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>

namespace tessellar {

std::optional<Descriptor> activatedSocket() {
    int* descriptors = nullptr;
    std::size_t count = 0;
    // Named in the helper's property list.
    if (::launch_activate_socket("Requests", &descriptors, &count) != 0 || count == 0)
        return std::nullopt;
    const std::unique_ptr<int, decltype(&std::free)> owned(descriptors, &std::free);
    for (std::size_t i = 1; i < count; ++i)
        ::close(descriptors[i]);
    return Descriptor(descriptors[0]);
}

} // namespace tessellar
