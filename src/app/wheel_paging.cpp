#include "app/wheel_paging.h"

#include <cstdlib>

namespace tessellar {

namespace {
constexpr int notch = 120;
constexpr int strokeThreshold = 90;
constexpr std::uint64_t quiet = 160;      ///< ms without events that end a stroke
constexpr std::uint64_t notchPause = 110; ///< ms in which further notches count as the same
} // namespace

int WheelPaging::turn(int delta, std::uint64_t time) {
    if (delta == 0)
        return 0;
    const int direction = delta > 0 ? 1 : -1;
    const bool isNewStroke = !_last || time - *_last > quiet;
    _last = time;
    if (delta % notch == 0) {
        if (_turned && time - *_turned < notchPause && direction == _turnedTo)
            return 0;
    } else {
        if (isNewStroke || (_sum != 0 && (_sum > 0) != (delta > 0))) {
            _sum = 0;
            _turned.reset();
        }
        _sum += delta;
        // One stroke turns one page; turning back takes a change of direction.
        if (std::abs(_sum) < strokeThreshold || (_turned && direction == _turnedTo))
            return 0;
    }
    _sum = 0;
    _turned = time;
    _turnedTo = direction;
    return direction;
}

} // namespace tessellar
