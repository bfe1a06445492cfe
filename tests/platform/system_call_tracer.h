#pragma once

#include <signal.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <functional>
#include <optional>
#include <vector>

namespace tessellar::test {

/// What befalls a system call of a traced child.
struct Fate {
    enum class Kind { run, killBefore, killAfter, fail };
    Kind kind = Kind::run;
    int error = 0; ///< of `fail`
};

struct TracedRun {
    std::vector<long> calls;       ///< numbers, in order, the one that was fatal among them
    std::optional<int> exitStatus; ///< none when killed
    bool traceable = true;
};

/// A forked child that stops before it does its work, traced with these options besides the usual ones.
/// None where this process may not trace its children.
inline std::optional<pid_t> forkTraced(const std::function<int()>& work, long options = 0) {
    const pid_t child = ::fork();
    if (child == 0) {
        if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0)
            ::_exit(99);
        ::raise(SIGSTOP);
        ::_exit(work());
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    options |= PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL;
    if (WIFSTOPPED(status) && ::ptrace(PTRACE_SETOPTIONS, child, nullptr, options) == 0)
        return child;
    ::kill(child, SIGKILL);
    ::waitpid(child, &status, 0);
    return std::nullopt;
}

/// Runs `work` in a forked child and decides the fate of each of its system calls, counted from 0. The
/// child leaves with the value of `work`.
inline TracedRun traceSystemCalls(const std::function<int()>& work,
                                  const std::function<Fate(std::size_t index, long number)>& decide) {
    TracedRun run;
    const auto traced = forkTraced(work);
    run.traceable = traced.has_value();
    if (!traced)
        return run;
    const pid_t child = *traced;
    int status = 0;
    Fate fate;
    int signal = 0;
    while (true) {
        ::ptrace(PTRACE_SYSCALL, child, nullptr, signal);
        ::waitpid(child, &status, 0);
        if (WIFEXITED(status))
            run.exitStatus = WEXITSTATUS(status);
        if (WIFEXITED(status) || WIFSIGNALED(status))
            return run;
        signal = WSTOPSIG(status) == (SIGTRAP | 0x80) ? 0 : WSTOPSIG(status);
        if (signal != 0)
            continue;
        __ptrace_syscall_info info{};
        ::ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof info, &info);
        const bool entered = info.op == PTRACE_SYSCALL_INFO_ENTRY;
        if (entered) {
            run.calls.push_back(static_cast<long>(info.entry.nr));
            fate = decide(run.calls.size() - 1, run.calls.back());
        }
        if (fate.kind == (entered ? Fate::Kind::killBefore : Fate::Kind::killAfter))
            ::kill(child, SIGKILL);
#ifdef __x86_64__
        if (fate.kind == Fate::Kind::fail) {
            user_regs_struct registers{};
            ::ptrace(PTRACE_GETREGS, child, nullptr, &registers);
            if (entered) // No call has this number: the kernel does nothing.
                registers.orig_rax = static_cast<unsigned long long>(-1);
            else
                registers.rax = static_cast<unsigned long long>(-fate.error);
            ::ptrace(PTRACE_SETREGS, child, nullptr, &registers);
        }
#endif
        if (!entered)
            fate = {};
    }
}

} // namespace tessellar::test
