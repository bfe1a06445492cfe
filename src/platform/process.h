#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <stop_token>

namespace tessellar {

/// One external command. No shell is involved: the executable and its arguments, as bytes.
struct Command {
    QByteArray executable; ///< host path
    QList<QByteArray> arguments;
    /// The whole environment of the child; nothing is inherited.
    std::map<QByteArray, QByteArray> environment;
    std::chrono::milliseconds timeout{30'000};
    /// Output beyond this many bytes of either stream is discarded.
    std::uint64_t maximumOutput = 16u << 20;
    /// Written to the child's standard input; without it the child reads /dev/null.
    std::optional<QByteArray> input;
    /// How long the group may take to go after TERM, then how long output is awaited after KILL.
    std::chrono::milliseconds terminationGrace{1'000};
    std::chrono::milliseconds finalGrace{1'000};
};

struct CommandResult {
    enum class Outcome { exited, signalled, timedOut, cancelled, couldNotLaunch };
    Outcome outcome = Outcome::couldNotLaunch;
    int exitStatus =
        -1; ///< of `exited`; the signal's number for `signalled`; errno for `couldNotLaunch`
    QByteArray standardOutput;
    QByteArray standardError;
    bool outputTruncated = false;

    bool succeeded() const { return outcome == Outcome::exited && exitStatus == 0; }
};

/// Runs commands. An interface, so that tests can answer for a tool.
class CommandRunner {
public:
    virtual ~CommandRunner() = default;
    /// Blocks the calling worker until the command has ended and its output is read, the time is up
    /// or a stop is requested. Safe from any thread.
    virtual CommandResult run(const Command& command, std::stop_token stop) = 0;
};

/// Runs commands as children of this process with posix_spawn, each in a process group of its own,
/// both pipes drained while it runs. When the time is up or a stop is requested the whole group gets
/// TERM, after the grace KILL, and is reaped in any case; a grandchild that left the group and holds
/// the pipes open is not waited for longer than the final grace.
///
/// Our own rather than QProcess, which leaves grandchildren behind and has no cap on output.
class ProcessRunner final : public CommandRunner {
public:
    CommandResult run(const Command& command, std::stop_token stop) override;
};

} // namespace tessellar
