#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tessellar {

/// The key's name and number in X11.
struct KeySymbol {
    std::uint32_t symbol = 0;
    std::string name; ///< "space", "l", "F4"

    bool operator==(const KeySymbol&) const = default;
};

/// `keyCode` is the Mac's, as in `KeyChord`.
std::optional<KeySymbol> keySymbol(unsigned keyCode);

} // namespace tessellar
