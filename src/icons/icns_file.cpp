#include "icons/icns_file.h"

#include <QBuffer>
#include <QImageReader>
#include <QSize>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <optional>
#include <tuple>

namespace tessellar {

namespace {

constexpr std::uint32_t fourCharacters(const char (&text)[5]) {
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i)
        value = value << 8 | static_cast<unsigned char>(text[i]);
    return value;
}

/// The image types and their possible contents: under the newer types the system writes PNG, JPEG 2000
/// or ARGB, told apart by their first bytes.
struct ImageType {
    std::uint32_t type;
    int side;
    std::uint32_t mask = 0; ///< of run-length RGB
};
constexpr std::array imageTypes{
    ImageType{fourCharacters("icp4"), 16},
    ImageType{fourCharacters("icp5"), 32},
    ImageType{fourCharacters("icp6"), 64},
    ImageType{fourCharacters("ic04"), 16},
    ImageType{fourCharacters("ic05"), 32},
    ImageType{fourCharacters("ic07"), 128},
    ImageType{fourCharacters("ic08"), 256},
    ImageType{fourCharacters("ic09"), 512},
    ImageType{fourCharacters("ic10"), 1024},
    ImageType{fourCharacters("ic11"), 32},
    ImageType{fourCharacters("ic12"), 64},
    ImageType{fourCharacters("ic13"), 256},
    ImageType{fourCharacters("ic14"), 512},
    ImageType{fourCharacters("icsb"), 18},
    ImageType{fourCharacters("icsB"), 36},
    ImageType{fourCharacters("sb24"), 24},
    ImageType{fourCharacters("SB24"), 48},
    ImageType{fourCharacters("is32"), 16, fourCharacters("s8mk")},
    ImageType{fourCharacters("il32"), 32, fourCharacters("l8mk")},
    ImageType{fourCharacters("ih32"), 48, fourCharacters("h8mk")},
    ImageType{fourCharacters("it32"), 128, fourCharacters("t8mk")},
};

/// Gives up on a file after this many damaged images.
constexpr qsizetype maximumAttempts = 8;

constexpr QByteArrayView pngSignature("\x89PNG\r\n\x1a\n", 8);
constexpr QByteArrayView jpeg2000Box("\x00\x00\x00\x0CjP  ", 8);
constexpr QByteArrayView jpeg2000Stream("\xFF\x4F\xFF\x51", 4);
constexpr QByteArrayView argbSignature("ARGB", 4);

std::uint32_t bigEndian32(QByteArrayView data, qsizetype offset) {
    return qFromBigEndian<quint32>(data.data() + offset);
}

bool isBearable(std::uint32_t width, std::uint32_t height) {
    const auto fits = [](std::uint32_t side) { return side >= 1 && side <= IcnsFile::maximumSide; };
    return fits(width) && fits(height);
}

/// Reads the header of a PNG, which is its first chunk.
std::optional<QSize> pngSize(QByteArrayView data) {
    if (data.size() < 24 || !data.startsWith(pngSignature) || data.sliced(12, 4) != "IHDR" ||
        !isBearable(bigEndian32(data, 16), bigEndian32(data, 20)))
        return std::nullopt;
    return QSize(static_cast<int>(bigEndian32(data, 16)), static_cast<int>(bigEndian32(data, 20)));
}

/// Reads the header of the codestream, which is its second marker. The boxes around it do not matter:
/// the decoder allocates by the codestream.
std::optional<QSize> jpeg2000Size(QByteArrayView data) {
    const QByteArrayView header = data.first(std::min<qsizetype>(data.size(), 64 << 10));
    const qsizetype at = header.indexOf(jpeg2000Stream);
    if (at < 0 || header.size() - at < 24)
        return std::nullopt;
    const std::uint32_t right = bigEndian32(header, at + 8);
    const std::uint32_t bottom = bigEndian32(header, at + 12);
    const std::uint32_t left = bigEndian32(header, at + 16);
    const std::uint32_t top = bigEndian32(header, at + 20);
    if (left >= right || top >= bottom || !isBearable(right - left, bottom - top))
        return std::nullopt;
    return QSize(static_cast<int>(right - left), static_cast<int>(bottom - top));
}

bool decodesJpeg2000() {
    static const bool known = QImageReader::supportedImageFormats().contains("jp2");
    return known;
}

QImage read(QByteArrayView data, const char* format) {
    QByteArray bytes = QByteArray::fromRawData(data.data(), data.size());
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer, format);
    reader.setDecideFormatFromContent(false);
    QImage image = reader.read();
    if (image.width() > IcnsFile::maximumSide || image.height() > IcnsFile::maximumSide)
        return {};
    return image;
}

/// Unpacks consecutive planes: a byte n below 128 is followed by n + 1 literal bytes, any other repeats
/// the byte after it. False if the data ends early.
bool unpackPlanes(QByteArrayView data, QByteArray& planes) {
    const auto* in = reinterpret_cast<const uchar*>(data.data());
    const uchar* const end = in + data.size();
    char* out = planes.data();
    char* const full = out + planes.size();
    while (out < full) {
        if (end - in < 2)
            return false;
        const bool repeats = *in >= 0x80;
        const qsizetype wanted = repeats ? *in - 125 : *in + 1;
        ++in;
        if (!repeats && end - in < wanted)
            return false;
        const qsizetype count = std::min<qsizetype>(wanted, full - out); // the last run may be too long
        if (repeats)
            std::fill_n(out, count, static_cast<char>(*in));
        else
            std::copy_n(reinterpret_cast<const char*>(in), count, out);
        in += repeats ? 1 : wanted;
        out += count;
    }
    return true;
}

