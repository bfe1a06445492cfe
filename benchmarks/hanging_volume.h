#pragma once

namespace tessellar {

/// A volume that hangs: calls of the C library about it wait until it is let go, in the whole program
/// that links this. Those of the main thread wait half a second alone, and are counted.
namespace hanging_volume {

inline constexpr const char* path = "/Volumes/Hung";

/// To be called once, on the main thread.
void watchMainThread();
void setHanging(bool isHanging);
/// How many calls of the main thread have waited since it was last asked.
int takeCallsOfMainThread();

} // namespace hanging_volume
} // namespace tessellar
