#pragma once

#include <QString>

namespace tessellar {

/// What people read for a word of the vocabulary: a field, a value to choose, a predicate, a unit. A
/// word that is in none, such as an architecture of tomorrow, is shown as it is.
QString smartFolderText(QStringView word);

} // namespace tessellar
