#pragma once

#include "discovery/launchpad_import.h"
#include "launcher/launcher_error.h"

#include <functional>

namespace tessellar {

class LauncherViewModel;

/// Takes the old Launchpad's arrangement over into the mode shown. The database is read on a worker;
/// what it gives replaces the arrangement like a saved one that is restored: a backup first, what is
/// installed besides on new pages at the end. Hidden applications stay hidden, and the names that the
/// user gave are kept. One step of history.
///
/// Owned by the view model; main thread only.
class LauncherImport {
public:
    template <typename T>
    using Done = std::function<void(std::expected<T, LauncherError>)>;
    /// A database other than the system's.
    struct Database {
        QString path;
        const FileSystem* files = nullptr; ///< where it lies when not on the machine
    };

    LauncherImport(LauncherViewModel& launcher, Machine& machine);
    ~LauncherImport();

    /// What an import would find; changes nothing.
    void preview(const std::optional<Database>& database, Done<NativeLaunchpadImportResult> done);
    /// After a failure the arrangement is as it was.
    void run(const std::optional<Database>& database, Done<LegacyLaunchpadImportMetadata> done);
    /// Asks the user first and says in an alert what came of it; for a window.
    void offer();

    /// One import at a time; a second one is refused.
    bool isRunning() const { return static_cast<bool>(_done); }
    /// Ends the reading; `done` is told so.
    void cancel();

private:
    void finish(std::expected<NativeLaunchpadImportResult, LaunchpadImportError> result);
    std::expected<LegacyLaunchpadImportMetadata, LauncherError>
    apply(const NativeLaunchpadImportResult& imported);
    /// The installed applications with the identifiers of their tiles, and the names of these.
    QList<AppEntry> installedAsArranged(bool withNames) const;

    LauncherViewModel& _launcher;
    Machine& _machine;
    Done<NativeLaunchpadImportResult> _done; ///< while one runs
    Task _task;
};

LauncherError launcherError(const LaunchpadImportError& error);

} // namespace tessellar
