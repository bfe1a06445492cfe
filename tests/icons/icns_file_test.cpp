#include "icons/icns_file.h"

#include "icns_bytes.h"

#include <gmock/gmock.h>

using namespace tessellar;
using namespace tessellar::test;

namespace {

QImage best(const QByteArray& bytes, int side) {
    const auto file = IcnsFile::parse(bytes);
    return file ? file->image(side) : QImage();
}

/// The colour of what is best among these entries.
QColor shown(const QByteArray& entries, int side) { return middle(best(icnsFile(entries), side)); }

QByteArray pngOfDeclaredSize(quint32 width, quint32 height) {
    QByteArray bytes = png(16, Qt::red);
    bytes.replace(16, 4, bigEndian(width));
    bytes.replace(20, 4, bigEndian(height));
    return bytes;
}

} // namespace

TEST(IcnsFile, takesTheSmallestImageThatIsLargeEnoughElseTheLargest) {
    const QByteArray entries = icnsEntry("TOC ", QByteArray(16, 'x')) +
                               icnsEntry("ic07", png(128, Qt::red)) +
                               icnsEntry("icp4", png(16, Qt::green)) + icnsEntry("info", "bplist00") +
                               icnsEntry("ic08", png(256, Qt::blue));
    for (const auto& [side, color] :
         {std::pair(10, Qt::green), {16, Qt::green}, {17, Qt::red}, {200, Qt::blue}, {900, Qt::blue}})
        EXPECT_EQ(shown(entries, side), QColor(color)) << side;
}

TEST(IcnsFile, passesOverImagesThatCannotBeDecoded) {
    const QByteArray damaged = png(128, Qt::red).first(60);
    const QByteArray blue = icnsEntry("ic08", png(256, Qt::blue));
    const QByteArray green = icnsEntry("icp4", png(16, Qt::green));
    EXPECT_EQ(shown(icnsEntry("ic07", damaged) + blue, 100), QColor(Qt::blue));
    EXPECT_EQ(shown(icnsEntry("ic08", damaged) + green, 100), QColor(Qt::green));
    EXPECT_TRUE(best(icnsFile(icnsEntry("ic07", damaged)), 100).isNull());
}

TEST(IcnsFile, readsArgb) {
    QByteArray reds;
    for (int i = 0; i < 256; ++i)
        reds += static_cast<char>(i);
    const QByteArray data = "ARGB" + repeated(256, '\x80') + copied(reds) + repeated(256, '\x07') +
                            copied(QByteArray(256, '\x09'));
    const QImage image = best(icnsFile(icnsEntry("ic04", data)), 16);
    ASSERT_EQ(image.size(), QSize(16, 16));
    EXPECT_EQ(image.pixelColor(0, 0), QColor(0, 7, 9, 128));
    EXPECT_EQ(image.pixelColor(15, 15), QColor(255, 7, 9, 128));
    EXPECT_EQ(image.pixelColor(3, 2), QColor(35, 7, 9, 128));
    EXPECT_TRUE(best(icnsFile(icnsEntry("ic04", data.chopped(1))), 16).isNull())
        << "a plane is not full";
}

TEST(IcnsFile, readsRunLengthRgbWithItsMaskAndWithout) {
    const int pixels = 128 * 128;
    const QByteArray planes =
        repeated(pixels, '\x11') + repeated(pixels, '\x22') + repeated(pixels, '\x33');
    QByteArray mask(pixels, '\x40');
    mask[0] = '\0';
    const QByteArray icon = icnsEntry("it32", QByteArray(4, '\0') + planes);
    const QImage masked = best(icnsFile(icon + icnsEntry("t8mk", mask)), 128);
    EXPECT_EQ(middle(masked), QColor(0x11, 0x22, 0x33, 0x40));
    EXPECT_EQ(masked.pixelColor(0, 0).alpha(), 0);
    EXPECT_EQ(shown(icon, 128), QColor(0x11, 0x22, 0x33));
    EXPECT_EQ(shown(icon + icnsEntry("t8mk", mask.chopped(1)), 128), QColor(0x11, 0x22, 0x33))
        << "a mask that is too short is none";
    const QByteArray small = repeated(256, 1) + repeated(256, 2) + repeated(256, 3);
    EXPECT_EQ(shown(icnsEntry("is32", small), 16), QColor(1, 2, 3));

    // Of the same size, the image with transparency of its own.
    EXPECT_EQ(shown(icon + icnsEntry("ic07", png(128, Qt::blue)), 128), QColor(Qt::blue));
}

TEST(IcnsFile, refusesSizesBeforeDecodingThem) {
    for (const auto& [width, height] : {std::pair(30'000u, 30'000u), std::pair(1025u, 16u),
                                        std::pair(0u, 16u), std::pair(16u, 0xffffffffu)}) {
        const auto file =
            IcnsFile::parse(icnsFile(icnsEntry("ic10", pngOfDeclaredSize(width, height))));
        ASSERT_TRUE(file);
        EXPECT_TRUE(file->entries().isEmpty()) << width << " x " << height;
    }
    EXPECT_EQ(best(icnsFile(icnsEntry("ic10", png(1024, Qt::red))), 1024).width(), 1024);
}

TEST(IcnsFile, readsWhatComesBeforeAnImpossibleLength) {
    const QByteArray good = icnsEntry("ic07", png(128, Qt::red));
    for (const quint32 length : {0u, 7u, 10'000u, 0xffffffffu}) {
        const auto file =
            IcnsFile::parse(icnsFile(good + "ic08" + bigEndian(length) + png(256, Qt::blue)));
        ASSERT_TRUE(file);
        EXPECT_EQ(file->entries().size(), 1) << length;
    }
    QByteArray wrongTotal = icnsFile(good);
    wrongTotal.replace(4, 4, bigEndian(5));
    EXPECT_EQ(best(wrongTotal, 128).width(), 128);
    EXPECT_FALSE(IcnsFile::hasExactLength(wrongTotal));
    EXPECT_TRUE(IcnsFile::hasExactLength(icnsFile(good)));
    EXPECT_FALSE(IcnsFile::parse("icns\0\0\0"));
    EXPECT_FALSE(IcnsFile::parse("ICNS" + icnsFile(good).mid(4)));
}
