#pragma once

#include "control/control_socket.h"
#include "platform/file_lock.h"

#include <expected>
#include <memory>

namespace tessellar {

class HostMachine;

/// What a program that works on an arrangement begins with: the launcher that is running, or else the
/// lock under which it may be one itself.
struct LauncherOrLock {
    std::unique_ptr<RemoteExecutor> launcher;
    FileLock lock;
};

/// Waits up to ten seconds for whoever holds the lock for a moment, or is about to listen; then says in
/// one sentence who that is. `name` is what others are told of this program. Where no lock can be had
/// nothing is written: the machine refuses changes from then on.
std::expected<LauncherOrLock, QString> findLauncherOrLock(HostMachine& host, const QString& name);

} // namespace tessellar
