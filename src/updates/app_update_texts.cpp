#include "updates/app_update_texts.h"

namespace tessellar {

QString update_texts::available(const std::optional<QString>& installed, const QString& latest) {
    return installed ? QStringLiteral("Update available: %1 → %2").arg(*installed, latest)
                     : QStringLiteral("Update available: %1").arg(latest);
}

QString update_texts::summary(bool isChecking, qsizetype availableCount, const QString& lastCheck) {
    if (isChecking)
        return QStringLiteral("Checking your installed apps for updates…");
    if (availableCount == 1)
        return QStringLiteral("1 update available.");
    if (availableCount > 1)
        return QStringLiteral("%1 updates available.").arg(availableCount);
    return lastCheck.isEmpty() ? QString()
                               : QStringLiteral("Last checked %1. No updates found.").arg(lastCheck);
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
