#pragma once

#include <QString>

#include <optional>

namespace tessellar {

/// Sanitizes untrusted text for display: one line, single spaces, no control characters and no
/// invisible characters that reorder or hide text, at most `longest` long.
QString toSingleLine(QStringView text, qsizetype longest);

/// A version from a channel, if plausible: not empty, at most a hundred characters, and unchanged by
/// `toSingleLine`.
std::optional<QString> plausibleVersion(QStringView text);

/// True for a valid cask token, which can never be mistaken for a command's option.
bool isCaskToken(QStringView text);

} // namespace tessellar
