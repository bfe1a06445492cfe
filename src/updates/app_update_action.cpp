#include "updates/app_update_action.h"

#include "platform/texts.h"

#include <algorithm>

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
        return Texts::tr("Update with Homebrew");
    case AppUpdateActionKind::microsoftAutoUpdate:
        return Texts::tr("Update with Microsoft AutoUpdate");
    case AppUpdateActionKind::appStore:
        return Texts::tr("Open in App Store");
    case AppUpdateActionKind::systemSoftwareUpdate:
        return Texts::tr("Check System Updates");
    default:
        return Texts::tr("Uses the app’s update source to continue.");
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

QString message(AppUpdateOutcome outcome) {
    switch (outcome) {
    case AppUpdateOutcome::completed:
        return Texts::tr("Update completed. Verifying the installed version…");
    case AppUpdateOutcome::timedOut:
        return Texts::tr("The update command timed out.");
    case AppUpdateOutcome::cancelled:
        return Texts::tr("The update was cancelled.");
    case AppUpdateOutcome::couldNotLaunch:
        return Texts::tr("The updater could not be started.");
    case AppUpdateOutcome::alreadyRunning:
        return Texts::tr("Another app update is already in progress.");
    case AppUpdateOutcome::failed:
        break;
    }
    return Texts::tr("The app could not be updated.");
}

using Phase = AppUpdateActionState::Phase;

namespace {

struct PhaseText {
    Phase phase;
    const char* sentence;
    const char* word; ///< instead of "Updating…"
};

constexpr PhaseText phaseTexts[] = {
    {Phase::updatingItself, Texts::noop("Homebrew is updating itself."), Texts::noop("Updating…")},
    {Phase::downloading, Texts::noop("Downloading."), Texts::noop("Downloading…")},
    {Phase::installing, Texts::noop("Installing."), Texts::noop("Installing…")},
    {Phase::password, Texts::noop("Waiting for your password."), Texts::noop("Asks for password")},
    {Phase::verifying, Texts::noop("Verifying the installed version."), Texts::noop("Verifying…")},
};

const PhaseText* textOf(Phase phase) {
    const auto* found = std::ranges::find(phaseTexts, phase, &PhaseText::phase);
    return found == std::end(phaseTexts) ? nullptr : found;
}

} // namespace

QString text(Phase phase) {
    const PhaseText* found = textOf(phase);
    return found ? Texts::tr("Updating… ") + Texts::tr(found->sentence) : Texts::tr("Updating…");
}

QString shortText(Phase phase) {
    const PhaseText* found = textOf(phase);
    return found ? Texts::tr(found->word) : Texts::tr("Updating…");
}

Phase phaseOf(const QList<QByteArray>& lines) {
    struct Row {
        const char* word;
        Phase phase;
    };
    static constexpr Row rows[] = {
        {"Password:", Phase::password},
        {"password is required", Phase::password},
        {"required to read the password", Phase::password},
        {"==> Updating Homebrew", Phase::updatingItself},
        {"==> Auto-updat", Phase::updatingItself},
        {"==> Downloading", Phase::downloading},
        {"==> Fetching", Phase::downloading},
        {"==> Upgrading", Phase::installing},
        {"==> Installing", Phase::installing},
        {"==> Running installer", Phase::installing},
        {"==> Moving App", Phase::installing},
        {"==> Backing App", Phase::installing},
        {"==> Purging files", Phase::installing},
    };
    for (auto line = lines.crbegin(); line != lines.crend(); ++line)
        for (const Row& row : rows)
            if (line->contains(row.word))
                return row.phase;
    return lines.isEmpty() ? Phase::starting : Phase::none;
}

} // namespace tessellar
