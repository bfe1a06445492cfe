#pragma once

#include <QString>

namespace tessellar {

// Whose code is at the other end of a local socket. The build chooses the implementation:
// peer_code.cpp, where code is not signed and the user that the kernel names is all there is, or
// macos/peer_code.cpp.
//
// On a Mac this asks the Security framework about the connection's audit token, and not `codesign`
// about a process number: by the time a tool has looked, the number can be another process's. Unproven:
// compiled against declarations, never run.

/// Whether the process that made or accepted this connection runs code of this identifier, signed by
/// the team that signed this program.
bool isPeerCodeAccepted(int socket, const QString& bundleIdentifier);

} // namespace tessellar
