#include "app/grid_metrics.h"

#include <algorithm>
#include <cmath>

namespace tessellar {

namespace {

constexpr double dotsHeight = 64;
constexpr double searchHeight = 40; ///< of the search field above the tiles, including margins
constexpr double windowMargin = 28;
constexpr double folderTitleHeight = 72;
constexpr double folderMargin = 32;

int whole(double value) { return static_cast<int>(std::floor(value)); }

int labelPixels(int iconSide, std::optional<double> labelFontSize) {
    if (labelFontSize)
        return static_cast<int>(std::clamp(std::round(*labelFontSize), 8.0, 32.0));
    // The usual size of text, except with very small and very large icons.
    return std::clamp(std::max(std::min(iconSide / 7, 15), iconSide / 9), iconSide < 40 ? 8 : 11, 48);
}

/// The label and the space around it, which is tight in small cells.
double labelHeight(double labelFont, double cellHeight = 1000) {
    return labelFont * 1.4 + std::min(14.0, cellHeight * 0.12);
}

/// The largest icon, up to the wanted size, that fits a cell with its label.
int fittingIcon(double wanted, double cellWidth, double cellHeight, double labelFont) {
    const double air = std::min(8.0, cellHeight * 0.07);
    return std::max(12, whole(std::min({wanted, cellWidth - 1.5 * air,
                                        cellHeight - labelHeight(labelFont, cellHeight) - air})));
}

/// The space for the page dots, below the tiles.
double bottomHeight(double window) { return std::min(dotsHeight, window * 0.14); }

} // namespace

GridMetrics fullScreenMetrics(QSizeF window, const GridGeometry& geometry,
                              std::optional<double> labelFontSize) {
    const double side = window.width() * 0.075;
    const double top = std::max(window.height() * 0.06, searchHeight);
    GridMetrics metrics{.columns = geometry.columns, .rows = geometry.rows};
    metrics.cellWidth = whole((window.width() - 2 * side) / geometry.columns);
    metrics.cellHeight =
        whole((window.height() - top - bottomHeight(window.height()) * 1.25) / geometry.rows);
    const double wanted = std::min(metrics.cellWidth * 0.72, metrics.cellHeight * 0.68);
    metrics.labelPixels = labelPixels(whole(wanted), labelFontSize);
    metrics.iconSide = fittingIcon(wanted * geometry.iconScale, metrics.cellWidth, metrics.cellHeight,
                                   metrics.labelPixels);
    metrics.left = whole((window.width() - metrics.cellWidth * geometry.columns) / 2);
    metrics.top = whole(top);
    return metrics;
}

QSizeF windowedSize(const ArrangementLayout& layout) {
    if (layout.windowSize)
        return {layout.windowSize->width, layout.windowSize->height};
    const double icon = layout.windowedIconSize * layout.iconScale;
    const double label = labelPixels(whole(icon), layout.tileLabelFontSize);
    const double cellWidth = std::max(icon + layout.windowedHorizontalSpacing, 88.0);
    const double cellHeight = icon + labelHeight(label) + layout.windowedVerticalSpacing;
    return {std::ceil(cellWidth * layout.columns + 2 * windowMargin),
            std::ceil(cellHeight * layout.rows + searchHeight + dotsHeight)};
}

GridMetrics windowedMetrics(QSizeF window, const ArrangementLayout& layout) {
    GridMetrics metrics{.columns = layout.columns, .rows = layout.rows};
    metrics.cellWidth = whole((window.width() - 2 * windowMargin) / layout.columns);
    metrics.cellHeight =
        whole((window.height() - searchHeight - bottomHeight(window.height())) / layout.rows);
    const double wanted = layout.windowedIconSize * layout.iconScale;
    metrics.labelPixels = labelPixels(whole(wanted), layout.tileLabelFontSize);
    metrics.iconSide = fittingIcon(wanted, metrics.cellWidth, metrics.cellHeight, metrics.labelPixels);
    metrics.left = whole((window.width() - metrics.cellWidth * layout.columns) / 2);
    metrics.top = whole(searchHeight);
    return metrics;
}

FolderMetrics folderMetrics(QSizeF window, const GridMetrics& grid, const ArrangementLayout& layout,
                            qsizetype tiles, qsizetype pages) {
    const GridGeometry geometry = folderGeometry(layout);
    FolderMetrics metrics;
    GridMetrics& cells = metrics.grid;
    // A folder with one row of tiles is drawn with one row, but never narrower than its title.
    cells.columns = pages > 1 ? geometry.columns
                              : static_cast<int>(std::clamp<qsizetype>(
                                    tiles, std::min(4, geometry.columns), geometry.columns));
    const int rows = pages > 1 ? geometry.rows
                               : static_cast<int>(std::clamp<qsizetype>(
                                     (tiles + cells.columns - 1) / cells.columns, 1, geometry.rows));

    const double wantedIcon = grid.iconSide * geometry.iconScale;
    const double bottom = pages > 1 ? 48 : 16;
    const double widest = (window.width() * 0.92 - 2 * folderMargin) / cells.columns;
    const double tallest = (window.height() * 0.88 - folderTitleHeight - bottom) / rows;
    cells.rows = geometry.rows;
    cells.labelPixels = grid.labelPixels;
    cells.cellWidth =
        whole(std::min(std::max(wantedIcon + 1.5 * layout.folderIconSpacing, 92.0), widest));
    cells.cellHeight = whole(
        std::min(wantedIcon + labelHeight(cells.labelPixels) + layout.folderIconSpacing, tallest));
    cells.iconSide = fittingIcon(wantedIcon, cells.cellWidth, cells.cellHeight, cells.labelPixels);
    cells.left = whole(folderMargin);
    cells.top = whole(folderTitleHeight);

    const double width = cells.cellWidth * cells.columns + 2 * folderMargin;
    const double height = folderTitleHeight + cells.cellHeight * rows + bottom;
    metrics.panel = QRectF(whole((window.width() - width) / 2), whole((window.height() - height) / 2),
                           width, height);
    return metrics;
}

} // namespace tessellar
