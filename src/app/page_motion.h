#pragma once

#include <optional>

namespace tessellar {

/// How a strip of pages follows a finger and settles on a page: a critically damped spring that starts
/// with the speed of the release. Positions are in pages, times in seconds.
class PageMotion {
public:
    double position() const { return _position; }
    int page() const { return _page; } ///< the one it rests on or is on its way to
    bool isDragged() const { return _dragStart.has_value(); }
    bool isAtRest() const { return !isDragged() && _position == _page && _velocity == 0; }

    void setCount(int count);
    int count() const { return _count; }
    /// On its way to a page, or there at once.
    void goTo(int page);
    void jumpTo(int page);

    /// The finger has moved by this many pages since the last call, to higher pages where positive.
    /// Past either end the strip follows reluctantly.
    void drag(double pages);
    /// Released at a speed in pages a second: settles on the page that it would drift to, at most one
    /// away from where the drag began.
    void release(double velocity);
    /// Lets time pass.
    void advance(double seconds);

private:
    double bounded(double position) const;

    int _count = 1;
    int _page = 0;
    double _position = 0;
    double _velocity = 0;
    std::optional<int> _dragStart;
    double _finger = 0; ///< where the strip would be without reluctance
};

} // namespace tessellar
