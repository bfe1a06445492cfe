#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tessellar {

/// What X11 and the desktops that follow it call a key.
struct KeySymbol {
    std::uint32_t symbol = 0;
    std::string name; ///< "space", "l", "F4"

    bool operator==(const KeySymbol&) const = default;
};

/// By the number that a Mac has for the key, as in `KeyChord`.
std::optional<KeySymbol> keySymbol(unsigned keyCode);

} // namespace tessellar
