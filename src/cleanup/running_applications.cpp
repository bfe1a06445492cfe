#include "cleanup/running_applications.h"

#include "cleanup/related_file_names.h"

#include <algorithm>

namespace tessellar {

SystemRunningApplications::SystemRunningApplications(Machine& machine,
                                                     AppleScriptInterpreter& interpreter)
    : _files(machine.files)
    , _commands(machine.commands)
    , _environment(machine.environment)
    , _interpreter(interpreter) {}

RunningApplications::State SystemRunningApplications::state(const CleanupApplication& application) {
    const QString tool = QStringLiteral("/bin/ps");
    if (const auto there = _files.linkStatus(tool);
        !there && there.error().code == FileError::Code::notFound && _files.hostRoot() != u"/")
        return State::closed;
    const CommandResult result = _commands.run(
        {.executable = _files.hostPath(tool),
         .arguments = {QByteArrayLiteral("-A"), QByteArrayLiteral("-o"), QByteArrayLiteral("comm=")},
         .environment = _environment,
         .timeout = std::chrono::seconds(10),
         .input = {}},
        {});
    const QByteArray inBundle = _files.hostPath(application.path) + '/';
    if (!result.succeeded() || result.outputTruncated)
        return State::unknown;
    const bool isOpen =
        std::ranges::any_of(result.standardOutput.split('\n'), [&](const QByteArray& line) {
            return line.trimmed().startsWith(inBundle);
        });
    return isOpen ? State::open : State::closed;
}

void SystemRunningApplications::askToQuit(const CleanupApplication& application, std::stop_token stop) {
    // By identifier if it is a proper one; otherwise by the bundle's path.
    const QByteArray identifier = ApplicationNames(application).identifier();
    const QByteArray path = _files.hostPath(application.path);
    if (identifier.isEmpty() && !path.isValidUtf8())
        return;
    const QByteArray target = identifier.isEmpty()
                                  ? appleScriptLiteral(path)
                                  : "id " + appleScriptLiteral(application.bundleIdentifier->toUtf8());
    (void)_interpreter.run("tell application " + target + " to quit\n", stop);
}

} // namespace tessellar
