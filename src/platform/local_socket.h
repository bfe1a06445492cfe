#pragma once

#include "platform/descriptor.h"

#include <QByteArray>

#include <chrono>
#include <cstdint>
#include <expected>
#include <optional>

// Messages between processes of one machine: local sockets, whose peer the kernel identifies, and
// frames: a big-endian length of four bytes, then the payload. All errors are errno values.

namespace tessellar {

/// The peer as the kernel recorded it when the connection was made.
struct PeerCredentials {
    std::uint32_t user = 0;
    std::int64_t process = 0;

    bool operator==(const PeerCredentials&) const = default;
};
std::expected<PeerCredentials, int> peerCredentials(int socket);

/// When a process started, in units of the system. Together with its number it identifies the process,
/// even after the number is reused.
std::optional<std::uint64_t> processStartTime(std::int64_t process);

/// Who may connect, given access to the folder.
enum class SocketAccess { everyone, user };
/// Binds and listens. Replaces a stale socket; leaves none behind on failure. EADDRINUSE if a server is
/// listening there.
std::expected<Descriptor, int> listenLocally(const QByteArray& hostPath, SocketAccess access);
std::expected<Descriptor, int> connectLocally(const QByteArray& hostPath);
/// The next connection, or ETIMEDOUT.
std::expected<Descriptor, int> acceptLocally(int listening, std::chrono::milliseconds timeout);
/// The socket that the system passed to this process at its start, by systemd's socket activation
/// protocol (LISTEN_PID and LISTEN_FDS).
std::optional<Descriptor> inheritedSocket(const QByteArray& listenPid, const QByteArray& listenFds);

/// Reads one frame. The timeout is for all of it. EMSGSIZE if it is larger than `maximum`, ECONNRESET
/// if the peer closed before its end.
std::expected<QByteArray, int> readFrame(int socket, qsizetype maximum,
                                         std::chrono::milliseconds timeout);
/// Waits for the peer to close, to shut down writing, or to send anything. False on timeout.
bool hasDisconnected(int socket, std::chrono::milliseconds timeout);
/// Signals end of input to the peer. Reading remains possible.
void shutDownWriting(int socket);
/// Returns 0 or an errno. Never raises SIGPIPE.
int writeFrame(int socket, const QByteArray& bytes, std::chrono::milliseconds timeout);

} // namespace tessellar
