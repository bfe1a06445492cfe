#pragma once

#include "control/control_socket.h"
#include "platform/file_lock.h"

#include <expected>
#include <memory>

namespace tessellar {

class HostMachine;

/// The starting point of programs that change an arrangement: the running launcher, or else the lock
/// that permits acting as one.
struct LauncherOrLock {
    std::unique_ptr<RemoteExecutor> launcher;
    FileLock lock;
};

/// Waits up to ten seconds while another program briefly holds the lock or is about to listen; the
/// error names that program in one sentence. `name` identifies this program to others. If the lock
/// cannot be created, the machine refuses all changes from then on.
std::expected<LauncherOrLock, QString> findLauncherOrLock(HostMachine& host, const QString& name);

} // namespace tessellar
