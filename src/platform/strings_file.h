#pragma once

#include "platform/property_list.h"

namespace tessellar {

/// Reads a ".strings" file: `"key" = "value";` lines in UTF-8 or UTF-16, or a property list. A
/// dictionary, or an absent value for what is none. Text that is damaged gives what stands before the
/// damage. The work is linear in the bytes, which the caller bounds.
PropertyValue readStringsFile(const QByteArray& bytes);

} // namespace tessellar
