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
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tessellar {

using namespace Qt::StringLiterals;

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

        QJsonObject json() const { return object(out); }
        QString code() const { return json()[u"error"][u"code"].toString(); }
    };
    static QJsonObject object(const QByteArray& bytes) {
        return json::parse(bytes).value_or(QJsonValue()).toObject();
    }

    const QString data = u"/Users/ada/Library/Application Support/com.tessellar.app"_s;
    const QString layout = data + u"/layout.json"_s;
    QTemporaryDir root;
    sample::MacBuilder builder{root.path()};

    TessellarctlTest() {
        builder.addStandardFolders();
        for (const QString& name : {u"Ash"_s, u"Beech"_s})
            builder.addApplication(
                {.name = name, .identifier = QStringLiteral("org.example.") + name.toLower()});
    }

    QString hostPath(const QString& path) const { return root.path() + path; }
    bool exists(const QString& path) const { return QFileInfo::exists(hostPath(path)); }
    QByteArray read(const QString& path) const {
        QFile file(hostPath(path));
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }

    Result run(const QStringList& words, const QByteArray& input = {}, bool json = true) {
        QProcess process;
        start(process, (json ? QStringList{u"--json"_s} : QStringList()) + words);
        process.write(input);
        process.closeWriteChannel();
        wait(process);
        return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
    }
    /// The same of words without spaces in them.
    Result run(const QString& line, const QByteArray& input = {}, bool json = true) {
        return run(line.split(u' ', Qt::SkipEmptyParts), input, json);
    }
    /// What people are shown.
    QByteArray text(const QString& line) { return run(line, {}, false).out; }

    void start(QProcess& process, const QStringList& words) {
        process.start(QStringLiteral(TESSELLARCTL), QStringList{u"--root"_s, root.path()} + words);
    }
    /// Waits for its end; a launcher in this process may have to answer it.
    static void wait(const QProcess& process) {
        test::processEventsUntil([&] { return process.state() == QProcess::NotRunning; });
    }
};

} // namespace tessellar
