#pragma once

#include "launcher/installed_applications.h"
#include "launcher/live_layout.h"
#include "launcher/place_memory.h"
#include "model/reconciliation.h"

namespace tessellar {

/// A document of a mode brought together with the installed applications, which come with other names
/// or identifiers where `apps` is given, and with those that went from it. A restore keeps what is out
/// of sight now.
inline MergeResult mergeWithInstalled(const LayoutDocument& document, const LiveLayout& layout,
                                      const InstalledApplications& installed, const PlaceMemory& places,
                                      const Machine& machine, bool isRestore = false,
                                      const std::optional<QList<AppEntry>>& apps = {}) {
    QList<AppEntry> unseen;
    if (isRestore)
        forEachItem(layout.pages(), [&](const LaunchpadItem& item) {
            const AppEntry* app = item.app();
            if (app && !app->alias && layout.unavailableAppKeys().contains(appKey(*app)))
                unseen.append(*app);
            return true;
        });
    return mergeLayout(document.pages, document.hiddenKeys,
                       {.scannedApps = apps.value_or(installed.all()),
                        .isGone = [&](const QString& path) { return installed.isGone(path); },
                        .pageCapacity = layout.capacities().page,
                        .isRestore = isRestore,
                        .unseenApps = unseen,
                        .places = places[layout.mode()],
                        .now = machine.clock.now()},
                       machine.locale);
}

} // namespace tessellar
