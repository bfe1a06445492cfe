#pragma once

#include "control/command_call.h"

namespace tessellar {

/// A file that the user names.
struct NamedFile {
    QString path;
    const FileSystem* files = nullptr;
};

/// A file is named as the host names it, on the machine or not; one that is not there is looked for
/// under the machine's own names.
NamedFile namedFile(const CommandCall& call, const QString& name);

} // namespace tessellar
