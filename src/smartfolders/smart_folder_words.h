#pragma once

#include <QString>

namespace tessellar {

// What people read for the words of the vocabulary. A word that has no text of its own is taken apart:
// "launchCount" reads "Launch Count", "isBetween" reads "is between".

/// Of a field, a sort order, or a value to choose.
QString smartFolderTitle(QStringView word);
/// Of what stands within a line: a predicate, a unit of time.
QString smartFolderPhrase(QStringView word);

} // namespace tessellar
