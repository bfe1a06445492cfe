#pragma once

#include "model/json.h"

namespace tessellar {

/// Each mode has its own working layout, layout settings and saved arrangements.
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
