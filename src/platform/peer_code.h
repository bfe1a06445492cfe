#pragma once

#include <QString>

namespace tessellar {

// Verifies the code at the other end of a local socket. The build picks the implementation:
// macos/peer_code.cpp, or peer_code.cpp where code is unsigned and only the peer's user is known, from
// the kernel.
//
// macOS asks the Security framework about the connection's audit token rather than `codesign` about a
// process ID, which may have been reused by then. Unproven: compiled against declarations, never run.

/// Whether the peer of this connection runs code with this identifier, signed by the same team as this
/// program.
bool isPeerCodeAccepted(int socket, const QString& bundleIdentifier);

} // namespace tessellar
