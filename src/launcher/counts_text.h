#pragma once

#include <QString>

namespace tessellar {

/// For example "12 applications, 1 folder, 3 pages".
QString countsText(int applications, int folders, int pages);

} // namespace tessellar
