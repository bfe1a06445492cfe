#pragma once

#include "smartfolders/smart_folder_definition.h"
#include "smartfolders/smart_folder_evaluation.h"

namespace tessellar {

/// The note shown with a folder whose rules were not all decidable. Names the fields: those still being
/// gathered, those that need update checking, those with missing facts. Empty if all were decided.
/// `checkingDisabled` is the text used while update checking is off; empty while it is on.
QString smartFolderNotice(const SmartFolderDefinition& definition,
                          const SmartFolderEvaluation& evaluation, const QString& checkingDisabled);

} // namespace tessellar
