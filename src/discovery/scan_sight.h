#pragma once

#include "discovery/app_scanner.h"

#include <functional>

namespace tessellar {

/// What the next scan is told: the applications seen now, on the volumes on which they were seen; and
/// of those seen earlier, the ones that are not gone, where they were.
KnownVolumes knownAfter(const AppScanner::Sight& sight,
                        const std::function<bool(const QString& path)>& isGone);

} // namespace tessellar
