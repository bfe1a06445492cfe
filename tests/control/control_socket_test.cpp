#include "control/control_socket.h"

#include "support/printers.h"
#include "support/run_tests.h"
#include "support/test_machine.h"

#include <QLocalServer>
#include <QLocalSocket>

#include <gtest/gtest.h>

namespace tessellar {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

/// Answers each command with as many bytes.
struct Talker final : CommandExecutor {
    void run(const QStringList&, const CommandOptions&, CommandOutput output) override {
        ++commands;
        output.out(QByteArray(100'000, 'x'));
        output.finished(0);
    }
    int commands = 0;
};

struct ControlSocketTest : testing::Test {
    test::TestMachine test;
    Machine& machine = test.machine;

    ControlSocketTest() {
        EXPECT_TRUE(machine.files.createDirectories(machine.places.applicationFolder()));
    }
};

TEST_F(ControlSocketTest, NobodyWaitsForALauncherThatSaysNothing) {
    QLocalServer stopped;
    ASSERT_TRUE(stopped.listen(controlSocketPath(machine)));
    for (const bool isInterrupted : {false, true}) {
        const auto remote = RemoteExecutor::connect(machine);
        ASSERT_TRUE(remote);
        QByteArray error;
        std::optional<int> status;
        std::function<void(Cancellation)> interrupt;
        remote->run({u"list"_s}, {},
                    {.out = [](const QByteArray&) {},
                     .error = [&](const QByteArray& text) { error += text; },
                     .finished = [&](int ended) { status = ended; },
                     .whenCancelled =
                         [&](std::function<void(Cancellation)> call) { interrupt = std::move(call); }});
        test.time.advance(20s);
        EXPECT_FALSE(status);
        if (isInterrupted)
            interrupt(Cancellation::stopped);
        test.time.advance(isInterrupted ? 2s : 20s);
        EXPECT_EQ(status, 1);
        EXPECT_EQ(error, "The launcher does not answer.\n");
    }
}

TEST_F(ControlSocketTest, NothingIsDoneForWhoeverLeftBeforeItWasHeard) {
    Talker talker;
    ControlServer server(machine, talker);
    ASSERT_TRUE(server.listen());
    for (const bool stays : {false, true}) {
        QLocalSocket client;
        client.connectToServer(controlSocketPath(machine));
        ASSERT_TRUE(client.waitForConnected(5'000));
        client.write("{\"words\":[\"hide\"]}\n{\"ping\":true}\n");
        ASSERT_TRUE(client.waitForBytesWritten(5'000));
        if (!stays)
            client.abort();
        for (int turns = 0; turns < 100; ++turns)
            QCoreApplication::processEvents();
        EXPECT_EQ(talker.commands, stays ? 1 : 0);
    }
}

TEST_F(ControlSocketTest, WhoeverDoesNotReadIsNotWorkedFor) {
    Talker talker;
    ControlServer server(machine, talker);
    ASSERT_TRUE(server.listen());
    QLocalSocket greedy;
    greedy.connectToServer(controlSocketPath(machine));
    ASSERT_TRUE(greedy.waitForConnected(5'000));
    greedy.setReadBufferSize(1);
    constexpr int asked = 500;
    greedy.write(QByteArray("{\"words\":[\"list\"]}\n").repeated(asked));
    for (int turns = 0; turns < 1'000; ++turns)
        QCoreApplication::processEvents();
    EXPECT_GT(talker.commands, 0);
    EXPECT_LT(talker.commands, 50);
    // Once it reads, it gets the rest; and a ping is answered between.
    greedy.setReadBufferSize(0);
    greedy.write("{\"ping\":true}\n");
    qint64 received = 0;
    bool pong = false;
    test::processEventsUntil([&] {
        const QByteArray bytes = greedy.readAll();
        received += bytes.size();
        pong = pong || bytes.contains("pong");
        return talker.commands == asked && received > qint64(asked) * 100'000 && pong;
    });
    EXPECT_EQ(talker.commands, asked);
}

} // namespace
} // namespace tessellar
