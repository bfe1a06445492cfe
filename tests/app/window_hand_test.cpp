#include "app/matched_letters.h"
#include "app/menu_model.h"
#include "app/pager_item.h"
#include "launcher/launcher_clipboard.h"
#include "launcher/launcher_editor.h"
#include "launcher/launcher_history.h"
#include "launcher/launcher_messages.h"
#include "launcher/layout_archive.h"
#include "launcher_fixture.h"

#include <QColor>
#include <QDir>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QRegularExpression>

#include <cmath>

namespace tessellar::test {
namespace {

using namespace Qt::StringLiterals;
using testing::UnorderedElementsAre;

/// What the hands do at the mouse and the keys, apart from dragging tiles.
class WindowHandTest : public LauncherFixture {
protected:
    void SetUp() override {
        install(manyNames(12));
        store({{app(u"A01"_s), app(u"A02"_s), app(u"A03"_s), app(u"A04"_s), app(u"A05"_s),
                app(u"A06"_s), app(u"A07"_s), app(u"A08"_s), app(u"A09"_s)},
               {app(u"A10"_s), folder(u"Both"_s, {{app(u"A11"_s), app(u"A12"_s)}})}});
    }
    void clickWith(Qt::KeyboardModifiers modifiers, const QString& label) {
        QTest::mouseClick(&view(), Qt::LeftButton, modifiers, middle(tile(label)));
    }
    QStringList selected() {
        QStringList labels;
        for (const QString& id : launcher().selectedIds())
            labels += launcher().tileView(id).value(u"label"_s).toString();
        return labels;
    }
};

TEST_F(WindowHandTest, RangesGrowAndShrinkAndNothingIsStarted) {
    start();
    clickWith(Qt::ShiftModifier, u"A03"_s);
    clickWith(Qt::ShiftModifier, u"A05"_s);
    EXPECT_THAT(selected(), UnorderedElementsAre(u"A03"_s, u"A04"_s, u"A05"_s));
    clickWith(Qt::ShiftModifier, u"A02"_s);
    EXPECT_THAT(selected(), UnorderedElementsAre(u"A02"_s, u"A03"_s)) << "from the same anchor";
    press(Qt::Key_Right, Qt::ShiftModifier);
    press(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_THAT(selected(), UnorderedElementsAre(u"A03"_s, u"A04"_s));
    press(Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_EQ(selected(), QStringList{u"A03"_s});
    clickWith(Qt::ControlModifier, u"A07"_s);
    clickWith(Qt::ControlModifier, u"A03"_s);
    EXPECT_EQ(selected(), QStringList{u"A07"_s});
    clickWith(Qt::ShiftModifier, u"A06"_s);
    EXPECT_THAT(selected(), UnorderedElementsAre(u"A06"_s, u"A07"_s));
    clickWith(Qt::AltModifier, u"A01"_s);
    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(selected().size(), 9);
    press(Qt::Key_PageDown);
    EXPECT_EQ(selected(), QStringList()) << "what is left behind is not selected";
    EXPECT_EQ(opened(), QStringList());
    EXPECT_TRUE(view().isVisible());
}

TEST_F(WindowHandTest, ABandSelectsAndWhatIsHiddenIsNotSelected) {
    start();
    const QPoint corner = middle(tile(u"A02"_s)) - QPoint(68, 60);
    drag(corner, middle(tile(u"A04"_s)) + QPoint(10, 10));
    EXPECT_THAT(selected(), UnorderedElementsAre(u"A02"_s, u"A03"_s, u"A04"_s));
    EXPECT_EQ(launcher().grid()->page(), 0);
    rightClick(u"A03"_s);
    choose(u"Hide"_s);
    EXPECT_EQ(selected(), QStringList());
    EXPECT_FALSE(tile(u"A04"_s));
}

TEST_F(WindowHandTest, CutTilesLookCutAndGoWhereThePageIsTurned) {
    start();
    clickWith(Qt::ControlModifier, u"A01"_s);
    press(Qt::Key_X, Qt::ControlModifier);
    EXPECT_TRUE(tile(u"A01"_s)->property("isCut").toBool());
    EXPECT_FALSE(tile(u"A02"_s)->property("isCut").toBool());
    press(Qt::Key_PageDown);
    ASSERT_TRUE(rests());
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(shownTiles(), u"A02 A03 A04 A05 A06 A07 A08 A09|A10 [Both: A11 A12] A01");
    EXPECT_FALSE(tile(u"A01"_s)->property("isCut").toBool()) << "it has been pasted";
    press(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(rests());
    EXPECT_FALSE(tile(u"A01"_s)->property("isCut").toBool());
    clickWith(Qt::ControlModifier, u"A01"_s);
    press(Qt::Key_X, Qt::ControlModifier);
    EXPECT_TRUE(tile(u"A01"_s)->property("isCut").toBool()) << "the same, cut anew";
}

TEST_F(WindowHandTest, APasteOntoAFullPageIsSeenWhereItWentAndUndone) {
    const QStringList names = manyNames(90);
    install(names);
    Pages pages(3);
    for (qsizetype i = 0; i < names.size(); ++i)
        pages[i / 40].append(app(names[i]));
    store(pages);
    start();
    clickWith(Qt::ControlModifier, u"A01"_s);
    press(Qt::Key_X, Qt::ControlModifier);
    press(Qt::Key_PageDown);
    ASSERT_TRUE(rests());
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(launcher().grid()->page(), 2);
    EXPECT_EQ(selected(), QStringList{u"A01"_s});
    EXPECT_TRUE(QTest::qWaitFor([&] { return tile(u"A01"_s); }));
    press(Qt::Key_Home); // the page that the undo changes goes in the same turn
    press(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(rests());
    EXPECT_TRUE(shownTiles().startsWith(u"A01 A02"_s));
}

TEST_F(WindowHandTest, KeysMoveAndGroup) {
    start();
    press(Qt::Key_Right);
    press(Qt::Key_Right, Qt::ControlModifier);
    EXPECT_TRUE(shownTiles().startsWith(u"A02 A01 A03")) << shownTiles().toStdString();
    press(Qt::Key_Left, Qt::ControlModifier);
    EXPECT_TRUE(shownTiles().startsWith(u"A01 A02 A03"));
    press(Qt::Key_Right, Qt::ShiftModifier);
    press(Qt::Key_Right, Qt::ControlModifier);
    EXPECT_TRUE(shownTiles().startsWith(u"A03 A01 A02 A04")) << shownTiles().toStdString();
    press(Qt::Key_Left, Qt::ControlModifier);
    press(Qt::Key_Left, Qt::ControlModifier);
    EXPECT_TRUE(shownTiles().startsWith(u"A01 A02 A03")) << "there is no page before";
    press(Qt::Key_Right, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(launcher().folder()->isOpen()) << "with its name to be typed over";
    type(u"Three"_s);
    press(Qt::Key_Return);
    EXPECT_TRUE(shownTiles().startsWith(u"[Three: A03 A01 A02]")) << shownTiles().toStdString();
    press(Qt::Key_Escape);
    ASSERT_TRUE(rests());
    clickWith(Qt::ControlModifier, u"A04"_s);
    clickWith(Qt::ControlModifier, u"A05"_s);
    press(Qt::Key_G, Qt::ControlModifier);
    EXPECT_FALSE(tile(u"A05"_s));
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(tile(u"A05"_s));
}

TEST_F(WindowHandTest, AClickBesideANameCommitsItAndDoesNothingElse) {
    start();
    for (const QPoint beside : {middle(tile(u"A02"_s)), QPoint(20, 400)}) {
        rightClick(u"A0%1"_s.arg(beside.x() == 20 ? 3 : 1));
        choose(u"Rename…"_s);
        type(u"Ash"_s);
        clickAt(beside);
        EXPECT_EQ(launcher().renaming()->tileId(), QString());
        EXPECT_EQ(opened(), QStringList());
        EXPECT_TRUE(view().isVisible());
    }
    EXPECT_TRUE(shownTiles().startsWith(u"Ash A02 Ash")) << shownTiles().toStdString();
}

TEST_F(WindowHandTest, AResultIsRenamedNumberedAndFoundInItsPlace) {
    start();
    type(u"a1"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return tile(u"A11"_s); }));
    EXPECT_EQ(tile(u"A11"_s)->property("place").toString(), u"Both");
    EXPECT_EQ(tile(u"A11"_s)->property("markedLabel").toString(), u"<b>A1</b>1");
    rightClick(u"A10"_s);
    choose(u"Rename…"_s);
    type(u"a1den"_s);
    press(Qt::Key_Return);
    EXPECT_EQ(launcher().search()->text(), u"a1");
    ASSERT_TRUE(QTest::qWaitFor([&] { return tile(u"a1den"_s); }));
    rightClick(u"A12"_s);
    choose(u"Show Where It Is"_s);
    EXPECT_FALSE(launcher().search()->isActive());
    EXPECT_EQ(launcher().folder()->title(), u"Both");
    EXPECT_EQ(launcher().grid()->page(), 1);
    EXPECT_EQ(selectedLabel(), u"A12");
    type(u"a"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return tile(u"A02"_s); }));
    press(Qt::Key_2, Qt::ControlModifier);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !opened().isEmpty(); }));
    EXPECT_EQ(opened(), QStringList{u"A02.app"_s});
}

