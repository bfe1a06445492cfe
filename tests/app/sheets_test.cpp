#include "launcher/installed_applications.h"
#include "launcher/launcher_arrangements.h"
#include "launcher/launcher_editor.h"
#include "launcher/launcher_messages.h"
#include "launcher/place_memory.h"
#include "launcher_fixture.h"

namespace tessellar::test {
namespace {

/// The sheets about an application, about saved arrangements, and about what is not on the pages.
class SheetsTest : public LauncherFixture {
protected:
    void show() {
        install({u"Ash"_qs, u"Beech"_qs, u"Oak"_qs});
        store({{app(u"Ash"_qs), folder(u"Trees"_qs, {{app(u"Oak"_qs), app(u"Beech"_qs)}})}});
        start();
    }
    QQuickItem* sheet(const char* name) { return itemWith("objectName", QLatin1StringView(name)); }
    bool comes(const char* name) {
        return QTest::qWaitFor([&] { return sheet(name) != nullptr; });
    }
    bool goes(const char* name) {
        return QTest::qWaitFor([&] { return sheet(name) == nullptr; });
    }
    QString valueOf(const QString& label) {
        QQuickItem* line = itemWith("label", label);
        return line ? line->property("text").toString() : QString();
    }
    void clear(const QString& text) {
        press(Qt::Key_A, Qt::ControlModifier);
        type(text);
    }
    QStringList saved() {
        QStringList names;
        for (const QVariant& row : launcher().panels()->arrangements()->arrangements())
            names += row.toMap()[u"title"_qs].toString();
        return names;
    }
    bool hasSaved(const QStringList& names) {
        return QTest::qWaitFor([&] { return saved() == names; });
    }
    void answer(bool accepted) {
        ASSERT_TRUE(QTest::qWaitFor([&] { return launcher().alert()->isOpen(); }));
        launcher().alert()->answer(accepted);
    }
};

TEST_F(SheetsTest, AllAboutAnApplicationIsAKeyAway) {
    show();
    press(Qt::Key_I, Qt::ControlModifier);
    EXPECT_TRUE(launcher().sheets()->current().isEmpty()) << "nothing is selected";
    press(Qt::Key_Right);
    press(Qt::Key_I, Qt::ControlModifier);
    ASSERT_TRUE(comes("informationSheet"));
    EXPECT_EQ(valueOf(u"Name"_qs), u"Ash");
    EXPECT_EQ(valueOf(u"Bundle Identifier"_qs), u"org.example.ash");
    EXPECT_TRUE(QTest::qWaitFor([&] {
        mac.time.advance(std::chrono::milliseconds(0)); // channels are asked in a timer
        return !launcher().panels()->information()->isPending();
    }));
    EXPECT_EQ(valueOf(u"Version"_qs), u"1.0");
    clickNamed(u"revealButton"_qs);
    EXPECT_TRUE(QTest::qWaitFor([&] { return opened().contains(u"Ash.app"_qs); }));
    press(Qt::Key_Escape);
    ASSERT_TRUE(goes("informationSheet"));

    // Of what was found, too.
    type(u"oak"_qs);
    press(Qt::Key_I, Qt::ControlModifier);
    ASSERT_TRUE(comes("informationSheet"));
    EXPECT_EQ(valueOf(u"Name"_qs), u"Oak");
    press(Qt::Key_Return); // "Done"
    ASSERT_TRUE(goes("informationSheet"));
    EXPECT_TRUE(launcher().search()->isActive());
}

TEST_F(SheetsTest, ArrangementsAreSavedRenamedReplacedDeletedAndRestored) {
    show();
    launcher().openArrangements();
    ASSERT_TRUE(comes("arrangementsSheet"));
    type(u"mine"_qs);
    press(Qt::Key_Return);
    ASSERT_TRUE(hasSaved({u"mine"_qs}));
    EXPECT_EQ(itemWith("objectName", u"arrangementField"_qs)->property("value"), QString());

    clickNamed(u"arrangementMore"_qs);
    choose(u"Rename…"_qs);
    EXPECT_EQ(itemWith("objectName", u"arrangementField"_qs)->property("value"), u"mine"_qs);
    clear(u"ours"_qs);
    press(Qt::Key_Return);
    ASSERT_TRUE(hasSaved({u"ours"_qs}));
    EXPECT_EQ(launcher().panels()->arrangements()->undoText(), u"Undo Rename to “ours”");

    clickNamed(u"arrangementMore"_qs);
    choose(u"Export…"_qs);
    press(Qt::Key_Return);
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return mac.exists(u"/Users/ada/ours.tessellar-arrangement"_qs); }));
    clickNamed(u"arrangementMore"_qs);
    choose(u"Delete…"_qs);
    answer(false);
    clickNamed(u"arrangementMore"_qs);
    choose(u"Delete…"_qs);
    answer(true);
    ASSERT_TRUE(hasSaved({}));
    clickNamed(u"arrangementImport"_qs);
    clear(u"nowhere"_qs);
    press(Qt::Key_Return);
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return !launcher().panels()->arrangements()->issue().isEmpty(); }));
    press(Qt::Key_Escape);
    EXPECT_EQ(launcher().panels()->arrangements()->task(), u"save") << "one step back";
    ASSERT_TRUE(sheet("arrangementsSheet"));
    clickNamed(u"arrangementUndo"_qs);
    ASSERT_TRUE(hasSaved({u"ours"_qs}));

    ASSERT_TRUE(viewModel().editor().ungroupFolder(viewModel().shown().mode(), idOf(u"Trees"_qs)));
    EXPECT_EQ(shownTiles(), u"Ash Oak Beech");
    clickNamed(u"restoreButton"_qs);
    ASSERT_TRUE(goes("arrangementsSheet"));
    answer(true);
    EXPECT_TRUE(QTest::qWaitFor([&] { return shownTiles() == u"Ash [Trees: Oak Beech]"; }));
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return shownTiles() == u"Ash Oak Beech"; }));
}

