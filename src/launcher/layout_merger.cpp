#include "launcher/layout_merger.h"

#include "launcher/launcher_error.h"
#include "launcher/launcher_messages.h"
#include "launcher/layout_archive.h"
#include "platform/texts.h"

#include <algorithm>

namespace tessellar {

MergeInput mergeInput(const LayoutDocument& document, const LiveLayout& layout,
                      const std::shared_ptr<const InstalledScan>& installed, const PlaceMemory& places,
                      const Machine& machine) {
    return {document,
            {.scannedApps = installed->scan.apps,
             .isGone = [installed, canRemember = places.canRemember(layout.mode())](
                           const QString& path) { return canRemember && installed->isGone(path); },
             .pageCapacity = layout.capacities().page,
             .places = places[layout.mode()],
             .now = machine.clock.now()},
            machine.locale};
}

QList<AppEntry> installedAsArranged(const LiveLayout& layout, const InstalledApplications& installed,
                                    bool withNames) {
    QList<AppEntry> apps = installed.all();
    for (AppEntry& app : apps) {
        const AppEntry* tile = layout.tileOf(appKey(app));
        if (!tile)
            continue;
        app.id = tile->id;
        if (withNames && tile->name != tile->originalName)
            app.name = tile->name;
    }
    return apps;
}

LayoutMerger::LayoutMerger(const Machine& machine, LayoutStore& store, LiveLayouts& layouts,
                           InstalledApplications& applications, PlaceMemory& places,
                           LauncherMessages& messages)
    : _machine(machine)
    , _store(store)
    , _layouts(layouts)
    , _applications(applications)
    , _places(places)
    , _messages(messages)
    , _scanned(applications.scanned.connect([this] {
        _hasMerged = true;
        apply(LiveLayouts::modes);
        requestRescan();
    })) {
    store.setPrecondition([&places](LauncherWindowMode mode) { return places.written(mode); });
    applications.setPreparation([this](const Installed& installed, std::function<void()> done) {
        loadAgain();
        prepare(installed, std::move(done), 3);
    });
}

void LayoutMerger::load(const std::function<void()>& done) {
    _loadsLeft = _loading.size();
    for (const LauncherWindowMode mode : LiveLayouts::modes)
        _loading[std::size_t(mode)] =
            _store.loadInBackground(mode, [this, mode, done](LayoutStore::LoadResult result) {
                loaded(mode, std::move(result), done);
            });
    _places.load();
    if (!std::ranges::all_of(LiveLayouts::modes,
                             [this](LauncherWindowMode mode) { return _places.canRemember(mode); }))
        _messages.alert({QStringLiteral("placesUnreadable"),
                         Texts::tr("Until they can be, applications that are gone keep their tiles."),
                         Texts::tr("The remembered places of applications could not be read")});
}

void LayoutMerger::loaded(LauncherWindowMode mode, LayoutStore::LoadResult result,
                          const std::function<void()>& done) {
    const std::size_t i = std::size_t(mode);
    const auto* failed = std::get_if<LayoutStore::Failed>(&result);
    _isTransient[i] = failed && failed->isTransient;
    // The first time, a failure must be shown, too.
    if (!failed || !_hasMerged) {
        _loaded[i] = std::move(result);
        _isNew[i] = true;
    }
    if (!failed && _hasMerged) {
        // The mode can be edited now, and the scan that waits for this load may be discarded.
        _results[i] = merge(start(mode, _applications.latest()));
        apply(std::array{mode});
    }
    if (--_loadsLeft > 0)
        return;
    done();
    if (const auto merge = std::exchange(_whenLoaded, {}))
        merge();
}

void LayoutMerger::loadAgain() {
    if (!_hasMerged)
        return;
    _places.load();
    for (const LauncherWindowMode mode : LiveLayouts::modes) {
        bool& isTransient = _isTransient[std::size_t(mode)];
        isTransient = isTransient && _store.isWriteBlocked(mode); // it may have been reset since
        if (!isTransient)
            continue;
        ++_loadsLeft;
        _loading[std::size_t(mode)] =
            _store.loadInBackground(mode, [this, mode](LayoutStore::LoadResult result) {
                loaded(mode, std::move(result), [] {});
            });
    }
}

void LayoutMerger::requestRescan() {
    constexpr std::chrono::seconds longest{300};
    if (std::ranges::all_of(LiveLayouts::modes, [this](LauncherWindowMode mode) {
            return !_isTransient[std::size_t(mode)] && _places.canRemember(mode);
        })) {
        _patience = firstPatience;
        return _again.cancel();
    }
    _again = _machine.scheduler.after(_patience, [this] { _applications.rescan(); });
    _patience = std::min(2 * _patience, longest);
}

// ---- merging

LayoutMerger::Start LayoutMerger::start(LauncherWindowMode mode, const Installed& installed) const {
    const LiveLayout& layout = _layouts[mode];
    const auto* loaded = std::get_if<LayoutDocument>(&_loaded[std::size_t(mode)]);
    const bool isNew = _isNew[std::size_t(mode)];
    const LayoutDocument& document = isNew && loaded ? *loaded : layout.document();
    return {mergeInput(document, layout, installed, _places, _machine), isNew && !loaded};
}

LayoutMerger::Starts LayoutMerger::starts(const Installed& installed) const {
    return {start(LiveLayouts::modes[0], installed), start(LiveLayouts::modes[1], installed)};
}

LayoutMerger::ModeResult LayoutMerger::merge(const Start& start) {
    MergeInput input = start.input;
    if (start.isDefault)
        input.document.pages =
            defaultLayout(input.context.scannedApps, input.context.pageCapacity, input.locale);
    ModeResult merged{.result = input.merge()};
    merged.differs = merged.result.pages != start.input.document.pages ||
                     merged.result.hiddenKeys != start.input.document.hiddenKeys;
    return merged;
}

LayoutMerger::Results LayoutMerger::merge(const Starts& starts) {
    return {merge(starts[0]), merge(starts[1])};
}

/// True if nothing that the merge depends on has changed, apart from the scan, which is the same.
static bool isCurrent(const MergeInput& now, const MergeInput& then) {
    return now.document == then.document && now.context.pageCapacity == then.context.pageCapacity &&
           now.context.places == then.context.places &&
           now.locale.identifier() == then.locale.identifier();
}

void LayoutMerger::prepare(const Installed& installed, std::function<void()> done, int attemptsLeft) {
    if (_loadsLeft > 0) {
        _whenLoaded = [=, this] { prepare(installed, done, attemptsLeft); };
        return;
    }
    Starts starts = this->starts(installed);
    if (attemptsLeft == 0) {
        _results = merge(starts);
        return done();
    }
    _task = _machine.workers.run(
        Lane::computing, [starts](std::stop_token) { return merge(starts); },
        [this, installed, starts, attemptsLeft, done = std::move(done)](Results merged) {
            const Task ended = std::move(_task); // kept until the end of this call
            const Starts now = this->starts(installed);
            if (!isCurrent(now[0].input, starts[0].input) || !isCurrent(now[1].input, starts[1].input))
                return prepare(installed, done, attemptsLeft - 1);
            _results = std::move(merged);
            done();
        });
}

// ---- showing and saving

void LayoutMerger::apply(std::span<const LauncherWindowMode> modes) {
    QHash<QString, QString> changedKeys;
    for (const LauncherWindowMode mode : modes) {
        const ModeResult& merged = _results[std::size_t(mode)];
        changedKeys.insert(merged.result.changedKeys);
        show(_layouts[mode], merged, _isNew[std::size_t(mode)]);
        if (_isNew[std::size_t(mode)])
            reportLoad(mode);
    }
    // Before the layouts are saved: afterwards nobody could tell the former keys.
    if (!changedKeys.isEmpty())
        _applications.keysChanged.notify(changedKeys);
    for (const LauncherWindowMode mode : modes)
        save(mode, std::exchange(_results[std::size_t(mode)], {}),
             std::exchange(_isNew[std::size_t(mode)], false));
}

void LayoutMerger::show(LiveLayout& layout, const ModeResult& merged, bool isFirst) {
    const LayoutDocument document{.pages = merged.result.pages, .hiddenKeys = merged.result.hiddenKeys};
    if (isFirst)
        layout.setArrangement(document);
    else if (merged.differs)
        layout.setDocument(document);
    layout.setUnavailable(merged.result.unavailableAppKeys);
}

void LayoutMerger::save(LauncherWindowMode mode, const ModeResult& merged, bool isFirst) {
    if (_store.isWriteBlocked(mode))
        return;
    // Places first: the layout is saved without their tiles.
    _places.set(mode, merged.result.places);
    const LayoutDocument& document = _layouts[mode].document();
    if (isFirst) {
        ++_saves;
        _store.saveInBackground(mode, document, [this](const BackgroundFile::Result& saved) {
            --_saves;
            if (!saved)
                _messages.alert(launcherError(saved.error(), couldNotSaveLayout()));
        });
    } else if (merged.differs) {
        _store.scheduleSave(mode, document);
    }
}

void LayoutMerger::reportLoad(LauncherWindowMode mode) {
    const auto loaded = std::exchange(_loaded[std::size_t(mode)], LayoutStore::Missing());
    if (const auto& copy = _store.lossyCopy(mode))
        _messages.alert({QStringLiteral("lossyLayout"),
                         Texts::tr("The contents of a folder could not be read, and its "
                                   "applications come at the end. The layout as it was is kept "
                                   "as “%1”.")
                             .arg(*copy),
                         Texts::tr("Part of the layout could not be read")});
    if (const auto* failed = std::get_if<LayoutStore::Failed>(&loaded))
        _messages.alert(offering(LauncherError::Remedy::resetLayout,
                                 launcherError(failed->error, LayoutArchive::resetTitle())));
}

} // namespace tessellar
