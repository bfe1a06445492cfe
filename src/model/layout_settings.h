#pragma once

#include "model/launcher_window_mode.h"
#include "model/layout_document.h"
#include "platform/settings.h"

namespace tessellar {

/// The settings of the grid and its appearance for one mode, each within its range or at its default.
/// Windowed values have the prefix "windowed."; a missing or wrongly typed one falls back to the
/// full-screen key. A value out of range is the default of the mode, wherever it was found.
ArrangementLayout readLayoutSettings(const Settings& settings, LauncherWindowMode mode);

/// What one of them may be, when it is a number.
struct LayoutRange {
    QString key; ///< without the mode's prefix
    double low;
    double high;
    bool isInteger;
    QJsonValue usual; ///< in the mode; null where there is none
};
QList<LayoutRange> layoutRanges(LauncherWindowMode mode);

/// What they are stored as: key and value of each, null where it is left out. What lies outside its
/// range is stored as the default; a font size or a window's size, which have none, are left out then.
QMap<QString, QJsonValue> storedLayoutSettings(LauncherWindowMode mode,
                                               const ArrangementLayout& layout);
/// Stores them so, for the mode.
std::expected<void, FileError> writeLayoutSettings(Settings& settings, LauncherWindowMode mode,
                                                   const ArrangementLayout& layout);

/// The number of tiles on a page of the grid.
inline qsizetype pageCapacity(const ArrangementLayout& layout) {
    return static_cast<qsizetype>(layout.rows) * layout.columns;
}

} // namespace tessellar
