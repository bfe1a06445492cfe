#pragma once

#include "cleanup/privileged/admin_mover.h"
#include "cleanup/privileged/helper_setup_broker.h"
#include "cleanup/privileged/helper_transport.h"

namespace tessellar {

/// Where an administrator's rights come from: asks for "system.privilege.admin", the user may be shown
/// a prompt, and gives the external form of what was granted.
class AdministratorAuthorization {
public:
    enum class Refusal { canceled, denied, externalizationFailed };

    virtual ~AdministratorAuthorization() = default;
    virtual std::expected<QByteArray, Refusal> obtain(std::stop_token stop) = 0;
};

/// Where the helper asks the system itself about the process that it speaks to: nothing to carry.
class PeerAuthorization final : public AdministratorAuthorization {
public:
    std::expected<QByteArray, Refusal> obtain(std::stop_token) override { return QByteArray(); }
};

/// Asks this system, which on a Mac shows its own prompt.
class SystemAuthorization final : public AdministratorAuthorization {
public:
    std::expected<QByteArray, Refusal> obtain(std::stop_token) override;
};

/// Sends requests to the helper and makes outcomes of its replies. Blocks; for a worker.
class PrivilegedHelperCoordinator final : public AdminMover {
public:
    struct Parts {
        HelperTransport& transport;
        AdministratorAuthorization& authorization;
        UuidSource& uuids;
        Log& log;
        HelperSetupBroker* broker = nullptr; ///< none where the helper is installed by hand
    };

    explicit PrivilegedHelperCoordinator(Parts parts) : _parts(parts) {}

    QList<AdminMoveOutcome> moveToTrash(const QList<AdminMove>& items, std::stop_token stop) override;
    QList<AdminMoveOutcome> restoreFromTrash(const QList<AdminMove>& items,
                                             std::stop_token stop) override;
    bool isThere(std::stop_token stop) override { return healthCheck(stop).has_value(); }
    /// Whether the helper answers, or the sentence why it does not.
    std::expected<void, QString> healthCheck(std::stop_token stop);

    /// One request, one reply.
    std::expected<PrivilegedFileOperationResponse, QString>
    perform(PrivilegedFileOperationKind operation, const QList<PrivilegedFileOperationItem>& items,
            std::stop_token stop, const std::optional<QString>& application = {});

private:
    QList<AdminMoveOutcome> move(PrivilegedFileOperationKind operation, const QList<AdminMove>& items,
                                 std::stop_token stop);

    Parts _parts;
};

/// Reads a reply; a sentence for one that is unreadable, does not answer the request (another id, a
/// wrong number of outcomes, a status that the operation does not have), or holds an error.
std::expected<PrivilegedFileOperationResponse, QString>
helperReply(const QByteArray& message, const PrivilegedFileOperationRequest& request);

} // namespace tessellar
