#include "tests/support/test_machine.h"

#include "tests/support/printers.h"

#include <gtest/gtest.h>

namespace tessellar::test {
namespace {

TEST(TestMachine, IsOneMachineForItsHelpersAndTheCodeUnderTest) {
    TestMachine mac;
    const QString path = mac.machine.places.applicationFolder() + QStringLiteral("/layout.json");
    mac.write(path, "{}");
    EXPECT_EQ(mac.machine.files.read(path, 10).value(), "{}");

    mac.tool(QStringLiteral("/usr/bin/lipo"), exited(0, "arm64"));
    EXPECT_TRUE(mac.machine.files.isExecutableFile(QStringLiteral("/usr/bin/lipo")));
    QByteArray answer;
    Task second;
    Task first = mac.machine.workers.run(
        [&](std::stop_token stop) {
            const Command command{.executable =
                                      mac.machine.files.hostPath(QStringLiteral("/usr/bin/lipo"))};
            return mac.machine.commands.run(command, stop).standardOutput;
        },
        [&](const QByteArray& output) {
            second =
                mac.machine.workers.run([](std::stop_token) {}, [&answer, output] { answer = output; });
        });
    mac.settle();
    EXPECT_EQ(answer, "arm64");
    EXPECT_EQ(mac.commands.commands().front().executable, "/usr/bin/lipo");
    EXPECT_EQ(mac.commands.run({.executable = "/usr/bin/other"}, {}).outcome,
              CommandResult::Outcome::couldNotLaunch);
}

} // namespace
} // namespace tessellar::test