TEST_F(WindowHandTest, ComposedTextIsSeenInTheSearchField) {
    const QFont before = QGuiApplication::font();
    QGuiApplication::setFont(QFont(u"Inter"_s));
    start();
    QQuickItem* field = nullptr;
    ASSERT_TRUE(QTest::qWaitFor([&] { return field = itemWith("objectName", u"searchInput"_s); }));
    EXPECT_EQ(field->opacity(), 0) << "no cursor without a search";
    EXPECT_EQ(field->property("font").value<QFont>().family(), u"Inter") << "as all text around it";
    QInputMethodEvent composing(u"あ"_s, {});
    QCoreApplication::sendEvent(field, &composing);
    EXPECT_EQ(field->opacity(), 1);
    QInputMethodEvent committed;
    committed.setCommitString(u"A05"_s);
    QCoreApplication::sendEvent(field, &committed);
    EXPECT_EQ(launcher().search()->text(), u"A05");
    QGuiApplication::setFont(before);
}

TEST_F(WindowHandTest, AnUndoSlidesTilesBackUnlessMotionIsReduced) {
    start();
    const auto shift = [&](const QString& label) { return tile(label)->property("shiftX").toReal(); };
    clickWith(Qt::ControlModifier, u"A01"_s);
    press(Qt::Key_Right, Qt::ControlModifier);
    EXPECT_LT(shift(u"A01"_s), -10) << "it begins where it was";
    EXPECT_GT(shift(u"A02"_s), 10);
    EXPECT_TRUE(QTest::qWaitFor([&] { return shift(u"A01"_s) == 0 && shift(u"A02"_s) == 0; }));
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_GT(shift(u"A01"_s), 10);
    EXPECT_TRUE(QTest::qWaitFor([&] { return shift(u"A01"_s) == 0; }));
    ASSERT_TRUE(mac.machine.settings.set(u"reducesMotion"_s, true));
    viewModel().applySettings();
    press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(shift(u"A01"_s), 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return tile(u"A01"_s)->opacity() < 1; })) << "it fades in";
    ASSERT_TRUE(mac.machine.settings.set(u"reducesMotion"_s, QJsonValue()));
    viewModel().applySettings();
}

