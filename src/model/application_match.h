#pragma once

#include "model/reconciliation.h"

#include <vector>

namespace tessellar {

/// An application tile of an arrangement, and what becomes of it.
struct MatchedTile {
    const AppEntry* entry;
    bool wasAbsent;    ///< it went earlier, and its place is remembered
    bool stays = true; ///< what was removed by the user is not looked for
    std::optional<RememberedHome> home = {};
    qsizetype index = -1; ///< of the scanned application
    bool isAbsent = false;
    QUuid id = entry->id;
    /// Where it stands for no scanned application, and is other than it was.
    std::optional<AppEntry> changed = {};

    const AppEntry& unscanned() const { return changed ? *changed : *entry; }
};

/// What was found out of an arrangement and a scan before anything is rewritten.
struct ApplicationMatch {
    std::vector<MatchedTile> tiles; ///< as they lie: a file may give one identifier to several
    QHash<QString, QString> changedKeys;
    QList<AppEntry> unclaimed; ///< applications that no tile stands for
};

/// `woven` is to outlive the match.
ApplicationMatch matchApplications(const WovenPages& woven, const MergeContext& context);

} // namespace tessellar
