#pragma once

#include "discovery/launchpad_import.h"
#include "launcher/launcher_error.h"
#include "launcher/replacement_merger.h"
#include "platform/machine.h"

#include <functional>

namespace tessellar {

class LauncherHistory;
class LauncherMessages;

/// Imports the old Launchpad's arrangement into a display mode. The database is read on a worker; the
/// result replaces the arrangement like restoring a saved one: after a backup, with all other
/// applications on new pages at the end. Hidden applications and the user's names are kept. One step of
/// history. Main thread only.
class LauncherImport {
public:
    template <typename T>
    using Done = std::function<void(std::expected<T, LauncherError>)>;
    /// A database other than the system's.
    struct Database {
        QString path;
        const FileSystem* files = nullptr; ///< its file system; null for the machine's
    };

    using Mode = LauncherWindowMode;

    LauncherImport(Machine& machine, LiveLayouts& layouts, InstalledApplications& applications,
                   PlaceMemory& places, LauncherHistory& history, LauncherMessages& messages);

    /// What an import would find; changes nothing.
    void preview(Mode mode, const std::optional<Database>& database,
                 Done<NativeLaunchpadImportResult> done);
    /// On failure the arrangement is unchanged.
    void run(Mode mode, const std::optional<Database>& database,
             Done<LegacyLaunchpadImportMetadata> done);
    /// Replaces the arrangement by the result of a preview.
    using Imported = std::expected<LegacyLaunchpadImportMetadata, LauncherError>;
    void apply(Mode mode, const NativeLaunchpadImportResult& imported,
               Done<LegacyLaunchpadImportMetadata> done);
    /// Shows the result in an alert.
    void tell(const Imported& imported);
    /// Asks the user, imports, and shows the result in an alert; for a window.
    void offer(Mode mode);

    /// One import at a time; another is refused.
    bool isRunning() const { return static_cast<bool>(_done); }

private:
    void finish(std::expected<NativeLaunchpadImportResult, LaunchpadImportError> result);
    QList<AppEntry> candidates(Mode mode) const;
    void apply(Mode mode, const MergeResult& merged, LegacyLaunchpadImportMetadata metadata,
               Done<LegacyLaunchpadImportMetadata> done);

    Machine& _machine;
    LiveLayouts& _layouts;
    InstalledApplications& _applications;
    PlaceMemory& _places;
    LauncherHistory& _history;
    LauncherMessages& _messages;
    ReplacementMerger _merger;
    Done<NativeLaunchpadImportResult> _done; ///< set while one runs
    Task _task;
};

LauncherError launcherError(const LaunchpadImportError& error);

} // namespace tessellar