TEST_F(SheetsTest, WhatIsHiddenComesBackFromItsSheet) {
    show();
    ASSERT_TRUE(viewModel().editor().hideApps(viewModel().shown().mode(), {idOf(u"Ash"_qs)}));
    launcher().openMenu({}, {640, 700});
    choose(u"Hidden and Remembered…"_qs);
    ASSERT_TRUE(comes("unplacedSheet"));
    EXPECT_TRUE(itemWith("title", u"Hidden applications"_qs) ||
                itemWith("text", u"Hidden applications"_qs));
    ASSERT_TRUE(QTest::qWaitFor([&] { return itemWith("objectName", u"unplacedAction"_qs); }));
    clickNamed(u"unplacedAction"_qs);
    EXPECT_TRUE(QTest::qWaitFor([&] { return viewModel().shown().hiddenKeys().isEmpty(); }));
    EXPECT_EQ(launcher().panels()->unplaced()->summary(),
              u"Nothing is hidden, and everything has its tile.");
    press(Qt::Key_Escape);
    ASSERT_TRUE(goes("unplacedSheet"));
}

TEST_F(SheetsTest, APlaceIsForgottenAfterAQuestion) {
    show();
    const LauncherWindowMode mode = viewModel().shown().mode();
    const auto remembered = [&] { return summaries(viewModel().places()[mode]).size(); };
    mac.remove(u"/Applications/Oak.app"_qs);
    viewModel().applications().rescan();
    ASSERT_TRUE(QTest::qWaitFor([&] { return remembered() == 1; }));
    launcher().openMenu({}, {640, 700});
    choose(u"Hidden and Remembered…"_qs);
    ASSERT_TRUE(comes("unplacedSheet"));
    for (const bool isWanted : {false, true}) {
        ASSERT_TRUE(QTest::qWaitFor([&] { return itemWith("objectName", u"unplacedAction"_qs); }));
        clickNamed(u"unplacedAction"_qs);
        EXPECT_EQ(remembered(), 1);
        answer(isWanted);
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return remembered() == 0; }));
}

TEST_F(SheetsTest, ANewUserIsWelcomedUntilTheWelcomeIsAnswered) {
    install({u"Ash"_qs, u"Beech"_qs});
    start();
    const auto version = [&] { return mac.machine.settings.text(u"lastVersion"_qs); };
    const QString changelog = u"## 1.1.0\n\n- More\n"_qs;
    window->welcome(changelog, u"1.0.0"_qs);
    ASSERT_TRUE(comes("arrangingSheet"));
    EXPECT_FALSE(version()) << "a start that ends here was not the first";
    press(Qt::Key_Escape);
    ASSERT_TRUE(goes("arrangingSheet"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return version() == u"1.0.0"; }));
    window->welcome(changelog, u"1.1.0"_qs);
    ASSERT_TRUE(comes("newsSheet"));
    EXPECT_EQ(version(), u"1.0.0");
    press(Qt::Key_Escape);
    ASSERT_TRUE(goes("newsSheet"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return version() == u"1.1.0"; }));
}

