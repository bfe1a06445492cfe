#pragma once

#include "platform/process.h"
#include "platform/settings.h"

#include <memory>

namespace tessellar {

// Where applications keep the user's data. The build picks the implementation: user_settings.cpp, or
// macos/user_settings.cpp on macOS.

struct UserSettingsContext {
    const FileSystem& files;
    CommandRunner& commands;
    const std::map<QByteArray, QByteArray>& environment;
    QString home;
    bool hasRoot = false; ///< the machine is a folder on this one
};

/// The application's settings: "com.tessellar.app.json" in the home's Library/Preferences; on macOS
/// without a root, the system's user defaults.
std::unique_ptr<Settings> makeUserSettings(const UserSettingsContext& store);

/// The parent of applications' data folders: the home's "Library/Application Support", or the data
/// folder on desktops that follow XDG.
QString applicationSupportDirectory(const UserSettingsContext& store);

} // namespace tessellar
