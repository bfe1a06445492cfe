#include "cleanup/privileged/helper_transport.h"
#include "platform/code_requirement.h"
#include "platform/local_socket.h"
#include "platform/peer_code.h"
#include "platform/texts.h"
#include "privileged/records.h"

#include <sys/socket.h>

#include <cstring>
#include <system_error>
#include <thread>

namespace tessellar {
namespace {

using std::chrono::milliseconds;

/// The helper may have to wait while an administrator types a password.
constexpr std::chrono::minutes longestWork{10};
constexpr milliseconds sendTime{helper_limits::sendMilliseconds};

class SocketConnection final : public HelperConnection {
public:
    SocketConnection(Descriptor socket, QByteArray challenge)
        : _socket(std::move(socket)), _challenge(std::move(challenge)) {}
    ~SocketConnection() override {
        ::shutdown(_socket.get(), SHUT_RDWR); // wakes the reader, so that it can be joined
    }

    const QByteArray& challenge() const override { return _challenge; }

    void send(const QByteArray& message, HelperConnectionHandlers handlers) override {
        if (writeFrame(_socket.get(), message, sendTime) != 0)
            return handlers.invalidated();
        try {
            _reader = std::jthread([socket = _socket.get(), handlers] {
                const auto reply = readFrame(socket, helper_limits::frameBytes, longestWork);
                if (reply)
                    handlers.reply(*reply);
                else if (reply.error() == ECONNRESET)
                    handlers.invalidated();
                else
                    handlers.interrupted();
            });
        } catch (const std::system_error&) {
            handlers.interrupted(); // without a thread nobody reads the reply
        }
    }

    void stop() override { shutDownWriting(_socket.get()); }

private:
    Descriptor _socket;
    QByteArray _challenge;
    std::jthread _reader;
};

} // namespace

std::expected<std::unique_ptr<HelperConnection>, QString> LocalSocketTransport::connect() {
    const auto failed = [](int error) {
        return std::unexpected(QString::fromLocal8Bit(std::strerror(error)));
    };
    auto socket = connectLocally(_path);
    if (!socket)
        return failed(socket.error());
    const auto peer = peerCredentials(socket->get());
    if (!peer)
        return failed(peer.error());
    if (peer->user != _owner)
        return std::unexpected(Texts::tr("Someone else listens in the helper's place."));
    // A root-owned helper must be signed; one that a test started need not be.
    if (_owner == 0 && !isPeerCodeAccepted(socket->get(), removalHelperService))
        return std::unexpected(unverifiedSignature());
    auto challenge = readFrame(socket->get(), helper_limits::frameBytes, sendTime);
    if (!challenge)
        return failed(challenge.error());
    return std::make_unique<SocketConnection>(*std::move(socket), *std::move(challenge));
}

} // namespace tessellar
