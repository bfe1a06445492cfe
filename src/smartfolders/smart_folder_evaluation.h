#pragma once

#include "smartfolders/smart_folder_app_facts.h"

#include <QSet>

namespace tessellar {

/// The contents of a smart folder.
struct SmartFolderEvaluation {
    SmartFolderFactsList matches; ///< sorted and limited
    QSet<QUuid> unknownRuleIDs;   ///< rules that were undecidable for some application
    QSet<QUuid> waitingRuleIDs;   ///< the subset whose facts are still being gathered

    /// App keys of the matches, in order.
    QStringList appKeys() const;
    /// Compares the facts by value.
    bool operator==(const SmartFolderEvaluation& other) const;
};

} // namespace tessellar