TEST_F(WindowHandTest, APageFadesInWhereMotionIsReduced) {
    start();
    auto* pager = qobject_cast<PagerItem*>(tile(u"A01"_s)->parentItem());
    for (QQuickItem* item = tile(u"A01"_s); item && !pager; item = item->parentItem())
        pager = qobject_cast<PagerItem*>(item);
    ASSERT_TRUE(pager);
    press(Qt::Key_PageDown);
    EXPECT_TRUE(pager->isMoving());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !pager->isMoving(); }));
    ASSERT_TRUE(mac.machine.settings.set(u"reducesMotion"_s, true));
    viewModel().applySettings();
    press(Qt::Key_PageUp);
    EXPECT_EQ(pager->position(), 0) << "at once";
    ASSERT_TRUE(mac.machine.settings.set(u"reducesMotion"_s, QJsonValue()));
    viewModel().applySettings();
}

TEST_F(WindowHandTest, ScatteredHitsStandApartAndHiddenOnesSayIt) {
    install({u"Nine Oaks Wide"_s, u"Nowhere"_s, u"Unknown"_s});
    start();
    ASSERT_TRUE(viewModel().editor().hideApps(
        LauncherWindowMode::fullScreen,
        {*findTile(viewModel().shown().pages(), u"org.example.nowhere"_s)}));
    type(u"now"_s);
    const auto found = [&](const QString& label) {
        return QTest::qWaitFor([&] { return tile(label); }) ? tile(label) : nullptr;
    };
    ASSERT_TRUE(found(u"Nowhere"_s) && found(u"Nine Oaks Wide"_s) && found(u"Unknown"_s));
    EXPECT_EQ(tile(u"Nowhere"_s)->property("place").toString(), u"Hidden");
    EXPECT_FALSE(tile(u"Nowhere"_s)->property("isWeak").toBool());
    EXPECT_FALSE(tile(u"Unknown"_s)->property("isWeak").toBool());
    EXPECT_TRUE(tile(u"Nine Oaks Wide"_s)->property("isWeak").toBool());
    QQuickItem* divider = itemWith("objectName", u"matchDivider"_s);
    ASSERT_TRUE(divider && divider->isVisible());
    const QPointF before = tile(u"Nine Oaks Wide"_s)->mapToItem(divider, {});
    EXPECT_NEAR(before.x(), 1, 1) << "at its left";
}

