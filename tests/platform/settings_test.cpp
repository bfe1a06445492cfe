#include "platform/settings.h"

#include "platform/defaults_settings.h"
#include "platform/property_list.h"
#include "tests/support/printers.h"
#include "tests/support/test_machine.h"

#include <QJsonArray>
#include <QJsonObject>

#include <gmock/gmock.h>

namespace tessellar {
namespace {

using test::TestMachine;
using testing::ElementsAre;

const QString json = QStringLiteral("/Users/ada/Library/Preferences/com.tessellar.app.json");
const QString plist = QStringLiteral("/Users/ada/Library/Preferences/com.tessellar.app.plist");

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
    set(QStringLiteral("5"));
    EXPECT_EQ(settings.integer(key("k")), std::nullopt);
    EXPECT_EQ(settings.text(key("k")), QStringLiteral("5"));
    EXPECT_EQ(settings.texts(key("k")), std::nullopt);
    set(QJsonArray{QStringLiteral("a"), QStringLiteral("b")});
    EXPECT_EQ(settings.texts(key("k")), (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
    set(QJsonArray{QStringLiteral("a"), 1});
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
    EXPECT_EQ(settings.texts(key("paths")), QStringList{QStringLiteral("/A")});
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
    EXPECT_EQ(mac.read(json + QStringLiteral(".damaged")), "{\"gridRows\": 5,");
    EXPECT_EQ(mac.read(json + QStringLiteral(".damaged-2")), "[1, 2]");

    // What was repaired meanwhile is taken up, not put aside.
    mac.write(json, "{");
    FileSettings settings(mac.files, json);
    mac.write(json, "{\"gridColumns\": 9}");
    EXPECT_TRUE(settings.set(key("gridRows"), 4));
    EXPECT_EQ(settings.integer(key("gridColumns")), 9);
    EXPECT_FALSE(mac.exists(json + QStringLiteral(".damaged-3")));
}

TEST(FileSettings, AFileThatCannotBeReadNowIsNeitherMovedNorWritten) {
    const TestMachine mac;
    mac.write(json, "{\"gridRows\": 5}");
    FileSettings settings(mac.files, json);
    mac.remove(json);
    mac.link(json, QStringLiteral("/Volumes/Away/settings.json"));
    EXPECT_FALSE(settings.set(key("gridColumns"), 9));
    EXPECT_EQ(settings.integer(key("gridRows")), 5); // still known
    EXPECT_EQ(mac.names(FileSystem::parent(json)).size(), 1);
    mac.write(QStringLiteral("/Volumes/Away/settings.json"), "{\"gridRows\": 6}");
    EXPECT_TRUE(settings.set(key("gridColumns"), 9));
    EXPECT_EQ(settings.integer(key("gridRows")), 6);
    EXPECT_TRUE(mac.read(QStringLiteral("/Volumes/Away/settings.json")).contains("gridColumns"));
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
    EXPECT_EQ(mac.read(json + QStringLiteral(".damaged")), "{");
}

TEST(FileSettings, HoldsWhatTheDiskHoldsWhenWritingFails) {
    const TestMachine mac;
    mac.write(QStringLiteral("/Users/ada/Library/Preferences"), "a file where the folder should be");
    FileSettings settings(mac.files, json);
    EXPECT_FALSE(settings.set(key("gridRows"), 4));
    EXPECT_FALSE(settings.value(key("gridRows")));
}

/// Answers as the tool does: with the domain as a property list, and with success.
class DefaultsSettingsTest : public testing::Test {
protected:
    DefaultsSettings settings() {
        return {_mac.files, _mac.commands, _mac.machine.environment,
                QStringLiteral("com.tessellar.app")};
    }
    void answer(const CommandResult& exported, const CommandResult& other) {
        _mac.tool(QStringLiteral("/usr/bin/defaults"), [=](const Command& command, std::stop_token) {
            return command.arguments.front() == "export" ? exported : other;
        });
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
    EXPECT_TRUE(defaults.set(key("name"), QStringLiteral("(a <b>)")));
    EXPECT_TRUE(defaults.set(key("scale"), 0.1));
    EXPECT_TRUE(
        defaults.set(key("paths"), QJsonArray{QStringLiteral("/A & B"), QJsonObject{{key("n"), 1}}}));
    EXPECT_TRUE(defaults.set(key("old"), QJsonValue::Undefined));
    EXPECT_EQ(defaults.integer(key("gridRows")), 7);
    EXPECT_FALSE(defaults.value(key("old")));

    QList<QByteArray> lines;
    for (const Command& command : _mac.commands.commands()) {
        EXPECT_EQ(command.executable, "/usr/bin/defaults");
        EXPECT_EQ(command.environment, _mac.machine.environment);
        lines.append(command.arguments.join('|'));
    }
    EXPECT_THAT(lines, ElementsAre("export|com.tessellar.app|-",
                                   "write|com.tessellar.app|gridRows|<integer>7</integer>",
                                   "write|com.tessellar.app|enabled|-bool|true",
                                   "write|com.tessellar.app|name|-string|(a <b>)",
                                   "write|com.tessellar.app|scale|<real>0.1</real>",
                                   "write|com.tessellar.app|paths|<array><string>/A &amp; B</string>"
                                   "<dict><key>n</key><integer>1</integer></dict></array>",
                                   "delete|com.tessellar.app|old"));
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
                              {key("blank"), QStringLiteral(" ")}, // as it is
                              {key("name"), QStringLiteral("a & b")},
                              {key("old"), QJsonValue::Null}}));
    EXPECT_EQ(defaults.text(key("name")), QStringLiteral("a & b"));
    QStringList words;
    const QList<Command> commands = _mac.commands.commands();
    for (const Command& command : commands)
        words += QString::fromUtf8(command.arguments.join(' '));
    const QString domain = QStringLiteral(" com.tessellar.app ");
    EXPECT_EQ(words, (QStringList{QStringLiteral("export") + domain + u'-',
                                  QStringLiteral("export") + domain + u'-',
                                  QStringLiteral("delete") + domain + QStringLiteral("old"),
                                  QStringLiteral("import") + domain + u'-'}));
    const auto imported = parsePropertyList(*commands.last().input);
    ASSERT_TRUE(imported);
    EXPECT_EQ((*imported)[key("gridRows")].integer(), 7);
    EXPECT_EQ((*imported)[key("blank")].text(), QStringLiteral(" "));
    EXPECT_EQ((*imported)[key("name")].text(), QStringLiteral("a & b"));
    EXPECT_TRUE((*imported)[key("old")].isAbsent());
    EXPECT_TRUE(commands.last().input->contains("<date>2026-11-14T21:05:40Z</date>"));
}

TEST_F(DefaultsSettingsTest, AFailingToolCostsTheDefaultsAndChangesNothing) {
    answer(test::exited(0, "not a property list"), test::exited(1));
    DefaultsSettings defaults = settings();
    EXPECT_TRUE(defaults.values().isEmpty());
    const auto result = defaults.set(key("gridRows"), 7);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().path, QStringLiteral("/usr/bin/defaults"));
    EXPECT_FALSE(defaults.value(key("gridRows")));
}

} // namespace
} // namespace tessellar
