#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QList>

namespace tessellar::sample {

/// Draws the picture on an icon's tile: the SVG file of that name in pictures/, whose viewBox is the
/// tile. Its first line declares two entities, the colours `ink` and `accent`, which are each icon's
/// own. Its groups "layer1", "layer2" and so on are drawn one above the other, and each casts a soft
/// shadow on what lies below. False when there is none of that name. Any thread may draw.
bool drawPicture(QImage& target, const QRectF& tile, const QByteArray& name, const QColor& ink,
                 const QColor& accent);

/// The names of all pictures, sorted.
QList<QByteArray> pictureNames();

/// Blurs the alpha of a premultiplied image into a shadow of one colour.
QImage shadowOf(const QImage& image, double radius, const QColor& colour);

} // namespace tessellar::sample
