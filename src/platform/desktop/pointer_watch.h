#pragma once

#include <QPoint>

#include <functional>
#include <memory>

namespace tessellar {

/// Reports pointer movements anywhere on the screen, over other programs' windows too; for hot corners.
/// Destroying it stops the reports.
///
/// macOS: an event monitor for mouse movements, which needs no permission and, unlike polling, costs
/// nothing while the pointer rests. Unproven: compiled against declarations, never run. X11: raw motion
/// events of XInput. Elsewhere unavailable: those desktops have their own hot corners.
class PointerWatch {
public:
    virtual ~PointerWatch() = default;

    /// Whether this platform can follow the pointer.
    static bool isAvailable();
    /// Null if unavailable. Calls back on the main thread, in the coordinates common to all screens.
    static std::unique_ptr<PointerWatch> make(std::function<void(QPoint)> moved);
};

} // namespace tessellar
