#pragma once

#include "launcher/installed_applications.h"
#include "launcher/live_layout.h"
#include "launcher/place_memory.h"
#include "model/layout_store.h"
#include "model/reconciliation.h"

namespace tessellar {

class LauncherMessages;

/// What a merge of a mode's layout with the installed applications starts from. A plain value: the
/// merge itself may run on any thread.
struct MergeInput {
    LayoutDocument document;
    MergeContext context;
    Locale locale;

    MergeResult merge() const {
        return mergeLayout(document.pages, document.hiddenKeys, context, locale);
    }
};

/// For a document of the layout's mode, with what is known now.
MergeInput mergeInput(const LayoutDocument& document, const LiveLayout& layout,
                      const std::shared_ptr<const InstalledScan>& installed, const PlaceMemory& places,
                      const Machine& machine);

/// The installed applications with the identifiers of their tiles, so that selections hold and undo
/// finds every tile again; and with the names that the user gave them, where those are wanted.
QList<AppEntry> installedAsArranged(const LiveLayout& layout, const InstalledApplications& installed,
                                    bool withNames);

/// Brings a document that is to take the place of the layout together with the installed applications,
/// which come with other names or identifiers where `apps` is given. What is out of sight now stays.
MergeResult mergeReplacement(const LayoutDocument& document, const LiveLayout& layout,
                             const InstalledApplications& installed, const PlaceMemory& places,
                             const Machine& machine, const std::optional<QList<AppEntry>>& apps = {});

/// Brings the layouts of both modes together with each scan, before anybody else looks at it:
///
/// 1. When a scan has ended, both merges are worked out on a worker, from the layouts as they are then.
///    The first time these are the ones that were loaded, or default ones where there is no file.
/// 2. Where one of them was edited meanwhile, they are worked out again; edits that do not stop are met
///    by working them out on the main thread.
/// 3. With `InstalledApplications::scanned` what came of it is shown, remembered and saved.
///
/// What could not be read is tried again before each merge, and a scan is asked for until it can be.
///
/// Main thread only.
class LayoutMerger {
public:
    using Loaded = std::array<LayoutStore::LoadResult, 2>;

    LayoutMerger(const Machine& machine, LayoutStore& store, LiveLayouts& layouts,
                 InstalledApplications& applications, PlaceMemory& places, LauncherMessages& messages);

    /// Reads the remembered places, and the working layouts on a worker. No scan is merged before
    /// `done`, which is called on the main thread.
    void load(std::function<void()> done);
    /// What was read; nothing is left of it after the first merge.
    Loaded& loaded() { return _loaded; }
    /// True while the first merge is on its way to the disk.
    bool isSaving() const { return _saves > 0; }

private:
    using Installed = std::shared_ptr<const InstalledScan>;
    struct Start {
        MergeInput input;
        bool isDefault = false; ///< there is no arrangement yet
    };
    using Starts = std::array<Start, 2>;
    struct Merged {
        MergeResult result;
        bool differs = false; ///< from what it was made of
    };
    using Results = std::array<Merged, 2>;

    Starts starts(const Installed& installed) const;
    static Results merge(const Starts& starts);
    void loaded(LauncherWindowMode mode, LayoutStore::LoadResult result,
                const std::function<void()>& done);
    void loadAgain();
    void askForAnother();
    void prepare(const Installed& installed, std::function<void()> done, int attemptsLeft);
    void apply();
    static void show(LiveLayout& layout, const Merged& merged, bool isFirst);
    void save(LauncherWindowMode mode, const Merged& merged, bool isFirst);
    void tellOfLoad(LauncherWindowMode mode);

    const Machine& _machine;
    LayoutStore& _store;
    LiveLayouts& _layouts;
    InstalledApplications& _applications;
    PlaceMemory& _places;
    LauncherMessages& _messages;
    Loaded _loaded;
    Results _merged; ///< ready to be shown
    std::array<Task, 2> _loading;
    std::size_t _loadsLeft = 0;
    std::function<void()> _whenLoaded;      ///< a scan that waits for that
    std::array<bool, 2> _isNew{true, true}; ///< loaded, and not merged yet
    std::array<bool, 2> _mayPass{};         ///< what kept it from being loaded
    std::chrono::seconds _patience{5};      ///< until the next try
    Timer _again;
    bool _hasMerged = false;
    int _saves = 0;
    Task _task;
    Subscription _scanned;
};

} // namespace tessellar
