#pragma once

#include "smartfolders/smart_folder_app_facts.h"

#include <QSet>

namespace tessellar {

/// What a smart folder shows.
struct SmartFolderEvaluation {
    SmartFolderFactsList matches; ///< sorted, no more than the limit
    QSet<QUuid> unknownRuleIDs;   ///< rules that could not be decided for some application
    QSet<QUuid> waitingRuleIDs;   ///< of these, those whose facts are still being gathered

    /// The keys of the matches, in order.
    QStringList appKeys() const;
    /// By the facts, not by who holds them.
    bool operator==(const SmartFolderEvaluation& other) const;
};

} // namespace tessellar
