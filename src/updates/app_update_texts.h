#pragma once

#include "updates/app_update_action.h"

namespace tessellar {

/// Texts about updates, as settings, tiles and the information panel show them.
namespace update_texts {

inline const QString settingsTitle = QStringLiteral("Updates for Installed Apps");
inline const QString settingsExplanation = QStringLiteral(
    "App Store, Homebrew Cask, and Sparkle-updated apps can be checked. Checking may contact Apple, "
    "Homebrew, and each app’s update server.");
inline const QString checkNow = QStringLiteral("Check My Installed Apps for Updates");
inline const QString checkingDisabled =
    QStringLiteral("Update checking is disabled, so update-status rules cannot be evaluated.");
inline const QString alreadyRunning = QStringLiteral("Another app update is already in progress.");
inline const QString receiptDetected = QStringLiteral("Receipt detected");

/// "Update available: 1.0 → 1.1", without the installed version where that is unknown.
QString available(const std::optional<QString>& installed, const QString& latest);
/// What the whole comes to; `lastCheck` already in the user's form, empty when there was none.
QString summary(bool isChecking, qsizetype availableCount, const QString& lastCheck);

} // namespace update_texts

/// Where an application's updates come from, as the information panel explains it.
struct AppUpdateSourceText {
    QString explanation;
    QString label;  ///< empty for none
    QString source; ///< its name; empty for none

    bool operator==(const AppUpdateSourceText&) const = default;
};
AppUpdateSourceText sourceText(const std::optional<AppUpdateChannel>& channel,
                               const AppUpdateCandidate& candidate);

/// True for what comes with the system and is updated with it.
bool isBuiltIn(const QString& path);

} // namespace tessellar
