#include "helper/request_desk.h"

#include "platform/administrator_rights.h"

namespace tessellar {
namespace {

const QString polkitTool = QStringLiteral("/usr/bin/pkcheck");

/// Before the digest is made, and before anything is asked of anyone.
bool isBounded(const PrivilegedFileOperationRequest& request) {
    if (request.items.size() > helper_limits::items)
        return false;
    for (const PrivilegedFileOperationItem& item : request.items)
        for (const QString& path : {item.source, item.destination.value_or(QString())})
            if (path.toUtf8().size() > helper_limits::pathBytes)
                return false;
    return true;
}

} // namespace

std::expected<void, AuthorizationError> PolkitCheck::check(const PeerCredentials& peer,
                                                           const QByteArray&, std::stop_token stop) {
    if (peer.user == 0)
        return {};
    const auto start = processStartTime(peer.process);
    if (!start || !_files.isExecutableFile(polkitTool))
        return std::unexpected(AuthorizationError::denied);
    const QByteArray process = QByteArray::number(qint64(peer.process)) + ',' +
                               QByteArray::number(quint64(*start)) + ',' +
                               QByteArray::number(peer.user);
    const CommandResult result =
        _commands.run({.executable = _files.hostPath(polkitTool),
                       .arguments = {"--action-id", "com.tessellar.app.removal-helper.manage",
                                     "--process", process, "--allow-user-interaction"},
                       .environment = {{"PATH", "/usr/bin:/bin"}},
                       .timeout = std::chrono::minutes(5),
                       .maximumOutput = 64u << 10,
                       .input = {}},
                      stop);
    if (!result.succeeded())
        return std::unexpected(AuthorizationError::denied);
    return {};
}

std::expected<void, AuthorizationError> GrantCheck::check(const PeerCredentials& peer,
                                                          const QByteArray& grant, std::stop_token) {
    if (peer.user != 0 && !isAdministratorGrant(grant))
        return std::unexpected(AuthorizationError::denied);
    return {};
}

QByteArray RequestDesk::answer(const QByteArray& message, const PeerCredentials& peer,
                               const QByteArray& nonce, std::stop_token stop) {
    return json::writeCompact(json::encode(respond(message, peer, nonce, stop)));
}

PrivilegedFileOperationResponse RequestDesk::respond(const QByteArray& message,
                                                     const PeerCredentials& peer,
                                                     const QByteArray& nonce, std::stop_token stop) {
    const auto request = json::decodeDocument<PrivilegedFileOperationRequest>(message);
    if (!request || !isBounded(*request))
        return {.id = request ? request->id : QUuid(), .error = AuthorizationError::malformed};
    PrivilegedFileOperationResponse response{.id = request->id};
    const auto client = _clientOf(peer.user);
    if (const auto authorized = authorize(*request, peer, nonce, stop); !authorized)
        response.error = authorized.error();
    else if (!client)
        response.error = AuthorizationError::denied;
    else
        response.outcomes = _operations.perform(*request, *client, stop);
    return response;
}

std::expected<void, AuthorizationError>
RequestDesk::authorize(const PrivilegedFileOperationRequest& request, const PeerCredentials& peer,
                       const QByteArray& nonce, std::stop_token stop) {
    if (request.authorization.isEmpty())
        return std::unexpected(AuthorizationError::missing);
    const auto approval = json::decodeDocument<AdministratorApproval>(request.authorization);
    if (!approval)
        return std::unexpected(AuthorizationError::malformed);
    if (nonce.isEmpty() || approval->nonce != nonce || approval->digest != requestDigest(request))
        return std::unexpected(AuthorizationError::invalid);
    // Whether it is there may be asked by anyone who could see its socket.
    if (request.operation == PrivilegedFileOperationKind::healthCheck && request.items.isEmpty())
        return {};
    return _authorization.check(peer, approval->grant, stop);
}

} // namespace tessellar
