#include "cleanup/launch_agents.h"

#include <unistd.h>

namespace tessellar {

bool SystemLaunchAgents::unload(const QString& propertyList, std::stop_token stop) {
    const QString tool = QStringLiteral("/bin/launchctl");
    if (!_files.isExecutableFile(tool))
        return false;
    return _commands
        .run({.executable = _files.hostPath(tool),
              .arguments = {"bootout", "gui/" + QByteArray::number(::getuid()),
                            _files.hostPath(propertyList)},
              .environment = _environment,
              .timeout = std::chrono::seconds(10),
              .input = {}},
             stop)
        .succeeded();
}

} // namespace tessellar
