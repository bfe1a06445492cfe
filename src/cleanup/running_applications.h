#pragma once

#include "cleanup/apple_script_interpreter.h"
#include "cleanup/related_file.h"

namespace tessellar {

/// Applications that are open. An interface, so that tests can open and close them. Both calls block.
class RunningApplications {
public:
    enum class Seen { closed, open, unknown };

    virtual ~RunningApplications() = default;
    virtual Seen look(const CleanupApplication& application) = 0;
    /// Asks; the application may ask its user in turn, and stay.
    virtual void askToQuit(const CleanupApplication& application, std::stop_token stop) = 0;
};

/// What runs by the process list (/bin/ps); quits through AppleScript. A machine that lies in a folder
/// and has no such tool runs nothing; a tool that cannot be started, or fails, says nothing.
class SystemRunningApplications final : public RunningApplications {
public:
    SystemRunningApplications(Machine& machine, AppleScriptInterpreter& interpreter);

    Seen look(const CleanupApplication& application) override;
    void askToQuit(const CleanupApplication& application, std::stop_token stop) override;

private:
    const FileSystem& _files;
    CommandRunner& _commands;
    std::map<QByteArray, QByteArray> _environment;
    AppleScriptInterpreter& _interpreter;
};

} // namespace tessellar
