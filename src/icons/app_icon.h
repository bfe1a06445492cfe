#pragma once

#include "icons/icon_decoder.h"
#include "platform/bundle.h"

#include <optional>

namespace tessellar {

/// No icon file is read beyond this many bytes.
inline constexpr std::uint64_t maximumIconBytes = 64u << 20;

/// The PNG files that a wrapped iPhone application's property list names for its icon, those that suit
/// most displays first. Not looked for on the disk; names that leave the bundle are left out.
QStringList wrappedIconPaths(const Bundle& bundle);

/// What an application is shown with: the custom icon where there is a file of one, else what the
/// bundle holds, `side` pixels a side, premultiplied. An image that is not square is centred; a wrapped
/// application's, which is a plain square, gets the rounded shape of the others. Null where nothing can
/// be decoded. For workers: reads files.
QImage loadAppIcon(const FileSystem& files, const IconDecoder& decoder, const QString& bundlePath,
                   const std::optional<QString>& customIconPath, int side);

/// Stands for an application without an icon of its own. Drawn; the same for every one.
QImage genericAppIcon(int side);

/// The rounded shape that the icons of applications share, with its margin, and a soft shadow baked in:
/// effects at run time cost a frame where a processor draws.
QImage inIconShape(const QImage& square, int side);

} // namespace tessellar
