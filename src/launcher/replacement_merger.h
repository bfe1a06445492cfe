#pragma once

#include "launcher/layout_merger.h"

#include <functional>
#include <list>

namespace tessellar {

/// Merges a replacement for a mode's arrangement with the installed applications. Unavailable
/// applications are kept.
///
/// Merges run on a worker. One whose layout, places or scan changed meanwhile is done again; after
/// repeated changes, on the main thread. Main thread only.
class ReplacementMerger {
public:
    using Mode = LauncherWindowMode;
    /// A replacement.
    struct Wanted {
        /// Called on a worker, or on the main thread after repeated changes.
        std::function<LayoutDocument()> document;
        /// Used in place of the scan's.
        std::optional<QList<AppEntry>> apps = {};
    };

    ReplacementMerger(const Machine& machine, const LiveLayouts& layouts,
                      const InstalledApplications& applications, const PlaceMemory& places);

    /// `wanted` describes the replacement by the current state; it is called before each attempt.
    /// `done` is called with a merge of the state at that moment.
    void merge(Mode mode, std::function<Wanted()> wanted, std::function<void(const MergeResult&)> done);

private:
    /// What a merge depends on.
    struct State;

    State state(Mode mode) const;
    void attempt(Mode mode, std::function<Wanted()> wanted,
                 std::function<void(const MergeResult&)> done, int attemptsLeft);

    const Machine& _machine;
    const LiveLayouts& _layouts;
    const InstalledApplications& _applications;
    const PlaceMemory& _places;
    std::list<Task> _tasks;
};

} // namespace tessellar
