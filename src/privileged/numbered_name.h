#pragma once

#include <QByteArray>

namespace tessellar {

/// As long as a volume allows a name to be, in bytes.
inline constexpr qsizetype longestName = 255;

/// "Agent.plist", "Agent 2.plist", …: the name under which the `number`th item of one name is kept. A
/// long name is cut between characters, so that the new one takes no more than `mostBytes`.
QByteArray numberedName(const QByteArray& name, int number, qsizetype mostBytes = longestName);

} // namespace tessellar
