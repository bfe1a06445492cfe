#pragma once

#include "control/command_call.h"

namespace tessellar {

/// A file named by the user.
struct NamedFile {
    QString path;
    const FileSystem* files = nullptr;
};

/// Names are host paths, inside or outside the machine; a file that does not exist there is looked up
/// as one of the machine's paths.
NamedFile namedFile(const CommandCall& call, const QString& name);

} // namespace tessellar
