#pragma once

#include <QString>

namespace tessellar {

/// What CLI11 finds wrong with a command line, in a sentence of the user's language. What it says
/// otherwise stays as it is.
QString usageSentence(const QString& found);

} // namespace tessellar
