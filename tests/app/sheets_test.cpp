#include "app/settings_panel.h"
#include "launcher/installed_applications.h"
#include "launcher/launcher_arrangements.h"
#include "launcher/place_memory.h"
#include "launcher_fixture.h"

namespace tessellar::test {
namespace {

/// The sheets about an application, about saved arrangements, and about what is not on the pages.
class SheetsTest : public LauncherFixture {
protected:
    SheetsTest() {
        install({u"Ash"_s, u"Beech"_s, u"Oak"_s});
        store({{app(u"Ash"_s), folder(u"Trees"_s, {{app(u"Oak"_s), app(u"Beech"_s)}})}});
    }
    QString valueOf(const QString& label) {
        QQuickItem* line = itemWith("label", label);
        return line ? line->property("text").toString() : QString();
    }
    QVariant typedIn(const QString& field) { return named(field)->property("value"); }
    bool hasSaved(const QStringList& names) {
        return QTest::qWaitFor([&] {
            QStringList saved;
            for (const QVariant& row : panels().arrangements()->arrangements())
                saved += row.toMap()[u"title"_s].toString();
            return saved == names;
        });
    }
};

TEST_F(SheetsTest, AllAboutAnApplicationIsAKeyAway) {
    start();
    press(Qt::Key_I, Qt::ControlModifier);
    EXPECT_TRUE(launcher().sheets()->current().isEmpty()) << "nothing is selected";
    press(Qt::Key_Right);
    press(Qt::Key_I, Qt::ControlModifier);
    ASSERT_TRUE(comes(u"informationSheet"_s));
    EXPECT_EQ(valueOf(u"Name"_s), u"Ash");
    EXPECT_EQ(valueOf(u"Bundle Identifier"_s), u"org.example.ash");
    EXPECT_TRUE(QTest::qWaitFor([&] {
        mac.time.advance(0ms); // channels are asked in a timer
        return !panels().information()->isPending();
    }));
    EXPECT_EQ(valueOf(u"Version"_s), u"1.0");
    clickNamed(u"revealButton"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return opened().contains(u"Ash.app"_s); }));
    leave(u"informationSheet"_s);

    // Of what was found, too.
    type(u"oak"_s);
    press(Qt::Key_I, Qt::ControlModifier);
    ASSERT_TRUE(comes(u"informationSheet"_s));
    EXPECT_EQ(valueOf(u"Name"_s), u"Oak");
    press(Qt::Key_Return); // "Done"
    ASSERT_TRUE(goes(u"informationSheet"_s));
    EXPECT_TRUE(launcher().search()->isActive());
}

TEST_F(SheetsTest, ArrangementsAreSavedRenamedReplacedDeletedAndRestored) {
    start();
    launcher().panels()->openArrangements();
    ASSERT_TRUE(comes(u"arrangementsSheet"_s));
    const auto more = [&](const QString& title) {
        clickNamed(u"arrangementMore"_s);
        choose(title);
    };
    const auto enter = [&](const QString& text) {
        press(Qt::Key_A, Qt::ControlModifier);
        type(text);
        press(Qt::Key_Return);
    };
    enter(u"mine"_s);
    ASSERT_TRUE(hasSaved({u"mine"_s}));
    EXPECT_EQ(typedIn(u"arrangementField"_s), QString());
    more(u"Rename…"_s);
    EXPECT_EQ(typedIn(u"arrangementField"_s), u"mine"_s);
    enter(u"ours"_s);
    ASSERT_TRUE(hasSaved({u"ours"_s}));
    EXPECT_EQ(panels().arrangements()->undoText(), u"Undo Rename to “ours”");
    more(u"Delete…"_s);
    answer(true);
    ASSERT_TRUE(hasSaved({}));
    clickNamed(u"arrangementImport"_s);
    enter(u"nowhere"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !panels().arrangements()->issue().isEmpty(); }));
    press(Qt::Key_Escape);
    EXPECT_EQ(panels().arrangements()->task(), u"save") << "one step back";
    ASSERT_TRUE(named(u"arrangementsSheet"_s));
    type(u"next"_s);
    clickNamed(u"arrangementUndo"_s);
    ASSERT_TRUE(hasSaved({u"ours"_s}));
    EXPECT_EQ(typedIn(u"arrangementField"_s), u"next"_s);

    ASSERT_TRUE(editor().ungroupFolder(mode(), idOf(u"Trees"_s)));
    EXPECT_EQ(shownTiles(), u"Ash Oak Beech");
    clickNamed(u"restoreButton"_s);
    ASSERT_TRUE(goes(u"arrangementsSheet"_s));
    answer(true);
    EXPECT_TRUE(QTest::qWaitFor([&] { return shownTiles() == u"Ash [Trees: Oak Beech]"; }));
    undo();
    EXPECT_TRUE(QTest::qWaitFor([&] { return shownTiles() == u"Ash Oak Beech"; }));
}

