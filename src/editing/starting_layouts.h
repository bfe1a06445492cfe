#pragma once

#include "editing/layout_edits.h"
#include "platform/uuid_source.h"

namespace tessellar {

// Initial arrangements of the installed applications, for new users or after a reset. The tiles in
// `first` come first. Pure.

/// All by name.
Pages layoutByName(const QList<AppEntry>& apps, const Page& first, const GridCapacities& capacities,
                   const Locale& locale);

/// A folder for each category with at least two applications, in alphabetical order, followed by all
/// other applications by name.
Pages layoutByCategory(const QList<AppEntry>& apps, const Page& first, const GridCapacities& capacities,
                       const Locale& locale, UuidSource& uuids);

/// True if nothing has been arranged yet: only applications, under their own names, sorted by name,
/// none hidden.
bool isUnarranged(const LayoutDocument& document, const Locale& locale);

} // namespace tessellar
