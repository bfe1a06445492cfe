#pragma once

#include "platform/texts.h"
#include "updates/app_update_action.h"

namespace tessellar {

/// What the records come to.
struct AppUpdateTally {
    qsizetype available = 0;
    qsizetype upToDate = 0;
    qsizetype unsupported = 0;
    qsizetype failed = 0;
    qsizetype held = 0;                    ///< updates that are skipped or pinned
    std::optional<AppUpdateReason> reason; ///< that all failures have, if its sentence fits them

    bool operator==(const AppUpdateTally&) const = default;
};

/// Texts about updates, as settings, tiles and the information panel show them.
namespace update_texts {

inline QString settingsTitle() { return Texts::tr("Updates for Installed Apps"); }
inline QString settingsExplanation() {
    return Texts::tr("App Store, Homebrew Cask, and Sparkle-updated apps can be checked. Checking may "
                     "contact Apple, "
                     "Homebrew, and each app’s update server.");
}
inline QString checkNow() { return Texts::tr("Check My Installed Apps for Updates"); }
inline QString checkingDisabled() {
    return Texts::tr("Update checking is disabled, so update-status rules cannot be evaluated.");
}
inline QString receiptDetected() { return Texts::tr("Receipt detected"); }

/// "Update available: 1.0 → 1.1", without the installed version where that is unknown.
QString available(const std::optional<QString>& installed, const QString& latest);
/// What the whole comes to; `lastCheck` already in the user's form, empty when there was none. That
/// nothing was found is said only where something could have been.
QString summary(const AppUpdateTally& tally, const QList<AppUpdateProblem>& problems,
                const QString& lastCheck);
/// "Could not be checked: …" and the like: what stands beside an application's name.
QString status(const AppUpdateRecord& record);
/// Of an update that the user skips or that is pinned.
inline QString held() { return Texts::tr("Held back"); }
inline QString checking() { return Texts::tr("Checking your installed apps for updates…"); }

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
