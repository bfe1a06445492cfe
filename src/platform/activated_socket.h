#pragma once

#include "platform/descriptor.h"

#include <optional>

namespace tessellar {

/// The listening socket that the system opened for this program when it started it on demand; nothing
/// when it was started otherwise. The build chooses the implementation: activated_socket.cpp (systemd),
/// or macos/activated_socket.cpp (launchd, which has no tool that could hand it over; its C library has
/// the call. Unproven: compiled, never run).
std::optional<Descriptor> activatedSocket();

} // namespace tessellar
