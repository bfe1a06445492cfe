#include "icons/icon_loader.h"

#include "icons/app_icon.h"

#include "icns_bytes.h"
#include "sample/mac_builder.h"
#include "support/printers.h"
#include "support/test_machine.h"

#include <gmock/gmock.h>

namespace tessellar::test {
namespace {

using namespace Qt::StringLiterals;

QByteArray icon(QColor color, int side = 64) { return icnsFile(icnsEntry("ic12", png(side, color))); }

class IconLoaderTest : public testing::Test {
protected:
    IconRequest install(const QString& name, const QByteArray& icns) {
        return {name, builder.addApplication({.name = name, .icon = icns})};
    }
    void load(const QList<IconRequest>& visible, const QList<IconRequest>& neighbours = {},
              const QList<IconRequest>& rest = {}) {
        loader->request({visible, neighbours, oneByOne(rest)}, 32);
        mac.settle();
    }
    static std::function<std::optional<IconRequest>()> oneByOne(QList<IconRequest> requests) {
        return [requests]() mutable {
            return requests.isEmpty() ? std::nullopt : std::optional(requests.takeFirst());
        };
    }
    void makeLoader(qsizetype bytes) {
        loader.emplace(mac.files, mac.workers, std::make_shared<QtIconDecoder>(), bytes);
        loader->setReady([this](const QString& key) { ready.append(key); });
    }

