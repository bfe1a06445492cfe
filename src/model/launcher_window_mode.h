#pragma once

#include "model/json.h"

namespace tessellar {

/// Working layouts, layout settings and saved arrangements are kept for each mode.
enum class LauncherWindowMode { fullScreen, windowed };

constexpr LauncherWindowMode otherMode(LauncherWindowMode mode) {
    return mode == LauncherWindowMode::fullScreen ? LauncherWindowMode::windowed
                                                  : LauncherWindowMode::fullScreen;
}

template <>
struct json::RawValues<LauncherWindowMode> {
    static constexpr std::array values{std::pair{LauncherWindowMode::fullScreen, "fullScreen"},
                                       std::pair{LauncherWindowMode::windowed, "windowed"}};
};

} // namespace tessellar
