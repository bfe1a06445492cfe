#pragma once

#include <cstdint>
#include <optional>

namespace tessellar {

/// Converts the deltas of a wheel, or of a trackpad without phases, into page turns: one per notch of a
/// wheel, one per stroke on a trackpad, however long it coasts. Times are in milliseconds.
class WheelPaging {
public:
    /// `delta` is in eighths of a degree (120 per notch), towards higher pages if positive. Returns the
    /// number of pages to turn: -1, 0 or 1.
    int turn(int delta, std::uint64_t time);

private:
    int _sum = 0;
    std::optional<std::uint64_t> _last;   ///< of any delta
    std::optional<std::uint64_t> _turned; ///< of the last turn
    int _turnedTo = 0;
};

} // namespace tessellar
