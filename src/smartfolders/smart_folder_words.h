#pragma once

#include <QString>

namespace tessellar {

/// The display text of a vocabulary word: a field, value, predicate or unit. Unknown words, such as new
/// architectures, are returned unchanged.
QString smartFolderText(QStringView word);

} // namespace tessellar
