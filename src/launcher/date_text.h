#pragma once

#include "platform/instant.h"
#include "platform/text.h"

namespace tessellar {

/// A localized date and time, in this machine's time zone.
QString dateText(Instant instant, const Locale& locale);

} // namespace tessellar
