#pragma once

#include "platform/texts.h"

#include <QString>

#include <optional>

namespace tessellar {

inline QString unverifiedSignature() {
    return Texts::tr("Could not verify Tessellar’s code signature.");
}

/// The code-signing requirement for a peer. nullopt if an identifier is empty or contains characters
/// that would end its quotes.
std::optional<QString> codeRequirement(const QString& bundleIdentifier, const QString& teamIdentifier);

} // namespace tessellar
