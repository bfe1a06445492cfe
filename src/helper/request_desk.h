#pragma once

#include "helper/file_operations.h"
#include "platform/local_socket.h"
#include "platform/process.h"

#include <functional>

namespace tessellar {

/// Whether the system grants a process an administrator's rights.
class AuthorizationCheck {
public:
    virtual ~AuthorizationCheck() = default;
    virtual std::expected<void, AuthorizationError>
    check(const PeerCredentials& peer, const QByteArray& grant, std::stop_token stop) = 0;
};

/// Asks the desktop's authority with its own tool, by its fixed place and with nothing that the peer
/// sent; it may prompt the user. Without that tool only root is granted anything. The one child that
/// the helper ever starts.
class PolkitCheck final : public AuthorizationCheck {
public:
    PolkitCheck(const FileSystem& files, CommandRunner& commands)
        : _files(files), _commands(commands) {}
    std::expected<void, AuthorizationError> check(const PeerCredentials& peer, const QByteArray& grant,
                                                  std::stop_token stop) override;

private:
    const FileSystem& _files;
    CommandRunner& _commands;
};

/// Checks the grant that the request carries, where the system makes such.
class GrantCheck final : public AuthorizationCheck {
public:
    std::expected<void, AuthorizationError> check(const PeerCredentials& peer, const QByteArray& grant,
                                                  std::stop_token stop) override;
};

/// Answers one message with one reply, whatever the message is.
class RequestDesk {
public:
    using ClientOf = std::function<std::optional<HelperClient>(std::uint32_t user)>;

    RequestDesk(FileOperations& operations, AuthorizationCheck& authorization, ClientOf clientOf)
        : _operations(operations), _authorization(authorization), _clientOf(std::move(clientOf)) {}

    /// `nonce` was made for this connection alone and is good for this message alone.
    QByteArray answer(const QByteArray& message, const PeerCredentials& peer, const QByteArray& nonce,
                      std::stop_token stop = {});

private:
    PrivilegedFileOperationResponse respond(const QByteArray& message, const PeerCredentials& peer,
                                            const QByteArray& nonce, std::stop_token stop);
    std::expected<void, AuthorizationError> authorize(const PrivilegedFileOperationRequest& request,
                                                      const PeerCredentials& peer,
                                                      const QByteArray& nonce, std::stop_token stop);

    FileOperations& _operations;
    AuthorizationCheck& _authorization;
    ClientOf _clientOf;
};

} // namespace tessellar
