#pragma once

#include "cleanup/privileged/admin_mover.h"
#include "cleanup/privileged/helper_setup_broker.h"
#include "cleanup/privileged/helper_transport.h"

namespace tessellar {

/// Obtains the right "system.privilege.admin", possibly prompting the user, and returns the grant in
/// its external form.
class AdministratorAuthorization {
public:
    enum class Refusal { canceled, denied, externalizationFailed };

    virtual ~AdministratorAuthorization() = default;
    virtual std::expected<QByteArray, Refusal> obtain(std::stop_token stop) = 0;
};

/// For helpers that ask the system about their peer: there is no grant to pass.
class PeerAuthorization final : public AdministratorAuthorization {
public:
    std::expected<QByteArray, Refusal> obtain(std::stop_token) override { return QByteArray(); }
};

/// Asks the system; macOS shows a prompt.
class SystemAuthorization final : public AdministratorAuthorization {
public:
    std::expected<QByteArray, Refusal> obtain(std::stop_token) override;
};

/// Sends requests to the helper and interprets its replies. Blocks; call on a worker.
class PrivilegedHelperCoordinator final : public AdminMover {
public:
    struct Parts {
        HelperTransport& transport;
        AdministratorAuthorization& authorization;
        UuidSource& uuids;
        Log& log;
        HelperSetupBroker* broker = nullptr; ///< null where the helper is installed by hand
    };

    explicit PrivilegedHelperCoordinator(Parts parts) : _parts(parts) {}

    QList<AdminMoveOutcome> moveToTrash(const QList<AdminMove>& items, std::stop_token stop) override;
    QList<AdminMoveOutcome> restoreFromTrash(const QList<AdminMove>& items,
                                             std::stop_token stop) override;
    bool isAvailable(std::stop_token stop) override { return healthCheck(stop).has_value(); }
    /// Whether the helper responds; the error is one sentence.
    std::expected<void, QString> healthCheck(std::stop_token stop);

    /// Sends one request and waits for its reply.
    std::expected<PrivilegedFileOperationResponse, QString>
    perform(PrivilegedFileOperationKind operation, const QList<PrivilegedFileOperationItem>& items,
            std::stop_token stop, const std::optional<QString>& application = {});

private:
    QList<AdminMoveOutcome> move(PrivilegedFileOperationKind operation, const QList<AdminMove>& items,
                                 std::stop_token stop);

    Parts _parts;
};

/// Decodes a reply. The error is one sentence, for a reply that is malformed, does not match the
/// request (id, number of outcomes, or a status impossible for the operation), or contains an error.
std::expected<PrivilegedFileOperationResponse, QString>
helperReply(const QByteArray& message, const PrivilegedFileOperationRequest& request);

} // namespace tessellar
