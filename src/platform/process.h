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

/// One external command. No shell: the executable and its arguments are passed as bytes.
struct Command {
    QByteArray executable; ///< host path
    QList<QByteArray> arguments;
    /// The child's complete environment; nothing is inherited.
    std::map<QByteArray, QByteArray> environment;
    std::chrono::milliseconds timeout{30'000};
    /// Limit for each output stream; the rest is discarded.
    std::uint64_t maximumOutput = 16u << 20;
    /// The child's standard input; nullopt for /dev/null.
    std::optional<QByteArray> input;
    /// How long to wait for the process group after TERM, and for its output after KILL.
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

/// The state of a detached command.
struct DetachedState {
    enum class Kind {
        running,
        exited,
        signalled,
        gone, ///< ended; its status is known only to the program that started it
    };
    Kind kind = Kind::gone;
    int status = -1; ///< exit status of `exited`, signal of `signalled`

    bool isRunning() const { return kind == Kind::running; }
    bool operator==(const DetachedState&) const = default;
};

/// Runs commands. An interface, so that tests can fake tools. Thread-safe.
class CommandRunner {
public:
    virtual ~CommandRunner() = default;
    /// Blocks until the command has ended and its output is read, the timeout expires or a stop is
    /// requested.
    virtual CommandResult run(const Command& command, std::stop_token stop) = 0;

    /// Starts a detached command in a session of its own; it outlives this program. Both output streams
    /// go to `outputFile` (a host path), which is truncated first and locked while the command runs;
    /// EWOULDBLOCK if another command holds it. Returns the command's number, or an errno. Ignores the
    /// command's timeout, input and graces.
    virtual std::expected<std::int64_t, int> start(const Command& command,
                                                   const QByteArray& outputFile) = 0;
    /// The state of a command started with that file, by this program or an earlier run of it.
    virtual DetachedState poll(std::int64_t number, const QByteArray& outputFile) = 0;
    /// Asks a running command and all its children to end; `now` kills them.
    virtual void terminate(std::int64_t number, const QByteArray& outputFile, bool now) = 0;
};

/// Runs commands with posix_spawn, each in its own process group, draining both pipes meanwhile. On a
/// timeout or stop request the whole group gets TERM and, after the grace, KILL; it is always reaped. A
/// grandchild that left the group and holds the pipes open delays the result by at most the final
/// grace.
///
/// Used instead of QProcess, which leaves grandchildren behind and cannot limit output.
class ProcessRunner final : public CommandRunner {
public:
    CommandResult run(const Command& command, std::stop_token stop) override;
    std::expected<std::int64_t, int> start(const Command& command,
                                           const QByteArray& outputFile) override;
    DetachedState poll(std::int64_t number, const QByteArray& outputFile) override;
    void terminate(std::int64_t number, const QByteArray& outputFile, bool now) override;
};

} // namespace tessellar
