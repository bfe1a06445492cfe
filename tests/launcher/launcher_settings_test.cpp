#include "launcher/launcher_settings.h"

#include "launcher/launcher_editor.h"
#include "launcher/small_launcher.h"

#include <latch>

namespace tessellar::test {
namespace {

class LauncherSettingsTest : public SmallLauncher {
protected:
    LauncherSettingsTest() {
        install(u"Ash"_s);
        start();
    }
    void store(const QString& key, const QJsonValue& value) {
        launcher->settings().store(key, value, [this](const LauncherSettings::Outcome& stored) {
            outcomes += stored ? u"stored"_s : stored.error().code;
        });
    }
    int shownColumns() const { return launcher->shown().settings().columns; }

    QStringList outcomes;
};

TEST_F(LauncherSettingsTest, AreWrittenInOrderAndExpectedAtOnce) {
    std::latch opened{1};
    mac.workers.submit(Lane::saving, {}, [&](std::stop_token) { opened.wait(); });
    store(u"gridColumns"_s, 7);
    store(u"gridColumns"_s, 6);
    store(u"gridColumns"_s, 99);
    EXPECT_EQ(outcomes, QStringList{u"outOfRange"_s});
    EXPECT_EQ(launcher->settings().expected().integer(u"gridColumns"_s), 6);
    EXPECT_FALSE(mac.settings.value(u"gridColumns"_s));
    opened.count_down();
    mac.settle();
    EXPECT_EQ(outcomes, QStringList({u"outOfRange"_s, u"stored"_s, u"stored"_s}));
    EXPECT_EQ(shownColumns(), 6);

    mac.settings.failure = FileError{FileError::Code::noSpace, {}};
    store(u"gridColumns"_s, 5);
    EXPECT_EQ(launcher->settings().expected().integer(u"gridColumns"_s), 5);
    mac.settle();
    EXPECT_EQ(outcomes.last(), u"noSpace");
    EXPECT_EQ(launcher->settings().expected().integer(u"gridColumns"_s), 6);
    EXPECT_EQ(shownColumns(), 6);
}

TEST_F(LauncherSettingsTest, AStepOfHistoryComesAfterWhatWasSetBeforeIt) {
    const auto kept = saveArrangement(*launcher, mac, u"Eight columns"_s);
    ASSERT_TRUE(kept);
    const QUuid ash = launcher->shown().tileOf(u"org.example.ash"_s)->id;
    ASSERT_TRUE(launcher->editor().rename(launcher->shown().mode(), ash, u"Mine"_s));
    store(u"gridColumns"_s, 7);
    ASSERT_TRUE(restoreArrangement(*launcher, mac, kept->id));
    EXPECT_EQ(mac.settings.integer(u"gridColumns"_s), 8);
    EXPECT_EQ(shownColumns(), 8);
    // What is set after the step stays.
    store(u"folderRows"_s, 4);
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(mac.settings.integer(u"gridColumns"_s), 7);
    EXPECT_EQ(redo(), u"done");
    EXPECT_EQ(shownColumns(), 8);
    EXPECT_EQ(launcher->shown().settings().folderRows, 4);
}

TEST_F(LauncherSettingsTest, AreWrittenAlsoAtTheEnd) {
    store(u"gridColumns"_s, 7);
    launcher.reset();
    LauncherSettings::flush(mac.machine);
    EXPECT_EQ(mac.settings.integer(u"gridColumns"_s), 7);
    mac.settle();
    EXPECT_TRUE(outcomes.isEmpty());
}

} // namespace
} // namespace tessellar::test
