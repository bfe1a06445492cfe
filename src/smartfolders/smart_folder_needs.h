#pragma once

#include <QFlags>

namespace tessellar {

/// Sources of facts. Each field's row lists what it needs; the union over all definitions is gathered.
enum class SmartFolderNeed {
    bundle = 1,        ///< the bundle's own files
    signature = 2,     ///< a tool that reads the code signature
    architectures = 4, ///< a tool that reads the executable
    usage = 8,         ///< the launcher's record of launches
    updates = 16,      ///< the update statuses
    channels = 32,     ///< applications' update channels
    icons = 64,        ///< which applications have a custom icon
};
Q_DECLARE_FLAGS(SmartFolderNeeds, SmartFolderNeed)
Q_DECLARE_OPERATORS_FOR_FLAGS(SmartFolderNeeds)

/// Needs that run tools.
inline constexpr SmartFolderNeeds toolNeeds =
    SmartFolderNeeds(SmartFolderNeed::signature) | SmartFolderNeed::architectures;

} // namespace tessellar
