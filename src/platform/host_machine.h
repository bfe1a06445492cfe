#pragma once

#include "platform/machine.h"

#include <expected>
#include <memory>
#include <optional>

namespace tessellar {

/// How to set up the machine that a program runs on.
struct MachineOptions {
    /// A host folder with a Mac's layout; nullopt for this machine.
    std::optional<QString> root;
    /// The user's home, under the root. nullopt: with a root, the only folder in its "Users"; else
    /// $HOME.
    std::optional<QString> home;
    std::optional<QString> locale; ///< an identifier; nullopt for the user's own
    std::optional<Instant> now;    ///< freezes the clock, for reproducible output
};

/// Owns the real parts of a machine, constructed in dependency order. Main thread only; needs a
/// QCoreApplication.
class HostMachine {
public:
    /// The error is one sentence for the user.
    static std::expected<std::unique_ptr<HostMachine>, QString> make(const MachineOptions& options);

    Machine& machine() { return *_machine; }
    /// See FileSystem::refuseChanges.
    void refuseChanges(const FileError& why) { _files.refuseChanges(why); }

private:
    explicit HostMachine(const MachineOptions& options);

    std::expected<Places, QString> findPlaces(const MachineOptions& options) const;

    FileSystem _files;
    std::unique_ptr<Clock> _clock;
    EventLoopScheduler _scheduler;
    Mailbox _mailbox;
    ProcessRunner _commands;
    NetworkHttpClient _http{_scheduler};
    std::unique_ptr<Settings> _settings;
    RandomUuidSource _uuids;
    StandardErrorLog _log;
    std::map<QByteArray, QByteArray> _environment;
    std::unique_ptr<Machine> _machine;
    WorkerPool _workers; // last: running work uses all other members
};

} // namespace tessellar