TEST_F(WindowHandTest, AMenuIsUsedByKeysAlone) {
    start();
    press(Qt::Key_Right);
    press(Qt::Key_Menu);
    MenuModel& menu = *launcher().menu();
    ASSERT_TRUE(menu.isOpen());
    const auto current = [&] {
        return menu.entries().value(menu.current()).toMap()[u"title"_s].toString();
    };
    press(Qt::Key_End);
    const QString last = current();
    press(Qt::Key_Home);
    EXPECT_EQ(current(), u"Open");
    press(Qt::Key_Up);
    EXPECT_EQ(current(), last) << "round the end";
    type(u"hi"_s);
    EXPECT_EQ(current(), u"Hide");
    press(Qt::Key_Return);
    EXPECT_FALSE(menu.isOpen());
    EXPECT_FALSE(tile(u"A01"_s));
    type(u"a1"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return tile(u"A11"_s); }));
    press(Qt::Key_Right);
    press(Qt::Key_Menu);
    ASSERT_TRUE(menu.isOpen());
    const QPointF away = menu.position() - middle(tile(selected().value(0)));
    EXPECT_LT(away.manhattanLength(), 60) << "at the result that it is about";
}

TEST_F(WindowHandTest, AnUndoLeadsToThePageWhereSomethingReturned) {
    start();
    clickWith(Qt::ControlModifier, u"A09"_s);
    press(Qt::Key_Right, Qt::ControlModifier);
    ASSERT_EQ(launcher().grid()->page(), 1);
    press(Qt::Key_PageUp);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(launcher().grid()->page(), 0);
    EXPECT_TRUE(shownTiles().contains(u"A08 A09|"));
}

TEST_F(WindowHandTest, AWindowStaysWhenAGapIsClickedAndIsWhereItWas) {
    start({1280, 800}, LauncherWindowMode::windowed);
    clickAt({view().width() / 2, view().height() - 8});
    clickAt(middle(tile(u"A01"_s)) - QPoint(0, 58));
    EXPECT_TRUE(view().isVisible());
    view().setGeometry(30, 40, 700, 500);
    window->hide();
    window.reset();
    mac.settle();
    start({1280, 800}, LauncherWindowMode::windowed);
    EXPECT_EQ(view().geometry(), QRect(30, 40, 700, 500));
    EXPECT_EQ(mac.machine.settings.text(u"window.mode"_s), std::nullopt);
    viewModel().layouts().show(LauncherWindowMode::fullScreen);
    mac.settle();
    EXPECT_EQ(mac.machine.settings.text(u"window.mode"_s), u"fullScreen"_s);
}

