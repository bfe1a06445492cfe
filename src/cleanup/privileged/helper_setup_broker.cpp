#include "cleanup/privileged/helper_setup_broker.h"

#include "platform/texts.h"

namespace tessellar {
namespace {

using Status = HelperSetupBroker::Status;

constexpr std::array statusWords{
    std::pair{"enabled", Status::enabled}, std::pair{"notRegistered", Status::notRegistered},
    std::pair{"notFound", Status::notFound}, std::pair{"requiresApproval", Status::requiresApproval}};

HelperNotice approvalNeeded() {
    return {
        Texts::tr("Approval Needed to Finish"),
        Texts::tr("Waiting for approval in System Settings — the uninstall continues automatically.")};
}
HelperNotice approvalTurnedOff() {
    return {
        Texts::tr("Approval Needed to Finish"),
        Texts::tr("An approval Tessellar needs was turned off in System Settings. Grant it again to "
                  "finish this uninstall — nothing has been deleted yet.")};
}

} // namespace

QString message(const BrokerError& error) {
    switch (error.kind) {
    case BrokerError::Kind::missingComponent:
        return Texts::tr("Tessellar’s administrator-helper setup component is missing.");
    case BrokerError::Kind::notRegistered:
        return Texts::tr("macOS did not register the administrator helper.");
    case BrokerError::Kind::unknownStatus:
        return Texts::tr("macOS returned an unknown administrator-helper status.");
    case BrokerError::Kind::failed:
        return error.words.isEmpty()
                   ? Texts::tr("macOS could not configure Tessellar’s administrator helper.")
                   : error.words;
    case BrokerError::Kind::notApproved:
        return Texts::tr("Enable Tessellar’s administrator helper in System Settings, then try again.");
    }
    return {};
}

HelperSetupBroker::HelperSetupBroker(Machine& machine, const QString& resources, Present present,
                                     Wait wait)
    : _files(machine.files)
    , _commands(machine.commands)
    , _environment(machine.environment)
    , _component(resources +
                 QStringLiteral("/TessellarHelperSetup.app/Contents/MacOS/TessellarHelperSetup"))
    , _present(std::move(present))
    , _wait(std::move(wait)) {}

std::expected<Status, BrokerError> HelperSetupBroker::run(const QByteArray& word,
                                                          std::stop_token stop) {
    if (!_files.isExecutableFile(_component))
        return std::unexpected(BrokerError{BrokerError::Kind::missingComponent});
    const CommandResult result = _commands.run({.executable = _files.hostPath(_component),
                                                .arguments = {word},
                                                .environment = _environment,
                                                .maximumOutput = 64u << 10,
                                                .input = {}},
                                               stop);
    if (result.outcome == CommandResult::Outcome::couldNotLaunch)
        return std::unexpected(BrokerError{BrokerError::Kind::missingComponent});
    if (!result.succeeded())
        return std::unexpected(BrokerError{
            BrokerError::Kind::failed, trimmed(QString::fromUtf8(result.standardError)).left(1'000)});
    const QByteArray said = result.standardOutput.trimmed();
    for (const auto& [known, status] : statusWords)
        if (said == known)
            return status;
    return std::unexpected(BrokerError{BrokerError::Kind::unknownStatus});
}

std::expected<Status, BrokerError> HelperSetupBroker::status(std::stop_token stop) {
    return run("status", stop);
}

std::expected<void, BrokerError> HelperSetupBroker::ensure(std::stop_token stop) {
    auto now = status(stop);
    if (now && (*now == Status::notRegistered || *now == Status::notFound)) {
        now = run("register", stop);
        if (now && (*now == Status::notRegistered || *now == Status::notFound))
            return std::unexpected(BrokerError{BrokerError::Kind::notRegistered});
    }
    if (!now)
        return std::unexpected(now.error());
    if (*now == Status::requiresApproval)
        return awaitApproval(stop);
    _wasEnabled = true;
    return {};
}

std::expected<void, BrokerError> HelperSetupBroker::awaitApproval(std::stop_token stop) {
    const auto show = [this](const std::optional<HelperNotice>& notice) {
        if (_present)
            _present(notice);
    };
    show(_wasEnabled ? approvalTurnedOff() : approvalNeeded());
    std::expected<void, BrokerError> result =
        std::unexpected(BrokerError{BrokerError::Kind::notApproved});
    for (int i = 0; i < maximumPolls && _wait(pollInterval, stop); ++i) {
        const auto now = status(stop);
        if (now && *now == Status::requiresApproval)
            continue;
        if (!now)
            result = std::unexpected(now.error());
        else if (*now == Status::enabled)
            result = {};
        _wasEnabled = _wasEnabled || result.has_value();
        break;
    }
    show(std::nullopt);
    return result;
}

} // namespace tessellar
