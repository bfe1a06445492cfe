// Draws the program's icon in the sizes that desktops and Macs ask for:
//     draw-icon ICON.svg DIRECTORY
// writes DIRECTORY/hicolor/SIZExSIZE/apps/NAME.png and DIRECTORY/NAME.icns.

#include "sample/icns_writer.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>
#include <utility>

namespace {

QImage drawn(QSvgRenderer& picture, int side) {
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    picture.render(&painter);
    return image;
}

QByteArray pngOf(const QImage& image) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QBuffer::WriteOnly);
    image.save(&buffer, "png");
    return bytes;
}

bool write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).path()) && file.open(QFile::WriteOnly) &&
           file.write(bytes) == bytes.size() && file.flush();
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("draw-icon ICON.svg DIRECTORY\n", stderr);
        return 2;
    }
    const QFileInfo source(QString::fromLocal8Bit(argv[1]));
    const QString folder = QString::fromLocal8Bit(argv[2]);
    const QString name = source.completeBaseName();
    QSvgRenderer picture(source.filePath());
    bool isDone = picture.isValid();
    for (const int side : {16, 22, 24, 32, 48, 64, 128, 256, 512})
        isDone = isDone &&
                 write(QStringLiteral("%1/hicolor/%2x%2/apps/%3.png").arg(folder).arg(side).arg(name),
                       pngOf(drawn(picture, side)));
    tessellar::sample::IcnsWriter icns;
    using Entry = std::pair<const char*, int>;
    for (const auto& [type, side] :
         {Entry{"ic11", 32}, Entry{"ic12", 64}, Entry{"ic07", 128}, Entry{"ic13", 256},
          Entry{"ic08", 256}, Entry{"ic14", 512}, Entry{"ic09", 512}, Entry{"ic10", 1024}})
        icns.add(type, pngOf(drawn(picture, side)));
    if (!isDone || !write(QStringLiteral("%1/%2.icns").arg(folder, name), icns.finish(true))) {
        std::fprintf(stderr, "draw-icon: %s could not be drawn to %s\n", argv[1], argv[2]);
        return 1;
    }
    return 0;
}
