#include "platform/settings.h"

#include "platform/defaults_settings.h"
#include "platform/property_list.h"
#include "tests/support/printers.h"
#include "tests/support/test_machine.h"

#include <QJsonArray>
#include <QJsonObject>

#include <gmock/gmock.h>

#include <csignal>
#include <sys/resource.h>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;

using test::TestMachine;
using testing::ElementsAre;

const QString json = u"/Users/ada/Library/Preferences/com.tessellar.app.json"_s;
const QString plist = u"/Users/ada/Library/Preferences/com.tessellar.app.plist"_s;

QString key(const char* name) { return QString::fromLatin1(name); }

TEST(Settings, AWrongTypeCountsAsAbsent) {
    test::MemorySettings settings;
    const auto set = [&](const QJsonValue& value) { ASSERT_TRUE(settings.set(key("k"), value)); };

    set(1);
    EXPECT_EQ(settings.boolean(key("k")), std::nullopt);
    EXPECT_EQ(settings.integer(key("k")), 1);
    EXPECT_EQ(settings.number(key("k")), 1.0);
    EXPECT_EQ(settings.text(key("k")), std::nullopt);
    set(0);
    EXPECT_EQ(settings.integer(key("k")), 0);
    set(true);
    EXPECT_EQ(settings.boolean(key("k")), true);
    EXPECT_EQ(settings.number(key("k")), std::nullopt);
    EXPECT_EQ(settings.integer(key("k")), std::nullopt);
    for (const double none : {0.5, 1e300, -1e19}) {
        set(none);
        EXPECT_EQ(settings.integer(key("k")), std::nullopt) << none;
        EXPECT_EQ(settings.number(key("k")), none);
    }
    set(u"5"_s);
    EXPECT_EQ(settings.integer(key("k")), std::nullopt);
    EXPECT_EQ(settings.text(key("k")), u"5"_s);
    EXPECT_EQ(settings.texts(key("k")), std::nullopt);
    set(QJsonArray{u"a"_s, u"b"_s});
    EXPECT_EQ(settings.texts(key("k")), (QStringList{u"a"_s, u"b"_s}));
    set(QJsonArray{u"a"_s, 1});
    EXPECT_EQ(settings.texts(key("k")), std::nullopt);
    EXPECT_EQ(settings.value(key("other")), std::nullopt);
}

