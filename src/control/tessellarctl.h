#pragma once

namespace tessellar {

/// The program tessellarctl: reads the command line, carries the command out and returns the exit
/// status (0 done, 1 refused or failed, 2 wrong usage). A launcher that is running carries it out
/// itself; otherwise it is done here, under the lock of the application's folder.
int tessellarctl(int argc, char** argv);

} // namespace tessellar
