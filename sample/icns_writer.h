#pragma once

#include <QByteArray>

namespace tessellar::sample {

/// The pixels of a square image: red, green, blue and alpha bytes, not premultiplied, row by row.
struct Pixels {
    int side = 0;
    QByteArray rgba;
};

/// Gathers the entries of an .icns file in the order in which they are to stand.
class IcnsWriter {
public:
    /// An entry of a four-letter type with bytes as they are: PNG, JPEG 2000 or anything else.
    void add(const char* type, const QByteArray& bytes);
    /// ic04, ic05: "ARGB", then the run-length coded planes.
    void addArgb(const char* type, const Pixels& pixels);
    /// is32, il32, ih32 and it32 (run-length coded colours) with their masks s8mk, l8mk, h8mk and t8mk.
    void addRgbWithMask(const char* colourType, const char* maskType, const Pixels& pixels);

    /// The file; with a table of contents as the Mac's own tool writes it, if wanted.
    QByteArray finish(bool withTableOfContents = false) const;

private:
    QByteArray _entries;
    QByteArray _table;
};

} // namespace tessellar::sample
