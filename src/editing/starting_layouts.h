#pragma once

#include "editing/layout_edits.h"
#include "platform/uuid_source.h"

namespace tessellar {

// Ways to arrange what is installed, for a user who begins, or begins anew; the alphabetical one is
// `defaultLayout`.

/// A folder for each category with at least two applications, in alphabetical order, after the tiles
/// that are to come `first`; then all other applications by name. Pure.
Pages layoutByCategory(const QList<AppEntry>& apps, const Page& first, const GridCapacities& capacities,
                       const Locale& locale, UuidSource& uuids);

/// Tiles one after the other, page by page.
Pages filledPages(const Page& tiles, qsizetype capacity);

} // namespace tessellar
