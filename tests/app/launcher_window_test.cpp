#include "launcher_fixture.h"

#include "icns_bytes.h"
#include "launcher/launcher_history.h"
#include "launcher/launcher_icons.h"

namespace tessellar::test {
namespace {

/// The window shows what there is, launches it, and turns its pages.
class LauncherWindowTest : public LauncherFixture {
protected:
    int page() { return viewModel().shown().navigation().currentPage(); }
};

TEST_F(LauncherWindowTest, ACustomIconAppearsOnTilesAndInThePreviewsOfFolders) {
    const QColor own(10, 200, 30);
    const QColor mine(250, 10, 20);
    install({u"Ash"_s, u"Beech"_s, u"Cedar"_s}, icnsFile(icnsEntry("ic07", png(128, own))));
    store({{app(u"Ash"_s), folder(u"Wood"_s, {{app(u"Beech"_s), app(u"Cedar"_s)}})}});
    mac.write(u"/in/mine.icns"_s, icnsFile(icnsEntry("ic07", png(128, mine))));
    start();
    const auto count = [&](const QString& label, QColor colour) {
        const QQuickItem* item = tile(label);
        const QImage picture = window->photograph().copy(
            item->mapRectToScene(QRectF(0, 0, item->width(), item->height())).toAlignedRect());
        int found = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                found += picture.pixelColor(x, y) == colour;
        return found;
    };
    ASSERT_GT(count(u"Ash"_s, own), 100);
    const QImage photograph = window->photograph();
    QSet<QRgb> colours;
    for (int x = 0; x < photograph.width(); x += 7)
        colours.insert(photograph.pixel(x, at(u"Ash"_s).y()));
    EXPECT_GT(colours.size(), 20) << "a backdrop and tiles, not one plain area";
    viewModel().icons().set(u"org.example.ash"_s, u"/in/mine.icns"_s);
    viewModel().icons().set(u"org.example.beech"_s, u"/in/mine.icns"_s);
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return count(u"Ash"_s, mine) > 100 && count(u"Wood"_s, mine) > 20; }));
    EXPECT_GT(count(u"Wood"_s, own), 20) << "the other one has its own still";
    viewModel().icons().remove(u"org.example.ash"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return count(u"Ash"_s, own) > 100; }));
}

TEST_F(LauncherWindowTest, WheelSwipeDotsAndKeysTurnPages) {
    install(manyNames(130));
    start();
    wheel({0, -120});
    EXPECT_EQ(page(), 1);
    wheel({120, 0});
    EXPECT_EQ(page(), 0);
    wheel({0, 120});
    EXPECT_EQ(page(), 0) << "there is nothing before the first";
    ASSERT_TRUE(rests());

    swipe(-700);
    EXPECT_EQ(page(), 1);
    ASSERT_TRUE(rests());
    EXPECT_TRUE(tile(u"A41"_s));
    EXPECT_TRUE(view().isVisible()) << "a swipe is no click";
    clickAt({640 + 33, 800 - 28 - 12}); // the last of four dots, 22 pixels apart
    EXPECT_EQ(page(), 3);
    ASSERT_TRUE(rests());
    press(Qt::Key_Home);
    EXPECT_EQ(page(), 0);
    press(Qt::Key_End);
    EXPECT_EQ(page(), 3);
    press(Qt::Key_PageUp);
    EXPECT_EQ(page(), 2);

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
    const QStringList names = manyNames(20);
    install(names + QStringList{u"Oak"_s});
    Page inside{folder(u"Inner"_s, {{app(u"A01"_s), app(u"A02"_s)}})};
    Page outside;
    for (const QString& name : names.mid(2))
        outside.append(app(name));
    store({{folder(u"Trees"_s, {inside, outside}), app(u"Oak"_s)}});
    start();
    OpenFolder& open = *launcher().folder();

    openFolder(u"Trees"_s);
    EXPECT_EQ(open.title(), u"Trees");
    EXPECT_EQ(open.tiles()->pageCount(), 3);
    wheel({0, -120});
    EXPECT_EQ(open.tiles()->page(), 1);
    EXPECT_EQ(page(), 0);
    press(Qt::Key_Right);
    EXPECT_EQ(selectedLabel(), u"A03");
    wheel({0, 120});
    ASSERT_TRUE(rests());

    openFolder(u"Inner"_s);
    EXPECT_EQ(open.title(), u"Inner");
    press(Qt::Key_Right);
    EXPECT_EQ(selectedLabel(), u"A01");
    press(Qt::Key_Escape);
    EXPECT_EQ(open.title(), u"Trees");
    EXPECT_EQ(selectedLabel(), u"Inner") << "what lies in it is left behind";
    ASSERT_TRUE(rests());
    clickAt({20, 400}); // beside the panel
    EXPECT_FALSE(open.isOpen());
    EXPECT_EQ(selectedLabel(), u"Trees");
    ASSERT_TRUE(rests());

    QSignalSpy closed(window.get(), &LauncherWindow::closed);
    press(Qt::Key_Escape);
    EXPECT_EQ(closed.count(), 1);
    window->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&view())) << "it can be shown again";
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
    mac.time.advance(4s);
    EXPECT_EQ(launcher().notice(), QString());
}

