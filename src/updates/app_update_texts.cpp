#include "updates/app_update_texts.h"

#include "platform/text.h"
#include "platform/texts.h"

namespace tessellar {

QString update_texts::available(const std::optional<QString>& installed, const QString& latest) {
    // A cask with several applications has its own version, which may look older than theirs.
    return installed && compareNumeric(*installed, latest) <= 0
               ? Texts::tr("Update available: %1 → %2").arg(*installed, latest)
               : Texts::tr("Update available: %1").arg(latest);
}

QString update_texts::summary(const AppUpdateTally& tally, const QList<AppUpdateProblem>& problems,
                              const QString& lastCheck) {
    QString trouble;
    if (tally.failed == 1)
        trouble = Texts::tr("1 app could not be checked.");
    else if (tally.failed > 1)
        trouble = Texts::tr("%n apps could not be checked.", nullptr, static_cast<int>(tally.failed));
    const auto reason = tally.reason         ? tally.reason
                        : problems.isEmpty() ? std::nullopt
                                             : std::optional(problems.first().reason);
    if (reason)
        trouble += (trouble.isEmpty() ? QString() : QStringLiteral(" ")) + message(*reason);
    const auto with = [&](const QString& text) {
        return trouble.isEmpty() ? text : text + u' ' + trouble;
    };
    if (tally.available == 1)
        return with(Texts::tr("1 update available."));
    if (tally.available > 1)
        return with(Texts::tr("%n updates available.", nullptr, static_cast<int>(tally.available)));
    if (lastCheck.isEmpty() || (tally.upToDate == 0 && tally.held == 0 && !trouble.isEmpty()))
        return trouble;
    if (tally.upToDate == 0 && tally.held == 0)
        return Texts::tr("Last checked %1. None of your apps can be checked for updates.")
            .arg(lastCheck);
    return with(Texts::tr("Last checked %1. No updates found.").arg(lastCheck));
}

QString update_texts::status(const AppUpdateRecord& record) {
    const auto text = [&](const AppUpdateStatus& status) {
        if (const auto* update = std::get_if<UpdateAvailable>(&status))
            return available(record.installedVersion, update->latestVersion);
        return std::holds_alternative<UpToDate>(status) ? Texts::tr("Up to date")
               : hasFailed(status)                      ? Texts::tr("The check failed")
                                                        : Texts::tr("Its source cannot tell");
    };
    QString line = text(record.status);
    if (record.reason)
        line += QStringLiteral(". %1").arg(message(*record.reason));
    if (record.lastKnownStatus)
        line += (record.reason ? Texts::tr(" Before: ") : Texts::tr(". Before: ")) +
                text(*record.lastKnownStatus);
    return line;
}

bool isBuiltIn(const QString& path) { return FileSystem::isWithin(path, QStringLiteral("/System")); }

AppUpdateSourceText sourceText(const std::optional<AppUpdateChannel>& channel,
                               const AppUpdateCandidate& candidate) {
    const auto fromBundle = [](const QString& rest) {
        return Texts::tr("Version information comes from the app bundle.") + u' ' + rest;
    };
    if (channel) {
        switch (kindOf(*channel)) {
        case AppUpdateChannelKind::homebrewCask:
            return {fromBundle(Texts::tr("Homebrew manages update checks for this cask.")), {}, {}};
        case AppUpdateChannelKind::macAppStore:
            return {fromBundle(Texts::tr("The App Store manages update checks for this app.")),
                    update_texts::receiptDetected(),
                    {}};
        case AppUpdateChannelKind::sparkle:
            return {fromBundle(Texts::tr("This app declares a Sparkle update feed.")),
                    Texts::tr("Declared in the app bundle"),
                    {}};
        }
    }
    if (isBuiltIn(candidate.path))
        return {Texts::tr("Built-in apps are updated together with macOS in Software Update."),
                Texts::tr("Managed by macOS"), QStringLiteral("Apple Software Update")};
    if (MicrosoftAutoUpdateTarget::code(candidate.bundleIdentifier.value_or(QString())))
        return {Texts::tr("Microsoft AutoUpdate manages updates for this app."), {}, {}};
    if (candidate.hasKeystone)
        return {fromBundle(Texts::tr("This app declares a Keystone update endpoint.")), {}, {}};
    return {fromBundle(Texts::tr("Open the app or its vendor updater to check for updates.")), {}, {}};
}

} // namespace tessellar
