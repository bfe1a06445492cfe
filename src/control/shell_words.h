#pragma once

#include <QString>
#include <QStringList>

#include <expected>

namespace tessellar {

/// Splits a line into words like a shell: at white space, with 'single' and "double" quotes and
/// backslashes; # at the start of a word begins a comment. No expansion. An unclosed quote or a
/// trailing backslash is an error, given in one sentence.
std::expected<QStringList, QString> splitWords(const QString& line);

} // namespace tessellar
