#pragma once

#include <QString>

#include <optional>

namespace tessellar {

/// Words of strangers made fit to be shown and printed: all on one line, with single spaces, without
/// control characters and without the invisible ones that turn or hide what stands beside them, cut at
/// `longest`.
QString onOneLine(QStringView text, qsizetype longest);

/// A version as a channel gives it, if it can be one: not empty, at most a hundred characters, and
/// nothing in it that `onOneLine` would take out.
std::optional<QString> plausibleVersion(QStringView text);

/// True for what Homebrew could have named a cask; such a word is never an option of a command.
bool isCaskToken(QStringView text);

} // namespace tessellar
