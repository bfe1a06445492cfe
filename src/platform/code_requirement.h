#pragma once

#include "platform/texts.h"

#include <QString>

#include <optional>

namespace tessellar {

inline QString unverifiedSignature() {
    return Texts::tr("Could not verify Tessellar’s code signature.");
}

/// The requirement that the code of a peer must satisfy. Nothing for an identifier or team that could
/// end its quotes, or is empty.
std::optional<QString> codeRequirement(const QString& bundleIdentifier, const QString& teamIdentifier);

} // namespace tessellar
