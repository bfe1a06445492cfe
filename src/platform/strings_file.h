#pragma once

#include "platform/property_list.h"

namespace tessellar {

/// Parses a ".strings" file: `"key" = "value";` lines in UTF-8 or UTF-16, or a property list. Returns a
/// dictionary, or an absent value if it is neither; of damaged text, the part before the damage. Linear
/// in the bytes, which the caller limits.
PropertyValue readStringsFile(const QByteArray& bytes);

} // namespace tessellar
