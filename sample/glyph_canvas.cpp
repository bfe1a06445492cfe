#include "sample/glyph_canvas.h"

#include <cmath>
#include <numbers>
#include <vector>

namespace tessellar::sample {

namespace {

/// Running means over rows, then columns; three rounds come close to a Gaussian.
void blurRows(std::vector<int>& values, int width, int height, int radius) {
    std::vector<int> row(static_cast<std::size_t>(width));
    const int span = 2 * radius + 1;
    for (int y = 0; y < height; ++y) {
        int* line = values.data() + std::ptrdiff_t(y) * width;
        std::copy_n(line, width, row.begin());
        int sum = 0;
        for (int x = -radius; x <= radius; ++x)
            sum += x >= 0 && x < width ? row[std::size_t(x)] : 0;
        for (int x = 0; x < width; ++x) {
            line[x] = sum / span;
            const int enters = x + radius + 1;
            const int leaves = x - radius;
            sum += (enters < width ? row[std::size_t(enters)] : 0) -
                   (leaves >= 0 ? row[std::size_t(leaves)] : 0);
        }
    }
}

std::vector<int> transposed(const std::vector<int>& values, int width, int height) {
    std::vector<int> result(values.size());
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            result[std::size_t(x) * std::size_t(height) + std::size_t(y)] =
                values[std::size_t(y) * std::size_t(width) + std::size_t(x)];
    return result;
}

QColor scaled(const QColor& colour, double factor) {
    const auto channel = [factor](int value) {
        return std::min(255, int(std::lround(value * factor)));
    };
    return {channel(colour.red()), channel(colour.green()), channel(colour.blue()), colour.alpha()};
}

} // namespace

QImage shadowOf(const QImage& image, double radius, const QColor& colour) {
    // A shadow has no detail: a quarter of the side is enough, and takes a tenth of the time.
    if (radius >= 6) {
        const QImage small =
            image.scaled(image.size() / 4, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        return shadowOf(small, radius / 4, colour)
            .scaled(image.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    const int width = image.width();
    const int height = image.height();
    std::vector<int> alpha(std::size_t(width) * std::size_t(height));
    for (int y = 0; y < height; ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < width; ++x)
            alpha[std::size_t(y) * std::size_t(width) + std::size_t(x)] = qAlpha(line[x]) << 8;
    }
    const int box = std::max(1, int(std::lround(radius / 2)));
    for (int round = 0; round < 3; ++round)
        blurRows(alpha, width, height, box);
    alpha = transposed(alpha, width, height);
    for (int round = 0; round < 3; ++round)
        blurRows(alpha, height, width, box);
    alpha = transposed(alpha, height, width);

    QImage shadow(width, height, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < height; ++y) {
        auto* line = reinterpret_cast<QRgb*>(shadow.scanLine(y));
        for (int x = 0; x < width; ++x) {
            const int a = (alpha[std::size_t(y) * std::size_t(width) + std::size_t(x)] >> 8) *
                          colour.alpha() / 255;
            line[x] = qPremultiply(qRgba(colour.red(), colour.green(), colour.blue(), a));
        }
    }
    return shadow;
}

GlyphCanvas::GlyphCanvas(QImage& target, const QRectF& tile, QColor inkColour, QColor accentColour)
    : ink(inkColour)
    , accent(accentColour)
    , _target(target)
    , _tile(tile)
    , _layer(target.size(), QImage::Format_ARGB32_Premultiplied) {
    begin();
}

void GlyphCanvas::begin() {
    _layer.fill(Qt::transparent);
    _painter.begin(&_layer);
    _painter.setRenderHint(QPainter::Antialiasing);
    _painter.translate(_tile.topLeft());
    _painter.scale(_tile.width() / 100, _tile.height() / 100);
    _painter.setPen(Qt::NoPen);
}

void GlyphCanvas::flatten() {
    _painter.end();
    const double unit = _tile.width() / 100;
    QPainter target(&_target);
    // The shadow stays on the tile that it falls on.
    target.setCompositionMode(QPainter::CompositionMode_SourceAtop);
    target.drawImage(QPointF(0, 1.5 * unit), shadowOf(_layer, 3.2 * unit, QColor(10, 14, 40, 105)));
    target.setCompositionMode(QPainter::CompositionMode_SourceOver);
    target.drawImage(0, 0, _layer);
}

void GlyphCanvas::lift() {
    flatten();
    begin();
}

QBrush GlyphCanvas::shaded(const QRectF& bounds, const QColor& colour) const {
    QLinearGradient gradient(bounds.topLeft(), bounds.bottomLeft());
    gradient.setColorAt(0, scaled(colour, 1.07));
    gradient.setColorAt(1, scaled(colour, 0.91));
    return gradient;
}

void GlyphCanvas::path(const QPainterPath& path, const QColor& colour) {
    _painter.fillPath(path, shaded(path.boundingRect(), colour));
}

void GlyphCanvas::stroke(const QPainterPath& path, double width, const QColor& colour) {
    const QRectF bounds = path.boundingRect().adjusted(-width, -width, width, width);
    _painter.strokePath(
        path, QPen(shaded(bounds, colour), width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
}

void GlyphCanvas::oval(double x, double y, double radiusX, double radiusY, const QColor& colour) {
    QPainterPath shape;
    shape.addEllipse(QPointF(x, y), radiusX, radiusY);
    path(shape, colour);
}

void GlyphCanvas::disc(double x, double y, double radius, const QColor& colour) {
    oval(x, y, radius, radius, colour);
}

void GlyphCanvas::ring(double x, double y, double radius, double width, const QColor& colour) {
    QPainterPath shape;
    shape.addEllipse(QPointF(x, y), radius, radius);
    stroke(shape, width, colour);
}

void GlyphCanvas::box(double x, double y, double width, double height, double radius,
                      const QColor& colour) {
    QPainterPath shape;
    shape.addRoundedRect(QRectF(x, y, width, height), radius, radius);
    path(shape, colour);
}

void GlyphCanvas::shape(std::initializer_list<QPointF> corners, const QColor& colour, double round) {
    QPainterPath outline;
    outline.addPolygon(QPolygonF(QList<QPointF>(corners)));
    outline.closeSubpath();
    path(outline, colour);
    if (round > 0)
        _painter.strokePath(outline, QPen(shaded(outline.boundingRect(), colour), round, Qt::SolidLine,
                                          Qt::RoundCap, Qt::RoundJoin));
}

void GlyphCanvas::line(std::initializer_list<QPointF> points, double width, const QColor& colour) {
    QPainterPath course;
    course.addPolygon(QPolygonF(QList<QPointF>(points)));
    stroke(course, width, colour);
}

void GlyphCanvas::arc(double x, double y, double radius, double width, double from, double span,
                      const QColor& colour) {
    const QRectF bounds(x - radius, y - radius, 2 * radius, 2 * radius);
    QPainterPath course;
    course.arcMoveTo(bounds, from);
    course.arcTo(bounds, from, span);
    stroke(course, width, colour);
}

void GlyphCanvas::wedge(double x, double y, double radius, double from, double span,
                        const QColor& colour) {
    QPainterPath slice(QPointF(x, y));
    slice.arcTo(QRectF(x - radius, y - radius, 2 * radius, 2 * radius), from, span);
    slice.closeSubpath();
    path(slice, colour);
}

void GlyphCanvas::star(double x, double y, double outer, double inner, int points, const QColor& colour,
                       double round, double turn) {
    QPolygonF polygon;
    for (int i = 0; i < 2 * points; ++i) {
        const double radius = i % 2 ? inner : outer;
        const double angle = (std::numbers::pi * i / points) + (turn * std::numbers::pi / 180);
        polygon << QPointF(x + (radius * std::sin(angle)), y - (radius * std::cos(angle)));
    }
    QPainterPath outline;
    outline.addPolygon(polygon);
    outline.closeSubpath();
    path(outline, colour);
    if (round > 0)
        _painter.strokePath(outline, QPen(shaded(outline.boundingRect(), colour), round, Qt::SolidLine,
                                          Qt::RoundCap, Qt::RoundJoin));
}

void GlyphCanvas::cut(const std::function<void()>& draw) {
    _painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    draw();
    _painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

void GlyphCanvas::turned(double degrees, double x, double y, const std::function<void()>& draw) {
    _painter.save();
    _painter.translate(x, y);
    _painter.rotate(degrees);
    _painter.translate(-x, -y);
    draw();
    _painter.restore();
}

void GlyphCanvas::mirrored(const std::function<void()>& draw) {
    draw();
    _painter.save();
    _painter.translate(100, 0);
    _painter.scale(-1, 1);
    draw();
    _painter.restore();
}

void GlyphCanvas::clipped(const QPainterPath& path, const std::function<void()>& draw) {
    _painter.save();
    _painter.setClipPath(path, Qt::IntersectClip);
    draw();
    _painter.restore();
}

QPainterPath GlyphCanvas::heart(double x, double y, double size) {
    const double s = size / 2;
    QPainterPath path(QPointF(x, y + s));
    path.cubicTo(x - 0.5 * s, y + 0.55 * s, x - 1.15 * s, y + 0.1 * s, x - 1.15 * s, y - 0.4 * s);
    path.cubicTo(x - 1.15 * s, y - 1.1 * s, x - 0.3 * s, y - 1.2 * s, x, y - 0.5 * s);
    path.cubicTo(x + 0.3 * s, y - 1.2 * s, x + 1.15 * s, y - 1.1 * s, x + 1.15 * s, y - 0.4 * s);
    path.cubicTo(x + 1.15 * s, y + 0.1 * s, x + 0.5 * s, y + 0.55 * s, x, y + s);
    return path;
}

QPainterPath GlyphCanvas::drop(double x, double y, double radius) {
    QPainterPath path(QPointF(x, y - 2.1 * radius));
    path.cubicTo(x + 0.35 * radius, y - 1.45 * radius, x + radius, y - 0.75 * radius, x + radius, y);
    path.arcTo(QRectF(x - radius, y - radius, 2 * radius, 2 * radius), 0, -180);
    path.cubicTo(x - radius, y - 0.75 * radius, x - 0.35 * radius, y - 1.45 * radius, x,
                 y - 2.1 * radius);
    return path;
}

QPainterPath GlyphCanvas::cloud(double x, double y, double width) {
    const double u = width / 10;
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.addRoundedRect(QRectF(x - 5 * u, y - 3 * u, 10 * u, 3 * u), 1.5 * u, 1.5 * u);
    path.addEllipse(QPointF(x - 2 * u, y - 3 * u), 2 * u, 2 * u);
    path.addEllipse(QPointF(x + 1.2 * u, y - 3.6 * u), 2.7 * u, 2.7 * u);
    return path.simplified();
}

QPainterPath GlyphCanvas::leaf(QPointF from, QPointF to, double bulge) {
    const QPointF middle = (from + to) / 2;
    const QPointF along = to - from;
    const QPointF across(-along.y() * bulge, along.x() * bulge);
    QPainterPath path(from);
    path.quadTo(middle + across, to);
    path.quadTo(middle - across, from);
    return path;
}

} // namespace tessellar::sample
