#include "platform/local_socket.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <QFile>

#include <array>
#include <cstring>

#ifndef __linux__
#include <sys/sysctl.h>
#include <sys/ucred.h>
#endif

namespace tessellar {
namespace {

using std::chrono::milliseconds;
using Time = std::chrono::steady_clock::time_point;

constexpr int backlog = 128;
constexpr int firstInherited = 3;

std::expected<sockaddr_un, int> addressOf(const QByteArray& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.isEmpty() || path.contains('\0') ||
        static_cast<std::size_t>(path.size()) >= sizeof address.sun_path)
        return std::unexpected(ENAMETOOLONG);
    std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
    return address;
}

std::expected<Descriptor, int> openSocket() {
    Descriptor socket(::socket(AF_UNIX, SOCK_STREAM, 0));
    if (!socket)
        return std::unexpected(errno);
    ::fcntl(socket.get(), F_SETFD, FD_CLOEXEC);
    return socket;
}

/// Waits until the socket is ready; returns 0 if it is before `end`, or an errno.
int await(int socket, short events, Time end) {
    while (true) {
        const auto left =
            std::chrono::ceil<milliseconds>(end - std::chrono::steady_clock::now()).count();
        if (left <= 0)
            return ETIMEDOUT;
        pollfd polled{socket, events, 0};
        const int ready = ::poll(&polled, 1, static_cast<int>(std::min<long>(left, 60'000)));
        if (ready > 0)
            return 0;
        if (ready < 0 && errno != EINTR)
            return errno;
    }
}

int readExactly(int socket, char* into, std::size_t size, Time end) {
    for (std::size_t filled = 0; filled < size;) {
        if (const int error = await(socket, POLLIN, end))
            return error;
        const ssize_t count = ::recv(socket, into + filled, size - filled, MSG_DONTWAIT);
        if (count == 0)
            return ECONNRESET;
        if (count < 0 && errno != EINTR && errno != EAGAIN)
            return errno;
        filled += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    return 0;
}

} // namespace

std::expected<PeerCredentials, int> peerCredentials(int socket) {
#ifdef __linux__
    ucred credentials{};
    socklen_t size = sizeof credentials;
    if (::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &credentials, &size) != 0)
        return std::unexpected(errno);
    return PeerCredentials{credentials.uid, credentials.pid};
#else
    uid_t user = 0;
    gid_t group = 0;
    pid_t process = 0;
    socklen_t size = sizeof process;
    if (::getpeereid(socket, &user, &group) != 0 ||
        ::getsockopt(socket, SOL_LOCAL, LOCAL_PEERPID, &process, &size) != 0)
        return std::unexpected(errno);
    return PeerCredentials{user, process};
#endif
}

std::optional<std::uint64_t> processStartTime(std::int64_t process) {
#ifdef __linux__
    QFile file(QStringLiteral("/proc/%1/stat").arg(process));
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray text = file.read(4096);
    // The second field, a name in parentheses, may contain anything.
    const QList<QByteArray> fields = text.sliced(text.lastIndexOf(')') + 1).simplified().split(' ');
    bool isNumber = false;
    const std::uint64_t start = fields.value(19).toULongLong(&isNumber);
    return isNumber ? std::optional(start) : std::nullopt;
#else
    std::array<int, 4> name{CTL_KERN, KERN_PROC, KERN_PROC_PID, static_cast<int>(process)};
    kinfo_proc found{};
    std::size_t size = sizeof found;
    if (::sysctl(name.data(), name.size(), &found, &size, nullptr, 0) != 0 || size == 0)
        return std::nullopt;
    return static_cast<std::uint64_t>(found.kp_proc.p_starttime.tv_sec);
#endif
}

std::expected<Descriptor, int> listenLocally(const QByteArray& hostPath, SocketAccess access) {
    const auto address = addressOf(hostPath);
    if (!address)
        return std::unexpected(address.error());
    struct stat status {};
    if (::lstat(hostPath.constData(), &status) == 0) {
        if (!S_ISSOCK(status.st_mode) || connectLocally(hostPath))
            return std::unexpected(EADDRINUSE);
        ::unlink(hostPath.constData());
    }
    auto socket = openSocket();
    if (!socket)
        return socket;
    if (::bind(socket->get(), reinterpret_cast<const sockaddr*>(&*address), sizeof *address) != 0)
        return std::unexpected(errno);
    // Nobody can connect before `listen`, so the mode did not matter until now.
    const mode_t mode = access == SocketAccess::everyone ? 0666 : 0600;
    if (::chmod(hostPath.constData(), mode) == 0 && ::listen(socket->get(), backlog) == 0)
        return socket;
    const int error = errno;
    ::unlink(hostPath.constData());
    return std::unexpected(error);
}

std::expected<Descriptor, int> connectLocally(const QByteArray& hostPath) {
    const auto address = addressOf(hostPath);
    if (!address)
        return std::unexpected(address.error());
    auto socket = openSocket();
    if (!socket)
        return socket;
    if (retrying([&] {
            return ::connect(socket->get(), reinterpret_cast<const sockaddr*>(&*address),
                             sizeof *address);
        }) != 0)
        return std::unexpected(errno);
    return socket;
}

std::expected<Descriptor, int> acceptLocally(int listening, milliseconds timeout) {
    if (const int error = await(listening, POLLIN, std::chrono::steady_clock::now() + timeout))
        return std::unexpected(error);
    Descriptor socket(retrying([&] { return ::accept(listening, nullptr, nullptr); }));
    if (!socket)
        return std::unexpected(errno);
    ::fcntl(socket.get(), F_SETFD, FD_CLOEXEC);
    return socket;
}

std::optional<Descriptor> inheritedSocket(const QByteArray& listenPid, const QByteArray& listenFds) {
    if (listenPid.toLongLong() != ::getpid() || listenFds.toInt() != 1)
        return std::nullopt;
    ::fcntl(firstInherited, F_SETFD, FD_CLOEXEC);
    return Descriptor(firstInherited);
}

std::expected<QByteArray, int> readFrame(int socket, qsizetype maximum, milliseconds timeout) {
    const Time end = std::chrono::steady_clock::now() + timeout;
    std::array<unsigned char, 4> head{};
    if (const int error = readExactly(socket, reinterpret_cast<char*>(head.data()), head.size(), end))
        return std::unexpected(error);
    const qsizetype size = (qsizetype(head[0]) << 24) | (head[1] << 16) | (head[2] << 8) | head[3];
    if (size > maximum)
        return std::unexpected(EMSGSIZE);
    // In pieces: memory is allocated for what arrives, not for what is announced.
    constexpr qsizetype piece = 64 * 1024;
    QByteArray bytes;
    while (bytes.size() < size) {
        const qsizetype before = bytes.size();
        bytes.resize(std::min(size, before + piece));
        if (const int error = readExactly(socket, bytes.data() + before,
                                          static_cast<std::size_t>(bytes.size() - before), end))
            return std::unexpected(error);
    }
    return bytes;
}

int writeFrame(int socket, const QByteArray& bytes, milliseconds timeout) {
    const Time end = std::chrono::steady_clock::now() + timeout;
    const auto size = static_cast<std::uint32_t>(bytes.size());
    QByteArray frame;
    for (const int shift : {24, 16, 8, 0})
        frame += static_cast<char>((size >> shift) & 0xFFu);
    frame += bytes;
#ifdef MSG_NOSIGNAL
    constexpr int flags = MSG_DONTWAIT | MSG_NOSIGNAL;
#else
    constexpr int flags = MSG_DONTWAIT;
    const int on = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_NOSIGPIPE, &on, sizeof on);
#endif
    for (qsizetype sent = 0; sent < frame.size();) {
        if (const int error = await(socket, POLLOUT, end))
            return error;
        const ssize_t count = ::send(socket, frame.constData() + sent,
                                     static_cast<std::size_t>(frame.size() - sent), flags);
        if (count < 0 && errno != EINTR && errno != EAGAIN)
            return errno;
        sent += count > 0 ? count : 0;
    }
    return 0;
}

bool hasDisconnected(int socket, milliseconds timeout) {
    return await(socket, POLLIN, std::chrono::steady_clock::now() + timeout) == 0;
}

void shutDownWriting(int socket) { ::shutdown(socket, SHUT_WR); }

} // namespace tessellar
