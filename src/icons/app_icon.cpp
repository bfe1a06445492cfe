#include "icons/app_icon.h"

#include "icons/icns_file.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace tessellar {

namespace {

/// Scaled smoothly to fit and centred, in the format that is painted without conversion.
QImage fitted(const QImage& image, int side) {
    if (image.isNull())
        return {};
    QImage scaled = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (scaled.width() != side || scaled.height() != side)
        scaled = scaled.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    if (scaled.size() == QSize(side, side))
        return scaled;
    QImage square(side, side, QImage::Format_ARGB32_Premultiplied);
    square.fill(Qt::transparent);
    QPainter(&square).drawImage((side - scaled.width()) / 2, (side - scaled.height()) / 2, scaled);
    return square;
}

QImage readIcns(const FileSystem& files, const IconDecoder& decoder, const QString& path, int side) {
    const auto bytes = files.read(path, maximumIconBytes);
    return bytes ? decoder.bestImage(*bytes, side) : QImage();
}

QPainterPath iconShape(const QRectF& body) {
    QPainterPath path;
    const double radius = body.width() * 0.225;
    path.addRoundedRect(body, radius, radius);
    return path;
}

QRectF iconBody(int side) {
    const double margin = side * 0.09;
    return QRectF(margin, margin, side - 2 * margin, side - 2 * margin);
}

/// Growing, fading outlines: cheaper than a blur and, at an icon's size, hard to tell from one.
void paintShadow(QPainter& painter, const QRectF& body) {
    const double unit = body.width() / 100;
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 12));
    for (int step = 0; step < 6; ++step) {
        const double grow = (step - 2) * unit;
        painter.drawPath(iconShape(body.translated(0, 2 * unit).adjusted(-grow, -grow, grow, grow)));
    }
}

} // namespace

QStringList wrappedIconPaths(const Bundle& bundle) {
    if (bundle.shape != BundleShape::wrapped)
        return {};
    QStringList names;
    const auto add = [&](const PropertyValue& list) {
        for (const PropertyValue& element :
             list.array().first(std::min<qsizetype>(8, list.array().size())))
            if (const auto name = element.text(); name && !name->isEmpty() && !name->contains(u'/'))
                names.append(*name);
    };
    for (const auto* key : {u"CFBundleIcons", u"CFBundleIcons~ipad"})
        add(bundle.info[QString::fromUtf16(key)][QStringLiteral("CFBundlePrimaryIcon")]
                       [QStringLiteral("CFBundleIconFiles")]);
    add(bundle.info[QStringLiteral("CFBundleIconFiles")]);

    // By convention, the files listed last are the largest.
    std::ranges::reverse(names);
    QStringList paths;
    for (QString name : std::as_const(names)) {
        if (name.endsWith(u".png", Qt::CaseInsensitive))
            name.chop(4);
        for (const auto* suffix : {u"@3x.png", u"@2x.png", u"@2x~ipad.png", u".png", u"~ipad.png"})
            paths.append(FileSystem::joined(bundle.resourcesPath, name + QString::fromUtf16(suffix)));
    }
    paths.removeDuplicates();
    return paths;
}

QImage loadAppIcon(const FileSystem& files, const IconDecoder& decoder, const QString& bundlePath,
                   const std::optional<QString>& customIconPath, int side) {
    if (customIconPath)
        if (const QImage custom = readIcns(files, decoder, *customIconPath, side); !custom.isNull())
            return fitted(custom, side);
    const Bundle bundle = readBundle(files, bundlePath);
    if (const auto path = bundle.iconPath())
        if (const QImage icon = readIcns(files, decoder, *path, side); !icon.isNull())
            return fitted(icon, side);
    for (const QString& path : wrappedIconPaths(bundle))
        if (const auto bytes = files.read(path, maximumIconBytes))
            if (const QImage icon = decodeBoundedPng(*bytes); !icon.isNull())
                return inIconShape(icon, side);
    return {};
}

QImage inIconShape(const QImage& square, int side) {
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    const QRectF body = iconBody(side);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    paintShadow(painter, body);
    QBrush brush(fitted(square, qRound(body.width())));
    brush.setTransform(QTransform::fromTranslate(qRound(body.x()), qRound(body.y())));
    painter.setBrush(brush);
    painter.drawPath(iconShape(body));
    return image;
}

QImage genericAppIcon(int side) {
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    const QRectF body = iconBody(side);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    paintShadow(painter, body);

    QLinearGradient paper(body.topLeft(), body.bottomLeft());
    paper.setColorAt(0, QColor(0xfb, 0xfc, 0xfd));
    paper.setColorAt(1, QColor(0xd3, 0xd8, 0xdf));
    painter.setBrush(paper);
    painter.drawPath(iconShape(body));

    // Four tiles, one of them turned: the placeholder for an unknown application.
    const double unit = body.width() / 100;
    const double tile = 23 * unit;
    painter.setBrush(QColor(0x9a, 0xa4, 0xb2));
    for (const QPointF centre :
         {QPointF(-16, -16), QPointF(16, -16), QPointF(-16, 16), QPointF(16, 16)}) {
        painter.save();
        painter.translate(body.center() + centre * unit);
        if (centre == QPointF(16, -16))
            painter.rotate(45);
        painter.drawRoundedRect(QRectF(-tile / 2, -tile / 2, tile, tile), 5 * unit, 5 * unit);
        painter.restore();
    }
    return image;
}

} // namespace tessellar
