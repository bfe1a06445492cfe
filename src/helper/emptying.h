#pragma once

#include <stop_token>

namespace tessellar {

/// Removes all that lies in an open folder, however deep, following no link and entering no volume. 0
/// or an errno, ECANCELED at a stop; what was not removed by then is still in the folder.
int emptyFolder(int folder, std::stop_token stop = {});

} // namespace tessellar
