#pragma once

#include <QByteArray>

#include <functional>
#include <map>
#include <optional>
#include <sys/types.h>

namespace tessellar::torture {

/// A system call that a traced program is about to make.
struct SystemCall {
    enum class Kind { reads, changes, serves, makesThread, makesDescriptor };

    const char* name = "";
    Kind kind = Kind::reads;
    QByteArray path; ///< of what it is about, as the host has it; empty when it is about no file
};

/// What befalls it.
struct Fate {
    enum class Kind {
        runs,
        fails, ///< and does nothing; a `close` closes and then fails, as systems have it
        killedBefore,
        killedAfter,
    };
    Kind kind = Kind::runs;
    int error = 0; ///< of `fails`
};

/// How a program ended.
struct Ending {
    std::optional<int> status; ///< none where a signal ended it
    int signal = 0;
    bool isLate = false; ///< it was ended because it had not done so itself in time
    QByteArray out;
    QByteArray error;
};

/// Runs programs as forks of this process, which must have one thread only. That saves loading and
/// linking them, two thirds of a command's time. The calls of a program that is started with a `Decide`
/// stop for it, in all threads, but only those about files and the making of threads and descriptors: a
/// filter in the kernel lets all others pass at full speed. Tools that it starts are left alone.
class Programs {
public:
    using Main = std::function<int()>;
    using Decide = std::function<Fate(const SystemCall&)>;

    Programs() = default;
    ~Programs();
    Programs(const Programs&) = delete;
    Programs& operator=(const Programs&) = delete;

    static bool canTrace();

    pid_t start(const Main& main, Decide decide = {});
    /// Until the program has ended, or the time given to it is over; others run meanwhile.
    Ending waitFor(pid_t program, int seconds);
    /// Until this is so, as a `Decide` may make it, or the time is over; whether it is so.
    bool runUntil(const std::function<bool()>& isSo, int seconds);
    void signal(pid_t program, int number);

private:
    struct Program {
        Decide decide;
        int out = -1;
        int error = -1;
        std::optional<int> waitStatus;
    };
    struct Task {
        bool isStarted = false; ///< its first stop, which means nothing, has passed
        pid_t program = 0;      ///< none for a tool
        Fate pending;           ///< to be carried out when the call returns
    };

    bool step(); ///< false where a signal interrupts, or nobody is left
    void handleStop(pid_t task, int status);
    void handleCall(pid_t id, Task& task);
    void handleReturn(pid_t id, Task& task);

    std::map<pid_t, Program> _programs;
    std::map<pid_t, Task> _tasks;
};

} // namespace tessellar::torture
