#include "launcher_fixture.h"

#include "icns_bytes.h"
#include "launcher/launcher_icons.h"

namespace tessellar::test {
namespace {

using namespace Qt::StringLiterals;

class LibraryChangesTest : public LauncherFixture {};

TEST_F(LibraryChangesTest, ACustomIconAppearsOnTilesAndInThePreviewsOfFolders) {
    const QColor own(10, 200, 30);
    const QColor mine(250, 10, 20);
    install({u"Ash"_s, u"Beech"_s, u"Cedar"_s}, icnsFile(icnsEntry("ic07", png(128, own))));
    store({{app(u"Ash"_s), test::folder(u"Wood"_s, {{app(u"Beech"_s), app(u"Cedar"_s)}})}});
    mac.write(u"/in/mine.icns"_s, icnsFile(icnsEntry("ic07", png(128, mine))));
    start();
    const auto count = [&](const QString& label, QColor colour) {
        const QQuickItem* item = tile(label);
        const QRect area =
            item->mapRectToScene(QRectF(0, 0, item->width(), item->height())).toAlignedRect();
        const QImage picture = window->photograph().copy(area);
        int found = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                found += picture.pixelColor(x, y) == colour;
        return found;
    };
    ASSERT_GT(count(u"Ash"_s, own), 100);
    const int ofTwo = count(u"Wood"_s, own);
    ASSERT_GT(ofTwo, 20);

    viewModel().icons().set(u"org.example.ash"_s, u"/in/mine.icns"_s);
    viewModel().icons().set(u"org.example.beech"_s, u"/in/mine.icns"_s);
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return count(u"Ash"_s, mine) > 100 && count(u"Wood"_s, mine) == ofTwo / 2; }));
    EXPECT_EQ(count(u"Ash"_s, own), 0);
    EXPECT_EQ(count(u"Wood"_s, own), ofTwo / 2) << "the other one has its own still";
    viewModel().icons().remove(u"org.example.ash"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return count(u"Ash"_s, own) > 100; }));
}

TEST_F(LibraryChangesTest, AnApplicationThatIsInstalledAppearsByItself) {
    install({u"Ash"_s});
    mac.makeFolder(u"/Volumes"_s);
    start();
    install({u"Beech"_s});
    EXPECT_TRUE(QTest::qWaitFor([&] {
        mac.time.advance(std::chrono::milliseconds(100));
        return tile(u"Beech"_s) != nullptr;
    }));
}

TEST_F(LibraryChangesTest, AnotherLanguageOfTheSystemIsFollowedWhereItWasNotFixed) {
    const Locale before(u"is_IS"_s);
    const auto tellOfChange = [] {
        QEvent change(QEvent::LocaleChange);
        QCoreApplication::sendEvent(QCoreApplication::instance(), &change);
    };
    mac.machine.locale = before;
    install({u"Ash"_s});
    start();
    tellOfChange();
    EXPECT_EQ(mac.machine.locale.identifier(), before.identifier());
    window->followSystemLocale();
    tellOfChange();
    EXPECT_EQ(mac.machine.locale.identifier(), Locale::system().identifier());
}

} // namespace
} // namespace tessellar::test
