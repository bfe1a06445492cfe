#pragma once

#include <QString>
#include <QStringList>

#include <expected>

namespace tessellar {

/// The words of a line as a shell would split them: at white space, with 'single' and "double" quotes
/// and backslashes; what follows a # at the start of a word is a comment. Nothing is expanded. An
/// unclosed quote, or a backslash at the end, is an error in one sentence.
std::expected<QStringList, QString> splitWords(const QString& line);

} // namespace tessellar
