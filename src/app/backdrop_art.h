#pragma once

#include <QImage>

namespace tessellar {

// Backgrounds behind the tiles. Pure; thread-safe.

/// The launcher's own: a night sky, dithered to avoid the bands of an 8-bit gradient on a large screen.
QImage backdropArt(QSize size);

/// A small blurred version of a picture; null if it cannot be decoded or has more than 400 million
/// pixels.
QImage blurredPicture(const QByteArray& encoded);

/// Scales a blurred picture to fill a window, cropping if necessary. Darkened so that white labels have
/// a contrast of at least 4.5:1 everywhere, and further if `isDark`.
QImage pictureBackdrop(const QImage& blurred, QSize size, bool isDark);

} // namespace tessellar
