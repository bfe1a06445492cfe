#pragma once

#include "helper/request_desk.h"

#include <chrono>
#include <functional>
#include <stop_token>

namespace tessellar {

/// Takes connections one by one or several at a time, each for one request: sends a fresh nonce, reads
/// one frame within the time for it, writes one reply, closes. A peer that ends its writing ends the
/// work that it asked for; the reply tells how far it came.
class HelperServer {
public:
    struct Options {
        std::chrono::milliseconds idle{60'000};
        std::chrono::milliseconds sendTime{helper_limits::sendMilliseconds};
        unsigned mostConnections = 64;
        unsigned mostOfOneUser = 4;                ///< more are closed unheard
        std::function<bool(int socket)> accepts{}; ///< none: everyone who may connect
    };

    HelperServer(RequestDesk& desk, std::function<QByteArray()> nonces, Options options)
        : _desk(desk), _nonces(std::move(nonces)), _options(options) {}

    /// Returns when nobody has come for the idle time and all work is done, or at a stop.
    void serve(int listening, std::stop_token stop);

private:
    void attend(const Descriptor& socket, const PeerCredentials& peer);

    RequestDesk& _desk;
    std::function<QByteArray()> _nonces;
    Options _options;
};

} // namespace tessellar
