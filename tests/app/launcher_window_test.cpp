#include "launcher_fixture.h"

#include "icns_bytes.h"
#include "launcher/installed_applications.h"
#include "launcher/live_layout.h"

namespace tessellar::test {
namespace {

using namespace Qt::StringLiterals;

class LauncherWindowTest : public LauncherFixture {};

TEST_F(LauncherWindowTest, ShowsThePagesWithTheirIcons) {
    install(manyNames(50), icnsFile(icnsEntry("ic07", png(128, QColor(250, 10, 20)))));
    start();
    EXPECT_EQ(launcher().grid()->pageCount(), 2);
    ASSERT_TRUE(tile(u"A40"_s));
    EXPECT_FALSE(tile(u"A41"_s)) << "of the next page";

    const QImage photograph = window->photograph();
    ASSERT_EQ(photograph.size(), QSize(1280, 800));
    const QQuickItem* first = tile(u"A01"_s);
    EXPECT_EQ(photograph.pixelColor(middle(first) - QPoint(0, 20)), QColor(250, 10, 20));
    QSet<QRgb> colours;
    for (int x = 0; x < photograph.width(); x += 7)
        colours.insert(photograph.pixel(x, middle(first).y()));
    EXPECT_GT(colours.size(), 20) << "a backdrop and tiles, not one plain area";
}

TEST_F(LauncherWindowTest, AClickLaunchesAndTheWindowGoes) {
    install({u"Ash"_s, u"Beech"_s});
    start();
    QSignalSpy closed(window.get(), &LauncherWindow::closed);
    click(u"Beech"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return closed.count() == 1; }));
    EXPECT_EQ(opened(), QStringList{u"Beech.app"_s});
    EXPECT_FALSE(view().isVisible());
    window->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&view())) << "it can be shown again";
}

TEST_F(LauncherWindowTest, ArrowKeysWalkOverTilesAndPagesAndReturnLaunches) {
    install(manyNames(50));
    start();
    press(Qt::Key_Right);
    EXPECT_EQ(selectedLabel(), u"A01");
    press(Qt::Key_Right);
    press(Qt::Key_Down);
    EXPECT_EQ(selectedLabel(), u"A10");
    for (int i = 0; i < 7; ++i)
        press(Qt::Key_Right);
    EXPECT_EQ(viewModel().shown().currentPage(), 1);
    EXPECT_EQ(selectedLabel(), u"A49") << "the same row of the next page";
    ASSERT_TRUE(rests());
    press(Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !opened().isEmpty(); }));
    EXPECT_EQ(opened(), QStringList{u"A49.app"_s});
}

TEST_F(LauncherWindowTest, WheelSwipeDotsAndKeysTurnPages) {
    install(manyNames(130));
    start();
    wheel({0, -120});
    EXPECT_EQ(viewModel().shown().currentPage(), 1);
    wheel({120, 0});
    EXPECT_EQ(viewModel().shown().currentPage(), 0);
    wheel({0, 120});
    EXPECT_EQ(viewModel().shown().currentPage(), 0) << "there is nothing before the first";
    ASSERT_TRUE(rests());

    swipe(-700);
    EXPECT_EQ(viewModel().shown().currentPage(), 1);
    ASSERT_TRUE(rests());
    EXPECT_TRUE(tile(u"A41"_s));
    EXPECT_TRUE(view().isVisible()) << "a swipe is no click";
    swipe(700);
    EXPECT_EQ(viewModel().shown().currentPage(), 0);
    ASSERT_TRUE(rests());

    clickAt({640 + 33, 800 - 28 - 12}); // the last of four dots, 22 pixels apart
    EXPECT_EQ(viewModel().shown().currentPage(), 3);
    ASSERT_TRUE(rests());
    press(Qt::Key_Home);
    EXPECT_EQ(viewModel().shown().currentPage(), 0);
    press(Qt::Key_PageDown);
    EXPECT_EQ(viewModel().shown().currentPage(), 1);

    // What is found has other pages with every letter, and its dots are as many.
    GridModel& found = *launcher().search()->results();
    for (const QString& query : {u"a"_s, u"a1"_s}) {
        launcher().search()->setText(query);
        (void)window->photograph();
        ASSERT_GT(found.pageCount(), 1);
        clickAt({640 + 11 * (found.pageCount() - 1), 800 - 28 - 12});
        EXPECT_EQ(found.page(), found.pageCount() - 1);
        ASSERT_TRUE(rests());
    }
}