TEST_F(WindowHandTest, ADamagedLayoutIsResetOrLeft) {
    const QString file = mac.machine.places.applicationFolder() + u"/layout.json"_s;
    mac.write(file, "{ no layout");
    start();
    ASSERT_TRUE(launcher().alert()->isOpen());
    press(Qt::Key_Return);
    EXPECT_FALSE(launcher().alert()->isOpen());
    EXPECT_FALSE(viewModel().history().guard(LauncherWindowMode::fullScreen)) << "left as it is";
    window.reset();
    start();
    clickNamed(u"acceptButton"_s);
    EXPECT_TRUE(viewModel().history().guard(LauncherWindowMode::fullScreen));
    EXPECT_TRUE(shownTiles().startsWith(u"A01 A02")) << shownTiles().toStdString();
}

TEST_F(WindowHandTest, EverySheetKeepsItsButtonsInTheSmallestWindow) {
    start({320, 240});
    for (const QString& sheet : {Sheets::keys, Sheets::backups, Sheets::updates, Sheets::pastRemovals,
                                 Sheets::settings, Sheets::icon}) {
        launcher().sheets()->open(sheet);
        QQuickItem* card = nullptr;
        ASSERT_TRUE(QTest::qWaitFor([&] { return card = itemWith("objectName", u"sheetCard"_s); }))
            << sheet.toStdString();
        const QRectF whole({}, QSizeF(view().size()));
        EXPECT_TRUE(whole.contains(card->mapRectToScene(card->boundingRect()))) << sheet.toStdString();
        QQuickItem* button = itemWith("isDefault", true);
        ASSERT_TRUE(button) << sheet.toStdString();
        EXPECT_TRUE(whole.contains(button->mapRectToScene(button->boundingRect())))
            << sheet.toStdString();
        if (button->isEnabled()) {
            press(Qt::Key_Return);
            EXPECT_EQ(launcher().sheets()->current(), QString()) << sheet.toStdString();
        }
        launcher().sheets()->close();
        ASSERT_TRUE(QTest::qWaitFor([&] { return !itemWith("objectName", u"sheetCard"_s); }));
    }
    press(Qt::Key_Question);
    EXPECT_EQ(launcher().sheets()->current(), Sheets::keys);
    press(Qt::Key_Escape);
    EXPECT_EQ(launcher().sheets()->current(), QString());
}

TEST_F(WindowHandTest, WhatComesAndGoesFitsTheSmallestWindow) {
    const QString name(240, u'W');
    install({name});
    start({320, 240});
    const auto isWithin = [&](QQuickItem* item) {
        return item &&
               QRectF({}, QSizeF(view().size())).contains(item->mapRectToScene(item->boundingRect()));
    };
    press(Qt::Key_End);
    ASSERT_TRUE(rests());
    QQuickItem* longest = nullptr;
    ASSERT_TRUE(QTest::qWaitFor([&] { return longest = tile(name); }));
    QTest::mouseMove(&view(), middle(longest));
    QQuickItem* tip = nullptr;
    ASSERT_TRUE(QTest::qWaitFor([&] { return tip = itemWith("objectName", u"tip"_s); }));
    EXPECT_TRUE(isWithin(tip));
    QTest::mouseClick(&view(), Qt::RightButton, {}, middle(longest));
    ASSERT_TRUE(QTest::qWaitFor([&] { return itemWith("objectName", u"menuPanel"_s); }));
    EXPECT_TRUE(isWithin(itemWith("objectName", u"menuPanel"_s)));
    press(Qt::Key_Escape);
    const QString sentence = name.left(60);
    viewModel().messages().showNotice(sentence);
    ASSERT_TRUE(QTest::qWaitFor([&] { return itemWith("shown", sentence); }));
    EXPECT_TRUE(isWithin(itemWith("shown", sentence)));
}

