#include "torture/system_calls.h"

#include "tests/platform/disk_folder.h"

#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/openat2.h>
#include <linux/seccomp.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace tessellar::torture {
namespace {

using Kind = SystemCall::Kind;

/// Which arguments of a call say what it is about; -1 where none does.
struct Shape {
    unsigned number;
    const char* name;
    int descriptor; ///< an open file, or the folder in which the path begins
    int path;
    Kind kind;
};

constexpr std::array shapes{
    Shape{SYS_openat, "openat", 0, 1, Kind::reads}, // or changes: the flags say
    Shape{SYS_openat2, "openat2", 0, 1, Kind::reads},
    Shape{SYS_newfstatat, "newfstatat", 0, 1, Kind::reads},
    Shape{SYS_statx, "statx", 0, 1, Kind::reads},
    Shape{SYS_readlinkat, "readlinkat", 0, 1, Kind::reads},
    Shape{SYS_faccessat, "faccessat", 0, 1, Kind::reads},
    Shape{SYS_faccessat2, "faccessat2", 0, 1, Kind::reads},
    Shape{SYS_getdents64, "getdents64", 0, -1, Kind::reads},
    Shape{SYS_read, "read", 0, -1, Kind::reads},
    Shape{SYS_pread64, "pread64", 0, -1, Kind::reads},
    Shape{SYS_fstat, "fstat", 0, -1, Kind::reads},
    Shape{SYS_flock, "flock", 0, -1, Kind::reads},
    Shape{SYS_close, "close", 0, -1, Kind::reads},
    Shape{SYS_write, "write", 0, -1, Kind::changes},
    Shape{SYS_pwrite64, "pwrite64", 0, -1, Kind::changes},
    Shape{SYS_writev, "writev", 0, -1, Kind::changes},
    Shape{SYS_copy_file_range, "copy_file_range", 2, -1, Kind::changes},
    Shape{SYS_sendfile, "sendfile", 0, -1, Kind::changes},
    Shape{SYS_ftruncate, "ftruncate", 0, -1, Kind::changes},
    Shape{SYS_fsync, "fsync", 0, -1, Kind::changes},
    Shape{SYS_fdatasync, "fdatasync", 0, -1, Kind::changes},
    Shape{SYS_fchmod, "fchmod", 0, -1, Kind::changes},
    Shape{SYS_fchown, "fchown", 0, -1, Kind::changes},
    Shape{SYS_mkdirat, "mkdirat", 0, 1, Kind::changes},
    Shape{SYS_unlinkat, "unlinkat", 0, 1, Kind::changes},
    Shape{SYS_renameat, "renameat", 2, 3, Kind::changes},
    Shape{SYS_renameat2, "renameat2", 2, 3, Kind::changes},
    Shape{SYS_linkat, "linkat", 2, 3, Kind::changes},
    Shape{SYS_symlinkat, "symlinkat", 1, 2, Kind::changes},
    Shape{SYS_fchmodat, "fchmodat", 0, 1, Kind::changes},
    Shape{SYS_utimensat, "utimensat", 0, 1, Kind::changes},
    Shape{SYS_access, "access", -1, 0, Kind::reads},
    Shape{SYS_readlink, "readlink", -1, 0, Kind::reads},
    Shape{SYS_mkdir, "mkdir", -1, 0, Kind::changes},
    Shape{SYS_rmdir, "rmdir", -1, 0, Kind::changes},
    Shape{SYS_unlink, "unlink", -1, 0, Kind::changes},
    Shape{SYS_rename, "rename", -1, 1, Kind::changes},
    Shape{SYS_link, "link", -1, 1, Kind::changes},
    Shape{SYS_symlink, "symlink", -1, 1, Kind::changes},
    Shape{SYS_chmod, "chmod", -1, 0, Kind::changes},
    Shape{SYS_listen, "listen", -1, -1, Kind::serves},
    Shape{SYS_accept4, "accept4", -1, -1, Kind::serves},
    Shape{SYS_clone3, "clone3", -1, -1, Kind::makesThread},
    Shape{SYS_socket, "socket", -1, -1, Kind::makesDescriptor},
    Shape{SYS_pipe2, "pipe2", -1, -1, Kind::makesDescriptor},
    Shape{SYS_eventfd2, "eventfd2", -1, -1, Kind::makesDescriptor},
    Shape{SYS_inotify_init1, "inotify_init1", -1, -1, Kind::makesDescriptor},
};

const Shape* shapeOf(unsigned long long number) {
    for (const Shape& shape : shapes)
        if (shape.number == number)
            return &shape;
    return nullptr;
}

/// Lets the calls of `shapes` stop for the tracer, and all others pass.
bool filterCalls() {
    std::vector<sock_filter> program{
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
    };
    for (const Shape& shape : shapes) {
        program.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, shape.number, 0, 1));
        program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_TRACE));
    }
    program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    const sock_fprog filter{static_cast<unsigned short>(program.size()), program.data()};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

