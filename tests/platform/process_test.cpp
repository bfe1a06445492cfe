#include "platform/process.h"

#include "platform/descriptor.h"
#include "platform/interruption.h"
#include "tests/support/printers.h"
#include "tests/support/run_tests.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;
using Outcome = CommandResult::Outcome;

/// Longer than any of these tests may take; what a command that hangs would wait for.
constexpr auto never = 60s;
constexpr auto soon = 20s;

class ProcessRunnerTest : public testing::Test {
protected:
    static Command shell(const QByteArray& script, QList<QByteArray> arguments = {}) {
        return {.executable = "/bin/sh",
                .arguments = QList<QByteArray>{"-c", script, "sh"} + arguments,
                .environment = {{"PATH", "/usr/bin:/bin"}},
                .timeout = never,
                .terminationGrace = never,
                .finalGrace = never};
    }

    CommandResult run(const Command& command, std::stop_token stop = {}) {
        const auto begin = std::chrono::steady_clock::now();
        CommandResult result = _runner.run(command, stop);
        EXPECT_LT(std::chrono::steady_clock::now() - begin, soon);
        return result;
    }

    /// Runs a script that writes something to the pipe named by its first argument when it is as far as
    /// the test needs it; it is cancelled then. Returns what it wrote, too.
    std::pair<CommandResult, QByteArray> cancelWhenReady(Command command) {
        const QByteArray fifo = QFile::encodeName(_folder.filePath(u"ready"_s));
        EXPECT_EQ(::mkfifo(fifo.constData(), 0600), 0);
        command.arguments.append(fifo);
        std::stop_source stop;
        QByteArray written;
        std::jthread watcher([&] {
            QFile ready(QFile::decodeName(fifo));
            if (ready.open(QIODevice::ReadOnly))
                written = ready.readAll();
            stop.request_stop();
        });
        CommandResult result = run(command, stop.get_token());
        watcher.join();
        return {std::move(result), written.trimmed()};
    }

    static qsizetype openDescriptors() {
        return QDir(u"/dev/fd/"_s).entryList(QDir::AllEntries | QDir::System).size();
    }

    void TearDown() override {
        EXPECT_EQ(openDescriptors(), _descriptorsBefore);
        EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "a child was not reaped";
        EXPECT_EQ(errno, ECHILD);
    }

    QTemporaryDir _folder;
    ProcessRunner _runner;
    qsizetype _descriptorsBefore = openDescriptors();
};

TEST_F(ProcessRunnerTest, TellsHowTheCommandEnded) {
    const CommandResult done = run(shell("echo out; echo err >&2; exit 3"));
    EXPECT_EQ(done.outcome, Outcome::exited);
    EXPECT_EQ(done.exitStatus, 3);
    EXPECT_EQ(done.standardOutput, "out\n");
    EXPECT_EQ(done.standardError, "err\n");
    EXPECT_FALSE(done.outputTruncated);
    EXPECT_FALSE(done.succeeded());

    const CommandResult killed = run(shell("kill -KILL $$"));
    EXPECT_EQ(killed.outcome, Outcome::signalled);
    EXPECT_EQ(killed.exitStatus, SIGKILL);

    EXPECT_EQ(run(shell("exec >&- 2>&-; sleep 0.05; exit 7")).exitStatus, 7);
}

TEST_F(ProcessRunnerTest, GivesTheChildExactlyWhatTheCommandSays) {
    ASSERT_EQ(::setenv("LEAKED", "1", 1), 0);
    const Command env{.executable = "/usr/bin/env", .environment = {{"A", "1"}, {"B", "x y=z"}}};
    EXPECT_EQ(run(env).standardOutput, "A=1\nB=x y=z\n");
    EXPECT_EQ(run({.executable = "/usr/bin/env"}).standardOutput, "");

    const Command words{.executable = "/usr/bin/printf",
                        .arguments = {"%s|", "a  b", "", "$HOME", "*", "\xFF"}};
    EXPECT_EQ(run(words).standardOutput, "a  b||$HOME|*|\xFF|");

    EXPECT_EQ(run(shell("read line; echo $?")).standardOutput, "1\n");
    EXPECT_EQ(run(shell("kill -0 -$$ && echo leader")).standardOutput, "leader\n");
}

