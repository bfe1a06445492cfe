#pragma once

#include "editing/layout_edits.h"
#include "platform/uuid_source.h"

namespace tessellar {

// Ways to arrange what is installed, for a user who begins, or begins anew, after the tiles that are to
// come `first`. Pure.

/// All by name.
Pages layoutByName(const QList<AppEntry>& apps, const Page& first, const GridCapacities& capacities,
                   const Locale& locale);

/// A folder for each category with at least two applications, in alphabetical order; then all other
/// applications by name.
Pages layoutByCategory(const QList<AppEntry>& apps, const Page& first, const GridCapacities& capacities,
                       const Locale& locale, UuidSource& uuids);

/// Whether nobody has arranged anything yet: applications alone, under their own names and in that
/// order, none hidden.
bool isUnarranged(const LayoutDocument& document, const Locale& locale);

} // namespace tessellar
