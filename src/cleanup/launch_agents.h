#pragma once

#include "platform/machine.h"

namespace tessellar {

/// The agents that run for the user by their property lists. An interface, so that tests can answer.
class LaunchAgents {
public:
    virtual ~LaunchAgents() = default;
    /// Ends the agent of a property list, and keeps it from being started again. True where there was
    /// one to end. Blocks.
    virtual bool unload(const QString& propertyList, std::stop_token stop) = 0;
};

/// Through /bin/launchctl, where that exists.
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
