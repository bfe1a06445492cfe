#include "launcher/setting_table.h"

#include "launcher/release_notes.h"

#include "model/layout_settings.h"

#include "support/memory_settings.h"
#include "support/printers.h"

#include <gtest/gtest.h>

#include <QJsonArray>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;
using Kind = Setting::Kind;

/// What the table lets through is what readers take, and what it refuses they would not.
TEST(SettingTable, AgreesWithThoseWhoReadTheGrid) {
    test::MemorySettings settings;
    for (const Setting& setting : settingTable()) {
        EXPECT_FALSE(!setting.defaultValue.isNull() && refusal(setting, setting.defaultValue))
            << setting.key.toStdString();
        if (setting.kind != Kind::integer && setting.kind != Kind::number)
            continue;
        const bool isWindowed = setting.key.startsWith(u"windowed."_s);
        const auto mode = isWindowed ? LauncherWindowMode::windowed : LauncherWindowMode::fullScreen;
        const ArrangementLayout before = readLayoutSettings(settings, mode);
        for (const double value : {setting.minimum, setting.maximum}) {
            EXPECT_FALSE(refusal(setting, value)) << setting.key.toStdString();
            EXPECT_TRUE(refusal(setting, value == setting.minimum ? value - 1 : value + 1));
        }
        for (const QJsonValue& wrong : {QJsonValue(setting.maximum + 1), QJsonValue(u"4"_s)}) {
            EXPECT_EQ(refusal(setting.key, wrong)->code, u"outOfRange");
            EXPECT_TRUE(settings.set(setting.key, wrong)); // by another program
            EXPECT_EQ(readLayoutSettings(settings, mode), before) << setting.key.toStdString();
            if (!setting.isClamped) {
                EXPECT_EQ(settingNow(settings, setting), setting.defaultValue);
            }
        }
        EXPECT_FALSE(refusal(setting.key, QJsonValue()));
        EXPECT_TRUE(settings.set(setting.key, QJsonValue()));
    }
    EXPECT_TRUE(settings.values().isEmpty());
}

TEST(SettingTable, RefusesWhatNobodyWouldRead) {
    const auto store = [](const QString& key, const QJsonValue& value) {
        const auto refused = refusal(key, value);
        return refused ? refused->code : u"stored"_s;
    };
    EXPECT_EQ(store(u"appearance"_s, u"light"_s), u"stored");
    EXPECT_EQ(store(u"appearance"_s, u"pink"_s), u"outOfRange");
    EXPECT_EQ(store(u"appUpdates.intervalSeconds"_s, 86'400), u"stored");
    EXPECT_EQ(store(u"appUpdates.intervalSeconds"_s, 5), u"outOfRange");
    EXPECT_EQ(store(u"appDiscovery.searchPaths"_s, QJsonArray{u"/Applications"_s}), u"stored");
    EXPECT_EQ(store(u"appDiscovery.searchPaths"_s, QJsonArray{1}), u"outOfRange");
    EXPECT_EQ(store(u"appDiscovery.searchPaths"_s, QJsonArray{u"Tools"_s}), u"outOfRange");
    EXPECT_EQ(store(u"reducesMotion"_s, 1), u"outOfRange");
    EXPECT_EQ(store(u"summon.hotKey"_s, u"banana"_s), u"outOfRange");
    EXPECT_EQ(store(u"summon.hotKey"_s, u"option+space"_s), u"stored");
    EXPECT_EQ(store(u"appUpdates.storePageURL"_s, u"http://example.org"_s), u"outOfRange");
    EXPECT_EQ(store(u"appUpdates.storePageURL"_s, u"https://example.org/apps"_s), u"stored");
    EXPECT_EQ(store(u"gridRow"_s, 4), u"unknownSetting");
}

TEST(ReleaseNotes, AreOfTheVersionsSinceTheLastOne) {
    const QString changelog =
        u"# Changelog\n\n## 1.10.0 (unreleased)\n\n- ten\n\n## 1.9.0\n\n- nine\n\n"
        "## 1.8.0\n\n- eight\n"_s;
    EXPECT_EQ(releaseNotes(changelog, u"1.8.0"_s, u"1.9.0"_s), u"## 1.9.0\n\n- nine");
    EXPECT_EQ(releaseNotes(changelog, u"1.8.0"_s, u"1.10.0"_s),
              u"## 1.10.0 (unreleased)\n\n- ten\n\n## 1.9.0\n\n- nine");
    EXPECT_EQ(releaseNotes(changelog, u"1.9.0"_s, u"1.8.0"_s), QString());

    test::MemorySettings settings;
    const auto welcome = [&](bool isUnarranged = true) {
        return ReleaseNotes::welcome(settings, isUnarranged, changelog, u"1.9.0"_s);
    };
    const auto unseen = [&] { return welcome().news; };
    EXPECT_EQ(unseen(), QString()) << "nothing is new at first";
    EXPECT_TRUE(welcome().asksHowToBegin);
    EXPECT_FALSE(welcome(false).asksHowToBegin);
    ASSERT_TRUE(settings.set(ReleaseNotes::lastVersionKey, u"1.8.0"_s));
    EXPECT_FALSE(welcome().asksHowToBegin);
    EXPECT_EQ(unseen(), u"## 1.9.0\n\n- nine");
    EXPECT_EQ(unseen(), u"## 1.9.0\n\n- nine") << "until it was seen";
    ASSERT_TRUE(settings.set(ReleaseNotes::lastVersionKey, u"1.9.0"_s));
    EXPECT_EQ(unseen(), QString());
}

} // namespace
} // namespace tessellar
