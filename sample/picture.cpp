#include "sample/picture.h"

#include <QDir>
#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

#include <cmath>
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

/// The file, with the two colours that its first line declares as entities replaced.
QByteArray coloured(QByteArray svg, const QColor& ink, const QColor& accent) {
    const QByteArray declarations = "<!DOCTYPE svg [<!ENTITY ink \"" + ink.name().toLatin1() +
                                    "\"><!ENTITY accent \"" + accent.name().toLatin1() + "\">]>";
    return svg.replace(0, svg.indexOf('\n'), declarations);
}

/// As if light fell from above.
void shade(QPainter& painter, const QRectF& tile) {
    QLinearGradient light(0, tile.top() + (0.12 * tile.height()), 0,
                          tile.bottom() - (0.12 * tile.height()));
    light.setColorAt(0, QColor(255, 255, 255, 26));
    light.setColorAt(0.4, QColor(255, 255, 255, 0));
    light.setColorAt(0.45, QColor(0, 0, 0, 0));
    light.setColorAt(1, QColor(0, 0, 0, 26));
    painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
    painter.fillRect(tile, light);
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

bool drawPicture(QImage& target, const QRectF& tile, const QByteArray& name, const QColor& ink,
                 const QColor& accent) {
    QFile file(QStringLiteral(":/pictures/") + QString::fromLatin1(name) + QStringLiteral(".svg"));
    if (!file.open(QFile::ReadOnly))
        return false;
    QSvgRenderer picture(coloured(file.readAll(), ink, accent));
    const double unit = tile.width() / 100;
    QImage layer(target.size(), QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&target);
    for (int i = 1;; ++i) {
        const QString id = QStringLiteral("layer%1").arg(i);
        if (!picture.elementExists(id))
            return i > 1;
        layer.fill(Qt::transparent);
        QPainter drawing(&layer);
        drawing.setRenderHint(QPainter::Antialiasing);
        drawing.save();
        drawing.translate(tile.topLeft());
        drawing.scale(unit, unit);
        picture.render(&drawing, id, picture.boundsOnElement(id)); // where it lies in the file
        drawing.restore();
        shade(drawing, tile);
        drawing.end();
        // The shadow stays on the tile that it falls on.
        painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
        painter.drawImage(QPointF(0, 1.5 * unit), shadowOf(layer, 3.2 * unit, QColor(10, 14, 40, 105)));
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        painter.drawImage(0, 0, layer);
    }
}

QList<QByteArray> pictureNames() {
    QList<QByteArray> names;
    for (const QString& file : QDir(QStringLiteral(":/pictures")).entryList(QDir::Files, QDir::Name))
        names.append(file.chopped(4).toLatin1());
    return names;
}

} // namespace tessellar::sample
