#include "updates/app_update_action.h"

namespace tessellar {

std::optional<QString> MicrosoftAutoUpdateTarget::code(const QString& bundleIdentifier) {
    static const QHash<QString, QString> codes{
        {QStringLiteral("com.microsoft.companyportalmac"), QStringLiteral("IMCP01")},
        {QStringLiteral("com.microsoft.copilot"), QStringLiteral("MSCP10")},
        {QStringLiteral("com.microsoft.excel"), QStringLiteral("XCEL2019")},
        {QStringLiteral("com.microsoft.onedrive"), QStringLiteral("ONDR18")},
        {QStringLiteral("com.microsoft.onenote.mac"), QStringLiteral("ONMC2019")},
        {QStringLiteral("com.microsoft.outlook"), QStringLiteral("OPIM2019")},
        {QStringLiteral("com.microsoft.powerpoint"), QStringLiteral("PPT32019")},
        {QStringLiteral("com.microsoft.rdc.macos"), QStringLiteral("MSRD10")},
        {QStringLiteral("com.microsoft.wdav"), QStringLiteral("WDAV00")},
        {QStringLiteral("com.microsoft.wdav.consumer"), QStringLiteral("WDAVCONSUMER")},
        {QStringLiteral("com.microsoft.word"), QStringLiteral("MSWD2019")},
    };
    const auto found = codes.constFind(bundleIdentifier.toLower());
    return found == codes.constEnd() ? std::nullopt : std::optional(*found);
}

std::optional<MicrosoftAutoUpdateTarget>
MicrosoftAutoUpdateTarget::find(const FileSystem& files, const QString& bundleIdentifier) {
    const auto found = code(bundleIdentifier);
    if (!found || !files.isExecutableFile(toolPath))
        return std::nullopt;
    return MicrosoftAutoUpdateTarget{*found, toolPath};
}

QString label(AppUpdateActionKind action) {
    switch (action) {
    case AppUpdateActionKind::homebrew:
        return QStringLiteral("Update with Homebrew");
    case AppUpdateActionKind::microsoftAutoUpdate:
        return QStringLiteral("Update with Microsoft AutoUpdate");
    case AppUpdateActionKind::appStore:
        return QStringLiteral("Open in App Store");
    case AppUpdateActionKind::systemSoftwareUpdate:
        return QStringLiteral("Check System Updates");
    default:
        return QStringLiteral("Uses the app’s update source to continue.");
    }
}

std::optional<AppUpdateCommand> command(const AppUpdateAction& action) {
    if (const auto* homebrew = std::get_if<HomebrewAction>(&action))
        return AppUpdateCommand{QStringLiteral("Homebrew"),
                                homebrew->brewExecutablePath,
                                {"upgrade", "--cask", homebrew->token.toUtf8()},
                                {{"HOMEBREW_NO_ANALYTICS", "1"}}};
    if (const auto* microsoft = std::get_if<MicrosoftAutoUpdateTarget>(&action))
        return AppUpdateCommand{
            QStringLiteral("Microsoft AutoUpdate"),
            microsoft->executableURL,
            {"--install", "--apps", microsoft->applicationIdentifier.toUtf8(), "--wait", "1800"},
            {}};
    return std::nullopt;
}

AppUpdateCommandResult AppUpdateCommandResult::of(const CommandResult& result) {
    using From = CommandResult::Outcome;
    AppUpdateCommandResult own{.output = result.standardOutput + result.standardError};
    switch (result.outcome) {
    case From::exited:
        own.outcome = Outcome::completed;
        own.exitStatus = result.exitStatus;
        break;
    case From::signalled:
        own.outcome = Outcome::completed;
        break;
    case From::timedOut:
        own.outcome = Outcome::timedOut;
        break;
    case From::cancelled:
        own.outcome = Outcome::cancelled;
        break;
    case From::couldNotLaunch:
        break;
    }
    return own;
}

QString message(const AppUpdateCommandResult& result) {
    using Outcome = AppUpdateCommandResult::Outcome;
    switch (result.outcome) {
    case Outcome::timedOut:
        return QStringLiteral("The update command timed out.");
    case Outcome::cancelled:
        return QStringLiteral("The update was cancelled.");
    case Outcome::couldNotLaunch:
        return QStringLiteral("The updater could not be started.");
    case Outcome::completed:
        break;
    }
    return result.succeeded() ? QStringLiteral("Update completed. Verifying the installed version…")
                              : QStringLiteral("The app could not be updated.");
}

} // namespace tessellar
