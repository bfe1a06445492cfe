#include "platform/desktop/hot_key.h"
#include "platform/desktop/launch_at_login.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tessellar {
namespace {

TEST(KeyChord, IsReadFromTheNamesOnTheKeyboard) {
    const auto chord = [](const char* text) { return keyChord(QString::fromUtf8(text)); };
    EXPECT_EQ(chord("option+space"), (KeyChord{49, KeyChord::withOption}));
    EXPECT_EQ(chord("Control + Command + L"),
              (KeyChord{37, KeyChord::withControl | KeyChord::withCommand}));
    EXPECT_EQ(chord("f4"), (KeyChord{118, 0}));
    for (const char* refused : {"", "l", "shift+l", "option+", "meta+l", "option+ß"})
        EXPECT_EQ(chord(refused), std::nullopt) << refused;
}

TEST(LaunchAtLogin, IsAFileOfTheDesktopThatTheUserMaySwitchOff) {
    const QTemporaryDir configuration;
    EXPECT_FALSE(launchesAtLogin(configuration.path()));
    ASSERT_TRUE(setLaunchesAtLogin(true, configuration.path()));
    EXPECT_TRUE(launchesAtLogin(configuration.path()));
    QFile entry(configuration.path() + QStringLiteral("/autostart/com.tessellar.app.desktop"));
    ASSERT_TRUE(entry.open(QFile::Append));
    entry.write("Hidden=true\n");
    entry.close();
    EXPECT_FALSE(launchesAtLogin(configuration.path()));
    ASSERT_TRUE(setLaunchesAtLogin(false, configuration.path()));
    EXPECT_FALSE(entry.exists());
    EXPECT_TRUE(setLaunchesAtLogin(false, configuration.path()));
}

} // namespace
} // namespace tessellar
