#pragma once

#include <QString>

#include <optional>

namespace tessellar {

/// The owner named in a rights notice: "Copyright © 2000–2023 Apple Inc. All rights reserved." gives
/// "Apple Inc". Strips notice words, years, ranges of years and punctuation from both ends, and
/// sentences that reserve rights anywhere; text before the notice is only used if none follows it.
/// nullopt if nobody is named. Reads the first 2,000 characters.
std::optional<QString> publisherInNotice(const QString& notice);

} // namespace tessellar
