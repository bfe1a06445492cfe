#include "app/page_motion.h"

#include <algorithm>
#include <cmath>

namespace tessellar {

namespace {
constexpr double stiffness = 13;      ///< per second: a page turn takes about 0.4 s
constexpr double drift = 0.15;        ///< seconds for which a released strip is assumed to coast
constexpr double restDistance = 1e-3; ///< one pixel of a page of 1,000
} // namespace

void PageMotion::setCount(int count) {
    _count = std::max(1, count);
    if (_page >= _count)
        goTo(_count - 1);
}

void PageMotion::goTo(int page) {
    _page = std::clamp(page, 0, _count - 1);
    _dragStart.reset();
}

void PageMotion::jumpTo(int page) {
    goTo(page);
    _position = _page;
    _velocity = 0;
}

void PageMotion::drag(double pages) {
    if (!_dragStart) {
        _dragStart = _page;
        _finger = _position;
    }
    _finger += pages;
    _velocity = 0;
    _position = bounded(_finger);
}

double PageMotion::bounded(double position) const {
    const double end = _count - 1;
    const auto reluctant = [](double over) { return 0.4 * over / (1 + over); };
    if (position < 0)
        return -reluctant(-position);
    if (position > end)
        return end + reluctant(position - end);
    return position;
}

void PageMotion::release(double velocity) {
    if (!_dragStart)
        return;
    const int start = *_dragStart;
    const int target = static_cast<int>(std::lround(_finger + velocity * drift));
    goTo(std::clamp(target, start - 1, start + 1));
    const bool isPastEnd = _position < 0 || _position > _count - 1;
    _velocity = isPastEnd ? 0 : std::clamp(velocity, -12.0, 12.0);
}

void PageMotion::advance(double seconds) {
    if (isDragged() || isAtRest())
        return;
    // The spring's exact solution, so that late frames do no harm.
    const double distance = _position - _page;
    const double change = (_velocity + stiffness * distance) * seconds;
    const double fade = std::exp(-stiffness * seconds);
    _position = _page + (distance + change) * fade;
    _velocity = (_velocity - stiffness * change) * fade;
    if (std::abs(_position - _page) < restDistance && std::abs(_velocity) < 20 * restDistance)
        jumpTo(_page);
}

} // namespace tessellar
