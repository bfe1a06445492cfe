#pragma once

#include "tests/platform/system_call_tracer.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <set>
#include <string>

namespace tessellar::test {

struct KilledRun {
    std::size_t steps = 0;         ///< changes of the disk, the one that was not made among them
    std::optional<int> exitStatus; ///< none when killed
    bool isTraceable = true;
};

/// True for a system call that changes which files lie on the disk.
inline bool isChangeOfDisk(const __ptrace_syscall_info& info) {
    constexpr std::array calls{
#ifdef SYS_rename
        SYS_rename,   SYS_unlink,    SYS_link,
#endif
        SYS_renameat, SYS_renameat2, SYS_unlinkat, SYS_linkat, SYS_ftruncate};
    const auto number = static_cast<long>(info.entry.nr);
    return std::ranges::find(calls, number) != calls.end() ||
           (number == SYS_openat && (info.entry.args[2] & O_CREAT));
}

/// Runs a program, with no output, and kills it with all its threads just before its change of the disk
/// of this number, counted from 0. One that has fewer runs to its end.
inline KilledRun runKilledAt(const std::vector<std::string>& command, std::size_t step) {
    KilledRun run;
    std::vector<char*> arguments;
    for (const std::string& word : command)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    const auto execute = [&] {
        const int nowhere = ::open("/dev/null", O_RDWR);
        for (const int stream : {0, 1, 2})
            ::dup2(nowhere, stream);
        return ::execv(arguments.front(), arguments.data());
    };
    const auto traced = forkTraced(execute, PTRACE_O_TRACECLONE | PTRACE_O_TRACEFORK |
                                                PTRACE_O_TRACEVFORK | PTRACE_O_TRACEEXEC);
    run.isTraceable = traced.has_value();
    if (!traced)
        return run;
    const pid_t child = *traced;
    int status = 0;
    ::ptrace(PTRACE_SYSCALL, child, nullptr, 0);
    std::set<pid_t> known{child};
    for (;;) {
        const pid_t thread = ::waitpid(-1, &status, __WALL);
        if (thread < 0 && errno == EINTR)
            continue;
        if (thread < 0)
            return run;
        if (WIFEXITED(status) || WIFSIGNALED(status)) {
            if (thread == child && WIFEXITED(status))
                run.exitStatus = WEXITSTATUS(status);
            if (thread == child)
                return run; // the last of its threads
            continue;
        }
        int signal = WSTOPSIG(status);
        const bool isFirst = known.insert(thread).second;
        if (signal == (SIGTRAP | 0x80)) {
            __ptrace_syscall_info info{};
            ::ptrace(PTRACE_GET_SYSCALL_INFO, thread, sizeof info, &info);
            if (info.op == PTRACE_SYSCALL_INFO_ENTRY && isChangeOfDisk(info) && run.steps++ == step)
                ::kill(child, SIGKILL);
            signal = 0;
        } else if (status >> 16 != 0 || (isFirst && signal == SIGSTOP)) {
            signal = 0; // a thread or process begins
        }
        ::ptrace(PTRACE_SYSCALL, thread, nullptr, signal);
    }
}

} // namespace tessellar::test