TEST_F(LauncherWindowTest, AnAlertStandsBeforeEverythingAndADamagedLayoutIsResetOrLeft) {
    install({u"Ash"_s});
    mac.write(mac.machine.places.applicationFolder() + u"/layout.json"_s, "{ no layout");
    start();
    ASSERT_TRUE(launcher().alert()->isOpen());
    press(Qt::Key_Return);
    EXPECT_FALSE(launcher().alert()->isOpen());
    EXPECT_FALSE(viewModel().history().guard(mode())) << "left as it is";
    lift(at(u"Ash"_s), {900, 600});
    EXPECT_FALSE(launcher().drag()->isActive());
    release({900, 600});
    EXPECT_FALSE(launcher().notice().isEmpty()) << "and it is said why";

    window.reset();
    start();
    EXPECT_FALSE(launcher().alert()->text().isEmpty());
    press(Qt::Key_Right);
    EXPECT_EQ(selectedLabel(), QString());
    click(u"Ash"_s);
    EXPECT_EQ(opened(), QStringList());
    clickNamed(u"acceptButton"_s);
    EXPECT_TRUE(viewModel().history().guard(mode()));
    EXPECT_EQ(shownTiles(), u"Ash");
}

TEST_F(LauncherWindowTest, ClosingLosesNoEditThatCannotBeSavedUnlessTheUserSaysSo) {
    install({u"Ash"_s});
    for (int i = 0; i < 64; ++i) // every name that a save may take for a while
        mac.makeFolder(mac.machine.places.applicationFolder() + u"/.tessellar-save-%1"_s.arg(i));
    start();
    answer(false); // neither mode's first load could be saved
    answer(false);
    window->endWhenClosed();
    const QSignalSpy ended(window.get(), &LauncherWindow::ended);
    window->close();
    EXPECT_EQ(ended.count(), 1) << "nothing was edited";

    window->show();
    ASSERT_TRUE(
        editor().rename(mode(), viewModel().shown().tileOf(u"org.example.ash"_s)->id, u"Oak"_s));
    const AlertPanel& alert = *launcher().alert();
    const auto isAlerted = [&] { return alert.accept() == u"Try Again"; };
    for (const bool isLost : {false, true}) {
        window->close();
        EXPECT_EQ(ended.count(), 1);
        EXPECT_TRUE(view().isVisible());
        ASSERT_TRUE(QTest::qWaitFor(isAlerted));
        answer(false);
        ASSERT_EQ(alert.accept(), u"Quit");
        answer(isLost);
    }
    EXPECT_EQ(ended.count(), 2);

    // The same if the system asks; nothing is asked once it could be saved.
    EXPECT_FALSE(view().close());
    ASSERT_TRUE(QTest::qWaitFor(isAlerted));
    for (int i = 0; i < 64; ++i)
        mac.remove(mac.machine.places.applicationFolder() + u"/.tessellar-save-%1"_s.arg(i));
    answer(true);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !alert.isOpen(); }));
    EXPECT_EQ(ended.count(), 2);
    EXPECT_TRUE(view().close());
    ASSERT_TRUE(QTest::qWaitFor([&] { return ended.count() == 3; }));
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
    EXPECT_TRUE(opens(u"A35"_s));
}

TEST_F(LauncherWindowTest, AWindowStaysWhenAGapIsClickedAndIsWhereItWas) {
    install(manyNames(12));
    start({1280, 800}, LauncherWindowMode::windowed);
    clickAt({view().width() / 2, view().height() - 8});
    clickAt(at(u"A01"_s, {0, -58}));
    EXPECT_TRUE(view().isVisible());
    view().setGeometry(30, 40, 700, 500);
    window->hide();
    window.reset();
    mac.settle(); // what it remembers is on its way
    start({1280, 800}, LauncherWindowMode::windowed);
    EXPECT_EQ(view().geometry(), QRect(30, 40, 700, 500));
    EXPECT_EQ(mac.machine.settings.text(u"window.mode"_s), std::nullopt);
    // Also when it is closed by the end of the program.
    view().setGeometry(50, 60, 720, 540);
    view().close();
    window.reset();
    mac.settle();
    start({1280, 800}, LauncherWindowMode::windowed);
    EXPECT_EQ(view().geometry(), QRect(50, 60, 720, 540));
    viewModel().layouts().show(LauncherWindowMode::fullScreen);
    mac.settle();
    EXPECT_EQ(mac.machine.settings.text(u"window.mode"_s), u"fullScreen"_s);
}

TEST_F(LauncherWindowTest, AnApplicationThatIsInstalledAppearsByItself) {
    install({u"Ash"_s});
    mac.makeFolder(u"/Volumes"_s);
    start();
    const QQuickItem* before = tile(u"Ash"_s);
    install({u"Beech"_s});
    EXPECT_TRUE(QTest::qWaitFor([&] {
        mac.time.advance(100ms);
        return tile(u"Beech"_s) != nullptr;
    }));
    EXPECT_EQ(tile(u"Ash"_s), before) << "what did not change is not made again";
}

TEST_F(LauncherWindowTest, AnotherLanguageOfTheSystemIsFollowedWhereItWasNotFixed) {
    mac.machine.locale = Locale(u"is_IS"_s);
    install({u"Ash"_s});
    start();
    const auto afterAChange = [&] {
        QEvent change(QEvent::LocaleChange);
        QCoreApplication::sendEvent(QCoreApplication::instance(), &change);
        return mac.machine.locale.identifier();
    };
    EXPECT_EQ(afterAChange(), u"is_IS");
    window->followSystemLocale();
    EXPECT_EQ(afterAChange(), Locale::system().identifier());
}

} // namespace
} // namespace tessellar::test
