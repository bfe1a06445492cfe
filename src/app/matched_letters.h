#pragma once

#include "platform/text.h"

namespace tessellar {

/// A name with the letters that a query matches set off, as `<b>`, in what Qt calls styled text: as a
/// whole at the start of a word where it is there, else anywhere, else letter by letter in their order.
/// Empty where it does not match the name.
QString markedLabel(const QString& name, const QString& query, const Locale& locale);

} // namespace tessellar
