#pragma once

#include "cleanup/waiting.h"
#include "platform/machine.h"
#include "platform/texts.h"

#include <expected>

namespace tessellar {

/// Why the helper is not there. `words` only for `failed`: what the setup component said.
struct BrokerError {
    enum class Kind { missingComponent, notRegistered, unknownStatus, failed, notApproved };
    Kind kind = Kind::failed;
    QString words;

    bool operator==(const BrokerError&) const = default;
};
QString message(const BrokerError& error);

/// What settings say of the helper.
inline QString removalHelperDescription() {
    return Texts::tr("Runs the signed removal helper only during an uninstall. Required.");
}

/// What the user is shown while something waits for them.
struct HelperNotice {
    QString title;
    QString text;

    bool operator==(const HelperNotice&) const = default;
};

/// Registers the helper with the system, through the small setup component in the application's
/// resources, which is run with one word. Blocks; for a worker.
class HelperSetupBroker {
public:
    enum class Status { enabled, notRegistered, notFound, requiresApproval };
    /// Called on the worker: a notice when the user has to act, nothing when that is over.
    using Present = std::function<void(const std::optional<HelperNotice>&)>;

    static constexpr std::chrono::milliseconds pollInterval{1'000};
    static constexpr int mostPolls = 600;

    /// `resources` holds "TessellarHelperSetup.app", as a path under the root.
    HelperSetupBroker(Machine& machine, const QString& resources, Present present,
                      Wait wait = waitForReal);

    std::expected<Status, BrokerError> status(std::stop_token stop);
    /// Registers where needed and waits for the user's approval.
    std::expected<void, BrokerError> ensure(std::stop_token stop);

private:
    std::expected<Status, BrokerError> run(const QByteArray& word, std::stop_token stop);
    std::expected<void, BrokerError> awaitApproval(std::stop_token stop);

    const FileSystem& _files;
    CommandRunner& _commands;
    std::map<QByteArray, QByteArray> _environment;
    QString _component;
    Present _present;
    Wait _wait;
    bool _wasEnabled = false;
};

} // namespace tessellar
