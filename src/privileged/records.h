#pragma once

#include "platform/texts.h"
#include "privileged/file_identity.h"

#include <QUuid>

namespace tessellar {

/// The helper's service name.
inline const QString removalHelperService = QStringLiteral("com.tessellar.app.removal-helper");
/// The socket it listens on.
inline QByteArray removalHelperSocket() {
    return "/var/run/" + removalHelperService.toLatin1() + ".socket";
}

/// Limits on messages to and from the helper, enforced independently by both sides.
namespace helper_limits {
inline constexpr qsizetype frameBytes = 1 << 20;
inline constexpr qsizetype items = 256;
inline constexpr qsizetype pathBytes = 4096;
inline constexpr qsizetype nameBytes = 256; ///< of an application's name
inline constexpr int sendMilliseconds = 5'000;
} // namespace helper_limits

enum class PrivilegedFileOperationKind { healthCheck, remove, moveToTrash, restoreFromTrash };
enum class PrivilegedFileOutcomeStatus { removed, moved, failed };
/// The failure reason of every item when the user dismissed the administrator's prompt.
inline QString administratorApprovalCanceled() {
    return Texts::tr("Administrator approval was canceled.");
}

enum class AuthorizationError { missing, malformed, invalid, denied, externalizationFailed };
QString message(AuthorizationError error);

struct PrivilegedFileOperationItem {
    QString source;                       ///< absolute
    std::optional<QString> destination;   ///< absolute; for `restoreFromTrash`
    std::optional<FileIdentity> approved; ///< as the user reviewed it; anything else is left alone

    bool operator==(const PrivilegedFileOperationItem&) const = default;
};

struct PrivilegedFileOperationRequest {
    QUuid id; ///< echoed by the reply
    PrivilegedFileOperationKind operation = PrivilegedFileOperationKind::healthCheck;
    QList<PrivilegedFileOperationItem> items;
    std::optional<QString> application; ///< the owner of the files, for the administrator's prompt
    QByteArray authorization;           ///< an encoded `AdministratorApproval`

    bool operator==(const PrivilegedFileOperationRequest&) const = default;
};

struct PrivilegedFileOperationOutcome {
    PrivilegedFileOutcomeStatus status = PrivilegedFileOutcomeStatus::failed;
    std::optional<QString> message;     ///< why it failed
    std::optional<QString> destination; ///< where it was moved to

    bool operator==(const PrivilegedFileOperationOutcome&) const = default;
};

struct PrivilegedFileOperationResponse {
    QUuid id;
    QList<PrivilegedFileOperationOutcome> outcomes; ///< one for each item, in their order
    std::optional<AuthorizationError> error;

    bool operator==(const PrivilegedFileOperationResponse&) const = default;
};

/// The helper's first message on a connection: a single-use nonce that the approval must contain.
struct HelperChallenge {
    QByteArray nonce;

    bool operator==(const HelperChallenge&) const = default;
};

/// An administrator's approval of one request on one connection.
struct AdministratorApproval {
    QByteArray nonce;
    QByteArray digest; ///< `requestDigest` of the request
    QByteArray grant;  ///< in the system's external form; empty where the helper asks the system itself

    bool operator==(const AdministratorApproval&) const = default;
};

/// SHA-256 over the request without its authorization.
QByteArray requestDigest(PrivilegedFileOperationRequest request);

namespace json {

template <>
struct RawValues<PrivilegedFileOperationKind>
    : EnumeratorNames<PrivilegedFileOperationKind::restoreFromTrash> {};
template <>
struct RawValues<PrivilegedFileOutcomeStatus> : EnumeratorNames<PrivilegedFileOutcomeStatus::failed> {};
template <>
struct RawValues<AuthorizationError> : EnumeratorNames<AuthorizationError::externalizationFailed> {};
template <>
struct Fields<PrivilegedFileOperationItem> {
    using T = PrivilegedFileOperationItem;
    static constexpr auto list =
        fields(required("source", &T::source), optional("destination", &T::destination),
               optional("approved", &T::approved));
};
template <>
struct Fields<PrivilegedFileOperationRequest> {
    using T = PrivilegedFileOperationRequest;
    static constexpr auto list = fields(
        required("id", &T::id), required("operation", &T::operation), required("items", &T::items),
        optional("application", &T::application), required<Base64>("authorization", &T::authorization));
};
template <>
struct Fields<PrivilegedFileOperationOutcome> {
    using T = PrivilegedFileOperationOutcome;
    static constexpr auto list =
        fields(required("status", &T::status), optional("message", &T::message),
               optional("destination", &T::destination));
};
template <>
struct Fields<PrivilegedFileOperationResponse> {
    using T = PrivilegedFileOperationResponse;
    static constexpr auto list = fields(required("id", &T::id), required("outcomes", &T::outcomes),
                                        optional("error", &T::error));
};
template <>
struct Fields<HelperChallenge> {
    static constexpr auto list = fields(required<Base64>("nonce", &HelperChallenge::nonce));
};
template <>
struct Fields<AdministratorApproval> {
    using T = AdministratorApproval;
    static constexpr auto list =
        fields(required<Base64>("nonce", &T::nonce), required<Base64>("digest", &T::digest),
               required<Base64>("grant", &T::grant));
};

} // namespace json
} // namespace tessellar