TEST_F(SheetsTest, WhatIsHiddenComesBackAndAPlaceIsForgottenAfterAQuestion) {
    start();
    const auto remembered = [&] { return summaries(viewModel().places()[mode()]).size(); };
    ASSERT_TRUE(editor().hideApps(mode(), {idOf(u"Ash"_s)}));
    chooseInGrid(u"Hidden and Remembered…"_s);
    ASSERT_TRUE(comes(u"unplacedSheet"_s));
    clickNamed(u"unplacedAction"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return viewModel().shown().hiddenKeys().isEmpty(); }));
    leave(u"unplacedSheet"_s);

    mac.remove(u"/Applications/Oak.app"_s);
    viewModel().applications().rescan();
    ASSERT_TRUE(QTest::qWaitFor([&] { return remembered() == 1; }));
    chooseInGrid(u"Hidden and Remembered…"_s);
    for (const bool isWanted : {false, true}) {
        clickNamed(u"unplacedAction"_s);
        EXPECT_EQ(remembered(), 1);
        answer(isWanted);
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return remembered() == 0; }));
}

TEST_F(SheetsTest, ANewUserIsWelcomedUntilTheWelcomeIsAnswered) {
    mac.remove(mac.machine.places.applicationFolder());
    start();
    const auto version = [&] { return mac.machine.settings.text(u"lastVersion"_s); };
    const QString changelog = u"## 1.1.0\n\n- More\n"_s;
    window->welcome(changelog, u"1.0.0"_s);
    ASSERT_TRUE(comes(u"arrangingSheet"_s));
    EXPECT_FALSE(version()) << "a start that ends here was not the first";
    leave(u"arrangingSheet"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return version() == u"1.0.0"; }));
    window->welcome(changelog, u"1.1.0"_s);
    ASSERT_TRUE(comes(u"newsSheet"_s));
    EXPECT_EQ(version(), u"1.0.0");
    leave(u"newsSheet"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return version() == u"1.1.0"; }));
}

TEST_F(SheetsTest, WaysToArrangeAreLookedThroughBeforeOneIsTaken) {
    start();
    const Pages before = viewModel().shown().pages();
    ArrangingPanel& panel = *panels().arranging();
    const auto open = [&](bool isWelcome) {
        launcher().panels()->openArranging(isWelcome);
        ASSERT_TRUE(comes(u"arrangingSheet"_s));
        ASSERT_TRUE(QTest::qWaitFor([&] { return panel.choices().size() == 2; }));
    };
    open(true);
    EXPECT_EQ(named(u"arrangingSheet"_s)->property("title"), u"Welcome to Tessellar"_s);
    EXPECT_EQ(panel.picture()[u"tiles"_s].toList().size(), 3) << "no category: no folder";
    leave(u"arrangingSheet"_s);
    EXPECT_EQ(viewModel().shown().pages(), before);

    open(false);
    press(Qt::Key_Right);
    EXPECT_TRUE(panel.choices()[1].toMap()[u"isChosen"_s].toBool());
    press(Qt::Key_Return);
    ASSERT_TRUE(goes(u"arrangingSheet"_s));
    EXPECT_TRUE(QTest::qWaitFor([&] { return shownTiles() == u"Ash Beech Oak"; }));
}

TEST_F(SheetsTest, AnIconsFileThatWasTypedIsNotLostByEscape) {
    start();
    const auto open = [&] {
        chooseAt(u"Ash"_s, u"Change Icon…"_s);
        ASSERT_TRUE(comes(u"iconSheet"_s));
    };
    open();
    leave(u"iconSheet"_s); // nothing was typed
    open();
    type(u"/nowhere.icns"_s);
    press(Qt::Key_Escape);
    answer(false);
    EXPECT_EQ(typedIn(u"iconPath"_s), u"/nowhere.icns"_s);
    clickNamed(u"iconAccept"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !launcher().sheets()->issue().isEmpty(); }));
    ASSERT_TRUE(named(u"iconSheet"_s)) << "with what was typed";
    clickAt({3, 3});
    answer(true);
    ASSERT_TRUE(goes(u"iconSheet"_s));
}