TEST_F(SheetsTest, WaysToArrangeAreLookedThroughBeforeOneIsTaken) {
    show();
    const Pages before = viewModel().shown().pages();
    launcher().openArranging(true);
    ASSERT_TRUE(comes("arrangingSheet"));
    EXPECT_EQ(sheet("arrangingSheet")->property("title"), u"Welcome to Tessellar"_qs);
    ArrangingPanel& panel = *launcher().panels()->arranging();
    ASSERT_TRUE(QTest::qWaitFor([&] { return panel.choices().size() == 2; }));
    EXPECT_EQ(panel.picture()[u"tiles"_qs].toList().size(), 3) << "no category: no folder";
    press(Qt::Key_Escape);
    ASSERT_TRUE(goes("arrangingSheet"));
    EXPECT_EQ(viewModel().shown().pages(), before);

    launcher().openArranging(false);
    ASSERT_TRUE(comes("arrangingSheet"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return panel.choices().size() == 2; }));
    press(Qt::Key_Right);
    EXPECT_TRUE(panel.choices()[1].toMap()[u"isChosen"_qs].toBool());
    press(Qt::Key_Return);
    ASSERT_TRUE(goes("arrangingSheet"));
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return sketch(viewModel().shown().pages()) == u"Ash Beech Oak"; }));
}

TEST_F(SheetsTest, AnIconsFileIsTypedOrChosenAndNotLostByEscape) {
    show();
    rightClick(u"Ash"_qs);
    choose(u"Change Icon…"_qs);
    ASSERT_TRUE(comes("iconSheet"));
    press(Qt::Key_Escape);
    ASSERT_TRUE(goes("iconSheet")) << "nothing was typed";
    rightClick(u"Ash"_qs);
    choose(u"Change Icon…"_qs);
    ASSERT_TRUE(comes("iconSheet"));
    type(u"/nowhere.icns"_qs);
    press(Qt::Key_Escape);
    answer(false);
    EXPECT_EQ(itemWith("objectName", u"iconPath"_qs)->property("value").toString(), u"/nowhere.icns");
    clickNamed(u"iconAccept"_qs);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !launcher().sheets()->issue().isEmpty(); }));
    ASSERT_TRUE(sheet("iconSheet")) << "with what was typed";
    clickAt({3, 3});
    answer(true);
    ASSERT_TRUE(goes("iconSheet"));

    rightClick(u"Ash"_qs);
    choose(u"Change Icon…"_qs);
    ASSERT_TRUE(comes("iconSheet"));
    clickNamed(u"iconBrowse"_qs);
    QObject* dialog = nullptr;
    for (QObject* object : sheet("iconSheet")->findChildren<QObject*>())
        if (object->inherits("QQuickFileDialog"))
            dialog = object;
    ASSERT_TRUE(dialog);
    EXPECT_TRUE(QTest::qWaitFor([&] { return dialog->property("visible").toBool(); }));
    ASSERT_TRUE(QMetaObject::invokeMethod(sheet("iconBrowse"), "chosen",
                                          Q_ARG(QUrl, QUrl(u"file:///chosen/tree.icns"_qs))));
    EXPECT_EQ(itemWith("objectName", u"iconPath"_qs)->property("value").toString(),
              u"/chosen/tree.icns");
}

TEST_F(SheetsTest, TheyFitTheSmallestWindow) {
    install({u"Ash"_qs});
    start({320, 240}, LauncherWindowMode::windowed);
    press(Qt::Key_Right);
    press(Qt::Key_I, Qt::ControlModifier);
    ASSERT_TRUE(comes("informationSheet"));
    const auto fits = [&] {
        const QQuickItem* card = itemWith("objectName", u"sheetCard"_qs);
        return card && card->mapRectToScene(card->boundingRect()).bottom() <= 240 &&
               card->width() <= 320;
    };
    EXPECT_TRUE(fits());
    launcher().openArrangements();
    ASSERT_TRUE(comes("arrangementsSheet"));
    EXPECT_TRUE(fits());
}

} // namespace
} // namespace tessellar::test
