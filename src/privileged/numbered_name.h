#pragma once

#include <QByteArray>

namespace tessellar {

/// "Agent.plist", "Agent 2.plist", …: the name under which the `number`th item of one name is kept. A
/// long name is cut between characters, so that the new one is no longer than a volume allows.
QByteArray numberedName(const QByteArray& name, int number);

} // namespace tessellar
