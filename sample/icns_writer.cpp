#include "sample/icns_writer.h"

#include <QtEndian>

#include <array>
#include <cstring>

namespace tessellar::sample {

namespace {

QByteArray length(qsizetype value) {
    std::array<char, 4> bytes{};
    qToBigEndian(quint32(value), bytes.data());
    return {bytes.data(), 4};
}

QByteArray plane(const Pixels& pixels, int channel) {
    QByteArray bytes;
    bytes.reserve(pixels.rgba.size() / 4);
    for (qsizetype i = channel; i < pixels.rgba.size(); i += 4)
        bytes += pixels.rgba[i];
    return bytes;
}

/// A byte below 128 announces that many bytes and one more; another repeats the next byte 3 to 130
/// times.
QByteArray packed(const QByteArray& bytes) {
    const auto runAt = [&bytes](qsizetype start) {
        qsizetype end = start + 1;
        while (end < bytes.size() && end - start < 130 && bytes[end] == bytes[start])
            ++end;
        return end - start;
    };
    QByteArray result;
    for (qsizetype i = 0; i < bytes.size();) {
        if (const qsizetype run = runAt(i); run >= 3) {
            result += char(run + 125);
            result += bytes[i];
            i += run;
            continue;
        }
        qsizetype end = i + 1;
        while (end < bytes.size() && end - i < 128 && runAt(end) < 3)
            ++end;
        result += char(end - i - 1);
        result += bytes.sliced(i, end - i);
        i = end;
    }
    return result;
}

} // namespace

void IcnsWriter::add(const char* type, const QByteArray& bytes) {
    const QByteArray head = QByteArray(type, 4) + length(bytes.size() + 8);
    _table += head;
    _entries += head + bytes;
}

void IcnsWriter::addArgb(const char* type, const Pixels& pixels) {
    add(type, "ARGB" + packed(plane(pixels, 3)) + packed(plane(pixels, 0)) + packed(plane(pixels, 1)) +
                  packed(plane(pixels, 2)));
}

void IcnsWriter::addRgbWithMask(const char* colourType, const char* maskType, const Pixels& pixels) {
    const QByteArray lead =
        std::strncmp(colourType, "it32", 4) == 0 ? QByteArray(4, '\0') : QByteArray();
    add(colourType,
        lead + packed(plane(pixels, 0)) + packed(plane(pixels, 1)) + packed(plane(pixels, 2)));
    add(maskType, plane(pixels, 3));
}

QByteArray IcnsWriter::finish(bool withTableOfContents) const {
    QByteArray body = _entries;
    if (withTableOfContents)
        body.prepend("TOC " + length(_table.size() + 8) + _table);
    return "icns" + length(body.size() + 8) + body;
}

} // namespace tessellar::sample
