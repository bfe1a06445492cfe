#include "platform/desktop/desktop_pasteboard.h"

#include "support/printers.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QUrl>

#include <gmock/gmock.h>

namespace tessellar {
namespace {

TEST(DesktopPasteboard, GivesBackWhatWasWritten) {
    const QString own = QStringLiteral("com.tessellar.app.tile-selection");
    const QList<PasteboardItem> items{{{{own, QByteArray("{\0}", 3)},
                                        {pasteboard::text, "Ä\nb"},
                                        {pasteboard::fileUrl, "file:///Applications/A%20%C3%A4.app/"}}},
                                      {{{pasteboard::fileUrl, "file:///Applications/B.app/"}}}};
    DesktopPasteboard desktop;
    ASSERT_TRUE(desktop.write(items));
    EXPECT_EQ(desktop.items(), items);
    const QMimeData* seenByOthers = QGuiApplication::clipboard()->mimeData();
    EXPECT_EQ(seenByOthers->text(), QStringLiteral("Ä\nb"));
    EXPECT_EQ(seenByOthers->urls().size(), 2);

    ASSERT_TRUE(desktop.write({{{{pasteboard::text, "alone"}}}}));
    EXPECT_EQ(desktop.items(), (QList<PasteboardItem>{{{{pasteboard::text, "alone"}}}}));
    QGuiApplication::clipboard()->clear();
    EXPECT_TRUE(desktop.items().isEmpty());
}

TEST(DesktopPasteboard, ReadsWhatOtherProgramsWrite) {
    auto* mime = new QMimeData; // the clipboard takes it
    mime->setUrls(
        {QUrl(QStringLiteral("https://example.org/")), QUrl(QStringLiteral("file:///tmp/a"))});
    mime->setData(QStringLiteral("image/png"), "not for us");
    QGuiApplication::clipboard()->setMimeData(mime);
    const auto items = DesktopPasteboard().items();
    ASSERT_EQ(items.size(), 1);
    EXPECT_EQ(items[0].data.value(pasteboard::fileUrl), "file:///tmp/a");
    EXPECT_FALSE(items[0].data.contains(QStringLiteral("image/png")));
}

} // namespace
} // namespace tessellar

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
