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

/// Searches the applications of one display mode. Indices are built on a worker, one at a time per
/// mode; changes meanwhile trigger a rebuild. The previous index is used until the new one is ready.
/// Main thread only.
class LauncherSearch {
public:
    using Mode = LauncherWindowMode;

    LauncherSearch(Machine& machine, const LiveLayouts& layouts,
                   const InstalledApplications& applications, const SmartFolderLibrary& smartFolders);

    /// Best first, from the latest complete index.
    QList<SearchIndex::Hit> search(Mode mode, const QString& query) const;
    /// Calls `done` once the mode's index is up to date, possibly synchronously.
    void whenReady(Mode mode, std::function<void()> done);

    /// Call when the searchable contents have changed: tiles, scan, smart folders.
    void invalidate(Mode mode);
    void invalidate();

    Signal<LauncherWindowMode> ready; ///< an index was rebuilt

private:
    struct Index {
        SearchIndex index;
        bool isCurrent = false;
        bool isMaking = false;   ///< being rebuilt on a worker
        bool isOutdated = false; ///< the rebuild is already outdated
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
