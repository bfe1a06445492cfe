#include "app/grid_metrics.h"

#include <gtest/gtest.h>

namespace tessellar {
namespace {

/// The icon with its label lies in its cell, and the cells lie in the window.
void expectFits(const GridMetrics& metrics, int columns, int rows, QSizeF area, const char* what) {
    EXPECT_GE(metrics.iconSide, 16) << what;
    EXPECT_LE(metrics.iconSide, metrics.cellWidth) << what;
    EXPECT_LE(metrics.iconSide + metrics.labelPixels, metrics.cellHeight) << what;
    EXPECT_GE(metrics.left, 0) << what;
    EXPECT_LE(metrics.left + metrics.cellWidth * columns, area.width()) << what;
    EXPECT_LE(metrics.top + metrics.cellHeight * rows, area.height()) << what;
}

TEST(GridMetrics, FitEverySettingOnEveryScreen) {
    for (const QSizeF screen :
         {QSizeF(1024, 640), QSizeF(1440, 900), QSizeF(3440, 1440), QSizeF(900, 1440)}) {
        for (const int rows : {3, 5, 9}) {
            for (const int columns : {4, 8, 10}) {
                for (const double scale : {0.8, 1.0, 1.2}) {
                    ArrangementLayout layout;
                    layout.rows = rows;
                    layout.columns = columns;
                    layout.iconScale = scale;
                    const GridMetrics full = fullScreenMetrics(screen, pageGeometry(layout), {});
                    expectFits(full, columns, rows, screen, "full screen");
                    expectFits(windowedMetrics(screen, layout), columns, rows, screen, "in a window");
                    for (const auto& [tiles, pages] :
                         {std::pair(0, 1), std::pair(7, 1), std::pair(15, 3)}) {
                        const FolderMetrics folder = folderMetrics(screen, full, layout, tiles, pages);
                        EXPECT_TRUE(QRectF({}, screen).contains(folder.panel));
                        const int used =
                            std::max(1, (tiles + folder.grid.columns - 1) / folder.grid.columns);
                        expectFits(folder.grid, folder.grid.columns, used, folder.panel.size(),
                                   "in a folder");
                    }
                }
            }
        }
    }
}

TEST(GridMetrics, AWindowHasTheSizesOfTheSettings) {
    ArrangementLayout layout;
    layout.columns = 7;
    EXPECT_EQ(windowedMetrics(windowedSize(layout), layout).iconSide, 64);
    layout.windowedIconSize = 96;
    layout.windowedHorizontalSpacing = 60;
    const GridMetrics wide = windowedMetrics(windowedSize(layout), layout);
    EXPECT_EQ(wide.iconSide, 96);
    EXPECT_EQ(wide.cellWidth, 156);
    layout.windowSize = WindowSize{800, 600};
    EXPECT_EQ(windowedSize(layout), QSizeF(800, 600));
}

TEST(GridMetrics, AScaleIsSeenUnlessThereIsNoRoom) {
    const QSizeF screen(1440, 900);
    const int small = fullScreenMetrics(screen, {5, 8, 0.8}, {}).iconSide;
    const int normal = fullScreenMetrics(screen, {5, 8, 1.0}, {}).iconSide;
    const int large = fullScreenMetrics(screen, {5, 8, 1.2}, {}).iconSide;
    EXPECT_LT(small, normal);
    EXPECT_LT(normal, large);
    EXPECT_EQ(fullScreenMetrics(screen, {5, 8, 1.0}, 20.0).labelPixels, 20);
}

TEST(GridMetrics, AFolderOfFewIsSmall) {
    const ArrangementLayout layout;
    const GridMetrics grid = fullScreenMetrics({1440, 900}, pageGeometry(layout), {});
    const FolderMetrics few = folderMetrics({1440, 900}, grid, layout, 3, 1);
    const FolderMetrics full = folderMetrics({1440, 900}, grid, layout, 15, 1);
    const FolderMetrics paged = folderMetrics({1440, 900}, grid, layout, 15, 2);
    EXPECT_EQ(few.grid.columns, 4);
    EXPECT_EQ(full.grid.columns, 5);
    EXPECT_LT(few.panel.height(), full.panel.height());
    EXPECT_GT(paged.panel.height(), full.panel.height()) << "room for the dots";
}

} // namespace
} // namespace tessellar
