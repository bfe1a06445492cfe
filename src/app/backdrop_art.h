#pragma once

#include <QImage>

namespace tessellar {

// What lies behind the tiles. Pure; any thread.

/// The launcher's own: a night sky, dithered, for a gradient of eight bits shows bands on a large
/// screen.
QImage backdropArt(QSize size);

/// A picture that is to lie behind the tiles, small and blurred; null when the bytes are none that can
/// be read, or are of more than 400 million pixels.
QImage blurredPicture(const QByteArray& encoded);

/// A blurred picture in the size of a window, which it fills, cut at two sides where their shapes
/// differ. Its light is held down so that white labels stand out by 4.5:1 everywhere, and by more where
/// the user wants it dark.
QImage pictureBackdrop(const QImage& blurred, QSize size, bool isDark);

} // namespace tessellar