/// What another process has at an address, as far as it is mapped.
QByteArray memoryOf(pid_t task, unsigned long long address, std::size_t size) {
    QByteArray bytes(static_cast<qsizetype>(size), Qt::Uninitialized);
    iovec here{bytes.data(), size};
    iovec there{reinterpret_cast<void*>(address), size};
    const ssize_t got = ::process_vm_readv(task, &here, 1, &there, 1, 0);
    bytes.truncate(std::max<ssize_t>(got, 0));
    return bytes;
}

QByteArray textOf(pid_t task, unsigned long long address) {
    // Not beyond the page: the next one may not be mapped.
    const std::size_t page = 4096;
    QByteArray text = memoryOf(task, address, page - address % page);
    if (!text.contains('\0'))
        text += memoryOf(task, address + static_cast<unsigned long long>(text.size()), page);
    return QByteArray(text.constData()); // up to the first zero
}

QByteArray descriptorPath(pid_t task, unsigned long long descriptor) {
    const int number = static_cast<int>(descriptor);
    const QByteArray link =
        "/proc/" + QByteArray::number(task) +
        (number == AT_FDCWD ? QByteArray("/cwd") : "/fd/" + QByteArray::number(number));
    std::error_code ignored;
    return QByteArray::fromStdString(std::filesystem::read_symlink(link.toStdString(), ignored));
}

SystemCall describe(pid_t task, const Shape& shape, const std::uint64_t* arguments) {
    SystemCall call{shape.name, shape.kind, {}};
    const QByteArray text = shape.path < 0 ? QByteArray() : textOf(task, arguments[shape.path]);
    bool isBelow = !text.startsWith('/');
    unsigned long long flags = 0;
    if (shape.number == SYS_openat2) {
        open_how how{};
        const QByteArray bytes = memoryOf(task, arguments[2], sizeof how);
        std::memcpy(&how, bytes.constData(), static_cast<std::size_t>(bytes.size()));
        flags = how.flags;
        isBelow = isBelow || (how.resolve & RESOLVE_IN_ROOT) != 0;
    } else if (shape.number == SYS_openat) {
        flags = arguments[2];
    }
    if ((flags & (O_WRONLY | O_RDWR | O_CREAT)) != 0)
        call.kind = Kind::changes;
    if (!isBelow || shape.descriptor < 0)
        call.path = text;
    else
        call.path = descriptorPath(task, arguments[shape.descriptor]);
    if (isBelow && shape.descriptor >= 0 && !text.isEmpty() && text != ".")
        call.path += (text.startsWith('/') ? "" : "/") + text;
    return call;
}

void setResult(pid_t task, int error, bool skip) {
    user_regs_struct registers{};
    if (::ptrace(PTRACE_GETREGS, task, nullptr, &registers) != 0)
        return;
    if (skip) // No call has this number: the kernel does nothing.
        registers.orig_rax = static_cast<unsigned long long>(-1);
    registers.rax = static_cast<unsigned long long>(-error);
    ::ptrace(PTRACE_SETREGS, task, nullptr, &registers);
}

int textFile() { return ::memfd_create("output", MFD_CLOEXEC); }

QByteArray contents(int file) {
    return QByteArray::fromStdString(test::readFile("/proc/self/fd/" + std::to_string(file)));
}

/// Interrupts what waits, once the time is over.
class Alarm {
public:
    explicit Alarm(int seconds) {
        struct sigaction action {};
        action.sa_handler = [](int) {}; // without restarting what it interrupts
        ::sigaction(SIGALRM, &action, nullptr);
        ::alarm(static_cast<unsigned>(seconds));
    }
    ~Alarm() { ::alarm(0); }
    Alarm(const Alarm&) = delete;
    Alarm& operator=(const Alarm&) = delete;
};

constexpr int traceOptions = PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL | PTRACE_O_TRACESECCOMP |
                             PTRACE_O_TRACECLONE | PTRACE_O_TRACEFORK | PTRACE_O_TRACEVFORK |
                             PTRACE_O_TRACEEXEC;

} // namespace

Programs::~Programs() {
    for (auto& [id, program] : _programs) {
        if (!program.waitStatus) {
            ::kill(id, SIGKILL);
            waitFor(id, 10);
        }
        ::close(program.out);
        ::close(program.error);
    }
}

bool Programs::canTrace() {
    Programs programs;
    bool isSeen = false;
    const pid_t program = programs.start([] { return ::access("/", R_OK); },
                                         [&](const SystemCall&) {
                                             isSeen = true;
                                             return Fate{};
                                         });
    return programs.waitFor(program, 10).status == 0 && isSeen;
}

