#pragma once

#include <QPoint>

#include <functional>
#include <memory>

namespace tessellar {

/// Tells where the pointer is while it moves, over other programs' windows too: what hot corners are
/// made of. Destroying it ends that.
///
/// On a Mac through an event monitor for movements of the mouse, which needs no permission and, unlike
/// asking by a timer, costs nothing while the pointer rests. Unproven: compiled against declarations,
/// never run. With X11 through the raw movements that its input extension reports. Elsewhere there is
/// none: those desktops have corners of their own.
class PointerWatch {
public:
    virtual ~PointerWatch() = default;

    /// Whether it can be followed here at all.
    static bool isAvailable();
    /// Nothing where the pointer cannot be followed. Calls back on the main thread, in the screens'
    /// common coordinates.
    static std::unique_ptr<PointerWatch> make(std::function<void(QPoint)> moved);
};

} // namespace tessellar
