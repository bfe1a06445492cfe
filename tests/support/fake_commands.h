#pragma once

#include "platform/process.h"

#include <QFile>

#include <cerrno>
#include <csignal>
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

    /// While it is set, what is started goes on until it is released or terminated.
    void holdStarted(bool isHeld) {
        const std::lock_guard lock(_mutex);
        _isHeld = isHeld;
    }
    /// What commands that were started say, besides what they answer with.
    void say(const QByteArray& outputFile, const QByteArray& words) const {
        QFile file(QString::fromUtf8(outputFile));
        if (file.open(QIODevice::Append))
            file.write(words);
    }
    /// Those that were terminated so far.
    QList<std::int64_t> terminated() const {
        const std::lock_guard lock(_mutex);
        return _terminated;
    }

    std::expected<std::int64_t, int> start(const Command& command,
                                           const QByteArray& outputFile) override {
        const CommandResult result = run(command, {});
        if (result.outcome == CommandResult::Outcome::couldNotLaunch)
            return std::unexpected(result.exitStatus);
        QFile file(QString::fromUtf8(outputFile));
        if (!file.open(QIODevice::WriteOnly))
            return std::unexpected(EIO);
        file.write(result.standardOutput + result.standardError);
        const std::lock_guard lock(_mutex);
        _started.insert_or_assign(++_lastNumber, result);
        return _lastNumber;
    }
    DetachedState poll(std::int64_t number, const QByteArray&) override {
        using Kind = DetachedState::Kind;
        const std::lock_guard lock(_mutex);
        if (_terminated.contains(number))
            return {Kind::signalled, SIGTERM};
        const auto found = _started.find(number);
        if (found == _started.end())
            return {};
        if (_isHeld)
            return {.kind = Kind::running};
        return {found->second.outcome == CommandResult::Outcome::exited ? Kind::exited
                                                                        : Kind::signalled,
                found->second.exitStatus};
    }
    void terminate(std::int64_t number, const QByteArray&, bool) override {
        const std::lock_guard lock(_mutex);
        _terminated.append(number);
    }

    CommandResult run(const Command& command, std::stop_token stop) override {
        if (stop.stop_requested()) // not started, and thus not seen
            return {.outcome = CommandResult::Outcome::cancelled};
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
        return answer ? answer(command, stop) : CommandResult{.exitStatus = ENOENT};
    }

private:
    QByteArray _hostRoot;
    mutable std::mutex _mutex;
    std::map<QByteArray, Answer> _answers;
    QList<Command> _commands;
    bool _isHeld = false;
    std::int64_t _lastNumber = 100;
    std::map<std::int64_t, CommandResult> _started;
    QList<std::int64_t> _terminated;
};

/// What a tool gives that ran to its end.
inline CommandResult exited(int status, QByteArray standardOutput = {}, QByteArray standardError = {}) {
    return {.outcome = CommandResult::Outcome::exited,
            .exitStatus = status,
            .standardOutput = std::move(standardOutput),
            .standardError = std::move(standardError)};
}

} // namespace tessellar::test