/// Combines planes; `alpha` is null for an opaque image.
QImage fromPlanes(int side, const char* alpha, const char* red, const char* green, const char* blue) {
    QImage image(side, side, QImage::Format_ARGB32);
    for (int y = 0, i = 0; y < side; ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < side; ++x, ++i) {
            const auto at = [i](const char* plane) { return static_cast<uchar>(plane[i]); };
            line[x] = qRgba(at(red), at(green), at(blue), alpha ? at(alpha) : 255);
        }
    }
    return image;
}

QImage decodeArgb(const IcnsFile::Entry& entry) {
    const qsizetype plane = static_cast<qsizetype>(entry.side) * entry.side;
    QByteArray planes(4 * plane, Qt::Uninitialized);
    if (!unpackPlanes(entry.data.sliced(argbSignature.size()), planes))
        return {};
    const char* first = planes.constData();
    return fromPlanes(entry.side, first, first + plane, first + 2 * plane, first + 3 * plane);
}

QImage decodeRunLengthRgb(const IcnsFile::Entry& entry) {
    const qsizetype plane = static_cast<qsizetype>(entry.side) * entry.side;
    QByteArrayView data = entry.data;
    if (entry.type == fourCharacters("it32")) { // begins with four zero bytes
        if (data.size() < 4)
            return {};
        data = data.sliced(4);
    }
    QByteArray planes(3 * plane, Qt::Uninitialized);
    if (!unpackPlanes(data, planes))
        return {};
    const char* first = planes.constData();
    return fromPlanes(entry.side, entry.mask.isEmpty() ? nullptr : entry.mask.data(), first,
                      first + plane, first + 2 * plane);
}

/// Parses an image entry; nullopt if it is not an image, or too large.
std::optional<IcnsFile::Entry> imageEntry(const ImageType& type, QByteArrayView data) {
    IcnsFile::Entry entry{.type = type.type, .side = type.side, .data = data};
    std::optional<QSize> size;
    if (type.mask != 0) {
        entry.form = IcnsFile::Form::runLengthRgb;
        return entry;
    }
    if (data.startsWith(argbSignature)) {
        entry.form = IcnsFile::Form::argb;
        return entry;
    }
    if (data.startsWith(pngSignature)) {
        entry.form = IcnsFile::Form::png;
        size = pngSize(data);
    } else if ((data.startsWith(jpeg2000Box) || data.startsWith(jpeg2000Stream)) && decodesJpeg2000()) {
        entry.form = IcnsFile::Form::jpeg2000;
        size = jpeg2000Size(data);
    }
    if (!size)
        return std::nullopt;
    entry.side = std::max(size->width(), size->height());
    return entry;
}

} // namespace

bool IcnsFile::hasExactLength(const QByteArray& bytes) {
    return bytes.size() >= 8 && bytes.startsWith("icns") &&
           static_cast<qsizetype>(bigEndian32(bytes, 4)) == bytes.size();
}

std::expected<IcnsFile, IcnsFile::Error> IcnsFile::parse(const QByteArray& bytes) {
    if (bytes.size() < 8 || !bytes.startsWith("icns"))
        return std::unexpected(Error::notIcns);
    IcnsFile file;
    file._bytes = bytes;
    const QByteArrayView view(file._bytes);

    struct Raw {
        std::uint32_t type;
        QByteArrayView data;
    };
    QList<Raw> raw;
    for (qsizetype at = 8; view.size() - at >= 8 && raw.size() < maximumEntries;) {
        const std::uint32_t length = bigEndian32(view, at + 4);
        if (length < 8 || length > static_cast<std::uint64_t>(view.size() - at))
            break;
        raw.append({bigEndian32(view, at), view.sliced(at + 8, static_cast<qsizetype>(length) - 8)});
        at += length;
    }
    for (const Raw& candidate : std::as_const(raw)) {
        const auto type = std::ranges::find(imageTypes, candidate.type, &ImageType::type);
        if (type == imageTypes.end())
            continue;
        auto entry = imageEntry(*type, candidate.data);
        if (!entry)
            continue;
        if (type->mask != 0) {
            const auto mask =
                std::ranges::find_if(raw, [&](const Raw& other) { return other.type == type->mask; });
            if (mask != raw.end() && mask->data.size() >= qsizetype(entry->side) * entry->side)
                entry->mask = mask->data;
        }
        file._entries.append(*entry);
    }
    return file;
}

QImage IcnsFile::decode(const Entry& entry) {
    switch (entry.form) {
    case Form::png:
        return decodeBoundedPng(entry.data);
    case Form::jpeg2000:
        return read(entry.data, "jp2");
    case Form::argb:
        return decodeArgb(entry);
    case Form::runLengthRgb:
        return decodeRunLengthRgb(entry);
    }
    return {};
}

QImage IcnsFile::image(int wantedSide) const {
    QList<const Entry*> order;
    for (const Entry& entry : _entries)
        order.append(&entry);
    // Large enough ones first, in ascending order; then the others, in descending order. Of the same
    // size, those with an alpha channel come before run-length RGB, the fallback for older systems.
    const auto rank = [wantedSide](const Entry* entry) {
        const bool isTooSmall = entry->side < wantedSide;
        return std::tuple(isTooSmall, isTooSmall ? -entry->side : entry->side,
                          entry->form == Form::runLengthRgb);
    };
    std::ranges::stable_sort(order, {}, rank);
    order.resize(std::min<qsizetype>(order.size(), maximumAttempts));
    for (const Entry* entry : std::as_const(order))
        if (QImage image = decode(*entry); !image.isNull())
            return image;
    return {};
}

QImage decodeBoundedPng(QByteArrayView data) { return pngSize(data) ? read(data, "png") : QImage(); }

} // namespace tessellar
