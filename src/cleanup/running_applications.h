#pragma once

#include "cleanup/apple_script_interpreter.h"
#include "cleanup/related_file.h"

namespace tessellar {

/// Checks and quits applications. An interface, so that tests can fake it. Both calls block.
class RunningApplications {
public:
    enum class State { closed, open, unknown };

    virtual ~RunningApplications() = default;
    virtual State state(const CleanupApplication& application) = 0;
    /// A request: the application may prompt its user and stay open.
    virtual void askToQuit(const CleanupApplication& application, std::stop_token stop) = 0;
};

/// Uses the process list (/bin/ps) and quits through AppleScript. Under a root without /bin/ps nothing
/// is running; if the tool fails, the answer is `unknown`.
class SystemRunningApplications final : public RunningApplications {
public:
    SystemRunningApplications(Machine& machine, AppleScriptInterpreter& interpreter);

    State state(const CleanupApplication& application) override;
    void askToQuit(const CleanupApplication& application, std::stop_token stop) override;

private:
    const FileSystem& _files;
    CommandRunner& _commands;
    std::map<QByteArray, QByteArray> _environment;
    AppleScriptInterpreter& _interpreter;
};

} // namespace tessellar
