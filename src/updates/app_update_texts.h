#pragma once

#include "platform/texts.h"
#include "updates/app_update_action.h"

namespace tessellar {

/// Counts of the records.
struct AppUpdateTally {
    qsizetype available = 0;
    qsizetype upToDate = 0;
    qsizetype unsupported = 0;
    qsizetype failed = 0;
    qsizetype held = 0;                    ///< skipped or pinned updates
    std::optional<AppUpdateReason> reason; ///< common to all failures, if there is one to show

    bool operator==(const AppUpdateTally&) const = default;
};

/// Texts about updates, for settings, tiles and the information panel.
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

/// "Update available: 1.0 → 1.1"; without the installed version if unknown.
QString available(const std::optional<QString>& installed, const QString& latest);
/// A summary of all results. `lastCheck` is formatted already, and empty before the first check. Does
/// not claim that there are no updates if nothing could be checked.
QString summary(const AppUpdateTally& tally, const QList<AppUpdateProblem>& problems,
                const QString& lastCheck);
/// The text beside an application's name, for example "Could not be checked: …".
QString status(const AppUpdateRecord& record);
/// For a skipped or pinned update.
inline QString held() { return Texts::tr("Held back"); }
inline QString checking() { return Texts::tr("Checking your installed apps for updates…"); }

} // namespace update_texts

/// An application's update source, as explained in the information panel.
struct AppUpdateSourceText {
    QString explanation;
    QString label;  ///< may be empty
    QString source; ///< its name; may be empty

    bool operator==(const AppUpdateSourceText&) const = default;
};
AppUpdateSourceText sourceText(const std::optional<AppUpdateChannel>& channel,
                               const AppUpdateCandidate& candidate);

/// True for applications that are part of the system and updated with it.
bool isBuiltIn(const QString& path);

} // namespace tessellar
