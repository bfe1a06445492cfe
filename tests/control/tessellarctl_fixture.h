#pragma once

#include "control/command_interpreter.h"
#include "control/control_socket.h"
#include "control/running_launcher.h"
#include "platform/file_lock.h"
#include "platform/host_machine.h"
#include "sample/mac_builder.h"
#include "support/printers.h"
#include "support/run_tests.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tessellar {

/// The launcher that is running, in this process: it carries out what the program asks for.
struct RunningLauncher {
    explicit RunningLauncher(const QString& root)
        : host(HostMachine::make({.root = root, .home = {}, .locale = {}, .now = {}}).value()) {
        launcher.startAndWait();
        auto taken =
            FileLock::tryLock(machine.files, FileSystem::joined(machine.places.applicationFolder(),
                                                                QStringLiteral("lock")));
        EXPECT_TRUE(taken && *taken);
        if (taken && *taken)
            lock = *std::move(*taken);
        EXPECT_TRUE(server.listen());
    }

    std::unique_ptr<HostMachine> host;
    Machine& machine = host->machine();
    LauncherViewModel launcher{machine};
    FileLock lock;
    CommandInterpreter interpreter{machine, launcher};
    ControlServer server{machine, interpreter};
};

/// The program itself, on a small Mac.
class TessellarctlTest : public testing::Test {
protected:
    struct Result {
        int status = -1;
        QByteArray out;
        QByteArray error;

        QJsonObject json() const { return json::parse(out).value_or(QJsonValue()).toObject(); }
        QString code() const { return json().value(u"error").toObject().value(u"code").toString(); }
    };

    QTemporaryDir root;
    sample::MacBuilder builder{root.path()};

    TessellarctlTest() {
        builder.addStandardFolders();
        for (const QString& name : {u"Ash"_qs, u"Beech"_qs})
            builder.addApplication(
                {.name = name, .identifier = QStringLiteral("org.example.") + name.toLower()});
    }

    QString supportFolder() const {
        return root.path() + u"/Users/ada/Library/Application Support/com.tessellar.app"_qs;
    }

    Result run(QStringList words, const QByteArray& input = {}, bool json = true) {
        QProcess process;
        words = QStringList{u"--root"_qs, root.path()} +
                (json ? QStringList{u"--json"_qs} : QStringList()) + words;
        process.start(QStringLiteral(TESSELLARCTL), words);
        process.write(input);
        process.closeWriteChannel();
        // A launcher in this process may have to answer it.
        test::processEventsUntil([&] { return process.state() == QProcess::NotRunning; });
        return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
    }
};

} // namespace tessellar
