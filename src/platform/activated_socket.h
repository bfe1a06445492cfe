#pragma once

#include "platform/descriptor.h"

#include <optional>

namespace tessellar {

/// The listening socket that the system passed to this program when starting it on demand; nullopt when
/// it was started any other way. The build picks the implementation: activated_socket.cpp (systemd) or
/// macos/activated_socket.cpp (launchd, through its C call, as no tool hands the socket over. Unproven:
/// compiled, never run).
std::optional<Descriptor> activatedSocket();

} // namespace tessellar
