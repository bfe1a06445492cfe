#pragma once

#include <QFlags>

namespace tessellar {

/// What facts are learnt from. Each field's row names what its fact needs; what the fields of all
/// definitions name together is what is gathered.
enum class SmartFolderNeed {
    bundle = 1,        ///< the bundle's own files
    signature = 2,     ///< a tool that reads its code signature
    architectures = 4, ///< a tool that reads its executable
    usage = 8,         ///< the launcher's record of launches
    updates = 16,      ///< the update statuses
    channels = 32,     ///< the channels by which applications are updated
    icons = 64,        ///< which applications have an icon of the user's
};
Q_DECLARE_FLAGS(SmartFolderNeeds, SmartFolderNeed)
Q_DECLARE_OPERATORS_FOR_FLAGS(SmartFolderNeeds)

/// Those for which a tool has to be run.
inline constexpr SmartFolderNeeds toolNeeds =
    SmartFolderNeeds(SmartFolderNeed::signature) | SmartFolderNeed::architectures;

} // namespace tessellar
