#pragma once

#include <QString>

#include <expected>

namespace tessellar {

// Whether the launcher starts when its user logs in. The build chooses the implementation.
//
// On a Mac through ServiceManagement's own service of the main application: the user sees it among the
// login items and can turn it off there, which an agent's property list written by hand would not let
// them. Unproven: compiled against declarations, never run. Elsewhere a file of the desktop's autostart
// folder, under the `configuration` folder of the user's (~/.config as a rule).

/// As the system says now; the user may have changed it there.
bool launchesAtLogin(const QString& configuration);

/// Says why where the system refuses.
std::expected<void, QString> setLaunchesAtLogin(bool on, const QString& configuration);

} // namespace tessellar
