#include "tests/support/run_tests.h"

#include "tests/support/thread_sanitizer.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <unistd.h>

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
