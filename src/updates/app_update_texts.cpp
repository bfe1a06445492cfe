#include "updates/app_update_texts.h"

#include "platform/text.h"

namespace tessellar {

QString update_texts::available(const std::optional<QString>& installed, const QString& latest) {
    // A cask of several applications has a version of its own, which may read as older than theirs.
    return installed && compareNumeric(*installed, latest) <= 0
               ? QStringLiteral("Update available: %1 → %2").arg(*installed, latest)
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
    const auto text = [&](const AppUpdateStatus& status) {
        if (const auto* update = std::get_if<UpdateAvailable>(&status))
            return available(record.installedVersion, update->latestVersion);
        return std::holds_alternative<UpToDate>(status) ? QStringLiteral("Up to date")
               : hasFailed(status)                      ? QStringLiteral("The check failed")
                                                        : QStringLiteral("Its source cannot tell");
    };
    QString line = text(record.status);
    if (record.reason)
        line += QStringLiteral(". %1").arg(message(*record.reason));
    if (record.lastKnownStatus)
        line += (record.reason ? QStringLiteral(" Before: ") : QStringLiteral(". Before: ")) +
                text(*record.lastKnownStatus);
    return line;
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
