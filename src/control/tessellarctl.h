#pragma once

namespace tessellar {

/// The main function of tessellarctl: parses the command line, executes the command and returns the
/// exit status (0 success, 1 refused or failed, 2 wrong usage). The command runs in the running
/// launcher, or else here, under the lock of the application's folder.
int tessellarctl(int argc, char** argv);

} // namespace tessellar
