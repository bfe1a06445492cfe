#pragma once

#include <cstdint>
#include <optional>

namespace tessellar {

/// Turns what a wheel or a trackpad without phases sends into pages: one for each notch of a wheel, and
/// one for a stroke of a trackpad, however long it coasts. Times in milliseconds.
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
