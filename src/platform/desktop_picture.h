#pragma once

#include "platform/process.h"

#include <QString>

namespace tessellar {

class FileSystem;

struct DesktopPictureContext {
    const FileSystem& files;
    QString home;
    CommandRunner& commands;
    std::map<QByteArray, QByteArray> environment;
};

/// The picture that the user has behind the windows of the desktop, or nothing where it is none, is no
/// file, or is not known. Looked for in what the Mac keeps of it
/// ("Library/Application Support/com.apple.wallpaper/Store/Index.plist", since macOS 14), then with
/// `gsettings`, then in what Plasma keeps. Blocks; for a worker.
std::optional<QString> desktopPicture(const DesktopPictureContext& context, std::stop_token stop = {});

} // namespace tessellar
