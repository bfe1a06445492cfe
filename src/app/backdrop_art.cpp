#include "app/backdrop_art.h"

#include <QBuffer>
#include <QImageReader>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace tessellar {

QImage backdropArt(QSize size) {
    struct Glow {
        float x, y, radius; ///< relative to the width and height
        float red, green, blue;
    };
    constexpr std::array glows{
        Glow{0.12f, 0.05f, 0.55f, 34, 52, 112}, Glow{0.88f, 0.18f, 0.50f, 74, 32, 98},
        Glow{0.72f, 0.95f, 0.60f, 12, 70, 96},  Glow{0.20f, 0.98f, 0.45f, 46, 22, 74},
        Glow{0.50f, 0.45f, 0.40f, 14, 20, 46},
    };
    if (size.isEmpty())
        return {};

    // The light is smooth: it is computed on a coarse grid and interpolated.
    constexpr int step = 16;
    const auto columns = static_cast<std::size_t>(size.width()) / step + 2;
    const auto rows = static_cast<std::size_t>(size.height()) / step + 2;
    const auto width = static_cast<float>(size.width());
    const auto height = static_cast<float>(size.height());
    using Light = std::array<float, 3>;
    std::vector<Light> lights(columns * rows);
    for (std::size_t row = 0; row < rows; ++row) {
        for (std::size_t column = 0; column < columns; ++column) {
            Light& light = lights[row * columns + column];
            light = {13, 15, 27};
            for (const Glow& glow : glows) {
                const float x = (static_cast<float>(column * step) / width - glow.x) / glow.radius;
                const float y = (static_cast<float>(row * step) / height - glow.y) / glow.radius;
                const float strength = std::exp(-2.2f * (x * x + y * y));
                light[0] += strength * glow.red;
                light[1] += strength * glow.green;
                light[2] += strength * glow.blue;
            }
        }
    }

    QImage image(size, QImage::Format_RGB32);
    std::uint32_t noise = 0x9e3779b9;
    for (int y = 0; y < size.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        const float down = static_cast<float>(y % step) / step;
        const Light* above = &lights[static_cast<std::size_t>(y / step) * columns];
        const Light* below = above + columns;
        for (int left = 0; left < size.width(); left += step, ++above, ++below) {
            Light light;
            Light change;
            for (std::size_t c = 0; c < 3; ++c) {
                light[c] = above[0][c] + (below[0][c] - above[0][c]) * down;
                change[c] = (above[1][c] + (below[1][c] - above[1][c]) * down - light[c]) / step;
            }
            for (int x = left; x < std::min(left + step, size.width()); ++x) {
                noise = noise * 1664525u + 1013904223u;
                const float dither = static_cast<float>(noise >> 8) / static_cast<float>(1u << 24);
                line[x] = qRgb(static_cast<int>(light[0] + dither), static_cast<int>(light[1] + dither),
                               static_cast<int>(light[2] + dither));
                for (std::size_t c = 0; c < 3; ++c)
                    light[c] += change[c];
            }
        }
    }
    return image;
}

// ---- the user's picture

