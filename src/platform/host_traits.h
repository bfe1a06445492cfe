#pragma once

#include <QStringList>

namespace tessellar {

// Differences between platforms that the window cares about. The build chooses the implementation:
// host_traits.cpp, or macos/host_traits.cpp on a Mac.

/// The most memory that this program has had resident so far, in KiB; 0 where the system does not say.
qint64 peakResidentMemory();

/// Whether the graphics processor can be relied on to draw.
bool hasReliableGraphics();

/// Whether a program goes on without a window, to be brought back at once.
bool staysWithoutWindow();

/// Font families to look for before the system's own; empty where that is the right one.
QStringList preferredFontFamilies();

/// Where this program carries the component that registers the removal helper with the system, as a
/// path under "/"; empty where the helper is installed by hand.
QString helperSetupFolder();

} // namespace tessellar
