#pragma once

#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>

namespace tessellar::test {

/// Runs work in a child process and halts it before each of its system calls, so that a test can act
/// at every moment at which another process could. `before` is told the number of the call; it gives
/// false to kill the child there. Gives the number of calls, or nothing where processes may not be
/// traced.
inline std::optional<int> stepThrough(const std::function<void()>& work,
                                      const std::function<bool(int)>& before) {
    const pid_t child = ::fork();
    if (child == 0) {
        if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0)
            ::_exit(1);
        ::raise(SIGSTOP);
        work();
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    if (!WIFSTOPPED(status))
        return std::nullopt;
    ::ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    int calls = 0;
    for (bool isEntry = true; ::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr) == 0;) {
        ::waitpid(child, &status, 0);
        if (!WIFSTOPPED(status))
            break;
        if (WSTOPSIG(status) != (SIGTRAP | 0x80))
            continue;
        if (isEntry && !before(++calls)) {
            ::kill(child, SIGKILL);
            ::waitpid(child, &status, 0);
            break;
        }
        isEntry = !isEntry;
    }
    return calls;
}

} // namespace tessellar::test
