#pragma once

#include "helper/request_handler.h"

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
        unsigned maximumConnections = 64;
        unsigned maximumPerUser = 4;               ///< further connections are closed unread
        std::function<bool(int socket)> accepts{}; ///< empty: accepts every peer
    };

    HelperServer(RequestHandler& handler, std::function<QByteArray()> nonces, Options options)
        : _handler(handler), _nonces(std::move(nonces)), _options(options) {}

    /// Returns on a stop request, or once idle for `idle` with all work done.
    void serve(int listening, std::stop_token stop);

private:
    void handleConnection(const Descriptor& socket, const PeerCredentials& peer);

    RequestHandler& _handler;
    std::function<QByteArray()> _nonces;
    Options _options;
};

} // namespace tessellar
