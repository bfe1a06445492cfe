#pragma once

#include <optional>

namespace tessellar {

/// Moves a strip of pages with a finger and settles it on a page, as a critically damped spring
/// starting at the release velocity. Positions are in pages, times in seconds.
class PageMotion {
public:
    double position() const { return _position; }
    int page() const { return _page; } ///< resting on, or moving to
    bool isDragged() const { return _dragStart.has_value(); }
    bool isAtRest() const { return !isDragged() && _position == _page && _velocity == 0; }

    void setCount(int count);
    int count() const { return _count; }
    /// Animated, or immediate.
    void goTo(int page);
    void jumpTo(int page);

    /// Moves by this many pages, towards higher ones if positive. Beyond either end there is
    /// resistance.
    void drag(double pages);
    /// Releases at a velocity in pages per second: settles on the page it would drift to, at most one
    /// from where the drag began.
    void release(double velocity);
    /// Advances the animation.
    void advance(double seconds);

private:
    double bounded(double position) const;

    int _count = 1;
    int _page = 0;
    double _position = 0;
    double _velocity = 0;
    std::optional<int> _dragStart;
    double _finger = 0; ///< position without resistance
};

} // namespace tessellar
