#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QtEndian>

#include <utility>

// Bytes of `.icns` files and of what they hold, written here so that the reader has someone to agree
// with.

namespace tessellar::test {

inline QByteArray bigEndian(quint32 value) {
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

inline QByteArray icnsEntry(const char* type, const QByteArray& data) {
    return QByteArray(type, 4) + bigEndian(static_cast<quint32>(data.size() + 8)) + data;
}

inline QByteArray icnsFile(const QByteArray& entries) {
    return "icns" + bigEndian(static_cast<quint32>(entries.size() + 8)) + entries;
}

inline QByteArray png(QSize size, QColor color) {
    QImage image(size, QImage::Format_ARGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "png");
    return bytes;
}
inline QByteArray png(int side, QColor color) { return png(QSize(side, side), color); }
inline QColor middle(const QImage& image) {
    return image.pixelColor(image.width() / 2, image.height() / 2);
}

/// A plane of one value, in runs of at most 130.
inline QByteArray repeated(int count, char value) {
    QByteArray bytes;
    while (count >= 3) {
        const int run = std::min(count, 130);
        bytes += static_cast<char>(run + 125);
        bytes += value;
        count -= run;
    }
    if (count > 0)
        bytes += static_cast<char>(count - 1) + QByteArray(count, value);
    return bytes;
}

/// A plane of single bytes, copied in pieces of 128.
inline QByteArray copied(const QByteArray& plane) {
    QByteArray bytes;
    for (qsizetype at = 0; at < plane.size(); at += 128) {
        const QByteArray piece = plane.mid(at, 128);
        bytes += static_cast<char>(piece.size() - 1) + piece;
    }
    return bytes;
}

} // namespace tessellar::test
