#include "helper/helper_server.h"

#include <algorithm>
#include <atomic>
#include <list>
#include <thread>

namespace tessellar {

using std::chrono::milliseconds;

void HelperServer::serve(int listening, std::stop_token stop) {
    struct Attendant {
        std::uint32_t user = 0;
        std::atomic<bool> isDone = false;
        std::jthread thread;
    };
    constexpr milliseconds look{100};
    std::list<Attendant> attendants;
    milliseconds idle{0};
    while (!stop.stop_requested() && idle < _options.idle) {
        attendants.remove_if([](const Attendant& attendant) { return attendant.isDone.load(); });
        // Further connections wait in the system's queue.
        if (attendants.size() >= _options.maximumConnections) {
            std::this_thread::sleep_for(look);
            continue;
        }
        auto socket = acceptLocally(listening, look);
        if (!socket) {
            if (socket.error() != ETIMEDOUT)
                std::this_thread::sleep_for(look);
            idle = attendants.empty() ? idle + look : milliseconds(0);
            continue;
        }
        idle = milliseconds(0);
        // A limit per user, so that nobody can block the others with idle connections.
        const auto peer = peerCredentials(socket->get());
        const auto ofSameUser = [&](const Attendant& other) {
            return other.user == peer->user && !other.isDone.load();
        };
        if (!peer ||
            std::ranges::count_if(attendants, ofSameUser) >= std::ptrdiff_t(_options.maximumPerUser))
            continue;
        Attendant& attendant = attendants.emplace_back();
        attendant.user = peer->user;
        attendant.thread = std::jthread([this, &attendant, peer = *peer, socket = *std::move(socket)] {
            handleConnection(socket, peer);
            attendant.isDone.store(true);
        });
    }
}

void HelperServer::handleConnection(const Descriptor& socket, const PeerCredentials& peer) {
    if (_options.accepts && !_options.accepts(socket.get()))
        return;
    const QByteArray nonce = _nonces();
    const QByteArray challenge = json::writeCompact(json::encode(HelperChallenge{nonce}));
    if (writeFrame(socket.get(), challenge, _options.sendTime) != 0)
        return;
    const auto message = readFrame(socket.get(), helper_limits::frameBytes, _options.sendTime);
    // A malformed or late request is answered, too: as one that cannot be read. The client may
    // disconnect or ask to stop: what has not been done by then is not done.
    std::stop_source enough;
    const std::jthread watching([&](std::stop_token over) {
        constexpr milliseconds look{50};
        while (message && !over.stop_requested())
            if (hasDisconnected(socket.get(), look)) {
                enough.request_stop();
                return;
            }
    });
    const QByteArray reply =
        _handler.answer(message.value_or(QByteArray()), peer, nonce, enough.get_token());
    (void)writeFrame(socket.get(), reply, _options.sendTime);
}

} // namespace tessellar
