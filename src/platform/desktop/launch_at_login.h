#pragma once

#include <QString>

#include <expected>

namespace tessellar {

// Launching at login. The build picks the implementation.
//
// macOS: ServiceManagement's main application service, which users see among their login items and can
// turn off there, unlike a hand-written agent. Unproven: compiled against declarations, never run.
// Elsewhere: a file in the desktop's autostart folder, inside the user's `configuration` folder
// (usually ~/.config).

/// The current state in the system, where the user may have changed it.
bool launchesAtLogin(const QString& configuration);

/// The error is the system's reason.
std::expected<void, QString> setLaunchesAtLogin(bool on, const QString& configuration);

} // namespace tessellar
