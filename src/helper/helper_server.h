#pragma once

#include "helper/request_desk.h"

#include <chrono>
#include <functional>
#include <stop_token>

namespace tessellar {

/// Serves concurrent connections, one request each: sends a fresh nonce, reads one frame before a
/// timeout, writes one reply, closes. If the peer closes its writing end, the work is stopped; the
/// reply reports what was done.
class HelperServer {
public:
    struct Options {
        std::chrono::milliseconds idle{60'000};
        std::chrono::milliseconds sendTime{helper_limits::sendMilliseconds};
        unsigned mostConnections = 64;
        unsigned mostOfOneUser = 4;                ///< further connections are closed unread
        std::function<bool(int socket)> accepts{}; ///< empty: accepts every peer
    };

    HelperServer(RequestDesk& desk, std::function<QByteArray()> nonces, Options options)
        : _desk(desk), _nonces(std::move(nonces)), _options(options) {}

    /// Returns on a stop request, or once idle for `idle` with all work done.
    void serve(int listening, std::stop_token stop);

private:
    void attend(const Descriptor& socket, const PeerCredentials& peer);

    RequestDesk& _desk;
    std::function<QByteArray()> _nonces;
    Options _options;
};

} // namespace tessellar
