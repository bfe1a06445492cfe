#pragma once

#include "platform/descriptor.h"

#include <QByteArray>

#include <chrono>
#include <cstdint>
#include <expected>
#include <optional>

// Messages between processes of one machine: local sockets, whose other end the kernel vouches for, and
// frames of four bytes of length (the highest first) and as many bytes. All errors are errno values.

namespace tessellar {

/// Who is at the other end, as the kernel knows it since the connection was made.
struct PeerCredentials {
    std::uint32_t user = 0;
    std::int64_t process = 0;

    bool operator==(const PeerCredentials&) const = default;
};
std::expected<PeerCredentials, int> peerCredentials(int socket);

/// When a process started, in the system's own count: with its number, it names a process for good.
std::optional<std::uint64_t> processStartTime(std::int64_t process);

/// Who may connect, of those who may reach the folder.
enum class SocketReach { everyone, user };
/// Binds and listens. Replaces a stale socket; on failure leaves none behind. EADDRINUSE if somebody
/// listens there.
std::expected<Descriptor, int> listenLocally(const QByteArray& hostPath, SocketReach reach);
std::expected<Descriptor, int> connectLocally(const QByteArray& hostPath);
/// The next connection, or ETIMEDOUT.
std::expected<Descriptor, int> acceptLocally(int listening, std::chrono::milliseconds patience);
/// A socket that the system opened and handed to this process when it started it, by systemd's protocol
/// (LISTEN_PID and LISTEN_FDS).
std::optional<Descriptor> inheritedSocket(const QByteArray& listenPid, const QByteArray& listenFds);

/// The whole frame must have arrived in time. EMSGSIZE for one above `maximum`, ECONNRESET when the
/// other end closed before it was whole.
std::expected<QByteArray, int> readFrame(int socket, qsizetype maximum,
                                         std::chrono::milliseconds patience);
/// Whether the other end closed, or ended its writing, within this time, or sent what nobody asked for.
bool hasLeft(int socket, std::chrono::milliseconds patience);
/// Tells the other end that nothing more will come; what it sends is still read.
void endWriting(int socket);
/// 0 or an errno; never a signal.
int writeFrame(int socket, const QByteArray& bytes, std::chrono::milliseconds patience);

} // namespace tessellar