pid_t Programs::start(const Main& main, Decide decide) {
    Program program{std::move(decide), textFile(), textFile(), std::nullopt};
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
        const int nothing = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
        ::dup2(nothing, STDIN_FILENO);
        ::dup2(program.out, STDOUT_FILENO);
        ::dup2(program.error, STDERR_FILENO);
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (program.decide) {
            if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0 || ::raise(SIGSTOP) != 0 ||
                !filterCalls())
                ::_exit(126);
        }
        // As after `main`, with all that goes then; an exception ends it here.
        std::exit([&]() noexcept { return main(); }());
    }
    if (program.decide) {
        int status = 0;
        ::waitpid(child, &status, __WALL);
        if (WIFSTOPPED(status) && ::ptrace(PTRACE_SETOPTIONS, child, nullptr, traceOptions) == 0) {
            _tasks[child] = {.isStarted = true, .program = child};
            ::ptrace(PTRACE_CONT, child, nullptr, nullptr);
        } else {
            ::kill(child, SIGKILL);
        }
    }
    _programs.emplace(child, std::move(program));
    return child;
}

void Programs::signal(pid_t program, int number) {
    const auto found = _programs.find(program);
    if (found != _programs.end() && !found->second.waitStatus)
        ::kill(program, number);
}

bool Programs::step() {
    int status = 0;
    const pid_t task = ::waitpid(-1, &status, __WALL);
    if (task < 0)
        return false;
    if (WIFSTOPPED(status)) {
        handleStop(task, status);
    } else {
        _tasks.erase(task);
        if (const auto ended = _programs.find(task); ended != _programs.end())
            ended->second.waitStatus = status;
    }
    return true;
}

bool Programs::runUntil(const std::function<bool()>& isSo, int seconds) {
    const Alarm alarm(seconds);
    while (!isSo() && step()) {
    }
    return isSo();
}

Ending Programs::waitFor(pid_t id, int seconds) {
    const Program& program = _programs.at(id);
    const auto hasEnded = [&] { return program.waitStatus.has_value(); };
    Ending ending{.isLate = !runUntil(hasEnded, seconds)};
    if (ending.isLate) {
        ::kill(id, SIGKILL);
        runUntil(hasEnded, 10);
    }
    const int status = program.waitStatus.value_or(SIGKILL);
    if (WIFEXITED(status))
        ending.status = WEXITSTATUS(status);
    else
        ending.signal = WTERMSIG(status);
    ending.out = contents(program.out);
    ending.error = contents(program.error);
    return ending;
}

void Programs::handleStop(pid_t id, int status) {
    // A task that is new was started by one that is traced: as a thread of its program, or as a tool.
    const auto [place, isNew] = _tasks.try_emplace(id);
    Task& task = place->second;
    const std::string asThread = "/task/" + std::to_string(id);
    for (const auto& [program, ignored] : _programs)
        if (isNew && ::access(("/proc/" + std::to_string(program) + asThread).c_str(), F_OK) == 0)
            task.program = program;
    const int signal = WSTOPSIG(status);
    const int event = status >> 16;
    if (event == PTRACE_EVENT_SECCOMP)
        return handleCall(id, task);
    if (signal == (SIGTRAP | 0x80))
        return handleReturn(id, task);
    const bool isFirst = !task.isStarted && signal == SIGSTOP;
    task.isStarted = true;
    ::ptrace(PTRACE_CONT, id, nullptr, event != 0 || isFirst ? 0L : static_cast<long>(signal));
}

void Programs::handleCall(pid_t id, Task& task) {
    __ptrace_syscall_info info{};
    ::ptrace(PTRACE_GET_SYSCALL_INFO, id, sizeof info, &info);
    const Shape* shape = shapeOf(info.seccomp.nr);
    const auto program = _programs.find(task.program);
    Fate fate;
    if (shape && program != _programs.end())
        fate = program->second.decide(describe(id, *shape, info.seccomp.args));
    const bool isClose = shape && shape->number == SYS_close;
    if (fate.kind == Fate::Kind::killedBefore) {
        ::kill(task.program, SIGKILL);
    } else if (fate.kind == Fate::Kind::killedAfter || (fate.kind == Fate::Kind::fails && isClose)) {
        task.pending = fate;
        ::ptrace(PTRACE_SYSCALL, id, nullptr, nullptr);
        return;
    } else if (fate.kind == Fate::Kind::fails) {
        setResult(id, fate.error, true);
    }
    ::ptrace(PTRACE_CONT, id, nullptr, nullptr);
}

void Programs::handleReturn(pid_t id, Task& task) {
    const Fate fate = std::exchange(task.pending, {});
    if (fate.kind == Fate::Kind::killedAfter)
        ::kill(task.program, SIGKILL);
    else if (fate.kind == Fate::Kind::fails)
        setResult(id, fate.error, false);
    ::ptrace(PTRACE_CONT, id, nullptr, nullptr);
}

} // namespace tessellar::torture
