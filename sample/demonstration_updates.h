#pragma once

#include "sample/catalog.h"
#include "sample/mac_builder.h"

namespace tessellar::sample {

/// The address of the feed that an application of the demonstration Mac declares.
QString feedAddress(const Application& application);

/// What the updaters of the demonstration Mac know: casks, feeds, store lookups, the vendor's updater.
/// Among each kind some applications have an update, some have none, and some cannot be told.
void addUpdates(MacBuilder& mac, const QList<Application>& applications, const QList<Kind>& kinds);

} // namespace tessellar::sample
