#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <chrono>
#include <cstdint>
#include <expected>
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

/// What has become of a detached command.
struct DetachedState {
    enum class Kind {
        running,
        exited,
        signalled,
        gone, ///< it has ended; how, only the program that started it could know
    };
    Kind kind = Kind::gone;
    int status = -1; ///< of `exited` its exit status, of `signalled` the signal

    bool isRunning() const { return kind == Kind::running; }
    bool operator==(const DetachedState&) const = default;
};

/// Runs commands. An interface, so that tests can answer for a tool. Safe from any thread.
class CommandRunner {
public:
    virtual ~CommandRunner() = default;
    /// Blocks the calling worker until the command has ended and its output is read, the time is up
    /// or a stop is requested.
    virtual CommandResult run(const Command& command, std::stop_token stop) = 0;

    /// Starts a command that goes on when this program ends, in a session of its own. What it says on
    /// both streams is written to a file (a host path), which it empties first and holds locked while
    /// it runs; while another command holds it, EWOULDBLOCK. Gives the command's number, or an errno.
    /// Time limit, input and graces of the command count for nothing here.
    virtual std::expected<std::int64_t, int> start(const Command& command,
                                                   const QByteArray& outputFile) = 0;
    /// Of a command that this program, or one before it, started with that file.
    virtual DetachedState look(std::int64_t number, const QByteArray& outputFile) = 0;
    /// Asks a command that runs to end, with all that it started; `now` does not leave it a choice.
    virtual void terminate(std::int64_t number, const QByteArray& outputFile, bool now) = 0;
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
    std::expected<std::int64_t, int> start(const Command& command,
                                           const QByteArray& outputFile) override;
    DetachedState look(std::int64_t number, const QByteArray& outputFile) override;
    void terminate(std::int64_t number, const QByteArray& outputFile, bool now) override;
};

} // namespace tessellar
