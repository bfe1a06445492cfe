#include "model/layout_settings.h"

#include "support/memory_settings.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace tessellar {
namespace {

constexpr auto fullScreen = LauncherWindowMode::fullScreen;
constexpr auto windowed = LauncherWindowMode::windowed;

TEST(LayoutSettings, ValuesOutOfRangeOrOfAWrongTypeAreTheDefault) {
    test::MemorySettings settings;
    EXPECT_EQ(readLayoutSettings(settings, fullScreen).columns, 8);
    EXPECT_EQ(readLayoutSettings(settings, windowed).columns, 7);
    const QList<QJsonValue> bad{2, 10, 5.5, true, QStringLiteral("6"), QJsonValue::Null, QJsonArray{6}};
    for (const QJsonValue& value : bad) {
        (void)settings.set(QStringLiteral("gridRows"), value);
        (void)settings.set(QStringLiteral("iconScale"), value);
        EXPECT_EQ(readLayoutSettings(settings, fullScreen).rows, 5);
        EXPECT_EQ(readLayoutSettings(settings, fullScreen).iconScale, 1.0);
    }
}

TEST(LayoutSettings, TheWindowFallsBackToTheFullScreensValues) {
    test::MemorySettings settings;
    (void)settings.set(QStringLiteral("gridRows"), 6);
    (void)settings.set(QStringLiteral("gridColumns"), 9);
    (void)settings.set(QStringLiteral("windowed.gridColumns"), 4);
    EXPECT_EQ(readLayoutSettings(settings, windowed).rows, 6);
    EXPECT_EQ(readLayoutSettings(settings, windowed).columns, 4);
    EXPECT_EQ(readLayoutSettings(settings, fullScreen).columns, 9);
    for (const QJsonValue& wrong : {QJsonValue(QStringLiteral("5")), QJsonValue(4.5)}) {
        (void)settings.set(QStringLiteral("windowed.gridColumns"), wrong);
        EXPECT_EQ(readLayoutSettings(settings, windowed).columns, 9);
    }
    // Out of range is the default, whatever the full screen has, and there too.
    (void)settings.set(QStringLiteral("windowed.gridColumns"), 99);
    EXPECT_EQ(readLayoutSettings(settings, windowed).columns, 7);
    (void)settings.set(QStringLiteral("windowed.gridColumns"), QJsonValue::Null);
    (void)settings.set(QStringLiteral("gridColumns"), 99);
    EXPECT_EQ(readLayoutSettings(settings, windowed).columns, 7);
}

TEST(LayoutSettings, WhatIsWrittenForAModeReadsBackAndLeavesTheOtherAlone) {
    test::MemorySettings settings;
    ArrangementLayout layout;
    layout.rows = 4;
    layout.columns = 6;
    layout.iconScale = 1.1;
    layout.tileLabelFontSize = 13;
    layout.folderColumns = 4;
    layout.recents = {true, 2, QStringLiteral("firstPage")};
    layout.windowSize = WindowSize{900, 600};
    ASSERT_TRUE(writeLayoutSettings(settings, windowed, layout));
    EXPECT_EQ(readLayoutSettings(settings, windowed), layout);
    EXPECT_EQ(readLayoutSettings(settings, fullScreen), ArrangementLayout());
    layout.rows = 40;
    (void)settings.set(QStringLiteral("gridRows"), 6);
    ASSERT_TRUE(writeLayoutSettings(settings, windowed, layout));
    EXPECT_EQ(readLayoutSettings(settings, windowed).rows, 5);
}

} // namespace
} // namespace tessellar
