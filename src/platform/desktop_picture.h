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

/// The user's desktop picture, or nullopt if there is none or it is unknown. Tries macOS's store
/// ("Library/Application Support/com.apple.wallpaper/Store/Index.plist", since macOS 14), then
/// `gsettings`, then Plasma's configuration. Blocks; call on a worker.
std::optional<QString> desktopPicture(const DesktopPictureContext& context, std::stop_token stop = {});

} // namespace tessellar
