#pragma once

#include "sample/mac_builder.h"

namespace tessellar::sample {

/// Where a server on the loopback has to answer for the feeds and store lookups of the demonstration
/// Mac; the answers lie under "http" in the tools' folder ("feeds/NAME.xml", "lookup/ID.json").
inline const QString demonstrationServer = QStringLiteral("http://127.0.0.1:47114");

/// Builds the demonstration Mac: a home, applications of every kind with icons, odd bundles as real
/// Macs have them, leftovers in the Libraries, an old Launchpad's database, and stand-ins for the
/// tools. The same every time, to the byte and the date.
///
/// `applications` is how many of the catalog's (or, beyond it, made-up) applications it gets; without a
/// number, the whole catalog. The odd bundles come on top.
void buildDemonstrationMac(MacBuilder& mac, std::optional<int> applications = std::nullopt);

} // namespace tessellar::sample