namespace {

constexpr int blurredSide = 320;
constexpr int blurRadius = 9;

/// One pass of a box blur over lines of `count` pixels, `stride` apart; the outermost pixels are
/// repeated.
void blurLines(QImage& image, int lines, int lineStride, int count, int stride) {
    auto* pixels = reinterpret_cast<QRgb*>(image.bits());
    std::vector<QRgb> line(static_cast<std::size_t>(count));
    const auto at = [&](int i) { return line[static_cast<std::size_t>(std::clamp(i, 0, count - 1))]; };
    for (int n = 0; n < lines; ++n) {
        QRgb* start = pixels + qsizetype(n) * lineStride;
        for (int i = 0; i < count; ++i)
            line[static_cast<std::size_t>(i)] = start[qsizetype(i) * stride];
        std::array<int, 3> sum{};
        const auto add = [&](QRgb pixel, int sign) {
            sum[0] += sign * qRed(pixel);
            sum[1] += sign * qGreen(pixel);
            sum[2] += sign * qBlue(pixel);
        };
        for (int i = -blurRadius; i <= blurRadius; ++i)
            add(at(i), 1);
        constexpr int width = 2 * blurRadius + 1;
        for (int i = 0; i < count; ++i) {
            start[qsizetype(i) * stride] = qRgb(sum[0] / width, sum[1] / width, sum[2] / width);
            add(at(i + blurRadius + 1), 1);
            add(at(i - blurRadius), -1);
        }
    }
}

float linear(int channel) {
    const float value = static_cast<float>(channel) / 255;
    return value <= 0.04045f ? value / 12.92f : std::pow((value + 0.055f) / 1.055f, 2.4f);
}

int encoded(float light) {
    const float value =
        light <= 0.0031308f ? light * 12.92f : 1.055f * std::pow(light, 1 / 2.4f) - 0.055f;
    return std::clamp(static_cast<int>(std::lround(value * 255)), 0, 255);
}

/// Compresses the luminance: bright pixels are darkened more than dark ones, none exceeds `limit`.
void limitLuminance(QImage& image, float limit) {
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const float red = linear(qRed(line[x]));
            const float green = linear(qGreen(line[x]));
            const float blue = linear(qBlue(line[x]));
            const float light = 0.2126f * red + 0.7152f * green + 0.0722f * blue;
            const float factor = 1 / (1 + light * (1 / limit - 1));
            line[x] = qRgb(encoded(red * factor), encoded(green * factor), encoded(blue * factor));
        }
    }
}

} // namespace

QImage blurredPicture(const QByteArray& encoded) {
    constexpr qint64 maximumPixels = 400'000'000;
    QBuffer buffer;
    buffer.setData(encoded);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (!size.isValid() || size.isEmpty() || qint64(size.width()) * size.height() > maximumPixels)
        return {};
    const QSize small = size.scaled(blurredSide, blurredSide, Qt::KeepAspectRatioByExpanding);
    // Reading an indexed picture at another size loses its palette.
    const QImage::Format format = reader.imageFormat();
    const bool isIndexed = format == QImage::Format_Indexed8 || format == QImage::Format_Mono ||
                           format == QImage::Format_MonoLSB;
    if (size.width() > 2 * small.width() && !isIndexed)
        reader.setScaledSize(2 * small);
    QImage picture = reader.read();
    if (picture.isNull())
        return {};
    picture = picture.convertToFormat(QImage::Format_RGB32)
                  .scaled(picture.size().scaled(blurredSide, blurredSide, Qt::KeepAspectRatio),
                          Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                  .convertToFormat(QImage::Format_RGB32);
    const int stride = static_cast<int>(picture.bytesPerLine() / qsizetype(sizeof(QRgb)));
    for (int pass = 0; pass < 3; ++pass) { // three box blurs approximate a Gaussian
        blurLines(picture, picture.height(), stride, picture.width(), 1);
        blurLines(picture, picture.width(), 1, picture.height(), stride);
    }
    return picture;
}

QImage pictureBackdrop(const QImage& blurred, QSize size, bool isDark) {
    // White on a luminance of 0.18 has a contrast of 4.5:1, but some texts are dimmer, and the search
    // field brightens what is behind it.
    constexpr float limit = 0.075f;
    constexpr float darkLimit = 0.05f;
    if (size.isEmpty() || blurred.isNull())
        return {};
    const QSize cut = size.scaled(blurred.size(), Qt::KeepAspectRatio).expandedTo({1, 1});
    QImage part = blurred.copy((blurred.width() - cut.width()) / 2,
                               (blurred.height() - cut.height()) / 2, cut.width(), cut.height());
    limitLuminance(part, isDark ? darkLimit : limit);
    return part.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

} // namespace tessellar
