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
/// Reads a regular file on a worker. If it cannot be read or is too large, the command fails; if the
/// command is cancelled, `done` is not called.
void readNamedFile(const std::shared_ptr<CommandCall>& call, const QString& name,
                   std::uint64_t maximumBytes, std::function<void(const QByteArray&)> done);

} // namespace tessellar
