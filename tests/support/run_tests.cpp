#include "tests/support/run_tests.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <unistd.h>

#ifdef __SANITIZE_THREAD__
/// Qt is not built with the sanitizer, which therefore sees neither its locks nor its waits: what Qt's
/// threads hand to one another, and what is posted to them, looks like a race.
extern "C" const char* __tsan_default_suppressions() {
    return "called_from_lib:libQt6Core.so\n"
           "called_from_lib:libQt6DBus.so\n"
           "called_from_lib:libQt6Gui.so\n"
           "called_from_lib:libQt6Network.so\n"
           "called_from_lib:libQt6Qml.so\n"
           "called_from_lib:libQt6Quick.so\n"
           "called_from_lib:libdbus-1.so\n" // so it is with these three, beneath Qt
           "called_from_lib:libfontconfig.so\n"
           "called_from_lib:libglib-2.0.so\n"
           "race:QEvent::type\n"
           "race:QMap<*>::take\n" // looks at its count of references without a fence
           "race:tessellar::test::MemorySettings::set\n" // whose map's removal does the same
           "race:tessellar::NetworkHttpClient::~NetworkHttpClient\n";
}

#ifdef __linux__
extern "C" int __clone(int (*)(void*), void*, int, void*, ...) noexcept;

/// Stands before the sanitizer's own, which takes every clone for a fork. QProcess's child shares this
/// memory until it runs its program: the fork's end would be counted in both of them, after which the
/// sanitizer sees neither this thread's locks nor the races it runs into.
extern "C" int clone(int (*function)(void*), void* stack, int flags, void* argument, ...) noexcept {
    va_list rest;
    va_start(rest, argument);
    void* const parentId = va_arg(rest, void*);
    void* const threadStorage = va_arg(rest, void*);
    void* const childId = va_arg(rest, void*);
    va_end(rest);
    return __clone(function, stack, flags, argument, parentId, threadStorage, childId);
}
#endif
#endif

namespace tessellar::test {
namespace {

// The slowest test takes 10 s where nothing else runs; sanitizers and busy machines take their
// multiple.
constexpr unsigned longestTest = 300;

// Read by the handler of a signal: text of fixed size, nothing that allocates.
std::array<char, 256> runningTest;
std::array<char, 256> waitsAt;

void write(const char* text) {
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, text, std::strlen(text));
}

void giveUp(int) {
    write("\n[  FAILED  ] ");
    write(runningTest.data());
    write(" hangs");
    if (waitsAt[0] != '\0') {
        write("; it waits at ");
        write(waitsAt.data());
    }
    write("\n");
    std::abort();
}

class HangGuard final : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo& test) override {
        std::snprintf(runningTest.data(), runningTest.size(), "%s.%s", test.test_suite_name(),
                      test.name());
        ::alarm(longestTest);
    }
    void OnTestEnd(const testing::TestInfo&) override { ::alarm(0); }
};

} // namespace

int runTests(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    (void)std::signal(SIGALRM, giveUp);
    testing::UnitTest::GetInstance()->listeners().Append(new HangGuard);
    return RUN_ALL_TESTS();
}

void waitUntil(const std::function<bool()>& isSo, const std::function<void()>& takeTurn,
               const std::source_location& where) {
    std::snprintf(waitsAt.data(), waitsAt.size(), "%s:%u", where.file_name(), where.line());
    while (!isSo())
        takeTurn();
    waitsAt[0] = '\0';
}

void processEventsUntil(const std::function<bool()>& isSo, const std::source_location& where) {
    waitUntil(
        isSo, [] { QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents); }, where);
}

} // namespace tessellar::test
