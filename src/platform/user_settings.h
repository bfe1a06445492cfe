#pragma once

#include "platform/process.h"
#include "platform/settings.h"

#include <memory>

namespace tessellar {

// Where this platform keeps the data of a user's applications. The build chooses the implementation:
// user_settings.cpp, or macos/user_settings.cpp on a Mac.

struct UserStore {
    const FileSystem& files;
    CommandRunner& commands;
    const std::map<QByteArray, QByteArray>& environment;
    QString home;
    bool hasRoot = false; ///< the machine is a folder of this one
};

/// The application's settings: the file "com.tessellar.app.json" in the home's Library/Preferences; on
/// a Mac that is no folder of another machine, what the system keeps for the application.
std::unique_ptr<Settings> makeUserSettings(const UserStore& store);

/// The folder in which applications keep theirs: "Library/Application Support" of the home, or on a
/// desktop that follows XDG its data folder.
QString applicationSupportDirectory(const UserStore& store);

} // namespace tessellar
