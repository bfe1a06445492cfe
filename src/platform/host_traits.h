#pragma once

#include <QStringList>

namespace tessellar {

// Platform differences that matter to the window and its workers. The build picks the implementation:
// host_traits.cpp, or macos/host_traits.cpp on macOS.

/// This program's peak resident memory in KiB; 0 if unknown.
qint64 peakResidentMemory();

/// Whether hardware rendering can be relied on.
bool hasReliableGraphics();

/// Whether the program keeps running without a window, ready to show it again at once.
bool keepsRunningWithoutWindow();

/// Lets other threads run before the calling one, such as the window's.
void giveWay();

/// Font families to prefer to the system's default; empty to use the default.
QStringList preferredFontFamilies();

/// The folder, under "/", of the component that registers the removal helper with the system; empty
/// where the helper is installed by hand.
QString helperSetupFolder();

} // namespace tessellar
