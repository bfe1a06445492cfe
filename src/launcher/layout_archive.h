#pragma once

#include "launcher/launcher_error.h"
#include "model/layout_document.h"

#include <QList>

#include <expected>

namespace tessellar {

class InstalledApplications;
class LauncherHistory;
class LauncherMessages;
class LiveLayouts;
struct Machine;

/// What can take the place of a mode's arrangement: those that the user saved, and the default one.
/// Each replacement keeps a copy of the present one first and is a step of history. Main thread only.
class LayoutArchive {
public:
    using Outcome = std::expected<void, LauncherError>;
    using Mode = LauncherWindowMode;

    LayoutArchive(Machine& machine, LayoutStore& store, LiveLayouts& layouts,
                  InstalledApplications& applications, LauncherHistory& history,
                  LauncherMessages& messages);

    QList<ArrangementSummary> arrangements(Mode mode) const { return _store.arrangements(mode); }
    std::expected<ArrangementSummary, LauncherError> save(Mode mode, const QString& name);
    /// With the grid's settings that it was saved with.
    Outcome restore(Mode mode, const QUuid& id);
    Outcome remove(Mode mode, const QUuid& id);
    /// The default alphabetical arrangement. Where the working file could not be read this is the way
    /// out: the file is moved to the backups, and the step cannot be undone.
    Outcome reset(Mode mode);

private:
    Machine& _machine;
    LayoutStore& _store;
    LiveLayouts& _layouts;
    InstalledApplications& _applications;
    LauncherHistory& _history;
    LauncherMessages& _messages;
};

} // namespace tessellar
