#include "hanging_volume.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>

#include <chrono>
#include <condition_variable>
#include <cstdarg>
#include <cstring>
#include <mutex>
#include <utility>

using namespace std::chrono_literals;

namespace {

std::mutex hangMutex;
std::condition_variable hangEnded;
bool isHungNow = false;
pthread_t mainThread;
int callsOfMainThread = 0;

void hangOn(const char* path) {
    if (!std::strstr(path, tessellar::hanging_volume::path))
        return;
    std::unique_lock lock(hangMutex);
    if (!isHungNow)
        return;
    if (::pthread_equal(::pthread_self(), mainThread)) {
        // For good it would end the benchmark; long enough to be the longest turn.
        ++callsOfMainThread;
        hangEnded.wait_for(lock, 500ms);
        return;
    }
    hangEnded.wait(lock, [] { return !isHungNow; });
}

template <typename Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {
int open(const char* path, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    hangOn(path);
    static const auto call = next<int(const char*, int, ...)>("open");
    return call(path, flags, mode);
}
int fstatat(int folder, const char* path, struct stat* status, int flags) noexcept {
    hangOn(path);
    static const auto call = next<int(int, const char*, struct stat*, int)>("fstatat");
    return call(folder, path, status, flags);
}
int statx(int folder, const char* path, int flags, unsigned mask, struct statx* status) noexcept {
    hangOn(path);
    static const auto call = next<int(int, const char*, int, unsigned, struct statx*)>("statx");
    return call(folder, path, flags, mask, status);
}
int faccessat(int folder, const char* path, int mode, int flags) noexcept {
    hangOn(path);
    static const auto call = next<int(int, const char*, int, int)>("faccessat");
    return call(folder, path, mode, flags);
}
char* realpath(const char* path, char* resolved) noexcept {
    hangOn(path);
    static const auto call = next<char*(const char*, char*)>("realpath");
    return call(path, resolved);
}
}

namespace tessellar::hanging_volume {

void watchMainThread() { mainThread = ::pthread_self(); }

void setHanging(bool isHanging) {
    const std::lock_guard lock(hangMutex);
    isHungNow = isHanging;
    hangEnded.notify_all();
}

int takeCallsOfMainThread() {
    const std::lock_guard lock(hangMutex);
    return std::exchange(callsOfMainThread, 0);
}

} // namespace tessellar::hanging_volume
