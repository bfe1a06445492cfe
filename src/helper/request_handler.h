#pragma once

#include "helper/file_operations.h"
#include "platform/local_socket.h"
#include "platform/process.h"

#include <functional>

namespace tessellar {

/// Asks the system whether a process has administrator's rights for one request.
class AuthorizationCheck {
public:
    enum class Answer { granted, denied, canceled };
    virtual ~AuthorizationCheck() = default;
    virtual Answer check(const PeerCredentials& peer, const PrivilegedFileOperationRequest& request,
                         const QByteArray& grant, std::stop_token stop) = 0;
};

/// Asks polkit through its tool at a fixed path. It may prompt the user, naming the operation and the
/// items. Each kind of operation is a separate polkit action, so that approving one approves no other.
/// Without the tool, only root is authorized. The helper starts no other child process.
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

/// The request's items and application as shown in the prompt. Untrusted text: shortened to one line,
/// without characters that could reorder it.
QByteArray promptItems(const PrivilegedFileOperationRequest& request);
QByteArray promptApplication(const PrivilegedFileOperationRequest& request);

/// Verifies the grant in the request, where the system issues grants.
class GrantCheck final : public AuthorizationCheck {
public:
    Answer check(const PeerCredentials& peer, const PrivilegedFileOperationRequest& request,
                 const QByteArray& grant, std::stop_token stop) override;
};

/// Replies to any message, valid or not.
class RequestHandler {
public:
    using ClientOf = std::function<std::optional<HelperClient>(std::uint32_t user)>;

    RequestHandler(FileOperations& operations, AuthorizationCheck& authorization, ClientOf clientOf)
        : _operations(operations), _authorization(authorization), _clientOf(std::move(clientOf)) {}

    /// `nonce` is unique to this connection and valid for this message only.
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