TEST(FileSettings, KeepsValuesInASortedJsonFile) {
    const TestMachine mac;
    {
        FileSettings settings(mac.files, json);
        EXPECT_TRUE(settings.values().isEmpty());
        EXPECT_TRUE(settings.set(key("none"), QJsonValue::Null));
        EXPECT_FALSE(mac.exists(json)) << "nothing was changed";
        EXPECT_TRUE(settings.set(key("gridRows"), 5));
        EXPECT_TRUE(settings.set(key("appUpdates.enabled"), false));
        EXPECT_TRUE(settings.set(key("big"), qint64(9'007'199'254'740'993)));
        EXPECT_TRUE(settings.set(key("gone"), 1));
        EXPECT_TRUE(settings.set({{key("gone"), QJsonValue::Undefined}, {key("gridColumns"), 8}}));
    }
    EXPECT_EQ(mac.read(json), "{\n    \"appUpdates.enabled\": false,\n    \"big\": 9007199254740993,\n"
                              "    \"gridColumns\": 8,\n    \"gridRows\": 5\n}\n");
    const FileSettings again(mac.files, json);
    EXPECT_EQ(again.integer(key("big")), 9'007'199'254'740'993);
    EXPECT_EQ(again.boolean(key("appUpdates.enabled")), false);
    EXPECT_EQ(again.values().size(), 4);
}

TEST(FileSettings, CarriesThePropertyListOver) {
    const TestMachine mac;
    const QByteArray list =
        "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict>"
        "<key>gridRows</key><integer>6</integer><key>iconScale</key><real>1.1</real>"
        "<key>on</key><true/><key>paths</key><array><string>/A</string></array>"
        "<key>data</key><data>AAAA</data></dict></plist>";
    mac.write(plist, list);
    FileSettings settings(mac.files, plist);
    EXPECT_EQ(settings.integer(key("gridRows")), 6);
    EXPECT_EQ(settings.number(key("iconScale")), 1.1);
    EXPECT_EQ(settings.boolean(key("on")), true);
    EXPECT_EQ(settings.texts(key("paths")), QStringList{u"/A"_s});
    EXPECT_FALSE(settings.value(key("data")));

    EXPECT_TRUE(settings.set(key("gridRows"), 7));
    EXPECT_EQ(mac.read(plist), list);
    const FileSettings again(mac.files, json);
    EXPECT_EQ(again.integer(key("gridRows")), 7);
    EXPECT_EQ(again.values().size(), 4);

    mac.remove(json);
    mac.write(plist, "<plist><dict>");
    EXPECT_TRUE(FileSettings(mac.files, json).values().isEmpty());
    EXPECT_FALSE(FileSettings(mac.files, json).isReadable());
}

TEST(FileSettings, ADamagedFileCostsOnlyTheDefaultsAndIsKept) {
    const TestMachine mac;
    for (const QByteArray damaged : {"{\"gridRows\": 5,", "[1, 2]"}) {
        mac.write(json, damaged);
        FileSettings settings(mac.files, json);
        EXPECT_TRUE(settings.values().isEmpty());
        EXPECT_FALSE(settings.isReadable());
        EXPECT_EQ(mac.read(json), damaged);
        EXPECT_TRUE(settings.set(key("gridRows"), 4));
        EXPECT_TRUE(settings.isReadable());
        EXPECT_EQ(FileSettings(mac.files, json).integer(key("gridRows")), 4);
    }
    EXPECT_EQ(mac.read(json + u".damaged"_s), "{\"gridRows\": 5,");
    EXPECT_EQ(mac.read(json + u".damaged-2"_s), "[1, 2]");

    // What was repaired meanwhile is taken up, not put aside.
    mac.write(json, "{");
    FileSettings settings(mac.files, json);
    mac.write(json, "{\"gridColumns\": 9}");
    EXPECT_TRUE(settings.set(key("gridRows"), 4));
    EXPECT_EQ(settings.integer(key("gridColumns")), 9);
    EXPECT_FALSE(mac.exists(json + u".damaged-3"_s));
}

TEST(FileSettings, AFileThatCannotBeReadNowIsNeitherMovedNorWritten) {
    const TestMachine mac;
    mac.write(json, "{\"gridRows\": 5}");
    FileSettings settings(mac.files, json);
    mac.remove(json);
    mac.link(json, u"/Volumes/Away/settings.json"_s);
    EXPECT_FALSE(settings.set(key("gridColumns"), 9));
    EXPECT_EQ(settings.integer(key("gridRows")), 5); // still known
    EXPECT_EQ(mac.names(FileSystem::parent(json)).size(), 1);
    mac.write(u"/Volumes/Away/settings.json"_s, "{\"gridRows\": 6}");
    EXPECT_TRUE(settings.set(key("gridColumns"), 9));
    EXPECT_EQ(settings.integer(key("gridRows")), 6);
    EXPECT_TRUE(mac.read(u"/Volumes/Away/settings.json"_s).contains("gridColumns"));
}

TEST(FileSettings, WhatAnotherProgramStoredStays) {
    const TestMachine mac;
    FileSettings mine(mac.files, json);
    FileSettings other(mac.files, json);
    EXPECT_TRUE(other.set(key("gridRows"), 4));
    EXPECT_TRUE(mine.set(key("gridColumns"), 9));
    EXPECT_EQ(mine.integer(key("gridRows")), 4);
    EXPECT_EQ(FileSettings(mac.files, json).values().size(), 2);
    // A file that was damaged meanwhile costs nothing that is still known.
    mac.write(json, "{");
    EXPECT_TRUE(mine.set(key("iconScale"), 1.1));
    EXPECT_EQ(FileSettings(mac.files, json).values().size(), 3);
    EXPECT_EQ(mac.read(json + u".damaged"_s), "{");
}

TEST(FileSettings, HoldsWhatTheDiskHoldsWhenWritingFails) {
    const TestMachine mac;
    mac.write(u"/Users/ada/Library/Preferences"_s, "a file where the folder should be");
    FileSettings settings(mac.files, json);
    EXPECT_FALSE(settings.set(key("gridRows"), 4));
    EXPECT_FALSE(settings.value(key("gridRows")));
}

TEST(FileSettings, ADamagedFileOnAFullDiskCostsNothing) {
    const TestMachine mac;
    FileSettings settings(mac.files, json);
    ASSERT_TRUE(settings.set(key("gridRows"), 4));
    mac.write(json, "{");
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit none{.rlim_cur = 0, .rlim_max = before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &none), 0);
    EXPECT_FALSE(settings.set(key("gridColumns"), 9));
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, handler);
    ASSERT_TRUE(settings.set(key("gridColumns"), 9));
    EXPECT_EQ(FileSettings(mac.files, json).values().size(), 2);
}

/// Answers as the tool does: with the domain as a property list, and with success.
class DefaultsSettingsTest : public testing::Test {
protected:
    DefaultsSettings settings() {
        return {_mac.files, _mac.commands, _mac.machine.environment, u"com.tessellar.app"_s};
    }
    void answer(const CommandResult& exported, const CommandResult& other) {
        _mac.tool(u"/usr/bin/defaults"_s, [=](const Command& command, std::stop_token) {
            return command.arguments.front() == "export" ? exported : other;
        });
    }

    /// What the tool was told so far, without the domain.
    std::vector<std::string> told() const {
        std::vector<std::string> lines;
        for (const Command& command : _mac.commands.commands()) {
            EXPECT_EQ(command.executable, "/usr/bin/defaults");
            EXPECT_EQ(command.environment, _mac.machine.environment);
            EXPECT_EQ(command.arguments.value(1), "com.tessellar.app");
            lines.push_back(
                (command.arguments.first(1) + command.arguments.mid(2)).join('|').toStdString());
        }
        return lines;
    }

    TestMachine _mac;
};

TEST_F(DefaultsSettingsTest, ReadsTheDomainOnceAndWritesEachValueWithItsType) {
    answer(test::exited(0, "<plist version=\"1.0\"><dict><key>gridRows</key><integer>6</integer>"
                           "<key>old</key><true/></dict></plist>"),
           test::exited(0));
    DefaultsSettings defaults = settings();
    EXPECT_EQ(defaults.integer(key("gridRows")), 6);
    EXPECT_TRUE(defaults.set(key("gridRows"), 6));
    EXPECT_TRUE(defaults.set(key("absent"), QJsonValue::Null));
    EXPECT_TRUE(defaults.set(key("gridRows"), 7));
    EXPECT_TRUE(defaults.set(key("enabled"), true));
    EXPECT_TRUE(defaults.set(key("name"), u"(a <b>)"_s));
    EXPECT_TRUE(defaults.set(key("scale"), 0.1));
    EXPECT_TRUE(defaults.set(key("paths"), QJsonArray{u"/A & B"_s, QJsonObject{{key("n"), 1}}}));
    EXPECT_TRUE(defaults.set(key("old"), QJsonValue::Undefined));
    EXPECT_EQ(defaults.integer(key("gridRows")), 7);
    EXPECT_FALSE(defaults.value(key("old")));

    EXPECT_THAT(told(), ElementsAre("export|-", "write|gridRows|<integer>7</integer>",
                                    "write|enabled|-bool|true", "write|name|-string|(a <b>)",
                                    "write|scale|<real>0.1</real>",
                                    "write|paths|<array><string>/A &amp; B</string>"
                                    "<dict><key>n</key><integer>1</integer></dict></array>",
                                    "delete|old"));
}

TEST_F(DefaultsSettingsTest, WritesSeveralValuesAtOnceAndLeavesTheOthersAsTheyAre) {
    answer(test::exited(0, "<?xml version=\"1.0\"?>\n<plist version=\"1.0\">\n<dict>\n"
                           "\t<key>when</key>\n\t<date>2026-11-14T21:05:40Z</date>\n"
                           "\t<key>gridRows</key>\n\t<integer>6</integer>\n"
                           "\t<key>blank</key><string> </string>\n"
                           "\t<key>old</key>\n\t<true/>\n</dict>\n</plist>\n"),
           test::exited(0));
    DefaultsSettings defaults = settings();
    EXPECT_TRUE(defaults.set({{key("gridRows"), 7},
                              {key("blank"), u" "_s}, // as it is
                              {key("name"), u"a & b"_s},
                              {key("old"), QJsonValue::Null}}));
    EXPECT_EQ(defaults.text(key("name")), u"a & b"_s);
    EXPECT_THAT(told(), ElementsAre("export|-", "export|-", "delete|old", "import|-"));
    const QByteArray input = *_mac.commands.commands().last().input;
    const auto imported = parsePropertyList(input);
    ASSERT_TRUE(imported);
    EXPECT_EQ((*imported)[key("gridRows")].integer(), 7);
    EXPECT_EQ((*imported)[key("blank")].text(), u" "_s);
    EXPECT_EQ((*imported)[key("name")].text(), u"a & b"_s);
    EXPECT_TRUE((*imported)[key("old")].isAbsent());
    EXPECT_TRUE(input.contains("<date>2026-11-14T21:05:40Z</date>"));
}

TEST_F(DefaultsSettingsTest, AFailingToolCostsTheDefaultsAndChangesNothing) {
    answer(test::exited(0, "not a property list"), test::exited(1));
    DefaultsSettings defaults = settings();
    EXPECT_TRUE(defaults.values().isEmpty());
    const auto result = defaults.set(key("gridRows"), 7);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().path, u"/usr/bin/defaults"_s);
    EXPECT_FALSE(defaults.value(key("gridRows")));
}

} // namespace
} // namespace tessellar
