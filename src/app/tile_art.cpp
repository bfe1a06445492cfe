#include "app/tile_art.h"

#include "app/backdrop_art.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <vector>

namespace tessellar {

namespace {

QRectF plateBody(int side) {
    const double margin = side * 0.06;
    return QRectF(margin, margin, side - 2 * margin, side - 2 * margin);
}

QImage emptyArt(int side) {
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

void paintPlate(QPainter& painter, const QRectF& body, const QBrush& fill) {
    const double radius = body.width() * 0.235;
    painter.setPen(QPen(QColor(255, 255, 255, 46), std::max(1.0, body.width() / 110)));
    painter.setBrush(fill);
    painter.drawRoundedRect(body.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
}

QPainterPath starPath(QPointF centre, double outer, double inner, int points) {
    QPainterPath path;
    for (int i = 0; i < 2 * points; ++i) {
        const double radius = i % 2 == 0 ? outer : inner;
        const double angle = M_PI * i / points - M_PI / 2;
        const QPointF corner = centre + radius * QPointF(std::cos(angle), std::sin(angle));
        i == 0 ? path.moveTo(corner) : path.lineTo(corner);
    }
    path.closeSubpath();
    return path;
}

/// A four-pointed star with concave sides.
QPainterPath sparklePath(QPointF centre, double radius) {
    QPainterPath path(centre + QPointF(0, -radius));
    const std::array corners{QPointF(radius, 0), QPointF(0, radius), QPointF(-radius, 0),
                             QPointF(0, -radius)};
    for (const QPointF& corner : corners)
        path.quadTo(centre + (path.currentPosition() - centre) * 0.08 + corner * 0.08, centre + corner);
    return path;
}

// Symbols are drawn in a square from -50 to 50.

QPainterPath star() { return starPath({0, 3}, 50, 21, 5); }

QPainterPath heart() {
    QPainterPath path(QPointF(0, 44));
    path.cubicTo(-70, -4, -46, -52, -18, -42);
    path.cubicTo(-8, -39, -2, -30, 0, -24);
    path.cubicTo(2, -30, 8, -39, 18, -42);
    path.cubicTo(46, -52, 70, -4, 0, 44);
    return path;
}

QPainterPath folder() {
    QPainterPath path;
    path.addRoundedRect(QRectF(-48, -24, 96, 62), 10, 10);
    QPainterPath tab;
    tab.addRoundedRect(QRectF(-48, -38, 46, 30), 9, 9);
    return path.united(tab);
}

QPainterPath gamepad() {
    QPainterPath path;
    path.addRoundedRect(QRectF(-50, -26, 100, 56), 27, 27);
    QPainterPath holes;
    holes.addRect(QRectF(-34, -3, 24, 8));
    holes.addRect(QRectF(-26, -11, 8, 24));
    holes.addEllipse(QPointF(17, 7), 6, 6);
    holes.addEllipse(QPointF(31, -5), 6, 6);
    holes.setFillRule(Qt::WindingFill);
    return path.subtracted(holes);
}

QPainterPath gear() {
    QPainterPath path;
    path.addEllipse(QPointF(), 36, 36);
    for (int i = 0; i < 8; ++i) {
        QPainterPath tooth;
        tooth.addRoundedRect(QRectF(-8, -50, 16, 22), 4, 4);
        path = path.united(QTransform().rotate(45 * i).map(tooth));
    }
    QPainterPath hole;
    hole.addEllipse(QPointF(), 15, 15);
    return path.subtracted(hole);
}

QPainterPath briefcase() {
    QPainterPath path;
    path.addRoundedRect(QRectF(-48, -20, 96, 60), 10, 10);
    QPainterPath handle;
    handle.addRoundedRect(QRectF(-20, -38, 40, 34), 9, 9);
    QPainterPath inside;
    inside.addRect(QRectF(-11, -29, 22, 9));
    QPainterPath belt;
    belt.addRect(QRectF(-48, 6, 96, 5));
    return path.united(handle.subtracted(inside)).subtracted(belt);
}

QPainterPath musicNote() {
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.addEllipse(QPointF(-27, 34), 17, 13);
    path.addEllipse(QPointF(27, 24), 17, 13);
    path.addRect(QRectF(-18, -34, 8, 68));
    path.addRect(QRectF(36, -44, 8, 68));
    path.addPolygon(QPolygonF({{-18, -34}, {44, -48}, {44, -28}, {-18, -14}}));
    return path;
}

/// Cuts strokes along a path out of a shape.
QPainterPath engraved(const QPainterPath& shape, const QPainterPath& lines, double width) {
    QPainterPathStroker stroker;
    stroker.setWidth(width);
    stroker.setCapStyle(Qt::RoundCap);
    stroker.setJoinStyle(Qt::RoundJoin);
    return shape.subtracted(stroker.createStroke(lines));
}

QPainterPath disc() {
    QPainterPath path;
    path.addEllipse(QPointF(), 48, 48);
    return path;
}

QPainterPath clock() {
    QPainterPath hands(QPointF(0, -28));
    hands.lineTo(0, 2);
    hands.lineTo(20, 14);
    return engraved(disc(), hands, 9);
}

QPainterPath arrowDown() {
    QPainterPath arrow(QPointF(0, -24));
    arrow.lineTo(0, 22);
    arrow.moveTo(-20, 4);
    arrow.lineTo(0, 24);
    arrow.lineTo(20, 4);
    return engraved(disc(), arrow, 9);
}

QPainterPath fourSquares() {
    QPainterPath path;
    for (const QPointF corner : {QPointF(-46, -46), QPointF(4, -46), QPointF(-46, 4), QPointF(4, 4)})
        path.addRoundedRect(QRectF(corner, QSizeF(42, 42)), 9, 9);
    return path;
}

QPainterPath calendarPlus() {
    QPainterPath path;
    path.addRoundedRect(QRectF(-46, -40, 92, 84), 13, 13);
    QPainterPath rings(QPointF(-22, -48));
    rings.lineTo(-22, -32);
    rings.moveTo(22, -48);
    rings.lineTo(22, -32);
    QPainterPathStroker stroker;
    stroker.setWidth(9);
    stroker.setCapStyle(Qt::RoundCap);
    path = path.united(stroker.createStroke(rings));
    QPainterPath days;
    days.addRoundedRect(QRectF(-36, -16, 72, 50), 5, 5);
    path = path.subtracted(days);
    QPainterPath marks;
    for (int row = 0; row < 2; ++row)
        for (int column = 0; column < 3; ++column)
            if (row + column < 3)
                marks.addRoundedRect(QRectF(-27 + column * 21, -7 + row * 20, 12, 12), 3, 3);
    path = path.united(marks);
    // The badge, with a gap around it.
    QPainterPath gap;
    gap.addEllipse(QPointF(30, 32), 29, 29);
    QPainterPath badge;
    badge.addEllipse(QPointF(30, 32), 23, 23);
    QPainterPath plus(QPointF(30, 20));
    plus.lineTo(30, 44);
    plus.moveTo(18, 32);
    plus.lineTo(42, 32);
    return path.subtracted(gap).united(engraved(badge, plus, 6));
}

QPainterPath apple() {
    QPainterPath path(QPointF(0, -20));
    path.cubicTo(12, -32, 42, -30, 43, 4);
    path.cubicTo(43, 28, 26, 50, 13, 49);
    path.cubicTo(7, 49, 5, 46, 0, 46);
    path.cubicTo(-5, 46, -7, 49, -13, 49);
    path.cubicTo(-26, 50, -43, 28, -43, 4);
    path.cubicTo(-42, -30, -12, -32, 0, -20);
    QPainterPath leaf(QPointF(2, -26));
    leaf.cubicTo(2, -42, 14, -50, 26, -50);
    leaf.cubicTo(27, -36, 16, -26, 2, -26);
    return path.united(leaf);
}

struct Symbol {
    const char16_t* name;
    QPainterPath (*path)();
};
constexpr std::array symbols{
    Symbol{u"star.fill", star},
    Symbol{u"heart.fill", heart},
    Symbol{u"folder.fill", folder},
    Symbol{u"gamecontroller.fill", gamepad},
    Symbol{u"gearshape.fill", gear},
    Symbol{u"briefcase.fill", briefcase},
    Symbol{u"music.note", musicNote},
    Symbol{u"clock.fill", clock},
    Symbol{u"calendar.badge.plus", calendarPlus},
    Symbol{u"square.grid.2x2.fill", fourSquares},
    Symbol{u"arrow.down.circle.fill", arrowDown},
    Symbol{u"apple.logo", apple},
};

/// nullopt for unknown names.
std::optional<QPainterPath> symbolPath(QStringView name) {
    for (const Symbol& symbol : symbols)
        if (isSameSymbol(name, symbol.name))
            return symbol.path();
    return std::nullopt;
}

void paintSymbol(QPainter& painter, const QPainterPath& path, int side) {
    painter.translate(side / 2.0, side / 2.0);
    painter.scale(side * 0.0046, side * 0.0046);
    painter.fillPath(path, QColor(255, 255, 255, 230));
}

/// Up to nine small icons, in three rows.
void paintContents(QPainter& painter, const QRectF& body, const QList<QImage>& contents) {
    constexpr qsizetype columns = 3;
    const double margin = body.width() * 0.075;
    const double pitch = (body.width() - 2 * margin) / columns;
    const int small = std::max(4, static_cast<int>(pitch * 0.98));
    for (qsizetype i = 0; i < std::min(columns * columns, contents.size()); ++i) {
        const double gap = (pitch - small) / 2;
        const auto column = static_cast<int>(i % columns);
        const auto row = static_cast<int>(i / columns);
        const QPoint corner(qRound(body.x() + margin + column * pitch + gap),
                            qRound(body.y() + margin + row * pitch + gap));
        painter.drawImage(
            corner, contents[i].scaled(small, small, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    }
}

template <typename Paint>
QImage onPlate(int side, const QBrush& fill, const Paint& paint) {
    QImage image = emptyArt(side);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    paintPlate(painter, plateBody(side), fill);
    paint(painter);
    return image;
}

} // namespace

bool isSameSymbol(QStringView a, QStringView b) {
    for (QStringView* name : {&a, &b})
        if (name->endsWith(u".fill"))
            name->chop(5);
    return a == b;
}

QStringList drawnSymbols() {
    QStringList names;
    for (const Symbol& symbol : symbols)
        names.append(QString::fromUtf16(symbol.name));
    return names;
}

QImage folderArt(const QList<QImage>& contents, int side) {
    const QRectF body = plateBody(side);
    QLinearGradient glass(body.topLeft(), body.bottomLeft());
    glass.setColorAt(0, QColor(255, 255, 255, 62));
    glass.setColorAt(1, QColor(255, 255, 255, 36));
    return onPlate(side, glass, [&](QPainter& painter) { paintContents(painter, body, contents); });
}

QImage symbolFolderArt(const QString& symbolName, int side) {
    const auto symbol = symbolPath(symbolName);
    if (!symbol)
        return {};
    QImage image = folderArt({}, side);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    paintSymbol(painter, *symbol, side);
    return image;
}

QImage smartFolderArt(const QList<QImage>& contents, const QString& symbolName, int side) {
    const QRectF body = plateBody(side);
    QLinearGradient dusk(body.topLeft(), body.bottomRight());
    dusk.setColorAt(0, QColor(126, 108, 255, 190));
    dusk.setColorAt(1, QColor(56, 168, 232, 170));
    return onPlate(side, dusk, [&](QPainter& painter) {
        if (const auto symbol = symbolPath(symbolName))
            return paintSymbol(painter, *symbol, side);
        if (!contents.isEmpty())
            return paintContents(painter, body, contents);
        const auto at = [&](double x, double y) {
            return body.topLeft() + QPointF(x, y) * body.width();
        };
        const QColor white(255, 255, 255, 238);
        painter.fillPath(sparklePath(at(0.43, 0.55), body.width() * 0.29), white);
        painter.fillPath(sparklePath(at(0.74, 0.29), body.width() * 0.14), white);
        painter.fillPath(sparklePath(at(0.75, 0.75), body.width() * 0.09), white);
    });
}

QImage pageArt(const QList<QImage>& tiles, int rows, int columns, QSize size, bool isMirrored) {
    QImage page(size, QImage::Format_ARGB32_Premultiplied);
    page.fill(Qt::transparent);
    QPainter painter(&page);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.setPen(Qt::NoPen);
    painter.setBrush(backdropArt(size));
    painter.drawRoundedRect(page.rect(), size.height() / 10.0, size.height() / 10.0);
    const QRectF area = QRectF(page.rect())
                            .adjusted(0.06 * size.width(), 0.08 * size.height(), -0.06 * size.width(),
                                      -0.08 * size.height());
    const QSizeF cell(area.width() / columns, area.height() / rows);
    const int side = static_cast<int>(0.76 * std::min(cell.width(), cell.height()));
    for (qsizetype slot = 0; side > 0 && slot < tiles.size(); ++slot) {
        const qsizetype column = isMirrored ? columns - 1 - slot % columns : slot % columns;
        const QPointF middle = area.topLeft() + QPointF((column + 0.5) * cell.width(),
                                                        (slot / columns + 0.5) * cell.height());
        painter.drawImage(
            middle - QPointF(side, side) / 2,
            tiles[slot].scaled(side, side, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    }
    return page;
}

} // namespace tessellar