TEST(MatchedLetters, AreSetOffAsAWholeAtAWordOrOneByOne) {
    const Locale locale(u"en_US"_s);
    EXPECT_EQ(markedLabel(u"Local Notes"_s, u"no"_s, locale), u"Local <b>No</b>tes");
    EXPECT_EQ(markedLabel(u"Piano Note"_s, u"no"_s, locale), u"Piano <b>No</b>te") << "a word first";
    EXPECT_EQ(markedLabel(u"Café & <Bar>"_s, u"CAFE"_s, locale), u"<b>Café</b> &amp; &lt;Bar&gt;");
    EXPECT_EQ(markedLabel(u"Chart Lab"_s, u"ctl"_s, locale), u"<b>C</b>har<b>t</b> <b>L</b>ab");
    EXPECT_EQ(markedLabel(u"Straße"_s, u"strass"_s, locale), u"<b>Straß</b>e");
    EXPECT_EQ(markedLabel(u"Oak"_s, u"oaks"_s, locale), QString());
}

/// One place has the colours, sizes, radii and times; the rest of QML has them from there.
TEST(Theme, IsTheOnlyPlaceWithLiterals) {
    const QRegularExpression literal(
        uR"re("#[0-9a-fA-F]{3,8}"|"(white|black|transparent)"|pixelSize: *\d|radius: *[1-9]|(duration|[iI]nterval): *([^\n]*[?:] *)?\d|easing\.type: *Easing)re"_s);
    const QDir folder(QStringLiteral(TESSELLAR_QML));
    const QStringList files = folder.entryList({u"*.qml"_s});
    EXPECT_GT(files.size(), 30);
    for (const QString& name : files) {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QFile::ReadOnly));
        const QString text = QString::fromUtf8(file.readAll());
        if (name != u"Theme.qml") {
            EXPECT_FALSE(literal.match(text).hasMatch())
                << name.toStdString() << ": " << literal.match(text).captured().toStdString();
        }
        EXPECT_EQ(text.count(u"T.TextField {"_s), text.count(u"font.family: Theme.family"_s))
            << name.toStdString();
    }
}

/// Of a text as it is drawn on what lies behind it, as the web's guidelines have it.
double contrast(const QColor& text, const QColor& behind) {
    const auto luminance = [](double red, double green, double blue) {
        const auto linear = [](double share) {
            return share <= 0.03928 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(red) + 0.7152 * linear(green) + 0.0722 * linear(blue);
    };
    const double share = text.alphaF();
    const auto drawn = [&](double over, double under) { return over * share + under * (1 - share); };
    const double front =
        luminance(drawn(text.redF(), behind.redF()), drawn(text.greenF(), behind.greenF()),
                  drawn(text.blueF(), behind.blueF()));
    const double back = luminance(behind.redF(), behind.greenF(), behind.blueF());
    return (std::max(front, back) + 0.05) / (std::min(front, back) + 0.05);
}

TEST(Theme, TextStandsOutFromWhatItIsOn) {
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData("import QtQml\nimport Tessellar\nQtObject { readonly property var theme: Theme }",
                      {});
    const std::unique_ptr<QObject> holder(component.create());
    ASSERT_TRUE(holder) << component.errorString().toStdString();
    auto* theme = holder->property("theme").value<QObject*>();
    ASSERT_TRUE(theme);
    const auto expect = [&](const char* text, const char* behind) {
        const double found =
            contrast(theme->property(text).value<QColor>(), theme->property(behind).value<QColor>());
        EXPECT_GE(found, 4.5) << text << " on " << behind;
    };
    for (const auto& appearance : {u"light"_s, u"dark"_s}) {
        SCOPED_TRACE(appearance.toStdString());
        theme->setProperty("appearance", appearance);
        for (const auto* text :
             {"text", "textSoft", "textDim", "textFaint", "textHint", "dangerText", "warningText"})
            for (const auto* behind : {"panel", "well"})
                expect(text, behind);
        for (const auto* behind : {"accent", "accentPressed", "danger", "dangerPressed"})
            expect("accentText", behind);
        for (const auto* text : {"backdropText", "backdropTextDim", "backdropTextFaint", "matched"})
            expect(text, "folderPanel");
    }
    theme->setProperty("appearance", u"system"_s);
}

} // namespace
} // namespace tessellar::test
