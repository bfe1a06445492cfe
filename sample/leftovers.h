#pragma once

#include "sample/mac_builder.h"

namespace tessellar::sample {

/// What an application leaves in the Libraries, by place and naming.
enum class Leftover {
    savedState,
    httpStorage, ///< the folder and the cookies beside it
    webKit,
    container,
    preferences,
    byHostPreferences,
    cache,
    updaterCache, ///< "<identifier>.ShipIt"
    support,      ///< "Application Support/<name>"
    supportById,
    vendorSupport, ///< "Application Support/<vendor>/<name>"
    logs,
    groupContainer, ///< "<team>.<identifier>"
    launchAgent,
    systemSupport,
    systemPreferences,
    systemAgent,
    daemon,     ///< "/Library/LaunchDaemons/<identifier>.helper.plist"
    helperTool, ///< "/Library/PrivilegedHelperTools/<identifier>.helper"
};

/// Makes the leftovers of an application, each with something in it, and returns their paths in the
/// given order. Those named by an identifier are left out for an application that has none.
QStringList addLeftovers(MacBuilder& mac, const Application& application,
                         const QList<Leftover>& leftovers,
                         const QString& vendor = QStringLiteral("Vendor"),
                         const QString& home = QStringLiteral("/Users/ada"));

} // namespace tessellar::sample
