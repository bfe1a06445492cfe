// What the coordinator does when the user asks for an update.

#include "updates/app_store_update_checker.h"
#include "updates/app_update_coordinator.h"
#include "updates/app_update_texts.h"

namespace tessellar {

/// An update's words are for the log; they are no listing.
constexpr std::uint64_t maximumUpdateOutput = 1u << 20;

std::optional<AppUpdateAction> AppUpdateCoordinator::action(const QString& appKey) const {
    const AppUpdateCandidate* known = candidate(appKey);
    if (!known)
        return std::nullopt;
    if (const auto found = channel(appKey)) {
        if (const auto* homebrew = std::get_if<HomebrewCaskChannel>(&*found);
            homebrew && !homebrew->token.isEmpty())
            return HomebrewAction{homebrew->token,
                                  homebrewOwnershipByAppKey().value(appKey).brewExecutablePath};
        if (const auto* store = std::get_if<MacAppStoreChannel>(&*found))
            return AppStoreAction{
                AppStoreUpdateChecker::storePageUrl(
                    readAppUpdateSettings(_machine.settings).storePageBase, store->itemIdentifier)
                    .toString()};
        if (std::holds_alternative<SparkleChannel>(*found))
            return SparkleAction();
    }
    if (auto target = MicrosoftAutoUpdateTarget::find(_machine.files,
                                                      known->bundleIdentifier.value_or(QString())))
        return *std::move(target);
    if (isBuiltIn(known->path))
        return SystemSoftwareUpdateAction();
    if (known->hasKeystone)
        return VendorUpdaterAction();
    return OpenAppAction();
}

void AppUpdateCoordinator::runAction(const QString& appKey, Done done) {
    const auto decline = [&] {
        if (done)
            done(std::nullopt);
    };
    if (_activeUpdateAppKey) {
        if (*_activeUpdateAppKey != appKey && presentAlert)
            presentAlert({.title = update_texts::alreadyRunning}, [](bool) {});
        return decline();
    }
    const auto wanted = action(appKey);
    if (!wanted)
        return decline();
    const AppUpdateCandidate known = *candidate(appKey);
    _activeUpdateAppKey = appKey;
    _actionStates.insert(appKey, {});
    const std::weak_ptr<bool> alive = _alive;
    tell(onActionStatesChanged);
    if (alive.expired())
        return;
    const auto updater = command(*wanted);
    if (!updater)
        return open(known, *wanted, done);

    const auto answer = std::make_shared<ResumeOnce<bool>>(
        [this, alive, appKey, updater = *updater, done](bool confirmed) {
            if (alive.expired())
                return;
            if (confirmed)
                return runCommand(appKey, updater, done);
            _activeUpdateAppKey.reset();
            _actionStates.remove(appKey);
            tell(onActionStatesChanged);
            if (done)
                done(std::nullopt);
        });
    if (!presentAlert) {
        answer->resume(false);
        return;
    }
    presentAlert(
        {.title = QStringLiteral("Update “%1”?").arg(known.name),
         .text = QStringLiteral("%1 may quit the app while it downloads and installs the update.")
                     .arg(updater->updaterName),
         .isQuestion = true},
        [answer](bool confirmed) { answer->resume(confirmed); });
}

void AppUpdateCoordinator::runCommand(const QString& appKey, const AppUpdateCommand& updater,
                                      const Done& done) {
    auto environment = _machine.environment;
    for (const auto& [name, value] : updater.furtherEnvironment)
        environment[name] = value;
    Command child{.executable = _machine.files.hostPath(updater.executable),
                  .arguments = updater.arguments,
                  .environment = std::move(environment),
                  .timeout = commandTimeout,
                  .maximumOutput = maximumUpdateOutput,
                  .input = {},
                  .terminationGrace = 2 * std::chrono::seconds(1)};
    // Whether the command ends or is cancelled first is settled once: the user does not wait for a
    // process that takes its time to go, while its tool stays in its lane until it has gone.
    _actionResult = std::make_shared<ResumeOnce<AppUpdateCommandResult>>(
        [this, alive = std::weak_ptr(_alive), appKey, done](const AppUpdateCommandResult& result) {
            if (!alive.expired())
                commandEnded(appKey, result, done);
        });
    _actionStop.emplace();
    tell(beginExternalSystemUI);
    _lanes.run(
        updater.executable, _actionStop->get_token(),
        [&commands = _machine.commands, child = std::move(child)](const std::stop_token& stop) {
            return commands.run(child, stop);
        },
        [once = _actionResult](const CommandResult& result) {
            once->resume(AppUpdateCommandResult::of(result));
        });
}

void AppUpdateCoordinator::cancelAction() {
    const auto once = _actionResult;
    if (!once)
        return;
    _actionStop->request_stop();
    once->resume({.outcome = AppUpdateCommandResult::Outcome::cancelled});
}

void AppUpdateCoordinator::commandEnded(const QString& appKey, const AppUpdateCommandResult& result,
                                        const Done& done) {
    _actionResult.reset();
    _actionStop.reset();
    const std::weak_ptr<bool> alive = _alive;
    tell(endExternalSystemUI);
    if (!result.succeeded() && !result.output.trimmed().isEmpty())
        _machine.log.warning(QStringLiteral("The update of %1 failed: %2")
                                 .arg(appKey, QString::fromUtf8(result.output.trimmed().right(2'000))));
    using Kind = AppUpdateActionState::Kind;
    actionEnded(appKey, {result.succeeded() ? Kind::succeeded : Kind::failed, message(result)}, done);
    if (alive.expired() || !result.succeeded())
        return;
    const auto completed = [this, alive, appKey] {
        if (!alive.expired() && onUpdateCompleted)
            onUpdateCompleted(appKey);
    };
    if (isEnabled())
        recheck({appKey}, [completed](bool) { completed(); });
    else
        completed();
}

void AppUpdateCoordinator::open(const AppUpdateCandidate& known, const AppUpdateAction& wanted,
                                const Done& done) {
    tell(prepareForExternalPresentation);
    auto opened = [this, appKey = known.appKey, done](const std::expected<void, QString>& result) {
        using Kind = AppUpdateActionState::Kind;
        if (result)
            return actionEnded(appKey, {Kind::succeeded, {}}, done);
        _machine.log.warning(
            QStringLiteral("The updater of %1 could not be opened: %2").arg(appKey, result.error()));
        actionEnded(appKey, {Kind::failed, message(AppUpdateCommandResult())}, done);
    };
    if (const auto* store = std::get_if<AppStoreAction>(&wanted))
        _updateActionTask = _opener.openUrl(store->storeUrl, std::move(opened));
    else if (std::holds_alternative<SystemSoftwareUpdateAction>(wanted))
        _updateActionTask = _opener.openUrl(
            QStringLiteral("x-apple.systempreferences:com.apple.Software-Update-Settings.extension"),
            std::move(opened));
    else
        _updateActionTask = _opener.openApplication(known.path, std::move(opened));
}

void AppUpdateCoordinator::actionEnded(const QString& appKey, AppUpdateActionState state,
                                       const Done& done) {
    _activeUpdateAppKey.reset();
    _actionStates.insert(appKey, state);
    const std::weak_ptr<bool> alive = _alive;
    tell(onActionStatesChanged);
    if (done && !alive.expired())
        done(state);
}

} // namespace tessellar
