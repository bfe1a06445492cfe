#pragma once

#include "model/items.h"
#include "platform/text.h"

namespace tessellar {

/// A name for a folder of these tiles: the category of more than half of the applications; else the
/// first word common to all names; else "Folder".
QString suggestedFolderName(const Page& tiles, const Locale& locale);

} // namespace tessellar
