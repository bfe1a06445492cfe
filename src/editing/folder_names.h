#pragma once

#include "model/items.h"
#include "platform/text.h"

namespace tessellar {

/// What a folder of these tiles might be called: the category of more than half of their applications;
/// else the first word that all their names share; else "Folder".
QString suggestedFolderName(const Page& tiles, const Locale& locale);

} // namespace tessellar
