#pragma once

#include <QString>

namespace tessellar {

/// Translates CLI11's error message into a sentence in the user's language; unknown messages are
/// returned unchanged.
QString usageSentence(const QString& found);

} // namespace tessellar
