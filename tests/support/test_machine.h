#pragma once

#include "platform/machine.h"
#include "tests/support/collecting_log.h"
#include "tests/support/fake_commands.h"
#include "tests/support/fake_http.h"
#include "tests/support/manual_time.h"
#include "tests/support/memory_settings.h"
#include "tests/support/run_tests.h"
#include "tests/support/sequential_uuids.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <stdexcept>

namespace tessellar::test {

/// A whole machine in a temporary folder, the home "/Users/ada" in it. Its parts are there for tests
/// to move and look into; `machine` is what the code under test gets. Paths are those under the root.
///
/// The helpers write through Qt, not through `FileSystem`, so that a test of one does not lean on
/// itself.
class TestMachine {
public:
    explicit TestMachine(const QString& localeIdentifier = QStringLiteral("en_US"),
                         unsigned threads = 2)
        : locale(localeIdentifier), workers(mailbox, threads) {
        makeFolder(machine.places.applicationSupport);
    }

    QString hostPath(const QString& path) const { return root.path() + path; }

    /// Writes a file with the folders on the way to it; replaces one that is there.
    void write(const QString& path, const QByteArray& bytes) const {
        makeFolder(FileSystem::parent(path));
        QFile file(hostPath(path));
        check(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush(),
              path);
    }
    /// The bytes of a file; empty when there is none.
    QByteArray read(const QString& path) const {
        QFile file(hostPath(path));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void makeFolder(const QString& path) const { check(QDir().mkpath(hostPath(path)), path); }
    /// A symbolic link at `path` with exactly this target, which need not exist.
    void link(const QString& path, const QString& target) const {
        makeFolder(FileSystem::parent(path));
        check(QFile::link(target, hostPath(path)), path);
    }
    void remove(const QString& path) const {
        const QFileInfo info(hostPath(path));
        check(info.isDir() && !info.isSymLink() ? QDir(hostPath(path)).removeRecursively()
                                                : QFile::remove(hostPath(path)),
              path);
    }
    bool exists(const QString& path) const { return QFileInfo::exists(hostPath(path)); }
    /// The names in a folder, sorted.
    QStringList names(const QString& path) const {
        return QDir(hostPath(path))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDir::Name);
    }

    /// An executable at `path` for which `commands` answers.
    template <typename Answer>
    void tool(const QString& path, Answer answer) {
        write(path, "stand-in\n");
        check(QFile::setPermissions(hostPath(path),
                                    QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner),
              path);
        commands.answer(path.toUtf8(), std::move(answer));
    }

    /// Waits for what comes from other threads; the hand-moved time stands still.
    void until(const std::function<bool()>& isSo,
               const std::source_location& where = std::source_location::current()) {
        waitUntil(
            isSo, [this] { mailbox.waitAndDrain(); }, where);
    }
    /// Lets all background work end and its results arrive, also of work that results begin.
    void settle() {
        do
            workers.waitIdle();
        while (mailbox.drain() > 0);
    }

    QTemporaryDir root;
    FileSystem files{root.path()};
    ManualTime time;
    SequentialUuids uuids;
    MemorySettings settings;
    CollectingLog log;
    FakeCommands commands{root.path().toUtf8()};
    FakeHttp http;
    Mailbox mailbox;
    Locale locale;
    Machine machine{
        .files = files,
        .places = {.home = QStringLiteral("/Users/ada"),
                   .applicationSupport = QStringLiteral("/Users/ada/Library/Application Support")},
        .clock = time,
        .scheduler = time,
        .workers = workers,
        .commands = commands,
        .http = http,
        .settings = settings,
        .uuids = uuids,
        .log = log,
        .locale = locale,
        .environment = {{"HOME", "/Users/ada"}, {"USER", "ada"}, {"PATH", "/usr/bin:/bin"}},
    };

    WorkerPool workers; // after all that work which is still running at the end may use

private:
    static void check(bool done, const QString& path) {
        if (!done)
            throw std::runtime_error("The test's own preparation failed at " + path.toStdString());
    }
};

} // namespace tessellar::test