    TestMachine mac{u"en_US"_s, 1};
    sample::MacBuilder builder{mac.root.path()};
    std::optional<IconLoader> loader;
    QStringList ready;
};

TEST_F(IconLoaderTest, DecodesAtTheSizeShownAndInTheOrderOfThePhases) {
    const IconRequest red = install(u"Red"_s, icon(Qt::red));
    const IconRequest blue = install(u"Blue"_s, icon(Qt::blue));
    const IconRequest green = install(u"Green"_s, icon(Qt::green));
    makeLoader(1 << 20);
    EXPECT_EQ(loader->icon(u"Red"_s), loader->genericIcon());
    load({red}, {blue}, {green});
    EXPECT_EQ(ready, (QStringList{u"Red"_s, u"Blue"_s, u"Green"_s}));
    EXPECT_EQ(loader->icon(u"Red"_s).size(), QSize(32, 32));
    EXPECT_EQ(middle(loader->icon(u"Green"_s)), QColor(Qt::green));
    EXPECT_TRUE(loader->isIdle());

    load({blue}, {red});
    EXPECT_EQ(ready.size(), 3) << "what is there is not decoded again";
    loader->request({{blue}, {}, {}}, 48);
    EXPECT_EQ(loader->icon(u"Blue"_s).width(), 32) << "until its successor has come";
    mac.settle();
    EXPECT_EQ(loader->icon(u"Blue"_s).width(), 48);
}

TEST_F(IconLoaderTest, MissingAndBrokenIconsAreTheGenericOne) {
    const IconRequest none = install(u"None"_s, {});
    const IconRequest broken = install(u"Broken"_s, "icns\0\0\0\x10garbage!");
    const IconRequest gone{u"Gone"_s, u"/Applications/Gone.app"_s};
    makeLoader(1 << 20);
    load({none, broken, gone});
    EXPECT_EQ(ready.size(), 3);
    for (const QString& key : {u"None"_s, u"Broken"_s, u"Gone"_s})
        EXPECT_EQ(loader->icon(key), loader->genericIcon()) << key.toStdString();
    load({none, broken, gone});
    EXPECT_EQ(ready.size(), 3) << "that there is none is remembered";
}

TEST_F(IconLoaderTest, StaysWithinItsBytes) {
    QList<IconRequest> requests;
    for (int i = 0; i < 12; ++i)
        requests.append(install(u"App%1"_s.arg(i), icon(Qt::red)));
    const qsizetype one = 32 * 32 * 4;
    makeLoader(5 * one);
    load(requests.mid(0, 2), requests.mid(2, 2), requests.mid(4));
    EXPECT_LE(loader->cachedBytes(), 5 * one);
    EXPECT_EQ(ready.size(), 5) << "the rest only while there is room";
    for (int i = 0; i < 4; ++i)
        EXPECT_TRUE(loader->isLoaded(requests[i].appKey)) << i;

    load(requests.mid(6, 3));
    EXPECT_LE(loader->cachedBytes(), 5 * one);
    for (int i = 6; i < 9; ++i)
        EXPECT_TRUE(loader->isLoaded(requests[i].appKey))
            << "the visible page pushes out what was before";
}

TEST_F(IconLoaderTest, WhatIsNoLongerWantedIsDropped) {
    QList<IconRequest> requests;
    for (int i = 0; i < 6; ++i)
        requests.append(install(u"App%1"_s.arg(i), icon(Qt::red)));
    makeLoader(1 << 20);
    loader->request({requests.mid(0, 3), {}, {}}, 32);
    loader->request({requests.mid(3, 3), {}, {}}, 32);
    mac.settle();
    EXPECT_EQ(ready, (QStringList{u"App3"_s, u"App4"_s, u"App5"_s}));
    loader->request({requests.mid(0, 3), {}, {}}, 32);
    loader->cancel();
    mac.settle();
    EXPECT_EQ(ready.size(), 3);
    EXPECT_TRUE(loader->hasVisible());
}

TEST_F(IconLoaderTest, ACustomIconComesFirstAndAtOnce) {
    const IconRequest red = install(u"Red"_s, icon(Qt::red));
    std::optional<QString> custom;
    makeLoader(1 << 20);
    loader->setCustomIcons([&](const QString& key) { return key == u"Red" ? custom : std::nullopt; });
    load({red});
    EXPECT_EQ(middle(loader->icon(u"Red"_s)), QColor(Qt::red));

    mac.write(u"/custom.icns"_s, icon(Qt::blue));
    custom = u"/custom.icns"_s;
    loader->reload(u"Red"_s);
    EXPECT_EQ(middle(loader->icon(u"Red"_s)), QColor(Qt::red)) << "until the new one has come";
    mac.settle();
    EXPECT_EQ(middle(loader->icon(u"Red"_s)), QColor(Qt::blue));

    mac.write(u"/custom.icns"_s, "damaged");
    loader->reload(u"Red"_s);
    mac.settle();
    EXPECT_EQ(middle(loader->icon(u"Red"_s)), QColor(Qt::red)) << "one that cannot be read is none";
}

TEST_F(IconLoaderTest, AWrappedApplicationHasTheIconThatItsPropertyListNames) {
    const QString path =
        builder.addApplication({.name = u"Pocket"_s,
                                .wrapped = sample::WrappedMetadata{.realName = u"PocketReal"_s},
                                .icon = png(120, Qt::green)});
    const QImage image = loadAppIcon(mac.files, QtIconDecoder(), path, std::nullopt, 64);
    EXPECT_EQ(middle(image), QColor(Qt::green));
    EXPECT_LT(image.pixelColor(1, 1).alpha(), 30) << "a plain square gets the shape of the others";
}

TEST(AppIcon, KeepsTheProportionsOfAnImageThatIsNotSquare) {
    QTemporaryDir folder;
    const FileSystem files(folder.path());
    const QByteArray wide = icnsEntry("ic07", png(QSize(128, 64), Qt::red));
    ASSERT_TRUE(files.writeAtomically(u"/wide.icns"_s, icnsFile(wide)));
    const QImage image = loadAppIcon(files, QtIconDecoder(), u"/None.app"_s, u"/wide.icns"_s, 64);
    ASSERT_EQ(image.size(), QSize(64, 64));
    EXPECT_EQ(middle(image), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(32, 2).alpha(), 0);
}

} // namespace
} // namespace tessellar::test
