#pragma once

#include "editing/search_index.h"
#include "model/launcher_window_mode.h"
#include "platform/signal.h"
#include "platform/worker_pool.h"

#include <array>
#include <functional>
#include <vector>

namespace tessellar {

class InstalledApplications;
class LiveLayouts;
class SmartFolderLibrary;
struct Machine;

/// Applications by what the user types, in one display mode. An index is made on a worker, at most one
/// at a time for each mode: what changes meanwhile leads to another. Until it is ready the one before
/// answers. Main thread only.
class LauncherSearch {
public:
    using Mode = LauncherWindowMode;

    LauncherSearch(Machine& machine, const LiveLayouts& layouts,
                   const InstalledApplications& applications, const SmartFolderLibrary& smartFolders);

    /// Best first, by the latest index that is ready.
    QList<SearchIndex::Hit> search(Mode mode, const QString& query) const;
    /// Calls `done` once the index of the mode is that of now; at once where it is.
    void whenReady(Mode mode, std::function<void()> done);

    /// What can be found in a mode has changed: its tiles, the scan, what smart folders show.
    void invalidate(Mode mode);
    void invalidate();

    Signal<LauncherWindowMode> ready; ///< an index was made anew

private:
    struct Index {
        SearchIndex index;
        bool isCurrent = false;
        bool isMaking = false;   ///< another one, on a worker
        bool isOutdated = false; ///< that other one already: something has changed since it was begun
        Task task;
        std::vector<std::function<void()>> waiting;
    };

    Index& of(Mode mode) { return _indices[std::size_t(mode)]; }
    void make(Mode mode);

    Machine& _machine;
    const LiveLayouts& _layouts;
    const InstalledApplications& _applications;
    const SmartFolderLibrary& _smartFolders;
    std::array<Index, 2> _indices;
};

} // namespace tessellar
