#pragma once

#include <QByteArray>
#include <QImage>

namespace tessellar {

/// Turns the bytes of icon files into images. An interface, so that a machine's own decoder can stand
/// in for ours. Any thread may use it.
class IconDecoder {
public:
    virtual ~IconDecoder() = default;
    /// How many images of an `.icns` file this decoder knows the form of.
    virtual qsizetype imageCount(const QByteArray& icns) const = 0;
    /// The image at an index, in the order of the file; null when it cannot be decoded.
    virtual QImage image(const QByteArray& icns, qsizetype index) const = 0;
    /// The best image for a wanted number of pixels a side, not scaled; null when there is none.
    virtual QImage bestImage(const QByteArray& icns, int wantedSide) const = 0;
};

/// Our own reader of the format, with Qt's decoders for the PNG and JPEG 2000 images in it.
class QtIconDecoder final : public IconDecoder {
public:
    qsizetype imageCount(const QByteArray& icns) const override;
    QImage image(const QByteArray& icns, qsizetype index) const override;
    QImage bestImage(const QByteArray& icns, int wantedSide) const override;
};

} // namespace tessellar