class SettingsSheetTest : public LauncherFixture {
protected:
    void open() {
        install(manyNames(30));
        start({1440, 900});
        press(Qt::Key_Comma, Qt::ControlModifier);
        ASSERT_TRUE(named(u"settingsSheet"_s));
    }
    SettingsPanel& panel() { return *panels().settings(); }
    /// What is stored, once everything has been written.
    const Settings& stored() {
        mac.settle();
        return mac.machine.settings;
    }
    int columns() { return launcher().grid()->metrics().columns; }
    QVariantMap row(const QString& key) {
        for (const QVariant& section : panel().sections())
            for (const QVariant& row : section.toMap()[u"rows"_s].toList())
                if (row.toMap()[u"key"_s] == key)
                    return row.toMap();
        return {};
    }
    /// Carries the slider of columns to its end, which is where it returns; the button stays down.
    QPoint slide() {
        QQuickItem* slider = named(u"gridColumns"_s);
        const QPoint to =
            slider->mapToScene(QPointF(slider->width() - 2, slider->height() / 2)).toPoint();
        lift(middle(slider), to);
        return to;
    }
};

TEST_F(SettingsSheetTest, TheGridFollowsTheHandAndIsStoredWhenItLetsGo) {
    open();
    const QPoint end = slide();
    EXPECT_EQ(columns(), 10);
    EXPECT_FALSE(stored().value(u"gridColumns"_s)) << "not before the hand lets go";
    viewModel().settings().store(u"folderRows"_s, 4);
    EXPECT_EQ(stored().integer(u"folderRows"_s), 4);
    EXPECT_EQ(columns(), 10) << "what is stored meanwhile takes nothing back";
    release(end);
    EXPECT_TRUE(row(u"gridColumns"_s)[u"isSet"_s].toBool()) << "at once, before it is written";
    EXPECT_EQ(stored().integer(u"gridColumns"_s), 10);
    press({Qt::Key_Left, Qt::Key_Left});
    EXPECT_EQ(stored().integer(u"gridColumns"_s), 8) << "and by the keys";
    panel().reset(u"gridColumns"_s);
    EXPECT_FALSE(stored().value(u"gridColumns"_s));
    EXPECT_EQ(columns(), 8);

    // What was only tried out goes with the sheet.
    slide();
    EXPECT_EQ(columns(), 10);
    press(Qt::Key_Escape);
    EXPECT_TRUE(launcher().sheets()->current().isEmpty());
    release(end);
    EXPECT_TRUE(QTest::qWaitFor([&] { return columns() == 8; }));
    EXPECT_FALSE(stored().value(u"gridColumns"_s));
}

TEST_F(SettingsSheetTest, FoldersAreAddedAndRemovedAndSayWhatTheyBring) {
    builder.addApplication(
        {.name = u"Tool"_s, .folder = u"/Users/ada/Tools"_s, .identifier = u"org.example.tool"_s});
    open();
    const auto hasTool = [&] { return viewModel().applications().withKey(u"org.example.tool"_s); };
    panel().set(u"addFolder"_s, u"Tools"_s);
    EXPECT_TRUE(panel().issue().contains(u"Tools"_s)) << "it is not known where that is";
    panel().set(u"addFolder"_s, u" ~/Tools "_s);
    EXPECT_TRUE(panel().issue().isEmpty());
    ASSERT_TRUE(QTest::qWaitFor(hasTool));
    const QString key = u"folder:/Users/ada/Tools"_s;
    EXPECT_EQ(row(key)[u"text"_s].toString(), u"1 application");
    EXPECT_TRUE(row(u"folder:/Applications"_s)[u"action"_s].toString().isEmpty()) << "one of the usual";
    panel().act(key);
    EXPECT_TRUE(row(key).isEmpty());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !hasTool(); }));
    EXPECT_FALSE(stored().value(u"appDiscovery.additionalSearchPaths"_s));
}

TEST_F(SettingsSheetTest, WhatCannotBeIsSaidAndNotStored) {
    open();
    panel().set(u"summon.hotKey"_s, u"a"_s);
    EXPECT_TRUE(panel().issue().contains(u"option+space"_s));
    EXPECT_TRUE(stored().values().isEmpty());
    panel().choose(u"appearance"_s, 1);
    mac.settle();
    EXPECT_EQ(launcher().appearance()->theme(), u"light");
    EXPECT_TRUE(panel().issue().isEmpty());
    panel().setLoginItem(
        {.isOn = [] { return false; }, .set = [](bool) { return std::unexpected(u"Not today."_s); }});
    panel().set(u"launchAtLogin"_s, true);
    EXPECT_EQ(panel().issue(), u"Not today.");
    EXPECT_EQ(row(u"launchAtLogin"_s)[u"value"_s], false) << "as the system says";
}

} // namespace
} // namespace tessellar::test
