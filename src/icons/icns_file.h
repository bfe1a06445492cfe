#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>

#include <cstdint>
#include <expected>

namespace tessellar {

/// The directory of an `.icns` file, and its images one by one.
///
/// Our own rather than Qt's reader of the format: that one returns the first image instead of the best,
/// knows neither ARGB nor JPEG 2000 entries, and rejects a whole file for one wrong length. PNG and
/// JPEG 2000 data are handed to Qt's decoders once their own headers have told a bearable size.
///
/// A plain value; any thread may use it.
class IcnsFile {
public:
    /// Images with a longer side are refused before they are decoded.
    static constexpr int maximumSide = 1024;
    /// Entries after these are not looked at; real files have about twenty.
    static constexpr qsizetype maximumEntries = 256;

    enum class Error { notIcns };
    enum class Form { png, jpeg2000, argb, runLengthRgb };

    struct Entry {
        std::uint32_t type = 0; ///< four characters, the first in the highest byte
        Form form = Form::png;
        int side = 0; ///< pixels, as the type or the image's own header says
        QByteArrayView data;
        QByteArrayView mask; ///< of run-length RGB: one byte a pixel, or empty for opaque
    };

    /// Reads the directory. The length in the file's header is not held against it, and an entry with
    /// an impossible length ends the reading: what came before it counts. Bytes that do not begin as
    /// such a file does are `notIcns`; a file without images is one with no entries.
    static std::expected<IcnsFile, Error> parse(const QByteArray& bytes);
    /// True when the length that the header declares is the length of the bytes.
    static bool hasExactLength(const QByteArray& bytes);

    /// The images that this machine can be expected to decode, in the order of the file. Their views
    /// point into the file's bytes, which this value keeps.
    const QList<Entry>& entries() const { return _entries; }
    /// Null for data that cannot be decoded.
    static QImage decode(const Entry& entry);

    /// The image for a wanted number of pixels a side: the smallest that is large enough, else the
    /// largest; one that cannot be decoded is passed over for the next best. Not scaled. Null when no
    /// entry can be decoded.
    QImage image(int wantedSide) const;

private:
    QByteArray _bytes;
    QList<Entry> _entries;
};

/// Decodes a PNG, as every icon from outside is decoded: null for one with a side above
/// `IcnsFile::maximumSide`, as its header tells before anything is allocated for it.
QImage decodeBoundedPng(QByteArrayView data);

} // namespace tessellar
