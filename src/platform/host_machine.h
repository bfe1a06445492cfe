#pragma once

#include "platform/machine.h"

#include <expected>
#include <memory>
#include <optional>

namespace tessellar {

/// What a program was told about the machine it is to run on.
struct MachineOptions {
    /// A host folder that holds a Mac's layout; without it the machine is this one.
    std::optional<QString> root;
    /// The user's home, under the root. Without it: with a root the only folder of its "Users", else
    /// $HOME.
    std::optional<QString> home;
    std::optional<QString> locale; ///< an identifier; without it the user's own
    std::optional<Instant> now;    ///< a clock that stands still, for reproducible output
};

/// The real parts of a machine, made in their order and kept together. On the main thread, after the
/// QCoreApplication.
class HostMachine {
public:
    /// Or why there is no such machine, in one sentence.
    static std::expected<std::unique_ptr<HostMachine>, QString> make(const MachineOptions& options);

    Machine& machine() { return *_machine; }
    /// As of the file system.
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
    WorkerPool _workers; // last: work that is still running uses all the others
};

} // namespace tessellar
