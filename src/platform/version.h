#pragma once

#include <string>

namespace tessellar {

/// For example "0.1.0".
std::string versionNumber();

/// The output of --version: the number, and the commit it was built from, if known.
std::string versionText();

} // namespace tessellar
