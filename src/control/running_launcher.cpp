#include "control/running_launcher.h"

#include "platform/host_machine.h"
#include "platform/texts.h"

#include <QCoreApplication>

namespace tessellar {

static constexpr std::chrono::milliseconds retryDelay{50};
static constexpr std::chrono::seconds patience{10};

std::expected<LauncherOrLock, QString> findLauncherOrLock(HostMachine& host, const QString& name) {
    Machine& machine = host.machine();
    const QString folder = machine.places.applicationFolder();
    (void)machine.files.createDirectories(folder);
    const QString path = FileSystem::joined(folder, QStringLiteral("lock"));
    // Bounded by time, not tries: connecting to a launcher that does not respond takes a while itself.
    bool isLate = false;
    const Timer end = machine.scheduler.after(patience, [&] { isLate = true; });
    while (!isLate) {
        if (auto launcher = RemoteExecutor::connect(machine))
            return LauncherOrLock{std::move(launcher), {}};
        auto lock = FileLock::tryLock(machine.files, path, name);
        if (!lock) {
            host.refuseChanges(lock.error());
            return LauncherOrLock();
        }
        if (*lock)
            return LauncherOrLock{{}, **std::move(lock)};
        bool isOver = false;
        const Timer timer = machine.scheduler.after(retryDelay, [&] { isOver = true; });
        while (!isOver)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    const QString holder = FileLock::holder(machine.files, path);
    return std::unexpected(
        Texts::tr("Another program is changing the arrangement%1. Try again in a moment.")
            .arg(holder.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(holder)));
}

} // namespace tessellar
