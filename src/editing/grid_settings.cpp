#include "editing/grid_geometry.h"

namespace tessellar {
namespace {

template <typename T>
struct Range {
    T least;
    T most;
    T standard;
};

/// Reads one setting for a mode; `read` is the typed reader of Settings.
template <typename T, typename Read>
T setting(const Settings& settings, LauncherWindowMode mode, const QString& key, Range<T> range,
          Read read) {
    auto value = mode == LauncherWindowMode::windowed
                     ? (settings.*read)(QStringLiteral("windowed.") + key)
                     : std::nullopt;
    if (!value)
        value = (settings.*read)(key);
    const bool fits = value && *value >= range.least && *value <= range.most;
    return fits ? static_cast<T>(*value) : range.standard;
}

GridGeometry geometry(const Settings& settings, LauncherWindowMode mode, const QString& rowsKey,
                      Range<int> rows, const QString& columnsKey, Range<int> columns,
                      const QString& scaleKey) {
    return {setting(settings, mode, rowsKey, rows, &Settings::integer),
            setting(settings, mode, columnsKey, columns, &Settings::integer),
            setting(settings, mode, scaleKey, Range<double>{0.8, 1.2, 1.0}, &Settings::number)};
}

} // namespace

GridGeometry pageGeometry(const Settings& settings, LauncherWindowMode mode) {
    const int columns = mode == LauncherWindowMode::windowed ? 7 : 8;
    return geometry(settings, mode, QStringLiteral("gridRows"), {3, 9, 5},
                    QStringLiteral("gridColumns"), {4, 10, columns}, QStringLiteral("iconScale"));
}

GridGeometry folderGeometry(const Settings& settings, LauncherWindowMode mode) {
    return geometry(settings, mode, QStringLiteral("folderRows"), {2, 9, 4},
                    QStringLiteral("folderColumns"), {2, 10, 5}, QStringLiteral("folderIconScale"));
}

} // namespace tessellar
