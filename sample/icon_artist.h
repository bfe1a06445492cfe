#pragma once

#include "sample/icns_writer.h"

#include <QColor>
#include <QImage>

namespace tessellar::sample {

/// The body that the picture stands on.
enum class IconShape {
    tile, ///< the rounded square of most applications
    circle,
    hexagon,
    paper, ///< a sheet with a folded corner
    free,  ///< none: the picture alone, larger
};

/// What lies on the body under the picture.
enum class Backdrop { plain, glow, rays, rings, waves, dots, diagonal, horizon, grid, stars, header };

/// How an application's icon looks. Colours as 0xRRGGBB.
struct IconDesign {
    const char* glyph = "star"; ///< the name of a picture
    QRgb top = 0x5aa9ff;
    QRgb bottom = 0x2563eb;
    QRgb ink = 0xffffff;
    QRgb accent = 0xffcb45;
    Backdrop backdrop = Backdrop::plain;
    IconShape shape = IconShape::tile;
};

/// Which entries an .icns file holds, and in which form: what the Mac's own tool writes today, the same
/// with the largest size, what older applications carry, and the sizes before bitmaps were PNG.
enum class IcnsForm { modern, large, older, runLength };

/// Draws an icon at `side` pixels: the body, its light and shade, the picture, a soft shadow below.
/// No font is used, so that every machine draws the same. Any thread may draw.
QImage drawIcon(const IconDesign& design, int side);

QByteArray pngBytes(const QImage& image);
Pixels pixelsOf(const QImage& image);

/// The bytes of an .icns file of the design; drawn once and reduced for the smaller sizes.
QByteArray icnsBytes(const IconDesign& design, IcnsForm form = IcnsForm::modern);

} // namespace tessellar::sample
