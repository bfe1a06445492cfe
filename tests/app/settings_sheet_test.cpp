#include "app/settings_panel.h"
#include "launcher/installed_applications.h"
#include "launcher_fixture.h"

#include <QClipboard>
#include <QGuiApplication>

namespace tessellar::test {
namespace {

using namespace Qt::StringLiterals;

class SettingsSheetTest : public LauncherFixture {
protected:
    SettingsSheetTest() { install(manyNames(30)); }

    void open() {
        start({1440, 900});
        press(Qt::Key_Comma, Qt::ControlModifier);
        ASSERT_TRUE(itemWith("objectName", u"settingsSheet"_s));
    }
    /// Of what is stored, once everything has been written.
    const Settings& stored() {
        mac.settle();
        return mac.machine.settings;
    }
    SettingsPanel& panel() { return *launcher().panels()->settings(); }
    QVariantMap row(const QString& key) {
        for (const QVariant& section : panel().sections())
            for (const QVariant& row : section.toMap()[u"rows"_s].toList())
                if (row.toMap()[u"key"_s] == key)
                    return row.toMap();
        return {};
    }
};

TEST_F(SettingsSheetTest, TheGridFollowsTheHandAndIsStoredWhenItLetsGo) {
    open();
    QQuickItem* slider = itemWith("objectName", u"gridColumns"_s);
    ASSERT_TRUE(slider);
    const QPoint from = middle(slider);
    const QPoint to = slider->mapToScene(QPointF(slider->width() - 2, slider->height() / 2)).toPoint();
    QTest::mousePress(&view(), Qt::LeftButton, {}, from);
    carry(from, to);
    EXPECT_EQ(launcher().grid()->metrics().columns, 10);
    EXPECT_FALSE(mac.machine.settings.value(u"gridColumns"_s)) << "not before the hand lets go";
    QTest::mouseRelease(&view(), Qt::LeftButton, {}, to);
    EXPECT_TRUE(row(u"gridColumns"_s)[u"isSet"_s].toBool()) << "at once, before it is written";
    EXPECT_EQ(stored().integer(u"gridColumns"_s), 10);
    press(Qt::Key_Left);
    press(Qt::Key_Left);
    EXPECT_EQ(stored().integer(u"gridColumns"_s), 8) << "and by the keys";
    panel().reset(u"gridColumns"_s);
    EXPECT_FALSE(stored().value(u"gridColumns"_s));
    EXPECT_EQ(launcher().grid()->metrics().columns, 8);
    press(Qt::Key_Escape);
    EXPECT_TRUE(launcher().sheets()->current().isEmpty());
}

TEST_F(SettingsSheetTest, WhatWasOnlyTriedOutGoesWithTheSheet) {
    open();
    QQuickItem* slider = itemWith("objectName", u"gridColumns"_s);
    ASSERT_TRUE(slider);
    const QPoint to = slider->mapToScene(QPointF(slider->width() - 2, slider->height() / 2)).toPoint();
    QTest::mousePress(&view(), Qt::LeftButton, {}, middle(slider));
    carry(middle(slider), to);
    EXPECT_EQ(launcher().grid()->metrics().columns, 10);
    press(Qt::Key_Escape);
    QTest::mouseRelease(&view(), Qt::LeftButton, {}, to);
    EXPECT_TRUE(QTest::qWaitFor([&] { return launcher().grid()->metrics().columns == 8; }));
    EXPECT_FALSE(mac.machine.settings.value(u"gridColumns"_s));
}

TEST_F(SettingsSheetTest, ReturnKeepsTheSheetWithWhatIsWrong) {
    open();
    QQuickItem* field = itemWith("objectName", u"addFolder"_s);
    ASSERT_TRUE(field);
    field->property("input").value<QQuickItem*>()->forceActiveFocus();
    type(u"tools"_s);
    press(Qt::Key_Return);
    EXPECT_TRUE(itemWith("objectName", u"settingsSheet"_s));
    EXPECT_TRUE(panel().issue().contains(u"~/"_s)) << panel().issue().toStdString();
    EXPECT_EQ(field->property("input").value<QQuickItem*>()->property("text"), u"tools"_s);
}

TEST_F(SettingsSheetTest, EachModeHasAGridOfItsOwn) {
    open();
    panel().choose(u"window.mode"_s, 1);
    EXPECT_TRUE(launcher().isWindowed());
    EXPECT_TRUE(row(u"gridRows"_s).isEmpty());
    panel().set(u"windowed.gridRows"_s, 4);
    mac.settle();
    EXPECT_EQ(viewModel().layout(LauncherWindowMode::windowed).settings().rows, 4);
    EXPECT_EQ(viewModel().layout(LauncherWindowMode::fullScreen).settings().rows, 5);
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
    EXPECT_FALSE(mac.machine.settings.value(u"appDiscovery.additionalSearchPaths"_s));
}

TEST_F(SettingsSheetTest, WhatCannotBeIsSaidAndNotStored) {
    open();
    panel().set(u"summon.hotKey"_s, u"a"_s);
    EXPECT_TRUE(panel().issue().contains(u"option+space"_s));
    panel().set(u"gridRows"_s, 99);
    EXPECT_EQ(panel().issue(), u"“gridRows” is to be 3 to 9.");
    EXPECT_TRUE(mac.machine.settings.values().isEmpty());
    panel().choose(u"appearance"_s, 1);
    mac.settle();
    EXPECT_EQ(launcher().appearance(), u"light");
    EXPECT_TRUE(panel().issue().isEmpty());
    panel().act(u"copyToggleCommand"_s); // where the desktop keeps keys to itself
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"tessellarctl toggle");
    bool isOn = false;
    panel().setLoginItem({.isOn = [&] { return isOn; },
                          .set = [&](bool on) -> std::expected<void, QString> {
                              if (on)
                                  return std::unexpected(u"Not today."_s);
                              return {};
                          }});
    panel().set(u"launchAtLogin"_s, true);
    EXPECT_EQ(panel().issue(), u"Not today.");
    EXPECT_EQ(row(u"launchAtLogin"_s)[u"value"_s], false) << "as the system says";
}

} // namespace
} // namespace tessellar::test
