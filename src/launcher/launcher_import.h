#pragma once

#include "discovery/launchpad_import.h"
#include "launcher/launcher_error.h"
#include "platform/machine.h"

#include <functional>

namespace tessellar {

class InstalledApplications;
class LauncherHistory;
class LauncherMessages;
class LiveLayouts;
class PlaceMemory;

/// Takes the old Launchpad's arrangement over into a display mode. The database is read on a worker;
/// what it gives replaces the arrangement like a saved one that is restored: a backup first, what is
/// installed besides on new pages at the end. Hidden applications stay hidden, and the names that the
/// user gave are kept. One step of history. Main thread only.
class LauncherImport {
public:
    template <typename T>
    using Done = std::function<void(std::expected<T, LauncherError>)>;
    /// A database other than the system's.
    struct Database {
        QString path;
        const FileSystem* files = nullptr; ///< where it lies when not on the machine
    };

    using Mode = LauncherWindowMode;

    LauncherImport(Machine& machine, LiveLayouts& layouts, InstalledApplications& applications,
                   PlaceMemory& places, LauncherHistory& history, LauncherMessages& messages);

    /// What an import into a mode would find; changes nothing.
    void preview(Mode mode, const std::optional<Database>& database,
                 Done<NativeLaunchpadImportResult> done);
    /// After a failure the arrangement is as it was.
    void run(Mode mode, const std::optional<Database>& database,
             Done<LegacyLaunchpadImportMetadata> done);
    /// What a preview found takes the place of the arrangement.
    using Imported = std::expected<LegacyLaunchpadImportMetadata, LauncherError>;
    Imported apply(Mode mode, const NativeLaunchpadImportResult& imported);
    /// Says in an alert what came of it.
    void tell(const Imported& imported);
    /// Asks the user first and says in an alert what came of it; for a window.
    void offer(Mode mode);

    /// One import at a time; a second one is refused.
    bool isRunning() const { return static_cast<bool>(_done); }

private:
    void finish(std::expected<NativeLaunchpadImportResult, LaunchpadImportError> result);
    QList<AppEntry> candidates(Mode mode) const;

    Machine& _machine;
    LiveLayouts& _layouts;
    InstalledApplications& _applications;
    PlaceMemory& _places;
    LauncherHistory& _history;
    LauncherMessages& _messages;
    Done<NativeLaunchpadImportResult> _done; ///< while one runs
    Task _task;
};

LauncherError launcherError(const LaunchpadImportError& error);

} // namespace tessellar
