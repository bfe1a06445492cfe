#pragma once

#include <QByteArray>

namespace tessellar {

/// The longest file name that a volume allows, in bytes.
inline constexpr qsizetype longestName = 255;

/// "Agent.plist", "Agent 2.plist", …: the name of the `number`th item with the same name. Long names
/// are truncated between characters to fit `mostBytes`.
QByteArray numberedName(const QByteArray& name, int number, qsizetype mostBytes = longestName);

} // namespace tessellar
