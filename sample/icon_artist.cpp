#include "sample/icon_artist.h"

#include "sample/picture.h"

#include <QBuffer>
#include <QImageWriter>
#include <QPainter>
#include <QPainterPath>

#include <cmath>
#include <map>
#include <numbers>

namespace tessellar::sample {

namespace {

QColor mixed(const QColor& a, const QColor& b, double part) {
    const auto channel = [part](int from, int to) {
        return int(std::lround(from + ((to - from) * part)));
    };
    return {channel(a.red(), b.red()), channel(a.green(), b.green()), channel(a.blue(), b.blue())};
}

/// A superellipse: the corners of the rounded square bend without a seam.
QPainterPath squircle(const QRectF& bounds) {
    constexpr double exponent = 5.0;
    constexpr int steps = 180;
    QPolygonF outline;
    for (int i = 0; i < steps; ++i) {
        const double angle = 2 * std::numbers::pi * i / steps;
        const auto reach = [](double value) {
            return std::copysign(std::pow(std::abs(value), 2 / exponent), value);
        };
        outline << QPointF(bounds.center().x() + (reach(std::cos(angle)) * bounds.width() / 2),
                           bounds.center().y() + (reach(std::sin(angle)) * bounds.height() / 2));
    }
    QPainterPath path;
    path.addPolygon(outline);
    path.closeSubpath();
    return path;
}

QPainterPath hexagon(const QRectF& bounds) {
    QPolygonF corners;
    for (int i = 0; i < 6; ++i) {
        const double angle = std::numbers::pi * i / 3;
        corners << bounds.center() +
                       QPointF(std::sin(angle), -std::cos(angle)) * bounds.height() * 0.46;
    }
    QPainterPath core;
    core.addPolygon(corners);
    core.closeSubpath();
    QPainterPathStroker stroker;
    stroker.setWidth(bounds.width() * 0.12);
    stroker.setJoinStyle(Qt::RoundJoin);
    return core.united(stroker.createStroke(core)).simplified();
}

QPainterPath sheet(const QRectF& bounds) {
    const QRectF page = bounds.adjusted(bounds.width() * 0.09, 0, -bounds.width() * 0.09, 0);
    const double fold = page.width() * 0.24;
    const double r = page.width() * 0.06;
    QPainterPath path(QPointF(page.left() + r, page.top()));
    path.lineTo(page.right() - fold, page.top());
    path.lineTo(page.right(), page.top() + fold);
    path.lineTo(page.right(), page.bottom() - r);
    path.quadTo(page.bottomRight(), QPointF(page.right() - r, page.bottom()));
    path.lineTo(page.left() + r, page.bottom());
    path.quadTo(page.bottomLeft(), QPointF(page.left(), page.bottom() - r));
    path.lineTo(page.left(), page.top() + r);
    path.quadTo(page.topLeft(), QPointF(page.left() + r, page.top()));
    return path;
}

QPainterPath bodyOf(IconShape shape, const QRectF& tile) {
    QPainterPath path;
    switch (shape) {
    case IconShape::tile:
        return squircle(tile);
    case IconShape::circle:
        path.addEllipse(tile);
        return path;
    case IconShape::hexagon:
        return hexagon(tile.adjusted(0, tile.height() * 0.02, 0, -tile.height() * 0.02));
    case IconShape::paper:
        return sheet(tile);
    case IconShape::free:
        break;
    }
    return path;
}

/// Drawn in the tile's own measure, 0 to 100, clipped to the body.
void drawBackdrop(QPainter& p, const IconDesign& design) {
    const QColor top(design.top);
    const QColor bottom(design.bottom);
    const QColor light(255, 255, 255, 34);
    p.setPen(Qt::NoPen);
    switch (design.backdrop) {
    case Backdrop::plain:
        break;
    case Backdrop::glow: {
        QRadialGradient glow(QPointF(50, 36), 62);
        glow.setColorAt(0, QColor(255, 255, 255, 95));
        glow.setColorAt(1, QColor(255, 255, 255, 0));
        p.fillRect(QRectF(0, 0, 100, 100), glow);
        break;
    }
    case Backdrop::rays:
        p.setBrush(light);
        for (int i = 0; i < 16; i += 2)
            p.drawPie(QRectF(-50, -46, 200, 200), i * 360, 360);
        break;
    case Backdrop::rings:
        p.setBrush(Qt::NoBrush);
        for (int i = 1; i < 6; ++i) {
            p.setPen(QPen(QColor(255, 255, 255, 46 - (6 * i)), 5));
            p.drawEllipse(QPointF(50, 50), 14.0 * i, 14.0 * i);
        }
        break;
    case Backdrop::waves:
        for (int i = 0; i < 3; ++i) {
            const double y = 56 + (14 * i);
            QPainterPath wave(QPointF(-5, y));
            wave.cubicTo(20, y - 16, 40, y + 12, 60, y);
            wave.cubicTo(76, y - 9, 92, y - 6, 106, y + 5);
            wave.lineTo(106, 110);
            wave.lineTo(-5, 110);
            p.fillPath(wave, QColor(255, 255, 255, 30));
        }
        break;
    case Backdrop::dots:
        p.setBrush(light);
        for (int y = 0; y < 11; ++y)
            for (int x = 0; x < 11; ++x)
                p.drawEllipse(QPointF(5 + (9 * x) + (y % 2 ? 4.5 : 0), 5 + (9 * y)), 1.5, 1.5);
        break;
    case Backdrop::diagonal: {
        QPainterPath half(QPointF(0, 0));
        half.lineTo(100, 0);
        half.lineTo(0, 100);
        p.fillPath(half, QColor(255, 255, 255, 30));
        break;
    }
    case Backdrop::horizon:
        p.fillRect(QRectF(0, 66, 100, 40), QColor(0, 0, 0, 36));
        break;
    case Backdrop::grid:
        for (int i = 1; i < 10; ++i) {
            p.fillRect(QRectF((10.0 * i) - 0.3, 0, 0.6, 100), QColor(255, 255, 255, 44));
            p.fillRect(QRectF(0, (10.0 * i) - 0.3, 100, 0.6), QColor(255, 255, 255, 44));
        }
        break;
    case Backdrop::stars:
        p.setBrush(QColor(255, 255, 255, 200));
        for (int i = 0; i < 26; ++i) {
            const double radius = 0.5 + (0.32 * (i * 7 % 4));
            p.drawEllipse(QPointF((i * 37 + 11) % 97, (i * 53 + 7) % 95), radius, radius);
        }
        break;
    case Backdrop::header:
        p.fillRect(QRectF(0, 0, 100, 26), QColor(design.accent));
        p.fillRect(QRectF(0, 26, 100, 0.8), QColor(0, 0, 0, 40));
        break;
    }
}

void drawBody(QImage& image, const IconDesign& design, const QRectF& tile) {
    const QPainterPath body = bodyOf(design.shape, tile);
    const double unit = tile.width() / 100;
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient fill(tile.topLeft(), tile.bottomLeft());
    fill.setColorAt(0, QColor(design.top));
    fill.setColorAt(0.5, mixed(QColor(design.top), QColor(design.bottom), 0.46));
    fill.setColorAt(1, QColor(design.bottom));
    p.fillPath(body, fill);

    // Painted on what is there, the body's smooth edge stays as it is.
    p.setCompositionMode(QPainter::CompositionMode_SourceAtop);
    p.save();
    p.translate(tile.topLeft());
    p.scale(unit, unit);
    drawBackdrop(p, design);
    p.restore();

    QLinearGradient edge(tile.topLeft(), tile.bottomLeft());
    edge.setColorAt(0, QColor(255, 255, 255, 150));
    edge.setColorAt(0.28, QColor(255, 255, 255, 36));
    edge.setColorAt(0.72, QColor(0, 0, 0, 8));
    edge.setColorAt(1, QColor(0, 0, 0, 66));
    p.strokePath(body, QPen(edge, 2.2 * unit));

    if (design.shape == IconShape::paper) {
        const QRectF page = tile.adjusted(tile.width() * 0.09, 0, -tile.width() * 0.09, 0);
        const double fold = page.width() * 0.24;
        QPainterPath corner(QPointF(page.right() - fold, page.top()));
        corner.lineTo(page.right(), page.top() + fold);
        corner.lineTo(page.right() - fold, page.top() + fold);
        corner.closeSubpath();
        p.fillPath(corner.translated(0.6 * unit, 1.4 * unit), QColor(0, 0, 0, 40));
        p.fillPath(corner, QColor(design.top).darker(108));
    }
}

QImage reduced(const QImage& image, int side) {
    QImage result = image;
    while (result.width() >= 2 * side)
        result = result.scaled(result.size() / 2, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return result.width() == side
               ? result
               : result.scaled(side, side, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

} // namespace

QImage drawIcon(const IconDesign& design, int side) {
    const bool free = design.shape == IconShape::free;
    // The usual margins: 824 of 1024 for the body, room for the shadow around it.
    const double tileSide = side * (free ? 0.98 : 824.0 / 1024);
    const QRectF tile((side - tileSide) / 2, ((side - tileSide) / 2) - (side * 0.004), tileSide,
                      tileSide);

    QImage icon(side, side, QImage::Format_ARGB32_Premultiplied);
    icon.fill(Qt::transparent);
    if (!free)
        drawBody(icon, design, tile);
    drawPicture(icon, tile, design.glyph, QColor(design.ink), QColor(design.accent));

    QImage result(side, side, QImage::Format_ARGB32_Premultiplied);
    result.fill(Qt::transparent);
    QPainter p(&result);
    p.drawImage(QPointF(0, side * 0.012), shadowOf(icon, side * 0.022, QColor(0, 0, 0, 105)));
    p.drawImage(0, 0, icon);
    return result;
}

QByteArray pngBytes(const QImage& image) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "png");
    writer.setQuality(70); // of the encoder's effort: a third of the time for a tenth more bytes
    writer.write(image);
    return buffer.data();
}

Pixels pixelsOf(const QImage& image) {
    const QImage straight = image.convertToFormat(QImage::Format_RGBA8888);
    Pixels pixels{straight.width(), {}};
    for (int y = 0; y < straight.height(); ++y)
        pixels.rgba.append(reinterpret_cast<const char*>(straight.constScanLine(y)),
                           qsizetype{straight.width()} * 4);
    return pixels;
}

QByteArray icnsBytes(const IconDesign& design, IcnsForm form) {
    const QImage master = drawIcon(design, form == IcnsForm::large       ? 1024
                                           : form == IcnsForm::runLength ? 256
                                                                         : 512);
    std::map<int, QByteArray> encoded;
    const auto png = [&](int side) -> const QByteArray& {
        QByteArray& bytes = encoded[side];
        if (bytes.isEmpty())
            bytes = pngBytes(reduced(master, side));
        return bytes;
    };

    IcnsWriter icns;
    switch (form) {
    case IcnsForm::modern:
    case IcnsForm::large:
        icns.add("ic12", png(64));
        icns.add("ic07", png(128));
        icns.add("ic13", png(256));
        icns.add("ic08", png(256));
        icns.addArgb("ic04", pixelsOf(reduced(master, 16)));
        icns.add("ic14", png(512));
        icns.addArgb("ic05", pixelsOf(reduced(master, 32)));
        if (form == IcnsForm::large)
            icns.add("ic10", png(1024));
        icns.add("ic11", png(32));
        return icns.finish(true);
    case IcnsForm::older:
        icns.addRgbWithMask("is32", "s8mk", pixelsOf(reduced(master, 16)));
        icns.addRgbWithMask("il32", "l8mk", pixelsOf(reduced(master, 32)));
        icns.add("ic07", png(128));
        icns.add("ic08", png(256));
        icns.add("ic09", png(512));
        return icns.finish();
    case IcnsForm::runLength:
        icns.addRgbWithMask("is32", "s8mk", pixelsOf(reduced(master, 16)));
        icns.addRgbWithMask("il32", "l8mk", pixelsOf(reduced(master, 32)));
        icns.addRgbWithMask("ih32", "h8mk", pixelsOf(reduced(master, 48)));
        icns.addRgbWithMask("it32", "t8mk", pixelsOf(reduced(master, 128)));
        return icns.finish();
    }
    return {};
}

} // namespace tessellar::sample
