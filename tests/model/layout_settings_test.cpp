#include "model/layout_settings.h"

#include "support/memory_settings.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace tessellar {
namespace {

using namespace Qt::Literals::StringLiterals;
constexpr auto fullScreen = LauncherWindowMode::fullScreen;
constexpr auto windowed = LauncherWindowMode::windowed;

TEST(LayoutSettings, TheWindowFallsBackToTheFullScreensValues) {
    test::MemorySettings settings;
    (void)settings.set(u"gridRows"_s, 6);
    (void)settings.set(u"gridColumns"_s, 9);
    (void)settings.set(u"windowed.gridColumns"_s, 4);
    EXPECT_EQ(readLayoutSettings(settings, windowed).rows, 6);
    EXPECT_EQ(readLayoutSettings(settings, windowed).columns, 4);
    EXPECT_EQ(readLayoutSettings(settings, fullScreen).columns, 9);
    for (const QJsonValue& wrong : {QJsonValue(u"5"_s), QJsonValue(4.5)}) {
        (void)settings.set(u"windowed.gridColumns"_s, wrong);
        EXPECT_EQ(readLayoutSettings(settings, windowed).columns, 9);
    }
    // Out of range is the default, whatever the full screen has, and there too.
    (void)settings.set(u"windowed.gridColumns"_s, 99);
    EXPECT_EQ(readLayoutSettings(settings, windowed).columns, 7);
    (void)settings.set(u"windowed.gridColumns"_s, QJsonValue::Null);
    (void)settings.set(u"gridColumns"_s, 99);
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
    layout.recents = {true, 2, u"firstPage"_s};
    layout.windowSize = WindowSize{900, 600};
    ASSERT_TRUE(settings.set(storedLayoutSettings(windowed, layout)));
    EXPECT_EQ(readLayoutSettings(settings, windowed), layout);
    EXPECT_EQ(readLayoutSettings(settings, fullScreen), ArrangementLayout());
    layout.rows = 40;
    (void)settings.set(u"gridRows"_s, 6);
    ASSERT_TRUE(settings.set(storedLayoutSettings(windowed, layout)));
    EXPECT_EQ(readLayoutSettings(settings, windowed).rows, 5);
}

} // namespace
} // namespace tessellar
