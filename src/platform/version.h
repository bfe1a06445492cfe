#pragma once

#include <string>

namespace tessellar {

/// Such as "0.1.0".
std::string versionNumber();

/// What --version says: the number, and the commit that it was built from where that is known.
std::string versionText();

} // namespace tessellar
