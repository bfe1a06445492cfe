#pragma once

#include <stop_token>

namespace tessellar {

/// Recursively deletes the contents of an open folder, without following links or entering other
/// volumes. Returns 0 or an errno (ECANCELED when stopped); the rest stays in the folder.
int emptyFolder(int folder, std::stop_token stop = {});

} // namespace tessellar
