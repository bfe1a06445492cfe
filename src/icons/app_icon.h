#pragma once

#include "icons/icon_decoder.h"
#include "platform/bundle.h"

#include <optional>

namespace tessellar {

/// Larger icon files are not read.
inline constexpr std::uint64_t maximumIconBytes = 64u << 20;

/// The PNG files that a wrapped iPhone application's property list names as its icon, best match for
/// most displays first. Not checked to exist; paths outside the bundle are left out.
QStringList wrappedIconPaths(const Bundle& bundle);

/// An application's icon: the custom icon if its file exists, else the bundle's own, `side` pixels a
/// side, premultiplied. Images that are not square are centred; a wrapped application's square icon
/// gets the rounded shape. Null if nothing can be decoded. Reads files; call on a worker.
QImage loadAppIcon(const FileSystem& files, const IconDecoder& decoder, const QString& bundlePath,
                   const std::optional<QString>& customIconPath, int side);

/// The icon of every application without one.
QImage genericAppIcon(int side);

/// Applies the rounded icon shape, its margin and a baked-in soft shadow: without a GPU, run-time
/// effects would cost a frame.
QImage inIconShape(const QImage& square, int side);

} // namespace tessellar
