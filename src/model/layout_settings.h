#pragma once

#include "model/launcher_window_mode.h"
#include "model/layout_document.h"
#include "platform/settings.h"

namespace tessellar {

/// Reads the grid settings of one mode. Windowed values have the prefix "windowed."; missing or
/// mistyped ones fall back to the full-screen key. Out-of-range values become the mode's default.
ArrangementLayout readLayoutSettings(const Settings& settings, LauncherWindowMode mode);

/// The valid range of a numeric setting.
struct LayoutRange {
    QString key; ///< without the mode's prefix
    double minimum;
    double maximum;
    bool isInteger;
    QJsonValue defaultValue; ///< for the mode; null if there is none
};
QList<LayoutRange> layoutRanges(LauncherWindowMode mode);

/// The settings as stored, by key; null removes a key. Out-of-range values are stored as the default,
/// or removed if there is none (font size, window size).
QMap<QString, QJsonValue> storedLayoutSettings(LauncherWindowMode mode,
                                               const ArrangementLayout& layout);

/// The number of tiles per page of the grid.
inline qsizetype pageCapacity(const ArrangementLayout& layout) {
    return static_cast<qsizetype>(layout.rows) * layout.columns;
}

} // namespace tessellar
