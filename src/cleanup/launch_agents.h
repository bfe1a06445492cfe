#pragma once

#include "platform/machine.h"

namespace tessellar {

/// The user's launch agents. An interface, so that tests can fake it.
class LaunchAgents {
public:
    virtual ~LaunchAgents() = default;
    /// Stops and disables the agent defined by a property list. True if there was one. Blocks.
    virtual bool unload(const QString& propertyList, std::stop_token stop) = 0;
};

/// Uses /bin/launchctl, where that exists.
class SystemLaunchAgents final : public LaunchAgents {
public:
    explicit SystemLaunchAgents(Machine& machine)
        : _files(machine.files), _commands(machine.commands), _environment(machine.environment) {}
    bool unload(const QString& propertyList, std::stop_token stop) override;

private:
    const FileSystem& _files;
    CommandRunner& _commands;
    std::map<QByteArray, QByteArray> _environment;
};

} // namespace tessellar
