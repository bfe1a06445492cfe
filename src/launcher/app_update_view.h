#pragma once

#include "updates/app_update_action.h"
#include "updates/app_update_reason.h"
#include "updates/app_update_records.h"

#include <QString>

#include <optional>

namespace tessellar {

class AppUpdateCoordinator;
struct AppUpdateSourceText;

/// One application's updates, and the texts about them; what is unknown is empty or nullopt.
/// Short-lived: call `LauncherUpdates::of` again instead of keeping it.
class AppUpdateView {
public:
    AppUpdateView(const AppUpdateCoordinator* coordinator, QString appKey)
        : _coordinator(coordinator), _appKey(std::move(appKey)) {}

    /// The last known status, ignoring failed checks.
    std::optional<AppUpdateStatus> status() const;
    /// True if the last check failed.
    bool hasFailed() const;
    std::optional<AppUpdateRecord> record() const;
    /// Why it has no plain status: no channel, a channel that cannot tell, or a failed check.
    std::optional<AppUpdateReason> reason() const;
    std::optional<AppUpdateChannel> channel() const;
    /// Its source of versions and updates, for the information panel.
    std::optional<AppUpdateSourceText> sourceText() const;
    /// The badge of its tile: an arrow if there is an update, else empty.
    QString badge() const;
    /// For example "Update available: 1.0 → 1.1".
    QString statusText() const;

    /// How it would be updated.
    std::optional<AppUpdateActionKind> actionKind() const;
    /// The menu title for that.
    QString actionLabel() const;
    /// The state of its current or last update.
    std::optional<AppUpdateActionState> actionState() const;
    /// The text while it runs, for example "Updating… Downloading.".
    QString runningText() const;
    /// The same in a word or two, for a tile: "Downloading…".
    QString tileText() const;

    /// True if its updates are skipped, or pinned in Homebrew.
    bool isHeld() const;
    /// The skipped version, or `AppUpdateCache::everyVersion`.
    std::optional<QString> skipped() const;

private:
    const AppUpdateCoordinator* _coordinator; ///< null until updates are known
    QString _appKey;
};

} // namespace tessellar