TEST_F(ProcessRunnerTest, LetsNoDescriptorOrSignalStateThrough) {
    const int inheritable = ::open("/dev/null", O_RDONLY);
    const auto before = std::signal(SIGPIPE, SIG_IGN);
    // The fourth is the one by which the folder is read.
    EXPECT_EQ(run({.executable = "/bin/ls", .arguments = {"/dev/fd/"}}).standardOutput, "0\n1\n2\n3\n");
    EXPECT_EQ(run(shell("kill -PIPE $$; echo ignored")).outcome, Outcome::signalled);
    std::signal(SIGPIPE, before);
    ::close(inheritable);
}

TEST_F(ProcessRunnerTest, SaysWhyACommandCouldNotBeLaunched) {
    const auto launch = [&](const Command& command) {
        const CommandResult result = run(command);
        EXPECT_EQ(result.outcome, Outcome::couldNotLaunch);
        return result.exitStatus;
    };
    const QString plain = _folder.filePath(u"plain"_s);
    QFile file(plain);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();

    EXPECT_EQ(launch({.executable = QFile::encodeName(plain + u'x')}), ENOENT);
    EXPECT_EQ(launch({.executable = QFile::encodeName(plain)}), EACCES);
    EXPECT_EQ(launch({.executable = QFile::encodeName(_folder.path())}), EACCES);
    EXPECT_EQ(launch({.executable = ""}), ENOENT);
    EXPECT_EQ(launch({.executable = "/bin/sh", .arguments = {QByteArray("a\0b", 3)}}), EINVAL);
    EXPECT_EQ(launch({.executable = "/bin/sh", .environment = {{"A=B", "c"}}}), EINVAL);
    // No shell steps in for a file that is no program.
    ASSERT_TRUE(file.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
    EXPECT_EQ(launch({.executable = QFile::encodeName(plain)}), ENOEXEC);
}

TEST_F(ProcessRunnerTest, DrainsBothStreamsAndKeepsNoMoreThanTheLimit) {
    Command flood = shell("head -c 100000000 /dev/zero & head -c 50000000 /dev/zero >&2; wait; exit 3");
    flood.maximumOutput = 1'000'000;
    const CommandResult result = run(flood);
    EXPECT_EQ(result.exitStatus, 3);
    EXPECT_EQ(result.standardOutput.size(), 1'000'000);
    EXPECT_EQ(result.standardError.size(), 1'000'000);
    EXPECT_TRUE(result.outputTruncated);

    Command exact = shell("printf 12345678");
    exact.maximumOutput = 8;
    EXPECT_FALSE(run(exact).outputTruncated);
    exact.maximumOutput = 7;
    EXPECT_TRUE(run(exact).outputTruncated);
    EXPECT_EQ(run(exact).standardOutput, "1234567");
}

TEST_F(ProcessRunnerTest, FeedsTheInputWithoutDeadlockOrSignal) {
    Command echo = shell("cat");
    echo.input = QByteArray(3'000'000, 'x');
    EXPECT_EQ(run(echo).standardOutput, *echo.input);
    echo.input = "";
    EXPECT_EQ(run(echo).exitStatus, 0);

    Command deaf = shell("exec <&-; echo done");
    deaf.input = QByteArray(3'000'000, 'x');
    EXPECT_EQ(run(deaf).standardOutput, "done\n");
}

TEST_F(ProcessRunnerTest, TerminatesTheWholeGroupWhenCancelled) {
    // A grandchild in the group holds the pipes; an end within the graces means that it went, too.
    const auto [polite, written] =
        cancelWhenReady(shell("sleep 60 & trap 'echo bye; exit 0' TERM; echo up >\"$1\"; wait"));
    EXPECT_EQ(polite.outcome, Outcome::cancelled);
    EXPECT_EQ(polite.standardOutput, "bye\n");
    EXPECT_EQ(written, "up");
}

TEST_F(ProcessRunnerTest, KillsWhatIgnoresTheRequest) {
    Command stubborn =
        shell("trap '' TERM; echo kept; sleep 60 & echo up >\"$1\"; while :; do sleep 60; done");
    stubborn.terminationGrace = 50ms;
    const auto [result, written] = cancelWhenReady(stubborn);
    EXPECT_EQ(result.outcome, Outcome::cancelled);
    EXPECT_EQ(result.standardOutput, "kept\n");
}

TEST_F(ProcessRunnerTest, EndsAtTheDeadlineEvenInASuspendedState) {
    Command hanging = shell("echo begun; kill -STOP $$");
    hanging.timeout = 300ms;
    const CommandResult result = run(hanging);
    EXPECT_EQ(result.outcome, Outcome::timedOut);
    EXPECT_EQ(result.standardOutput, "begun\n");

    Command atOnce = shell("sleep 60");
    atOnce.timeout = -1ms;
    EXPECT_EQ(run(atOnce).outcome, Outcome::timedOut);
}

TEST_F(ProcessRunnerTest, DoesNotWaitForAGrandchildOutsideTheGroup) {
    Command leaving = shell("setsid sh -c 'echo $$ >\"$1\"; exec sleep 60' sh \"$1\" & wait");
    leaving.terminationGrace = 50ms;
    leaving.finalGrace = 50ms;
    const auto [cancelled, sleeper] = cancelWhenReady(leaving);
    EXPECT_EQ(cancelled.outcome, Outcome::cancelled);
    ASSERT_GT(sleeper.toInt(), 1);
    EXPECT_EQ(::kill(sleeper.toInt(), SIGKILL), 0);

    // The same when the child has ended by itself: its result counts, what is held open does not.
    Command leftBehind = shell("setsid sleep 60 & echo $!; exit 4");
    leftBehind.finalGrace = 50ms;
    const CommandResult result = run(leftBehind);
    EXPECT_EQ(result.outcome, Outcome::exited);
    EXPECT_EQ(result.exitStatus, 4);
    ASSERT_GT(result.standardOutput.trimmed().toInt(), 1);
    EXPECT_EQ(::kill(result.standardOutput.trimmed().toInt(), SIGKILL), 0);
}

TEST_F(ProcessRunnerTest, StartsNothingWhenAlreadyCancelled) {
    std::stop_source stop;
    stop.request_stop();
    const QString trace = _folder.filePath(u"trace"_s);
    EXPECT_EQ(run(shell("echo >\"$1\"", {QFile::encodeName(trace)}), stop.get_token()).outcome,
              Outcome::cancelled);
    EXPECT_FALSE(QFile::exists(trace));
}

TEST_F(ProcessRunnerTest, RunsOnSeveralThreadsWhileStopsComeAtAnyMoment) {
    std::atomic<int> ended = 0;
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < 4; ++thread)
            threads.emplace_back([&, thread] {
                for (int i = 0; i < 15; ++i) {
                    std::stop_source stop;
                    std::jthread stopper;
                    if (i % 3 != 0)
                        stopper = std::jthread([&stop] { stop.request_stop(); });
                    const CommandResult result =
                        run(shell("echo \"$1\"", {QByteArray::number(thread)}), stop.get_token());
                    if (result.succeeded() &&
                        result.standardOutput == QByteArray::number(thread) + '\n')
                        ++ended;
                    else
                        EXPECT_EQ(result.outcome, Outcome::cancelled);
                }
            });
    }
    EXPECT_GE(ended, 4 * 5);
}

