#include "platform/desktop/desktop_pasteboard.h"
#include "platform/desktop/hot_key.h"
#include "platform/desktop/launch_at_login.h"

#include "support/printers.h"
#include "support/run_tests.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QTemporaryDir>
#include <QUrl>

#include <gmock/gmock.h>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;

TEST(DesktopPasteboard, GivesBackWhatWasWritten) {
    const QString own = u"com.tessellar.app.tile-selection"_s;
    const QList<PasteboardItem> items{{{{own, QByteArray("{\0}", 3)},
                                        {pasteboard::text, "Ä\nb"},
                                        {pasteboard::fileUrl, "file:///Applications/A%20%C3%A4.app/"}}},
                                      {{{pasteboard::fileUrl, "file:///Applications/B.app/"}}}};
    DesktopPasteboard desktop;
    ASSERT_TRUE(desktop.write(items));
    EXPECT_EQ(desktop.items(), items);
    const QMimeData* seenByOthers = QGuiApplication::clipboard()->mimeData();
    EXPECT_EQ(seenByOthers->text(), u"Ä\nb"_s);
    EXPECT_EQ(seenByOthers->urls().size(), 2);

    ASSERT_TRUE(desktop.write({{{{pasteboard::text, "alone"}}}}));
    EXPECT_EQ(desktop.items(), (QList<PasteboardItem>{{{{pasteboard::text, "alone"}}}}));
    QGuiApplication::clipboard()->clear();
    EXPECT_TRUE(desktop.items().isEmpty());
}

TEST(DesktopPasteboard, ReadsWhatOtherProgramsWrite) {
    auto* mime = new QMimeData; // the clipboard takes it
    mime->setUrls({QUrl(u"https://example.org/"_s), QUrl(u"file:///tmp/a"_s)});
    mime->setData(u"image/png"_s, "not for us");
    QGuiApplication::clipboard()->setMimeData(mime);
    const auto items = DesktopPasteboard().items();
    ASSERT_EQ(items.size(), 1);
    EXPECT_EQ(items[0].data.value(pasteboard::fileUrl), "file:///tmp/a");
    EXPECT_FALSE(items[0].data.contains(u"image/png"_s));
}

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
    QFile entry(configuration.path() + u"/autostart/com.tessellar.app.desktop"_s);
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

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    return tessellar::test::runTests(argc, argv);
}
