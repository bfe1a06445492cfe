#pragma once

#include "launcher/launcher_error.h"
#include "model/layout_backups.h"
#include "platform/texts.h"
#include "platform/worker_pool.h"

#include <QList>

#include <expected>
#include <functional>
#include <list>

namespace tessellar {

class InstalledApplications;
class LauncherHistory;
class LauncherMessages;
class LiveLayouts;
class PlaceMemory;
struct Machine;

/// What can take the place of a mode's arrangement: those that the user saved, and the default one.
/// Each replacement keeps a copy of the present one first and is a step of history. Main thread only.
class LayoutArchive {
public:
    /// Of the question before a reset, and of the alert about an arrangement that cannot be read.
    static QString resetTitle() { return Texts::tr("Reset the Launchpad layout?"); }

    using Outcome = std::expected<void, LauncherError>;
    using Mode = LauncherWindowMode;

    LayoutArchive(Machine& machine, LayoutStore& store, LiveLayouts& layouts,
                  InstalledApplications& applications, PlaceMemory& places, LauncherHistory& history,
                  LauncherMessages& messages);

    /// A saved arrangement, with the grid's settings that it was saved with; `done` is called with its
    /// name.
    using Restored = std::expected<QString, LauncherError>;
    void restore(Mode mode, const QUuid& id, std::function<void(Restored)> done);
    /// All that is installed in other places. Hidden applications stay hidden, and names stay.
    Outcome arrange(Mode mode, const Pages& pages, const QString& name);
    /// The default alphabetical arrangement. Where the working file could not be read this is the way
    /// out: the file is moved to the backups, and the step cannot be undone.
    Outcome reset(Mode mode);

    // The copies that were kept before a replacement, of both modes. Those that are too many or too old
    // are removed when they are listed.
    using Listed = std::function<void(const QList<BackupSummary>&)>;
    void listBackups(Listed done);
    /// In the mode that is named, whichever the copy was of.
    void restoreBackup(Mode mode, const QString& name, std::function<void(Outcome)> done);

private:
    /// Reads on a worker; `done` is called with what was read.
    template <typename Work, typename Done>
    void read(Work work, Done done);
    Outcome replace(Mode mode, const LayoutDocument& document,
                    const std::optional<ArrangementLayout>& settings, const QString& name,
                    const QString& reason, const QString& title, bool isLossy);

    Machine& _machine;
    LayoutStore& _store;
    LiveLayouts& _layouts;
    InstalledApplications& _applications;
    PlaceMemory& _places;
    LauncherHistory& _history;
    LauncherMessages& _messages;
    std::list<Task> _reading;
};

} // namespace tessellar
