#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>

#include <cstdint>
#include <expected>

namespace tessellar {

/// Parses an `.icns` file and decodes its images individually.
///
/// Used instead of Qt's reader, which returns the first image rather than the best, supports neither
/// ARGB nor JPEG 2000 entries, and rejects a whole file for one wrong length. PNG and JPEG 2000 data go
/// to Qt's decoders once their headers show an acceptable size.
///
/// A plain value; any thread may use a copy.
class IcnsFile {
public:
    /// Larger images are rejected before decoding.
    static constexpr int maximumSide = 1024;
    /// Further entries are ignored; real files have about twenty.
    static constexpr qsizetype maximumEntries = 256;

    enum class Error { notIcns };
    enum class Form { png, jpeg2000, argb, runLengthRgb };

    struct Entry {
        std::uint32_t type = 0; ///< four characters, the first in the most significant byte
        Form form = Form::png;
        int side = 0; ///< pixels, by the type or the image's own header
        QByteArrayView data;
        QByteArrayView mask; ///< for run-length RGB: one byte per pixel; empty if opaque
    };

    /// Reads the directory. Ignores the length in the file's header; stops at an entry with an
    /// impossible length, keeping those before it. `notIcns` if the header is wrong; without images,
    /// `entries` is empty.
    static std::expected<IcnsFile, Error> parse(const QByteArray& bytes);
    /// True if the header declares the actual length.
    static bool hasExactLength(const QByteArray& bytes);

    /// The images in a supported form, in file order. The views point into the bytes held by this
    /// value.
    const QList<Entry>& entries() const { return _entries; }
    /// Null if the data cannot be decoded.
    static QImage decode(const Entry& entry);

    /// The smallest image with at least `wantedSide` pixels a side, else the largest, unscaled; skips
    /// images that cannot be decoded. Null if none can.
    QImage image(int wantedSide) const;

private:
    QByteArray _bytes;
    QList<Entry> _entries;
};

/// Decodes an untrusted PNG; null if a side exceeds `IcnsFile::maximumSide`, checked in the header
/// before allocating.
QImage decodeBoundedPng(QByteArrayView data);

} // namespace tessellar
