#include "updates/app_update_texts.h"

namespace tessellar {

QString update_texts::available(const std::optional<QString>& installed, const QString& latest) {
    return installed ? QStringLiteral("Update available: %1 → %2").arg(*installed, latest)
                     : QStringLiteral("Update available: %1").arg(latest);
}

QString update_texts::summary(const AppUpdateTally& tally, const QList<AppUpdateProblem>& problems,
                              const QString& lastCheck) {
    QString trouble;
    if (tally.failed == 1)
        trouble = QStringLiteral("1 app could not be checked.");
    else if (tally.failed > 1)
        trouble = QStringLiteral("%1 apps could not be checked.").arg(tally.failed);
    const auto reason = tally.reason         ? tally.reason
                        : problems.isEmpty() ? std::nullopt
                                             : std::optional(problems.first().reason);
    if (reason)
        trouble += (trouble.isEmpty() ? QString() : QStringLiteral(" ")) + message(*reason);
    const auto with = [&](const QString& text) {
        return trouble.isEmpty() ? text : text + u' ' + trouble;
    };
    if (tally.available == 1)
        return with(QStringLiteral("1 update available."));
    if (tally.available > 1)
        return with(QStringLiteral("%1 updates available.").arg(tally.available));
    if (lastCheck.isEmpty() || (tally.upToDate == 0 && tally.held == 0 && !trouble.isEmpty()))
        return trouble;
    if (tally.upToDate == 0 && tally.held == 0)
        return QStringLiteral("Last checked %1. None of your apps can be checked for updates.")
            .arg(lastCheck);
    return with(QStringLiteral("Last checked %1. No updates found.").arg(lastCheck));
}

QString update_texts::status(const AppUpdateRecord& record) {
    const auto why = [&] { return record.reason ? message(*record.reason) : QString(); };
    const auto text = [&](const AppUpdateStatus& status) {
        if (const auto* update = std::get_if<UpdateAvailable>(&status))
            return available(record.installedVersion, update->latestVersion);
        return std::holds_alternative<UpToDate>(status) ? QStringLiteral("Up to date")
               : hasFailed(status) ? QStringLiteral("The check failed. %1").arg(why()).trimmed()
                                   : QStringLiteral("Its source cannot tell. %1").arg(why()).trimmed();
    };
    QString line = text(record.status);
    if (record.reason && std::holds_alternative<UpdateAvailable>(record.status))
        line += QStringLiteral(". %1").arg(message(*record.reason));
    return record.lastKnownStatus
               ? QStringLiteral("%1 Before: %2").arg(line, text(*record.lastKnownStatus))
               : line;
}

bool isBuiltIn(const QString& path) { return FileSystem::isWithin(path, QStringLiteral("/System")); }

AppUpdateSourceText sourceText(const std::optional<AppUpdateChannel>& channel,
                               const AppUpdateCandidate& candidate) {
    const auto fromBundle = [](QLatin1StringView rest) {
        return QStringLiteral("Version information comes from the app bundle. ") + rest;
    };
    if (channel) {
        switch (kindOf(*channel)) {
        case AppUpdateChannelKind::homebrewCask:
            return {
                fromBundle(QLatin1StringView("Homebrew manages update checks for this cask.")), {}, {}};
        case AppUpdateChannelKind::macAppStore:
            return {fromBundle(QLatin1StringView("The App Store manages update checks for this app.")),
                    update_texts::receiptDetected,
                    {}};
        case AppUpdateChannelKind::sparkle:
            return {fromBundle(QLatin1StringView("This app declares a Sparkle update feed.")),
                    QStringLiteral("Declared in the app bundle"),
                    {}};
        }
    }
    if (isBuiltIn(candidate.path))
        return {QStringLiteral("Built-in apps are updated together with macOS in Software Update."),
                QStringLiteral("Managed by macOS"), QStringLiteral("Apple Software Update")};
    if (MicrosoftAutoUpdateTarget::code(candidate.bundleIdentifier.value_or(QString())))
        return {QStringLiteral("Microsoft AutoUpdate manages updates for this app."), {}, {}};
    if (candidate.hasKeystone)
        return {fromBundle(QLatin1StringView("This app declares a Keystone update endpoint.")), {}, {}};
    return {fromBundle(QLatin1StringView("Open the app or its vendor updater to check for updates.")),
            {},
            {}};
}

} // namespace tessellar
