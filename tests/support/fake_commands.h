#pragma once

#include "platform/process.h"

#include <cerrno>
#include <functional>
#include <map>
#include <mutex>

namespace tessellar::test {

/// Answers for tools by the path of the executable under the machine's root ("/usr/bin/lipo").
/// What it has no answer for could not be launched.
class FakeCommands final : public CommandRunner {
public:
    using Answer = std::function<CommandResult(const Command&, std::stop_token)>;

    explicit FakeCommands(QByteArray hostRoot) : _hostRoot(std::move(hostRoot)) {}

    void answer(const QByteArray& executable, Answer answer) {
        const std::lock_guard lock(_mutex);
        _answers.insert_or_assign(executable, std::move(answer));
    }
    void answer(const QByteArray& executable, CommandResult result) {
        answer(executable,
               [result = std::move(result)](const Command&, std::stop_token) { return result; });
    }

    /// The commands that were run so far, in order, with their executables as under the root.
    QList<Command> commands() const {
        const std::lock_guard lock(_mutex);
        return _commands;
    }

    CommandResult run(const Command& command, std::stop_token stop) override {
        Answer answer;
        {
            const std::lock_guard lock(_mutex);
            Command seen = command;
            if (seen.executable.startsWith(_hostRoot + '/'))
                seen.executable.remove(0, _hostRoot.size());
            if (const auto found = _answers.find(seen.executable); found != _answers.end())
                answer = found->second;
            _commands.append(std::move(seen));
        }
        if (stop.stop_requested())
            return {.outcome = CommandResult::Outcome::cancelled};
        return answer ? answer(command, stop) : CommandResult{.exitStatus = ENOENT};
    }

private:
    QByteArray _hostRoot;
    mutable std::mutex _mutex;
    std::map<QByteArray, Answer> _answers;
    QList<Command> _commands;
};

/// What a tool gives that ran to its end.
inline CommandResult exited(int status, QByteArray standardOutput = {}, QByteArray standardError = {}) {
    return {.outcome = CommandResult::Outcome::exited,
            .exitStatus = status,
            .standardOutput = std::move(standardOutput),
            .standardError = std::move(standardError)};
}

} // namespace tessellar::test
