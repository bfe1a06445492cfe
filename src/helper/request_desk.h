#pragma once

#include "helper/file_operations.h"
#include "platform/local_socket.h"
#include "platform/process.h"

#include <functional>

namespace tessellar {

/// Whether the system grants a process an administrator's rights, for one request.
class AuthorizationCheck {
public:
    enum class Answer { granted, denied, canceled };
    virtual ~AuthorizationCheck() = default;
    virtual Answer check(const PeerCredentials& peer, const PrivilegedFileOperationRequest& request,
                         const QByteArray& grant, std::stop_token stop) = 0;
};

/// Asks the desktop's authority with its own tool, by its fixed place; it may prompt the user, and the
/// prompt says what is to be done to which items. Each kind of operation is an action of its own, so
/// that an approval of one is none of another. Without that tool only root is granted anything. The
/// one child that the helper ever starts.
class PolkitCheck final : public AuthorizationCheck {
public:
    PolkitCheck(const FileSystem& files, CommandRunner& commands)
        : _files(files), _commands(commands) {}
    Answer check(const PeerCredentials& peer, const PrivilegedFileOperationRequest& request,
                 const QByteArray& grant, std::stop_token stop) override;

private:
    const FileSystem& _files;
    CommandRunner& _commands;
};

/// What a prompt says of a request's items, and of whose they are. Whoever asks chose these texts: they
/// are short, on one line and without characters that would turn it about.
QByteArray promptItems(const PrivilegedFileOperationRequest& request);
QByteArray promptApplication(const PrivilegedFileOperationRequest& request);

/// Checks the grant that the request carries, where the system makes such.
class GrantCheck final : public AuthorizationCheck {
public:
    Answer check(const PeerCredentials& peer, const PrivilegedFileOperationRequest& request,
                 const QByteArray& grant, std::stop_token stop) override;
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

    FileOperations& _operations;
    AuthorizationCheck& _authorization;
    ClientOf _clientOf;
};

} // namespace tessellar
