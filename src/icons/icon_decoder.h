#pragma once

#include <QByteArray>
#include <QImage>

namespace tessellar {

/// Decodes icon files. An interface, so that a platform's own decoder can be substituted. Thread-safe.
class IconDecoder {
public:
    virtual ~IconDecoder() = default;
    /// The number of images in a supported form in an `.icns` file.
    virtual qsizetype imageCount(const QByteArray& icns) const = 0;
    /// The image at an index, in file order; null if it cannot be decoded.
    virtual QImage image(const QByteArray& icns, qsizetype index) const = 0;
    /// The best unscaled image for a size in pixels a side; null if there is none.
    virtual QImage bestImage(const QByteArray& icns, int wantedSide) const = 0;
};

/// Our parser, with Qt's decoders for PNG and JPEG 2000 images.
class QtIconDecoder final : public IconDecoder {
public:
    qsizetype imageCount(const QByteArray& icns) const override;
    QImage image(const QByteArray& icns, qsizetype index) const override;
    QImage bestImage(const QByteArray& icns, int wantedSide) const override;
};

} // namespace tessellar
