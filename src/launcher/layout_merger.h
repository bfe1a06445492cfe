#pragma once

#include "launcher/installed_applications.h"
#include "launcher/live_layout.h"
#include "launcher/place_memory.h"
#include "model/layout_store.h"
#include "model/reconciliation.h"

#include <span>

namespace tessellar {

class LauncherMessages;

/// The input for merging a mode's layout with the installed applications. A plain value; `merge` may
/// run on any thread.
struct MergeInput {
    LayoutDocument document;
    MergeContext context;
    Locale locale;

    MergeResult merge() const {
        return mergeLayout(document.pages, document.hiddenKeys, context, locale);
    }
};

/// For a document of the layout's mode, with the current state of everything else.
MergeInput mergeInput(const LayoutDocument& document, const LiveLayout& layout,
                      const std::shared_ptr<const InstalledScan>& installed, const PlaceMemory& places,
                      const Machine& machine);

/// The installed applications with the identifiers of their tiles, so that selections stay valid and
/// undo finds the tiles; optionally with the user's names.
QList<AppEntry> installedAsArranged(const LiveLayout& layout, const InstalledApplications& installed,
                                    bool withNames);

/// Merges the layouts of both modes with each scan, before anyone else sees it:
///
/// 1. After a scan, both merges are computed on a worker from the current layouts; the first time, from
///    the loaded or default ones.
/// 2. If a layout was edited meanwhile, they are computed again; after repeated edits, on the main
///    thread.
/// 3. On `InstalledApplications::scanned` the results are shown, remembered and saved.
///
/// Files that were unreadable are retried before each merge, requesting scans until they can be read. A
/// layout that is read then is merged with the latest scan and shown at once.
///
/// Main thread only.
class LayoutMerger {
public:
    using Loaded = std::array<LayoutStore::LoadResult, 2>;

    LayoutMerger(const Machine& machine, LayoutStore& store, LiveLayouts& layouts,
                 InstalledApplications& applications, PlaceMemory& places, LauncherMessages& messages);

    /// Reads the remembered places, and the working layouts on a worker. No scan is merged before
    /// `done`, which is called on the main thread.
    void load(const std::function<void()>& done);
    /// The loaded layouts; empty after the first merge.
    Loaded& loaded() { return _loaded; }
    /// True while the first merge is being saved.
    bool isSaving() const { return _saves > 0; }

private:
    static constexpr std::chrono::seconds firstPatience{5};

    using Installed = std::shared_ptr<const InstalledScan>;
    struct Start {
        MergeInput input;
        bool isDefault = false; ///< there is no arrangement yet
    };
    using Starts = std::array<Start, 2>;
    struct ModeResult {
        MergeResult result;
        bool differs = false; ///< from its input
    };
    using Results = std::array<ModeResult, 2>;

    Start start(LauncherWindowMode mode, const Installed& installed) const;
    Starts starts(const Installed& installed) const;
    static ModeResult merge(const Start& start);
    static Results merge(const Starts& starts);
    void loaded(LauncherWindowMode mode, LayoutStore::LoadResult result,
                const std::function<void()>& done);
    void loadAgain();
    void requestRescan();
    void prepare(const Installed& installed, std::function<void()> done, int attemptsLeft);
    void apply(std::span<const LauncherWindowMode> modes);
    static void show(LiveLayout& layout, const ModeResult& merged, bool isFirst);
    void save(LauncherWindowMode mode, const ModeResult& merged, bool isFirst);
    void reportLoad(LauncherWindowMode mode);

    const Machine& _machine;
    LayoutStore& _store;
    LiveLayouts& _layouts;
    InstalledApplications& _applications;
    PlaceMemory& _places;
    LauncherMessages& _messages;
    Loaded _loaded;
    Results _results; ///< to be shown
    std::array<Task, 2> _loading;
    std::size_t _loadsLeft = 0;
    std::function<void()> _whenLoaded;              ///< a scan waiting for the load
    std::array<bool, 2> _isNew{true, true};         ///< not merged yet
    std::array<bool, 2> _isTransient{};             ///< the load failed, perhaps temporarily
    std::chrono::seconds _patience = firstPatience; ///< until the next retry
    Timer _again;
    bool _hasMerged = false;
    int _saves = 0;
    Task _task;
    Subscription _scanned;
};

} // namespace tessellar
