#pragma once

#include "launcher/launcher_error.h"
#include "model/launcher_window_mode.h"
#include "platform/opener.h"
#include "platform/signal.h"

#include <functional>
#include <list>

namespace tessellar {

class InstalledApplications;
class LauncherMessages;
class LaunchpadItem;
class LiveLayouts;
class SmartFolderLibrary;
struct Machine;

/// Opens tiles: launches applications, and shows the contents of folders. Main thread only.
class TileOpener {
public:
    using Outcome = std::expected<void, LauncherError>;

    TileOpener(Machine& machine, LiveLayouts& layouts, InstalledApplications& applications,
               SmartFolderLibrary& smartFolders, LauncherMessages& messages);

    /// Launches a tile's application, or opens its folder.
    void open(LauncherWindowMode mode, const LaunchpadItem& item);
    /// Launches an application. `done` is called once the system has accepted it, or with the error;
    /// without it, the user is told of errors.
    void launch(const QString& appKey, std::function<void(Outcome)> done = {});

    Signal<> launched; ///< the window should hide

private:
    Machine& _machine;
    LiveLayouts& _layouts;
    InstalledApplications& _applications;
    SmartFolderLibrary& _smartFolders;
    LauncherMessages& _messages;
    Opener _opener;
    std::list<Task> _launches;
};

} // namespace tessellar
