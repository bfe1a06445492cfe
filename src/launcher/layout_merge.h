#pragma once

#include "launcher/installed_applications.h"
#include "launcher/live_layout.h"
#include "model/reconciliation.h"

namespace tessellar {

/// A document of a mode brought together with the installed applications, which come with other names
/// or identifiers where `apps` is given.
inline MergeResult mergeWithInstalled(const LayoutDocument& document, const LiveLayout& layout,
                                      const InstalledApplications& installed, const Locale& locale,
                                      bool isRestore = false,
                                      const std::optional<QList<AppEntry>>& apps = {}) {
    return mergeLayout(
        document.pages, document.hiddenKeys,
        {.scannedApps = apps.value_or(installed.all()),
         .isOutOfReach = [&](const QString& path) { return installed.scan().isOutOfReach(path); },
         .pageCapacity = layout.capacities().page,
         .isRestore = isRestore},
        locale);
}

} // namespace tessellar
