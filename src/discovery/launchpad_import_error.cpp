#include "discovery/launchpad_import_error.h"

#include "platform/texts.h"

#include <array>

namespace tessellar {

QString message(const LaunchpadImportError& error) {
    static constexpr std::array sentences{
        Texts::noop("The current user’s Darwin directory could not be resolved."),
        Texts::noop("No legacy Launchpad database was found on this Mac."),
        Texts::noop("The legacy Launchpad database could not be opened read-only."),
        Texts::noop("A legacy Launchpad database was found, but its schema is not supported."),
        Texts::noop("The legacy Launchpad database could not be read."),
        Texts::noop("The legacy Launchpad database did not contain any importable apps or folders."),
        Texts::noop("The import was cancelled."),
    };
    return Texts::tr(sentences.at(static_cast<std::size_t>(error.code)));
}

} // namespace tessellar
