#pragma once

#include "launcher/launcher_error.h"
#include "launcher/replacement_merger.h"
#include "model/layout_backups.h"
#include "platform/texts.h"
#include "platform/worker_pool.h"

#include <QList>

#include <expected>
#include <functional>
#include <list>

namespace tessellar {

class LauncherHistory;
class LauncherMessages;

/// What a backup was made before, by its stored reason.
QString backupReasonText(const QString& reason);

/// Replaces a mode's arrangement: with a saved one, a backup, or the default. Backs up the current one
/// first, as a step of history. Main thread only.
class LayoutArchive {
public:
    /// For the question before a reset, and the alert about an unreadable arrangement.
    static QString resetTitle() { return Texts::tr("Reset the Launchpad layout?"); }

    using Outcome = std::expected<void, LauncherError>;
    using Mode = LauncherWindowMode;

    LayoutArchive(Machine& machine, LayoutStore& store, LiveLayouts& layouts,
                  InstalledApplications& applications, PlaceMemory& places, LauncherHistory& history,
                  LauncherMessages& messages);

    /// Restores a saved arrangement with its grid settings; `done` receives its name.
    using Restored = std::expected<QString, LauncherError>;
    void restore(Mode mode, const QUuid& id, std::function<void(Restored)> done);
    /// Rearranges all installed applications. Hidden applications and names are kept. `arranged`
    /// captures the current state and may be called again if that changes; what it returns is called
    /// on a worker.
    using Arranged = std::function<std::function<Pages()>()>;
    void arrange(Mode mode, Arranged arranged, const QString& name, std::function<void(Outcome)> done);
    /// Resets to the default alphabetical arrangement, as any step of history: shown at once, and
    /// rolled back if it cannot be saved. If the working file is unreadable, it is moved to the backups
    /// and the step cannot be undone.
    Outcome reset(Mode mode);

    // Backups made before replacements, in both modes. Listing them deletes those beyond the limits.
    using Listed = std::function<void(const QList<BackupSummary>&)>;
    void listBackups(Listed done);
    /// Restores a backup into `mode`, whichever mode it was made in.
    void restoreBackup(Mode mode, const QString& name, std::function<void(Outcome)> done);

private:
    /// Reads on a worker; `done` receives the result.
    template <typename Work, typename Done>
    void read(Work work, Done done);
    /// A replacement, apart from its tiles.
    struct Replacement {
        QString name;
        QString reason;
        QString title; ///< of an alert about its failure
        std::optional<ArrangementLayout> settings = {};
        bool isLossy = false;
    };
    void replace(Mode mode, std::function<ReplacementMerger::Wanted()> wanted,
                 const Replacement& replacement, std::function<void(Outcome)> done);
    void apply(Mode mode, const MergeResult& merged, const Replacement& replacement,
               std::function<void(Outcome)> done);

    Machine& _machine;
    LayoutStore& _store;
    LiveLayouts& _layouts;
    InstalledApplications& _applications;
    PlaceMemory& _places;
    LauncherHistory& _history;
    LauncherMessages& _messages;
    ReplacementMerger _merger;
    std::list<Task> _reading;
};

} // namespace tessellar
