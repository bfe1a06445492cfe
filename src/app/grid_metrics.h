#pragma once

#include "editing/grid_geometry.h"
#include "model/layout_document.h"

#include <QObject>
#include <QRectF>
#include <QSizeF>
#include <QtQml/qqmlregistration.h>

namespace tessellar {

/// Where tiles lie in a window, in its own pixels. Whole numbers, so that icons are drawn as they were
/// decoded and not smoothed a second time.
struct GridMetrics {
    Q_GADGET
    QML_VALUE_TYPE(gridMetrics)
    Q_PROPERTY(int columns MEMBER columns)
    Q_PROPERTY(int rows MEMBER rows)
    Q_PROPERTY(int left MEMBER left)
    Q_PROPERTY(int top MEMBER top)
    Q_PROPERTY(int cellWidth MEMBER cellWidth)
    Q_PROPERTY(int cellHeight MEMBER cellHeight)
    Q_PROPERTY(int iconSide MEMBER iconSide)
    Q_PROPERTY(int labelPixels MEMBER labelPixels)

public:
    int columns = 1;
    int rows = 1;
    int left = 0; ///< of the first cell
    int top = 0;
    int cellWidth = 0;
    int cellHeight = 0;
    int iconSide = 0;
    int labelPixels = 13; ///< height of the label's font

    bool operator==(const GridMetrics&) const = default;
};

/// The grid of a page in full screen: cells share the area that the margins and the page dots leave.
GridMetrics fullScreenMetrics(QSizeF window, const GridGeometry& geometry,
                              std::optional<double> labelFontSize);

/// The grid of a page in a window: icons and spacing have the sizes of the settings as far as the
/// window holds them; what is left over becomes spacing.
GridMetrics windowedMetrics(QSizeF window, const ArrangementLayout& layout);
/// The window that fits the settings exactly, unless they name a size.
QSizeF windowedSize(const ArrangementLayout& layout);

/// An open folder over a grid with these metrics. The panel is as large as its tiles need: `tiles` on
/// the fullest page, of `pages`.
struct FolderMetrics {
    QRectF panel;
    GridMetrics grid; ///< relative to the panel; its columns are those that are used
};
FolderMetrics folderMetrics(QSizeF window, const GridMetrics& grid, const ArrangementLayout& layout,
                            qsizetype tiles, qsizetype pages);

} // namespace tessellar
