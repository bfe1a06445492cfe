#pragma once

#include "discovery/app_scanner.h"

#include <functional>

namespace tessellar {

/// The volumes to remember for the next scan: with the applications seen now, and those seen earlier
/// that are not gone.
KnownVolumes updatedKnownVolumes(const AppScanner::Coverage& coverage,
                                 const std::function<bool(const QString& path)>& isGone);

} // namespace tessellar
