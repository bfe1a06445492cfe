#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QString>

#include <functional>
#include <initializer_list>
#include <span>

namespace tessellar::sample {

/// Draws the picture on an icon's tile. The tile spans 0 to 100 in both directions; y grows downwards.
/// What is drawn goes to a layer of its own that casts a soft shadow; `lift` begins a further layer on
/// top. Plain colours are given a faint gradient, as if light fell from above.
class GlyphCanvas {
public:
    GlyphCanvas(QImage& target, const QRectF& tile, QColor ink, QColor accent);
    ~GlyphCanvas() { flatten(); }
    GlyphCanvas(const GlyphCanvas&) = delete;
    GlyphCanvas& operator=(const GlyphCanvas&) = delete;

    const QColor ink;    ///< what most of the picture is drawn in
    const QColor accent; ///< what stands out

    void disc(double x, double y, double radius, const QColor& colour);
    void oval(double x, double y, double radiusX, double radiusY, const QColor& colour);
    void ring(double x, double y, double radius, double width, const QColor& colour);
    void box(double x, double y, double width, double height, double radius, const QColor& colour);
    /// Corners are rounded by half of `round`.
    void shape(std::initializer_list<QPointF> corners, const QColor& colour, double round = 0);
    void line(std::initializer_list<QPointF> points, double width, const QColor& colour);
    /// Degrees, counter-clockwise from three o'clock; round ends.
    void arc(double x, double y, double radius, double width, double from, double span,
             const QColor& colour);
    void wedge(double x, double y, double radius, double from, double span, const QColor& colour);
    void star(double x, double y, double outer, double inner, int points, const QColor& colour,
              double round = 0, double turn = 0);
    void path(const QPainterPath& path, const QColor& colour);
    void stroke(const QPainterPath& path, double width, const QColor& colour);

    /// What `draw` draws is cut out of the layer.
    void cut(const std::function<void()>& draw);
    /// Turned about a point, clockwise.
    void turned(double degrees, double x, double y, const std::function<void()>& draw);
    void mirrored(const std::function<void()>& draw); ///< left and right of the middle
    void clipped(const QPainterPath& path, const std::function<void()>& draw);

    void lift();

    static QPainterPath heart(double x, double y, double size);
    static QPainterPath drop(double x, double y, double radius); ///< y of the round part's middle
    static QPainterPath cloud(double x, double y, double width); ///< of the middle of its foot
    static QPainterPath leaf(QPointF from, QPointF to, double bulge);

private:
    void begin();
    void flatten();
    QBrush shaded(const QRectF& bounds, const QColor& colour) const;

    QImage& _target;
    QRectF _tile;
    QImage _layer;
    QPainter _painter;
};

struct Glyph {
    const char* name;
    void (*draw)(GlyphCanvas& canvas);
};

std::span<const Glyph> homeGlyphs();   ///< things of home and work
std::span<const Glyph> toolsGlyphs();  ///< things to make something with
std::span<const Glyph> natureGlyphs(); ///< sky, plants and animals
std::span<const Glyph> playGlyphs();   ///< travel, games and food
std::span<const Glyph> mediaGlyphs();  ///< words, maps, music, numbers and code
std::span<const Glyph> signsGlyphs();  ///< marks, instruments and letters

/// Blurs the alpha of a premultiplied image into a shadow of one colour.
QImage shadowOf(const QImage& image, double radius, const QColor& colour);

} // namespace tessellar::sample
