#pragma once

#include "platform/text.h"

namespace tessellar {

/// Marks the letters of a name that match a query, with `<b>` in Qt's styled text: as a whole at the
/// start of a word if possible, else anywhere, else letter by letter in order. Empty if the name does
/// not match.
QString markedLabel(const QString& name, const QString& query, const Locale& locale);

} // namespace tessellar
