#include "platform/process.h"

#include "platform/descriptor.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <memory>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#ifdef __linux__
#include <sys/syscall.h>
#else
#include <sys/event.h>
#endif

namespace tessellar {

namespace {

using Time = std::chrono::steady_clock::time_point;
using std::chrono::milliseconds;

/// Bounds timeouts, so that a caller's "never" does not overflow when added to the present.
constexpr milliseconds longest = std::chrono::hours(24 * 365);
/// How often a child is polled on systems that cannot report its exit.
constexpr milliseconds watchInterval{20};

Time timeAfter(milliseconds delay) {
    return std::chrono::steady_clock::now() + std::clamp(delay, milliseconds::zero(), longest);
}

struct Pipe {
    Descriptor reading;
    Descriptor writing;
};

/// Both ends are close-on-exec and above the standard streams, so that setting up the child's streams
/// never overwrites an end that is still needed.
bool openPipe(Pipe& ends) {
    std::array<int, 2> raw{};
    if (::pipe(raw.data()) != 0)
        return false;
    const Descriptor first(raw[0]);
    const Descriptor second(raw[1]);
    ends.reading = Descriptor(::fcntl(first.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    ends.writing = Descriptor(::fcntl(second.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    return ends.reading && ends.writing;
}

void makeNonBlocking(const Descriptor& descriptor) {
    ::fcntl(descriptor.get(), F_SETFL, ::fcntl(descriptor.get(), F_GETFL) | O_NONBLOCK);
}

/// Becomes readable when the child exits; invalid where the system does not support that.
Descriptor openExitWatch(pid_t child) {
#ifdef __linux__
    return Descriptor(static_cast<int>(::syscall(SYS_pidfd_open, child, 0)));
#else
    Descriptor queue(::kqueue());
    struct kevent change;
    EV_SET(&change, child, EVFILT_PROC, EV_ADD | EV_ONESHOT, NOTE_EXIT, 0, nullptr);
    return queue && ::kevent(queue.get(), &change, 1, nullptr, 0, nullptr) == 0 ? std::move(queue)
                                                                                : Descriptor();
#endif
}

/// While it exists, writing to a child that has closed its input gives this thread EPIPE instead of
/// ending the program.
class BrokenPipeGuard {
public:
    BrokenPipeGuard() {
        sigemptyset(&_signal); // a macro on a Mac, like the others of its family
        sigaddset(&_signal, SIGPIPE);
        ::pthread_sigmask(SIG_BLOCK, &_signal, &_before);
    }
    ~BrokenPipeGuard() {
        sigset_t pending;
        ::sigpending(&pending);
        int taken = 0;
        if (sigismember(&pending, SIGPIPE) == 1 && sigismember(&_before, SIGPIPE) == 0)
            ::sigwait(&_signal, &taken);
        ::pthread_sigmask(SIG_SETMASK, &_before, nullptr);
    }
    BrokenPipeGuard(const BrokenPipeGuard&) = delete;
    BrokenPipeGuard& operator=(const BrokenPipeGuard&) = delete;

private:
    sigset_t _signal;
    sigset_t _before;
};

/// Null-terminated arrays, as exec takes them.
class Strings {
public:
    void append(QByteArray text) {
        _wellFormed = _wellFormed && !text.contains('\0');
        _texts.push_back(std::move(text));
    }
    bool wellFormed() const { return _wellFormed; }
    char** data() {
        _pointers.clear();
        for (QByteArray& text : _texts)
            _pointers.push_back(text.data());
        _pointers.push_back(nullptr);
        return _pointers.data();
    }

private:
    std::vector<QByteArray> _texts;
    std::vector<char*> _pointers;
    bool _wellFormed = true;
};

struct Spawning {
    Spawning() {
        ::posix_spawnattr_init(&attributes);
        ::posix_spawn_file_actions_init(&actions);
    }
    ~Spawning() {
        ::posix_spawn_file_actions_destroy(&actions);
        ::posix_spawnattr_destroy(&attributes);
    }
    Spawning(const Spawning&) = delete;
    Spawning& operator=(const Spawning&) = delete;

    posix_spawnattr_t attributes;
    posix_spawn_file_actions_t actions;
};

/// What the child becomes the leader of.
enum class Leading { group, session };

/// Starts the command as the leader of a new process group or session. It inherits nothing but the
/// given streams: no descriptors, no environment, no blocked or ignored signals. Returns an errno.
int spawn(const Command& command, Leading leading, int input, int output, int error, pid_t& child) {
    Strings arguments;
    arguments.append(command.executable);
    for (const QByteArray& argument : command.arguments)
        arguments.append(argument);
    Strings environment;
    for (const auto& [name, value] : command.environment) {
        if (name.isEmpty() || name.contains('='))
            return EINVAL;
        environment.append(name + '=' + value);
    }
    if (!arguments.wellFormed() || !environment.wellFormed())
        return EINVAL;

    Spawning spawning;
    if (input >= 0)
        ::posix_spawn_file_actions_adddup2(&spawning.actions, input, STDIN_FILENO);
    else
        ::posix_spawn_file_actions_addopen(&spawning.actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_adddup2(&spawning.actions, output, STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&spawning.actions, error, STDERR_FILENO);

    int flags = (leading == Leading::session ? POSIX_SPAWN_SETSID : POSIX_SPAWN_SETPGROUP) |
                POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
#ifdef __APPLE__
    flags |= POSIX_SPAWN_CLOEXEC_DEFAULT;
#else
    ::posix_spawn_file_actions_addclosefrom_np(&spawning.actions, STDERR_FILENO + 1);
#endif
    sigset_t none;
    sigemptyset(&none);
    sigset_t all;
    sigfillset(&all);
    ::posix_spawnattr_setsigmask(&spawning.attributes, &none);
    ::posix_spawnattr_setsigdefault(&spawning.attributes, &all);
    ::posix_spawnattr_setpgroup(&spawning.attributes, 0);
    ::posix_spawnattr_setflags(&spawning.attributes, static_cast<short>(flags));
    return ::posix_spawn(&child, command.executable.constData(), &spawning.actions,
                         &spawning.attributes, arguments.data(), environment.data());
}

/// One run of a command, from start to reaping.
class Run {
public:
    Run(const Command& command, CommandResult& result) : _command(command), _result(result) {}

    /// Returns an errno.
    int start();
    void follow(int stopWatch);

private:
    /// `_deadline` ends the phase if nothing else does.
    enum class Phase {
        running,
        terminating, ///< the group was sent SIGTERM
        killed,      ///< the group was sent SIGKILL
        draining,    ///< the child has exited, but another process still holds its output
        over,
    };

    void enter(Phase phase);
    void stopEarly(CommandResult::Outcome outcome);
    void deadlinePassed();
    bool outputEnded() const { return !_output.reading && !_error.reading; }
    void take(Descriptor& from, QByteArray& into);
    void give();
    void lookAtChild();
    void reap();

    const Command& _command;
    CommandResult& _result;
    Pipe _input;
    Pipe _output;
    Pipe _error;
    qsizetype _given = 0;
    pid_t _child = -1;
    Descriptor _exitWatch;
    bool _childEnded = false;
    Phase _phase = Phase::running;
    Time _deadline;
};

int Run::start() {
    if (!openPipe(_output) || !openPipe(_error) || (_command.input && !openPipe(_input)))
        return errno;
    makeNonBlocking(_output.reading);
    makeNonBlocking(_error.reading);
    const int error = spawn(_command, Leading::group, _input.reading.get(), _output.writing.get(),
                            _error.writing.get(), _child);
    if (error != 0)
        return error;
    _output.writing = Descriptor();
    _error.writing = Descriptor();
    _input.reading = Descriptor();
    if (_input.writing)
        makeNonBlocking(_input.writing);
    _exitWatch = openExitWatch(_child);
    enter(Phase::running);
    return 0;
}

void Run::enter(Phase phase) {
    _phase = phase;
    switch (phase) {
    case Phase::running:
        _deadline = timeAfter(_command.timeout);
        break;
    case Phase::terminating:
        ::kill(-_child, SIGTERM);
        ::kill(-_child, SIGCONT); // a stopped process would not handle SIGTERM
        _deadline = timeAfter(_command.terminationGrace);
        break;
    case Phase::killed:
        // The child has not been reaped, so its id still denotes this group.
        ::kill(-_child, SIGKILL);
        _deadline = timeAfter(_command.finalGrace);
        break;
    case Phase::draining:
        _deadline = timeAfter(_command.finalGrace);
        break;
    case Phase::over:
        break;
    }
}

void Run::stopEarly(CommandResult::Outcome outcome) {
    if (_phase == Phase::running) {
        _result.outcome = outcome;
        enter(Phase::terminating);
    } else if (_phase == Phase::draining) {
        enter(Phase::over);
    }
}

void Run::deadlinePassed() {
    if (_phase == Phase::running)
        stopEarly(CommandResult::Outcome::timedOut);
    else if (_phase == Phase::terminating)
        enter(Phase::killed);
    else
        enter(Phase::over);
}

void Run::take(Descriptor& from, QByteArray& into) {
    std::array<char, 65'536> buffer; // NOLINT: filled by read
    const ssize_t count = ::read(from.get(), buffer.data(), buffer.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    if (count <= 0) {
        from = Descriptor();
        return;
    }
    const auto room = _command.maximumOutput - static_cast<std::uint64_t>(into.size());
    const auto kept = std::min<std::uint64_t>(static_cast<std::uint64_t>(count), room);
    into.append(buffer.data(), static_cast<qsizetype>(kept));
    if (kept < static_cast<std::uint64_t>(count))
        _result.outputTruncated = true;
}

void Run::give() {
    const QByteArray& input = *_command.input;
    const ssize_t count = ::write(_input.writing.get(), input.constData() + _given,
                                  static_cast<std::size_t>(input.size() - _given));
    if (count > 0)
        _given += count;
    // It is no error if the child stops reading; its exit status tells how it fared.
    if ((count < 0 && errno != EINTR && errno != EAGAIN) || _given == input.size())
        _input.writing = Descriptor();
}

/// Notices the child's exit without reaping it: until then its id cannot be reused.
void Run::lookAtChild() {
    siginfo_t info{};
    if (_childEnded ||
        ::waitid(P_PID, static_cast<id_t>(_child), &info, WEXITED | WNOHANG | WNOWAIT) != 0 ||
        info.si_pid != _child)
        return;
    _childEnded = true;
    _exitWatch = Descriptor();
    _input.writing = Descriptor();
    if (_phase == Phase::running)
        enter(Phase::draining);
}

void Run::follow(int stopWatch) {
    const BrokenPipeGuard guard;
    if (_input.writing && _command.input->isEmpty())
        _input.writing = Descriptor();
    while (_phase != Phase::over) {
        // Processes that still hold the pipes of a terminated group have until the deadline. Once none
        // does, there is nothing left to wait for.
        if (_childEnded && outputEnded()) {
            if (_phase == Phase::terminating)
                enter(Phase::killed);
            break;
        }
        const auto left = std::chrono::ceil<milliseconds>(_deadline - std::chrono::steady_clock::now());
        if (left <= milliseconds::zero()) {
            deadlinePassed();
            continue;
        }
        const bool watching = _childEnded || _exitWatch;
        const milliseconds wait = std::min(left, watching ? milliseconds(60'000) : watchInterval);

        std::array<pollfd, 5> polled{{
            {_output.reading.get(), POLLIN, 0},
            {_error.reading.get(), POLLIN, 0},
            {_input.writing.get(), POLLOUT, 0},
            {_exitWatch.get(), POLLIN, 0},
            {_phase == Phase::running || _phase == Phase::draining ? stopWatch : -1, POLLIN, 0},
        }};
        if (::poll(polled.data(), polled.size(), static_cast<int>(wait.count())) < 0)
            continue; // interrupted by a signal
        if (polled[0].revents != 0)
            take(_output.reading, _result.standardOutput);
        if (polled[1].revents != 0)
            take(_error.reading, _result.standardError);
        if (polled[2].revents != 0)
            give();
        if (polled[3].revents != 0 || !watching)
            lookAtChild();
        if (polled[4].revents != 0)
            stopEarly(CommandResult::Outcome::cancelled);
    }
    reap();
}

void Run::reap() {
    if (!_childEnded) {
        // Killed, but stuck in the kernel, for example on a dead network volume. It is reaped when it
        // gets free; this worker does not wait.
        try {
            std::thread([child = _child] {
                while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
                }
            }).detach();
        } catch (const std::system_error&) {
            // No thread could be started: it stays a zombie until this process ends.
        }
        return;
    }
    int status = 0;
    while (::waitpid(_child, &status, 0) < 0 && errno == EINTR) {
    }
    if (_result.outcome == CommandResult::Outcome::timedOut ||
        _result.outcome == CommandResult::Outcome::cancelled)
        return;
    const bool exited = WIFEXITED(status);
    _result.outcome = exited ? CommandResult::Outcome::exited : CommandResult::Outcome::signalled;
    _result.exitStatus = exited ? WEXITSTATUS(status) : WTERMSIG(status);
}

} // namespace

CommandResult ProcessRunner::run(const Command& command, std::stop_token stop) {
    CommandResult result;
    if (stop.stop_requested()) {
        result.outcome = CommandResult::Outcome::cancelled;
        return result;
    }
    Pipe wake;
    if (stop.stop_possible() && !openPipe(wake)) {
        result.exitStatus = errno;
        return result;
    }
    Run run(command, result);
    if (const int error = run.start(); error != 0) {
        result.exitStatus = error;
        return result;
    }
    const std::stop_callback wakeUp(
        stop, [&wake] { [[maybe_unused]] const ssize_t written = ::write(wake.writing.get(), "", 1); });
    run.follow(wake.reading.get());
    return result;
}

// ---- detached commands

std::expected<std::int64_t, int> ProcessRunner::start(const Command& command,
                                                      const QByteArray& outputFile) {
    // The child's streams are duplicates of this descriptor: they share the lock, which lasts as long
    // as they do.
    const Descriptor output(
        ::open(outputFile.constData(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!output || ::flock(output.get(), LOCK_EX | LOCK_NB) != 0 || ::ftruncate(output.get(), 0) != 0)
        return std::unexpected(errno);
    pid_t child = -1;
    if (const int error = spawn(command, Leading::session, -1, output.get(), output.get(), child);
        error != 0)
        return std::unexpected(error);
    return child;
}

DetachedState ProcessRunner::poll(std::int64_t number, const QByteArray& outputFile) {
    using Kind = DetachedState::Kind;
    const auto child = static_cast<pid_t>(number);
    if (number <= 1 || child != number)
        return {};
    int status = 0;
    pid_t ended = 0;
    while ((ended = ::waitpid(child, &status, WNOHANG)) < 0 && errno == EINTR) {
    }
    if (ended == 0)
        return {.kind = Kind::running};
    if (ended == child)
        return WIFEXITED(status) ? DetachedState{Kind::exited, WEXITSTATUS(status)}
                                 : DetachedState{Kind::signalled, WTERMSIG(status)};
    // Not this program's child. Its id may have been reused, and the file may be held by a process that
    // it left behind: it counts as running only if both are there.
    if (::kill(child, 0) != 0 && errno != EPERM)
        return {};
    const Descriptor output(::open(outputFile.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    const bool isHeld = output && ::flock(output.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    return {.kind = isHeld ? Kind::running : Kind::gone};
}

void ProcessRunner::terminate(std::int64_t number, const QByteArray& outputFile, bool now) {
    // While the child has not been reaped its id cannot be reused; `poll` would reap it.
    const auto child = static_cast<pid_t>(number);
    siginfo_t info{};
    const bool isChild =
        number > 1 && child == number &&
        ::waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOHANG | WNOWAIT) == 0;
    if (!isChild && !poll(number, outputFile).isRunning())
        return;
    ::kill(-child, now ? SIGKILL : SIGTERM);
    ::kill(-child, SIGCONT);
}

} // namespace tessellar
