#pragma once

#include "platform/instant.h"
#include "platform/text.h"

namespace tessellar {

/// A date and a time as the user writes them, in the zone of this machine.
QString dateText(Instant instant, const Locale& locale);

} // namespace tessellar
