#include "sample/icon_artist.h"

#include "icons/icns_file.h"

#include <gmock/gmock.h>

namespace tessellar::sample {
namespace {

using testing::IsSupersetOf;

TEST(IcnsWriter, EntriesHoldTheDrawnIconInEverySizeAndCoding) {
    const IconDesign design{.glyph = "rocket", .backdrop = Backdrop::stars};
    QList<QImage> small; // of one size in all codings
    const auto sides = [&](const QByteArray& bytes) {
        EXPECT_TRUE(IcnsFile::hasExactLength(bytes));
        const IcnsFile file = IcnsFile::parse(bytes).value_or(IcnsFile());
        QList<int> result;
        for (const IcnsFile::Entry& entry : file.entries()) {
            const QImage image = IcnsFile::decode(entry).convertToFormat(QImage::Format_ARGB32);
            EXPECT_EQ(image.size(), QSize(entry.side, entry.side));
            EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0) << "corners are clear";
            EXPECT_EQ(qAlpha(image.pixel(entry.side / 2, entry.side / 4)), 255) << "the body is not";
            if (entry.side == 32)
                small.append(image);
            result.append(entry.side);
        }
        return result;
    };
    EXPECT_THAT(sides(icnsBytes(design)), IsSupersetOf({32, 32, 64, 128, 256, 512}));
    EXPECT_THAT(sides(icnsBytes(design, IcnsForm::runLength)), IsSupersetOf({32, 128}));
    ASSERT_EQ(small.size(), 3);
    for (const QImage& image : small)
        for (const QPoint point : {QPoint(16, 8), QPoint(9, 25)}) {
            const QColor drawn = small.first().pixelColor(point);
            EXPECT_NEAR(image.pixelColor(point).red(), drawn.red(), 2);
            EXPECT_NEAR(image.pixelColor(point).blue(), drawn.blue(), 2);
        }
}

} // namespace
} // namespace tessellar::sample
