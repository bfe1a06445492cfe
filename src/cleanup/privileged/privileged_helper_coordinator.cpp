#include "cleanup/privileged/privileged_helper_coordinator.h"

#include "platform/administrator_rights.h"
#include "platform/resume_once.h"
#include "platform/texts.h"

#include <algorithm>
#include <future>

namespace tessellar {
namespace {

using Kind = PrivilegedFileOperationKind;
using Status = PrivilegedFileOutcomeStatus;

const char* const notEncoded = Texts::noop("Could not encode the administrator request.");
const char* const interrupted = Texts::noop("The administrator helper was interrupted.");
const char* const closed = Texts::noop("The administrator helper connection closed unexpectedly.");
const char* const notConnected = Texts::noop("Could not connect to the administrator helper.");

constexpr std::chrono::milliseconds look{100};
constexpr int patienceAfterStop = 100; ///< polls

QString sentence(AdministratorAuthorization::Refusal refusal) {
    switch (refusal) {
    case AdministratorAuthorization::Refusal::canceled:
        return administratorApprovalCanceled();
    case AdministratorAuthorization::Refusal::denied:
        return message(AuthorizationError::denied);
    case AdministratorAuthorization::Refusal::externalizationFailed:
        break;
    }
    return message(AuthorizationError::externalizationFailed);
}

/// JSON can only hold valid Unicode.
bool canBeEncoded(const QString& path) { return path.isValidUtf16() && !path.contains(QChar(u'\0')); }

} // namespace

std::expected<PrivilegedFileOperationResponse, QString>
helperReply(const QByteArray& bytes, const PrivilegedFileOperationRequest& request) {
    auto reply = json::decodeDocument<PrivilegedFileOperationResponse>(bytes);
    if (!reply)
        return std::unexpected(Texts::tr("The administrator helper returned unreadable data."));
    const auto invalid =
        std::unexpected(Texts::tr("The administrator helper returned an invalid response."));
    if (reply->id != request.id)
        return invalid;
    if (reply->error)
        return std::unexpected(message(*reply->error));
    const Status done = request.operation == Kind::remove ? Status::removed : Status::moved;
    const bool fits =
        std::ranges::all_of(reply->outcomes, [&](const PrivilegedFileOperationOutcome& outcome) {
            return outcome.status == done || outcome.status == Status::failed;
        });
    if (!fits || reply->outcomes.size() != request.items.size())
        return invalid;
    // The helper serves every user, so it does not translate.
    for (PrivilegedFileOperationOutcome& outcome : reply->outcomes)
        if (outcome.message)
            outcome.message = Texts::tr(outcome.message->toUtf8());
    return *std::move(reply);
}

std::expected<QByteArray, AdministratorAuthorization::Refusal>
SystemAuthorization::obtain(std::stop_token) {
    auto grant = obtainAdministratorGrant();
    if (grant)
        return *std::move(grant);
    switch (grant.error()) {
    case RightsRefusal::canceled:
        return std::unexpected(Refusal::canceled);
    case RightsRefusal::externalizationFailed:
        return std::unexpected(Refusal::externalizationFailed);
    case RightsRefusal::denied:
        break;
    }
    return std::unexpected(Refusal::denied);
}

std::expected<PrivilegedFileOperationResponse, QString>
PrivilegedHelperCoordinator::perform(Kind operation, const QList<PrivilegedFileOperationItem>& items,
                                     std::stop_token stop, const std::optional<QString>& application) {
    if (_parts.broker)
        if (const auto ready = _parts.broker->ensure(stop); !ready)
            return std::unexpected(message(ready.error()));
    // A health check changes nothing and needs no approval, though it is bound to its connection, too.
    // The prompt comes before connecting: the helper would not wait for it.
    std::expected<QByteArray, AdministratorAuthorization::Refusal> grant;
    if (operation != Kind::healthCheck)
        grant = _parts.authorization.obtain(stop);
    if (!grant)
        return std::unexpected(sentence(grant.error()));
    const auto connection = _parts.transport.connect();
    if (!connection) {
        _parts.log.warning(QStringLiteral("The removal helper: ") + connection.error());
        return std::unexpected(Texts::tr(notConnected));
    }
    const auto challenge = json::decodeDocument<HelperChallenge>((*connection)->challenge());
    if (!challenge)
        return std::unexpected(Texts::tr(notConnected));

    PrivilegedFileOperationRequest request{
        .id = _parts.uuids.next(), .operation = operation, .items = items, .application = application};
    request.authorization = json::writeCompact(json::encode(
        AdministratorApproval{challenge->nonce, requestDigest(request), *std::move(grant)}));
    const QByteArray encoded = json::writeCompact(json::encode(request));
    if (encoded.size() > helper_limits::frameBytes)
        return std::unexpected(Texts::tr(notEncoded));

    // Shared, because the reader thread may still be using it when this function returns.
    using Reply = std::expected<QByteArray, QString>;
    std::promise<Reply> promise;
    auto arrived = promise.get_future();
    const auto replied = std::make_shared<ResumeOnce<Reply>>(
        [promise = std::move(promise)](Reply reply) mutable { promise.set_value(std::move(reply)); });
    const auto fail = [replied](const QString& sentence) {
        replied->resume(std::unexpected(sentence));
    };
    (*connection)
        ->send(encoded, {.reply = [replied](const QByteArray& message) { replied->resume(message); },
                         .interrupted = [fail] { fail(Texts::tr(interrupted)); },
                         .invalidated = [fail] { fail(Texts::tr(closed)); }});
    // Once the helper has begun, only its reply tells what was done. So a stop is sent to the helper,
    // and the reply is only given up if it does not come in time.
    const std::stop_callback stopped(stop, [&] { (*connection)->stop(); });
    for (int left = patienceAfterStop; left > 0 && arrived.wait_for(look) != std::future_status::ready;)
        if (stop.stop_requested() && --left == 0)
            fail(Texts::tr("The removal was stopped."));
    const auto result = arrived.get();
    if (!result)
        return std::unexpected(result.error());
    return helperReply(*result, request);
}

QList<AdminMoveOutcome> PrivilegedHelperCoordinator::move(Kind operation, const QList<AdminMove>& items,
                                                          std::stop_token stop) {
    QList<AdminMoveOutcome> outcomes;
    QList<PrivilegedFileOperationItem> records;
    QList<qsizetype> sent;
    qsizetype bytes = 0;
    const auto flush = [&] {
        if (records.isEmpty())
            return;
        const auto reply = perform(operation, records, stop, items.first().application);
        for (qsizetype i = 0; i < sent.size(); ++i) {
            AdminMoveOutcome& outcome = outcomes[sent[i]];
            if (!reply) {
                outcome.message = reply.error();
                continue;
            }
            outcome.status = reply->outcomes[i].status;
            outcome.message = reply->outcomes[i].message;
            outcome.destination = reply->outcomes[i].destination;
        }
        records.clear();
        sent.clear();
        bytes = 0;
    };
    for (const AdminMove& item : items) {
        outcomes.append({.path = item.path, .message = Texts::tr(notEncoded)});
        const qsizetype size = 6 * (item.path.size() + item.destination.value_or(QString()).size());
        if (!canBeEncoded(item.path) || !canBeEncoded(item.destination.value_or(QString())))
            continue;
        if (records.size() == helper_limits::items || bytes + size > helper_limits::frameBytes / 2)
            flush();
        records.append({item.path, item.destination, item.identity});
        sent.append(outcomes.size() - 1);
        bytes += size;
    }
    flush();
    return outcomes;
}

QList<AdminMoveOutcome> PrivilegedHelperCoordinator::moveToTrash(const QList<AdminMove>& items,
                                                                 std::stop_token stop) {
    return move(Kind::moveToTrash, items, stop);
}

QList<AdminMoveOutcome> PrivilegedHelperCoordinator::restoreFromTrash(const QList<AdminMove>& items,
                                                                      std::stop_token stop) {
    return move(Kind::restoreFromTrash, items, stop);
}

std::expected<void, QString> PrivilegedHelperCoordinator::healthCheck(std::stop_token stop) {
    const auto reply = perform(Kind::healthCheck, {}, stop);
    if (!reply)
        return std::unexpected(reply.error());
    return {};
}

} // namespace tessellar
