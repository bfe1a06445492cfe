#pragma once

#include <QString>

#include <optional>

namespace tessellar {

/// Whom a rights notice names: "Copyright © 2000–2023 Apple Inc. All rights reserved." gives "Apple
/// Inc". Off both ends go notice words, years and ranges of years, and punctuation; sentences that
/// reserve rights go wherever they stand; what stands before the notice counts only when nothing comes
/// after it. Nothing when nobody is named. Reads the first 2,000 characters.
std::optional<QString> publisherInNotice(const QString& notice);

} // namespace tessellar
