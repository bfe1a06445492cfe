#include "helper/request_handler.h"

#include "platform/administrator_rights.h"

namespace tessellar {
namespace {

const QString polkitTool = QStringLiteral("/usr/bin/pkcheck");

/// Checked before the digest is computed and before anyone is asked.
bool isBounded(const PrivilegedFileOperationRequest& request) {
    if (request.items.size() > helper_limits::items ||
        request.application.value_or(QString()).toUtf8().size() > helper_limits::nameBytes)
        return false;
    for (const PrivilegedFileOperationItem& item : request.items)
        for (const QString& path : {item.source, item.destination.value_or(QString())})
            if (path.toUtf8().size() > helper_limits::pathBytes)
                return false;
    return true;
}

using Answer = AuthorizationCheck::Answer;

constexpr int dismissed = 3; ///< the tool's exit status
constexpr qsizetype itemsNamed = 3;
constexpr qsizetype longestText = 100;

QByteArray actionOf(PrivilegedFileOperationKind kind) {
    const QByteArray service = removalHelperService.toLatin1();
    switch (kind) {
    case PrivilegedFileOperationKind::healthCheck:
    case PrivilegedFileOperationKind::moveToTrash:
        break;
    case PrivilegedFileOperationKind::restoreFromTrash:
        return service + ".restore";
    case PrivilegedFileOperationKind::remove:
        return service + ".delete";
    }
    return service + ".trash";
}

QString printable(const QString& text) {
    QString clean;
    for (const QChar c : text)
        clean += c.isPrint() || c.isSurrogate() ? c : QChar(u'?');
    if (clean.size() > longestText)
        clean = clean.left(longestText / 2) + QChar(u'…') + clean.right(longestText / 2);
    return u'“' + clean + u'”';
}

} // namespace

QByteArray promptItems(const PrivilegedFileOperationRequest& request) {
    const bool isReturning = request.operation == PrivilegedFileOperationKind::restoreFromTrash;
    const qsizetype named = std::min(request.items.size(), itemsNamed);
    QStringList names;
    for (const PrivilegedFileOperationItem& item : request.items.first(named))
        names.append(printable(isReturning ? item.destination.value_or(item.source) : item.source));
    QString text = names.join(QStringLiteral(", "));
    if (const qsizetype more = request.items.size() - named; more > 0)
        text += QStringLiteral(" and %1 more").arg(more);
    return text.toUtf8();
}

QByteArray promptApplication(const PrivilegedFileOperationRequest& request) {
    return request.application ? printable(*request.application).toUtf8()
                               : QByteArrayLiteral("an application");
}

Answer PolkitCheck::check(const PeerCredentials& peer, const PrivilegedFileOperationRequest& request,
                          const QByteArray&, std::stop_token stop) {
    if (peer.user == 0)
        return Answer::granted;
    const auto start = processStartTime(peer.process);
    if (!start || !_files.isExecutableFile(polkitTool))
        return Answer::denied;
    const QByteArray process = QByteArray::number(qint64(peer.process)) + ',' +
                               QByteArray::number(quint64(*start)) + ',' +
                               QByteArray::number(peer.user);
    const CommandResult result =
        _commands.run({.executable = _files.hostPath(polkitTool),
                       .arguments = {"--action-id", actionOf(request.operation), "--process", process,
                                     "--detail", "application", promptApplication(request), "--detail",
                                     "items", promptItems(request), "--allow-user-interaction"},
                       .environment = {{"PATH", "/usr/bin:/bin"}},
                       .timeout = std::chrono::minutes(5),
                       .maximumOutput = 64u << 10,
                       .input = {}},
                      stop);
    if (result.succeeded())
        return Answer::granted;
    return result.outcome == CommandResult::Outcome::exited && result.exitStatus == dismissed
               ? Answer::canceled
               : Answer::denied;
}

AuthorizationCheck::Answer GrantCheck::check(const PeerCredentials& peer,
                                             const PrivilegedFileOperationRequest&,
                                             const QByteArray& grant, std::stop_token) {
    return peer.user == 0 || isAdministratorGrant(grant) ? Answer::granted : Answer::denied;
}

QByteArray RequestHandler::answer(const QByteArray& message, const PeerCredentials& peer,
                                  const QByteArray& nonce, std::stop_token stop) {
    return json::writeCompact(json::encode(respond(message, peer, nonce, stop)));
}

PrivilegedFileOperationResponse RequestHandler::respond(const QByteArray& message,
                                                        const PeerCredentials& peer,
                                                        const QByteArray& nonce, std::stop_token stop) {
    const auto request = json::decodeDocument<PrivilegedFileOperationRequest>(message);
    PrivilegedFileOperationResponse response{.id = request ? request->id : QUuid()};
    const auto refuse = [&](AuthorizationError error) {
        response.error = error;
        return response;
    };
    if (!request || !isBounded(*request))
        return refuse(AuthorizationError::malformed);
    if (request->authorization.isEmpty())
        return refuse(AuthorizationError::missing);
    const auto approval = json::decodeDocument<AdministratorApproval>(request->authorization);
    if (!approval)
        return refuse(AuthorizationError::malformed);
    if (nonce.isEmpty() || approval->nonce != nonce || approval->digest != requestDigest(*request))
        return refuse(AuthorizationError::invalid);
    // Anyone who can connect may ask whether the helper is there.
    if (request->operation == PrivilegedFileOperationKind::healthCheck && request->items.isEmpty()) {
        _operations.settle();
        return response;
    }
    const auto client = _clientOf(peer.user);
    if (!client)
        return refuse(AuthorizationError::denied);
    switch (_authorization.check(peer, *request, approval->grant, stop)) {
    case Answer::granted:
        response.outcomes = _operations.perform(*request, *client, stop);
        break;
    case Answer::denied:
        return refuse(AuthorizationError::denied);
    case Answer::canceled:
        response.outcomes = QList<PrivilegedFileOperationOutcome>(
            request->items.size(), {.message = administratorApprovalCanceled()});
        break;
    }
    return response;
}

} // namespace tessellar