TEST_F(LauncherWindowTest, AFolderOpensOverTheGridWithPagesOfItsOwn) {
    QStringList names = manyNames(20);
    install(names + QStringList{u"Oak"_s});
    Page inside;
    for (const QString& name : names)
        inside.append(app(name));
    store({{folder(u"Trees"_s, {{folder(u"Inner"_s, {{app(u"A01"_s), app(u"A02"_s)}})}, inside.mid(2)}),
            app(u"Oak"_s)}});
    start();

    click(u"Trees"_s);
    EXPECT_TRUE(launcher().folder()->isOpen());
    EXPECT_EQ(launcher().folder()->title(), u"Trees");
    ASSERT_TRUE(rests());
    EXPECT_EQ(launcher().folder()->tiles()->pageCount(), 3);
    wheel({0, -120});
    EXPECT_EQ(launcher().folder()->tiles()->page(), 1);
    EXPECT_EQ(viewModel().shown().currentPage(), 0);
    press(Qt::Key_Right);
    EXPECT_EQ(selectedLabel(), u"A03");
    wheel({0, 120});
    ASSERT_TRUE(rests());

    click(u"Inner"_s);
    EXPECT_EQ(launcher().folder()->title(), u"Inner");
    ASSERT_TRUE(rests());
    press(Qt::Key_Right);
    EXPECT_EQ(selectedLabel(), u"A01");
    press(Qt::Key_Escape);
    EXPECT_EQ(launcher().folder()->title(), u"Trees");
    EXPECT_EQ(selectedLabel(), u"Inner") << "what lies in it is left behind";
    ASSERT_TRUE(rests());
    clickAt({20, 400}); // beside the panel
    EXPECT_FALSE(launcher().folder()->isOpen());
    EXPECT_EQ(selectedLabel(), u"Trees");
    ASSERT_TRUE(rests());

    QSignalSpy closed(window.get(), &LauncherWindow::closed);
    press(Qt::Key_Escape);
    EXPECT_EQ(closed.count(), 1);
}

TEST_F(LauncherWindowTest, AClickInAFolderLaunches) {
    install({u"Ash"_s, u"Beech"_s, u"Oak"_s});
    store({{folder(u"Trees"_s, {{app(u"Ash"_s), app(u"Beech"_s)}}), app(u"Oak"_s)}});
    start();
    click(u"Trees"_s);
    ASSERT_TRUE(rests());
    click(u"Beech"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !opened().isEmpty(); }));
    EXPECT_EQ(opened(), QStringList{u"Beech.app"_s});
}

TEST_F(LauncherWindowTest, AnUnavailableApplicationSaysSo) {
    (void)mac.settings.set(u"appDiscovery.additionalSearchPaths"_s, QJsonArray{u"/Volumes/Work"_s});
    install({u"Ash"_s});
    AppEntry away = app(u"Away"_s);
    away.path = u"/Volumes/Work/Away.app"_s;
    store({{app(u"Ash"_s), away}});
    start();
    ASSERT_TRUE(tile(u"Away"_s)) << "on a volume that is not there";
    EXPECT_TRUE(tile(u"Away"_s)->property("isUnavailable").toBool());
    EXPECT_FALSE(tile(u"Ash"_s)->property("isUnavailable").toBool());
    click(u"Away"_s);
    EXPECT_EQ(launcher().notice(), LiveLayout::unavailableNotice());
    EXPECT_EQ(opened(), QStringList());
    mac.time.advance(std::chrono::seconds(4));
    EXPECT_EQ(launcher().notice(), QString());
}

TEST_F(LauncherWindowTest, AnAlertStandsBeforeEverythingElse) {
    install({u"Ash"_s});
    mac.write(mac.machine.places.applicationFolder() + u"/layout.json"_s, "damaged");
    start();
    ASSERT_TRUE(launcher().alert()->isOpen());
    EXPECT_FALSE(launcher().alert()->text().isEmpty());
    press(Qt::Key_Right);
    EXPECT_EQ(selectedLabel(), QString());
    click(u"Ash"_s);
    EXPECT_EQ(opened(), QStringList());
    press(Qt::Key_Return);
    EXPECT_FALSE(launcher().alert()->isOpen());
}

TEST_F(LauncherWindowTest, TheOtherModeHasItsOwnGridAndSize) {
    install(manyNames(50));
    start({1280, 800});
    EXPECT_EQ(view().size(), QSize(1280, 800));
    viewModel().layouts().show(LauncherWindowMode::windowed);
    EXPECT_LT(view().width(), 1000);
    EXPECT_EQ(launcher().grid()->metrics().columns, 7);
    ASSERT_TRUE(QTest::qWaitFor([&] { return view().rootObject()->width() == view().width(); }));
    EXPECT_TRUE(tile(u"A35"_s));
    EXPECT_FALSE(tile(u"A36"_s));
    click(u"A35"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !opened().isEmpty(); }));
}

TEST_F(LauncherWindowTest, ANewApplicationAppearsOnThePageThatIsShown) {
    install({u"Ash"_s, u"Beech"_s});
    start();
    const QQuickItem* before = tile(u"Ash"_s);
    install({u"Cedar"_s});
    bool isDone = false;
    viewModel().applications().rescan([&] { isDone = true; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return isDone; }));
    EXPECT_TRUE(tile(u"Cedar"_s));
    EXPECT_EQ(tile(u"Ash"_s), before) << "what did not change is not made again";
}

} // namespace
} // namespace tessellar::test
