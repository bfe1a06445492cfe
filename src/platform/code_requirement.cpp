#include "platform/code_requirement.h"

#include <algorithm>

namespace tessellar {

std::optional<QString> codeRequirement(const QString& bundleIdentifier, const QString& teamIdentifier) {
    const auto isPlain = [](const QString& text) {
        return !text.isEmpty() && std::ranges::all_of(text, [](QChar c) {
            return c.unicode() < 128 && (c.isLetterOrNumber() || c == u'.' || c == u'-' || c == u'_');
        });
    };
    if (!isPlain(bundleIdentifier) || !isPlain(teamIdentifier))
        return std::nullopt;
    return QStringLiteral(
               "anchor apple generic and identifier \"%1\" and certificate leaf[subject.OU] = \"%2\"")
        .arg(bundleIdentifier, teamIdentifier);
}

} // namespace tessellar
