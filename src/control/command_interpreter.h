#pragma once

#include "control/command_set.h"
#include "platform/lifetime.h"

namespace tessellar {

/// What carries out commands: this process, or the launcher that is running.
class CommandExecutor {
public:
    virtual ~CommandExecutor() = default;
    /// `output.finished` is called once, possibly before this returns.
    virtual void run(const QStringList& words, const CommandOptions& options, CommandOutput output) = 0;
};

/// Carries commands out with a launcher that has been started; those that come before its first load is
/// complete wait for that. Main thread.
class CommandInterpreter final : public CommandExecutor {
public:
    CommandInterpreter(Machine& machine, LauncherViewModel& launcher)
        : _machine(machine), _launcher(launcher) {}

    void run(const QStringList& words, const CommandOptions& options, CommandOutput output) override;

    /// Carries out a command that needs no launcher.
    static void runWithoutLauncher(Machine& machine, const CommandSet::Run& run,
                                   const CommandOptions& options, CommandOutput output);
    /// Says why words are no command, or why there is no machine to carry one out on.
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