// ---- detached commands

TEST_F(ProcessRunnerTest, ADetachedCommandGoesOnAndIsFollowedInItsFile) {
    const QByteArray file = QFile::encodeName(_folder.filePath(u"output"_s));
    const QByteArray gate = QFile::encodeName(_folder.filePath(u"gate"_s));
    ASSERT_EQ(::mkfifo(gate.constData(), 0600), 0);
    const auto output = [&] {
        QFile opened(QFile::decodeName(file));
        return opened.open(QIODevice::ReadOnly) ? opened.readAll() : QByteArray();
    };
    const auto ended = [&](std::int64_t number) {
        const auto begin = std::chrono::steady_clock::now();
        DetachedState state{DetachedState::Kind::running};
        while (state.isRunning() && std::chrono::steady_clock::now() - begin < soon) {
            state = _runner.poll(number, file);
            std::this_thread::yield();
        }
        return state;
    };
    using Kind = DetachedState::Kind;

    const auto number =
        _runner.start(shell("echo out; echo err >&2; read line <$1; echo $line; exit 3", {gate}), file);
    ASSERT_TRUE(number);
    EXPECT_TRUE(_runner.poll(*number, file).isRunning());
    EXPECT_EQ(::getsid(static_cast<pid_t>(*number)), *number) << "nothing that ends us ends it";
    EXPECT_EQ(_runner.start(shell("true"), file), std::unexpected(EWOULDBLOCK));
    {
        QFile opened(QFile::decodeName(gate));
        ASSERT_TRUE(opened.open(QIODevice::WriteOnly));
        opened.write("last\n");
    }
    EXPECT_EQ(ended(*number), (DetachedState{Kind::exited, 3}));
    EXPECT_EQ(output(), "out\nerr\nlast\n");
    EXPECT_EQ(_runner.poll(*number, file), DetachedState()) << "it is nobody's child any more";
    EXPECT_FALSE(_runner.poll(::getpid(), file).isRunning()) << "a number that is another's";
    EXPECT_FALSE(_runner.poll(-1, file).isRunning());

    // Another one replaces what it said; it is asked to end, and then made to.
    const auto stubborn =
        _runner.start(shell("trap '' TERM; echo on >$1; while :; do sleep 1; done", {gate}), file);
    ASSERT_TRUE(stubborn);
    {
        QFile opened(QFile::decodeName(gate)); // until it has set its trap
        ASSERT_TRUE(opened.open(QIODevice::ReadOnly));
        EXPECT_EQ(opened.readAll(), "on\n");
    }
    EXPECT_EQ(output(), QByteArray());
    _runner.terminate(*stubborn, file, false);
    EXPECT_TRUE(_runner.poll(*stubborn, file).isRunning());
    _runner.terminate(*stubborn, file, true);
    EXPECT_EQ(ended(*stubborn), (DetachedState{Kind::signalled, SIGKILL}));
    // What the killed command had started may still hold its file.
    EXPECT_EQ(_runner.start({.executable = "/nobody", .input = {}}, file + "-2"),
              std::unexpected(ENOENT));
}

TEST(Interruption, EndsTheWaitForWhoeverDoesNotRead) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    const Descriptor reading(ends[0]);
    const Descriptor writing(ends[1]);
    int told = 0;
    const Interruption interruption([&](int signal) { told = signal; });
    EXPECT_TRUE(interruption.waitToWrite(writing.get()));
    ::fcntl(writing.get(), F_SETFL, O_NONBLOCK);
    while (::write(writing.get(), "x", 1) == 1) {
    }
    ASSERT_EQ(::raise(SIGTERM), 0);
    EXPECT_FALSE(interruption.waitToWrite(writing.get()));
    test::processEventsUntil([&] { return told != 0; });
    EXPECT_EQ(told, SIGTERM);
}

} // namespace
} // namespace tessellar
