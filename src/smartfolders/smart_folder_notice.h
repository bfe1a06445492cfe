#pragma once

#include "smartfolders/smart_folder_definition.h"
#include "smartfolders/smart_folder_evaluation.h"

namespace tessellar {

/// What stands beside a folder whose rules could not all be decided, with the names of their fields:
/// those still to come, those that want update checking, those whose facts are missing. Empty when all
/// were decided. `checkingDisabled` is what is said while update checking is off; empty while it is on.
QString smartFolderNotice(const SmartFolderDefinition& definition,
                          const SmartFolderEvaluation& evaluation, const QString& checkingDisabled);

} // namespace tessellar
