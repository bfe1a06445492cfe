#pragma once

#include "platform/property_list.h"

#include <cstdlib>

namespace tessellar::fuzz {

/// Asks a value and all below it everything, as a caller might; the number of values seen.
inline std::size_t touchAll(const PropertyValue& value) {
    std::size_t seen = 1;
    value.isTruthy();
    value.data();
    value.date();
    value.texts();
    for (const PropertyValue& child : value.array())
        seen += touchAll(child);
    const PropertyValue::Dictionary entries = value.dictionary();
    for (auto entry = entries.begin(); entry != entries.end(); ++entry)
        seen += touchAll(entry.value());
    return seen;
}

inline void require(bool holds) {
    if (!holds)
        std::abort();
}

} // namespace tessellar::fuzz
