#include "discovery/launchpad_import_error.h"

#include <array>

namespace tessellar {

QString message(const LaunchpadImportError& error) {
    static constexpr std::array sentences{
        u"The current user’s Darwin directory could not be resolved.",
        u"No legacy Launchpad database was found on this Mac.",
        u"The legacy Launchpad database could not be opened read-only.",
        u"A legacy Launchpad database was found, but its schema is not supported.",
        u"The legacy Launchpad database could not be read.",
        u"The legacy Launchpad database did not contain any importable apps or folders.",
        u"The import was cancelled.",
    };
    return QString::fromUtf16(sentences.at(static_cast<std::size_t>(error.code)));
}

} // namespace tessellar
