#pragma once

#include "control/command_set.h"
#include "platform/lifetime.h"

namespace tessellar {

/// Executes commands, in this process or in the running launcher.
class CommandExecutor {
public:
    virtual ~CommandExecutor() = default;
    /// Calls `output.finished` exactly once, possibly before returning.
    virtual void run(const QStringList& words, const CommandOptions& options, CommandOutput output) = 0;
};

/// Executes commands with a started launcher; commands wait until its first load is complete. Main
/// thread only.
class CommandInterpreter final : public CommandExecutor {
public:
    CommandInterpreter(Machine& machine, LauncherViewModel& launcher)
        : _machine(machine), _launcher(launcher) {}

    void run(const QStringList& words, const CommandOptions& options, CommandOutput output) override;

    /// Executes a command that needs no launcher.
    static void runWithoutLauncher(Machine& machine, const CommandSet::Run& run,
                                   const CommandOptions& options, CommandOutput output);
    /// Reports why the words are not a command, or why no machine could be set up.
    static void refuse(const CommandSet::Failure& failure, const CommandOptions& options,
                       const CommandOutput& output);

private:
    Machine& _machine;
    LauncherViewModel& _launcher;
    std::vector<std::function<void()>> _early;
    Subscription _bootstrapped;
    Lifetime _lifetime;
};

} // namespace tessellar
