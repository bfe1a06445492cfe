#include "app/backdrop.h"

#include "app/backdrop_art.h"
#include "support/test_machine.h"

#include <QBuffer>
#include <QLinearGradient>
#include <QPainter>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <cmath>
#include <span>

namespace tessellar::test {
namespace {

using namespace Qt::StringLiterals;

QByteArray png(const QImage& image) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "png");
    return buffer.data();
}

QByteArray png(const QBrush& brush) {
    QImage image(900, 600, QImage::Format_RGB32);
    QPainter(&image).fillRect(image.rect(), brush);
    return png(image);
}

double lightOf(QColor colour) {
    const auto linear = [](double value) {
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

/// White with an opacity, on a field of white with another one.
struct Words {
    double opacity = 0;
    double field = 0;
};
constexpr Words words[] = {{0xf5 / 255.0},
                           {0xb8 / 255.0},
                           {0xcc / 255.0, 0x1f / 255.0},
                           {0xf5 / 255.0, 0x2e / 255.0}}; // labels, faint ones, a hint, what is typed

double leastContrast(const QImage& backdrop, std::span<const Words> written = words) {
    const auto whitened = [](QColor colour, double opacity) {
        const auto over = [&](float channel) {
            return float(opacity + (1 - opacity) * double(channel));
        };
        return QColor::fromRgbF(over(colour.redF()), over(colour.greenF()), over(colour.blueF()));
    };
    double least = 21;
    for (int y = 0; y < backdrop.height(); y += 7)
        for (int x = 0; x < backdrop.width(); x += 7)
            for (const Words& each : written) {
                const QColor behind = whitened(backdrop.pixelColor(x, y), each.field);
                least = std::min(least, (lightOf(whitened(behind, each.opacity)) + 0.05) /
                                            (lightOf(behind) + 0.05));
            }
    return least;
}

TEST(BackdropArt, LabelsStandOutFromEveryPicture) {
    QLinearGradient sunrise(0, 0, 900, 600);
    sunrise.setColorAt(0, Qt::black);
    sunrise.setColorAt(0.5, Qt::yellow);
    sunrise.setColorAt(1, Qt::white);
    for (const QBrush& brush : {QBrush(Qt::white), QBrush(Qt::cyan), QBrush(sunrise)}) {
        const QImage blurred = blurredPicture(png(brush));
        for (const bool isDark : {false, true})
            for (const QSize size : {QSize(800, 500), QSize(300, 900)}) {
                const QImage backdrop = pictureBackdrop(blurred, size, isDark);
                EXPECT_EQ(backdrop.size(), size);
                EXPECT_GE(leastContrast(backdrop), isDark ? 5 : 4.5);
            }
    }
    const QImage own = backdropArt({800, 500});
    EXPECT_GE(leastContrast(own, std::span(words).first(2)), 4.5);
    EXPECT_GE(leastContrast(own.copy(200, 0, 400, 60)), 4.5) << "where the field is";
    EXPECT_TRUE(blurredPicture("no picture").isNull());

    QImage twoColours(1600, 1000, QImage::Format_Mono);
    twoColours.setColorTable({qRgb(200, 0, 0), qRgb(0, 0, 0)});
    twoColours.fill(0);
    const QColor red = blurredPicture(png(twoColours)).pixelColor(50, 50);
    EXPECT_GT(red.red(), 190);
    EXPECT_LT(red.blue(), 10);
}

TEST(BackdropTest, FollowsTheDesktopsPictureAndKeepsItBlurred) {
    TestMachine mac;
    const QString picture = u"/Users/ada/lake.png"_s;
    const QString kept = mac.machine.places.applicationFolder() + u"/Backdrop.png"_s;
    mac.write(u"/Users/ada/.config/plasma-org.kde.plasma.desktop-appletsrc"_s,
              "Image=/Users/ada/lake.png\n");
    const auto middle = [&](Backdrop& backdrop) {
        mac.settle();
        (void)backdrop.image({64, 40}, true);
        mac.settle();
        return backdrop.image({64, 40}, true).pixelColor(32, 20);
    };
    Backdrop backdrop(mac.machine);
    backdrop.prepare({64, 40});
    const QColor own = middle(backdrop);

    mac.write(picture, png(Qt::green));
    backdrop.reload();
    const QColor green = middle(backdrop);
    EXPECT_GT(green.green(), 2 * green.blue());
    EXPECT_TRUE(mac.exists(kept));

    // At the next start it is there before anybody has asked for the picture.
    Backdrop second(mac.machine);
    QColor first;
    QObject::connect(&second, &Backdrop::changed, &second, [&] {
        if (!first.isValid())
            first = second.image({64, 40}, true).pixelColor(32, 20);
    });
    second.prepare({64, 40});
    EXPECT_EQ(middle(second), green);
    EXPECT_EQ(first, green);

    mac.write(picture, png(Qt::red));
    second.reload();
    EXPECT_GT(middle(second).red(), 100);
    (void)mac.machine.settings.set(u"background"_s, u"own"_s);
    second.applySettings();
    EXPECT_EQ(middle(second), own);
    (void)mac.machine.settings.set(u"background"_s, QJsonValue());
    mac.write(picture, "no picture any more");
    second.applySettings();
    EXPECT_EQ(middle(second), own);
}

} // namespace
} // namespace tessellar::test
