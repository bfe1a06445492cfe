#pragma once

#include "model/reconciliation.h"

#include <vector>

namespace tessellar {

/// An application tile of the arrangement, matched against the scan.
struct MatchedTile {
    const AppEntry* entry;
    bool wasAbsent;    ///< dropped earlier; its place is remembered
    bool stays = true; ///< false if the user removed it: it is not matched
    std::optional<RememberedHome> home = {};
    qsizetype index = -1; ///< of the scanned application; -1 if unmatched
    bool isAbsent = false;
    QUuid id = entry->id;
    /// Set if the unmatched tile's entry has to be updated.
    std::optional<AppEntry> changed = {};

    const AppEntry& unscanned() const { return changed ? *changed : *entry; }
};

/// The result of matching an arrangement against a scan, before anything is rewritten.
struct ApplicationMatch {
    std::vector<MatchedTile> tiles; ///< in layout order; a file may contain duplicate identifiers
    QHash<QString, QString> changedKeys;
    QList<AppEntry> unclaimed; ///< applications without a tile
};

/// `woven` must outlive the result.
ApplicationMatch matchApplications(const WovenPages& woven, const MergeContext& context);

} // namespace tessellar
