#pragma once

#include "editing/grid_geometry.h"
#include "model/layout_document.h"

#include <QObject>
#include <QRectF>
#include <QSizeF>
#include <QtQml/qqmlregistration.h>

namespace tessellar {

/// The layout of tiles in a window, in its own pixels: whole numbers, so that icons are drawn as
/// decoded, without smoothing them again.
struct GridMetrics {
    Q_GADGET
    QML_VALUE_TYPE(gridMetrics)
    Q_PROPERTY(int columns MEMBER columns FINAL)
    Q_PROPERTY(int rows MEMBER rows FINAL)
    Q_PROPERTY(int left MEMBER left FINAL)
    Q_PROPERTY(int top MEMBER top FINAL)
    Q_PROPERTY(int cellWidth MEMBER cellWidth FINAL)
    Q_PROPERTY(int cellHeight MEMBER cellHeight FINAL)
    Q_PROPERTY(int iconSide MEMBER iconSide FINAL)
    Q_PROPERTY(int labelPixels MEMBER labelPixels FINAL)

public:
    int columns = 1;
    int rows = 1;
    int left = 0; ///< of the first cell
    int top = 0;
    int cellWidth = 0;
    int cellHeight = 0;
    int iconSide = 0;
    int labelPixels = 13; ///< font height

    bool operator==(const GridMetrics&) const = default;
};

/// A page's grid in full screen: cells share the area inside the margins, above the page dots.
GridMetrics fullScreenMetrics(QSizeF window, const GridGeometry& geometry,
                              std::optional<double> labelFontSize);

/// A page's grid in a window: icons and spacing have the sizes in the settings, as far as they fit;
/// extra room becomes spacing.
GridMetrics windowedMetrics(QSizeF window, const ArrangementLayout& layout);
/// The window size that fits the settings exactly, unless they specify one.
QSizeF windowedSize(const ArrangementLayout& layout);

/// An open folder over a grid with these metrics. The panel is as large as needed for `pages` pages
/// with at most `tiles` tiles.
struct FolderMetrics {
    QRectF panel;
    GridMetrics grid; ///< relative to the panel; only the columns in use
};
FolderMetrics folderMetrics(QSizeF window, const GridMetrics& grid, const ArrangementLayout& layout,
                            qsizetype tiles, qsizetype pages);

} // namespace tessellar
