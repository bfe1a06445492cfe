#pragma once

#include "cleanup/waiting.h"
#include "platform/machine.h"
#include "platform/texts.h"

#include <expected>

namespace tessellar {

/// Why the helper is unavailable. `words` is set for `failed` only: the setup component's message.
struct BrokerError {
    enum class Kind { missingComponent, notRegistered, unknownStatus, failed, notApproved };
    Kind kind = Kind::failed;
    QString words;

    bool operator==(const BrokerError&) const = default;
};
QString message(const BrokerError& error);

/// The helper's description in settings.
inline QString removalHelperDescription() {
    return Texts::tr("Runs the signed removal helper only during an uninstall. Required.");
}

/// Shown while waiting for the user to act.
struct HelperNotice {
    QString title;
    QString text;

    bool operator==(const HelperNotice&) const = default;
};

/// Registers the helper with the system, by running a small component in the application's resources.
/// Blocks; call on a worker.
class HelperSetupBroker {
public:
    enum class Status { enabled, notRegistered, notFound, requiresApproval };
    /// Called on the worker: with a notice when the user must act, with nullopt afterwards.
    using Present = std::function<void(const std::optional<HelperNotice>&)>;

    static constexpr std::chrono::milliseconds pollInterval{1'000};
    static constexpr int maximumPolls = 600;

    /// `resources` is the folder of "TessellarHelperSetup.app", as a path under the root.
    HelperSetupBroker(Machine& machine, const QString& resources, Present present,
                      Wait wait = interruptibleSleep);

    std::expected<Status, BrokerError> status(std::stop_token stop);
    /// Registers if needed and waits for the user's approval.
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
