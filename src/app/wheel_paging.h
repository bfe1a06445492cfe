#pragma once

#include <cstdint>
#include <optional>

namespace tessellar {

/// Turns the deltas of a wheel, or of a trackpad without phases, into pages: one for each notch of a
/// wheel, one for each stroke of a trackpad, however long it coasts. Times in milliseconds.
class WheelPaging {
public:
    /// A delta in eighths of a degree (120 a notch), to higher pages where positive. Returns by how
    /// many pages to turn: -1, 0 or 1.
    int turn(int delta, std::uint64_t time);

private:
    int _sum = 0;
    std::optional<std::uint64_t> _last;   ///< of any delta
    std::optional<std::uint64_t> _turned; ///< of the last turn
    int _turnedTo = 0;
};

} // namespace tessellar
