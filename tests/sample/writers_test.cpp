#include "sample/alias_writer.h"
#include "sample/icon_artist.h"

#include <QtEndian>

#include <gmock/gmock.h>

#include <map>

namespace tessellar::sample {
namespace {

using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;

quint32 wordAt(const QByteArray& bytes, qsizetype offset) {
    return qFromLittleEndian<quint32>(bytes.constData() + offset);
}

TEST(AliasWriter, ItsFirstTableNamesTheComponentsOfTheTarget) {
    const QByteArray bytes = aliasFileBytes(u"/Users/ada/Applications/Wörter Büro.app"_s);
    ASSERT_TRUE(bytes.startsWith(QByteArray("book\0\0\0\0mark", 12)));
    const quint32 body = wordAt(bytes, 0x10);
    ASSERT_EQ(body + wordAt(bytes, 0x18), quint32(bytes.size()));

    const quint32 table = body + wordAt(bytes, body);
    ASSERT_EQ(wordAt(bytes, table + 4), 0xfffffffe);
    EXPECT_EQ(wordAt(bytes, table), 12 + 12 * wordAt(bytes, table + 16));
    EXPECT_EQ(qsizetype(table + 8 + wordAt(bytes, table)), bytes.size());
    ASSERT_EQ(wordAt(bytes, table + 20), 0x1004u) << "entries are sorted by key, the path is the first";

    const quint32 path = body + wordAt(bytes, table + 24);
    ASSERT_EQ(wordAt(bytes, path + 4), 0x0601u);
    QByteArrayList components;
    for (quint32 i = 0; i < wordAt(bytes, path) / 4; ++i) {
        const quint32 item = body + wordAt(bytes, path + 8 + 4 * i);
        EXPECT_EQ(wordAt(bytes, item + 4), 0x0101u);
        components.append(bytes.mid(item + 8, wordAt(bytes, item)));
    }
    EXPECT_THAT(components, ElementsAre("Users", "ada", "Applications", "Wörter Büro.app"));
}

std::map<QByteArray, QByteArray> entriesOf(const QByteArray& icns) {
    std::map<QByteArray, QByteArray> entries;
    EXPECT_EQ(icns.first(4), "icns");
    EXPECT_EQ(qFromBigEndian<quint32>(icns.constData() + 4), quint32(icns.size()));
    qsizetype offset = 8;
    while (offset + 8 <= icns.size()) {
        const auto length = qFromBigEndian<quint32>(icns.constData() + offset + 4);
        entries[icns.mid(offset, 4)] = icns.mid(offset + 8, length - 8);
        offset += length;
    }
    EXPECT_EQ(offset, icns.size());
    return entries;
}

/// The run-length coding read back.
QByteArray unpacked(const QByteArray& bytes) {
    QByteArray result;
    for (qsizetype i = 0; i < bytes.size();) {
        const auto lead = uchar(bytes[i]);
        if (lead < 0x80) {
            result += bytes.mid(i + 1, lead + 1);
            i += lead + 2;
        } else {
            result += QByteArray(lead - 125, bytes[i + 1]);
            i += 2;
        }
    }
    return result;
}

TEST(IcnsWriter, EntriesHoldTheDrawnIconInEverySizeAndCoding) {
    const IconDesign design{.glyph = "rocket", .backdrop = Backdrop::stars};
    const auto modern = entriesOf(icnsBytes(design));
    for (const auto& [type, side] :
         {std::pair{"ic11", 32}, {"ic12", 64}, {"ic07", 128}, {"ic08", 256}, {"ic14", 512}}) {
        const QImage image = QImage::fromData(modern.at(type), "png");
        EXPECT_EQ(image.size(), QSize(side, side)) << type;
        EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0) << "corners are clear";
        EXPECT_EQ(qAlpha(image.pixel(side / 2, side / 4)), 255) << "the body is not";
    }
    ASSERT_TRUE(modern.at("ic05").startsWith("ARGB"));
    const QByteArray argb = unpacked(modern.at("ic05").sliced(4));
    ASSERT_EQ(argb.size(), 32 * 32 * 4);
    const QImage small =
        QImage::fromData(modern.at("ic11"), "png").convertToFormat(QImage::Format_ARGB32);
    for (const QPoint point : {QPoint(16, 8), QPoint(9, 25), QPoint(0, 0)}) {
        const qsizetype i = (point.y() * 32) + point.x();
        const QRgb pixel =
            qRgba(uchar(argb[i + 1024]), uchar(argb[i + 2048]), uchar(argb[i + 3072]), uchar(argb[i]));
        EXPECT_EQ(pixel, small.pixel(point));
    }

    const auto old = entriesOf(icnsBytes(design, IcnsForm::runLength));
    EXPECT_EQ(unpacked(old.at("il32")).size(), 32 * 32 * 3);
    EXPECT_EQ(old.at("l8mk").size(), 32 * 32);
    EXPECT_EQ(old.at("it32").first(4), QByteArray(4, '\0'));
    EXPECT_EQ(unpacked(old.at("it32").sliced(4)).size(), 128 * 128 * 3);
}

} // namespace
} // namespace tessellar::sample
