#pragma once

#include "launcher/launcher_error.h"
#include "launcher/live_layout.h"
#include "model/kept_document.h"
#include "model/reconciliation.h"

namespace tessellar {

/// The places of the applications that went, of each mode in a file of its own:
///
///     remembered-places.json, remembered-places-windowed.json
///
/// A place is on the disk before the layout without its tile is, so that neither can be lost without
/// the other. While a file cannot be read, nothing is to be dropped in its mode. Main thread only.
class PlaceMemory {
public:
    explicit PlaceMemory(const Machine& machine);

    /// Reads what is not known yet: called again, what could not be read.
    void load();
    const RememberedPlaces& operator[](LauncherWindowMode mode) const { return kept(mode).value(); }
    void set(LauncherWindowMode mode, const RememberedPlaces& places) { kept(mode).set(places); }

    /// False while the mode's file cannot be read.
    bool canRemember(LauncherWindowMode mode) const { return !kept(mode).isBlocked(); }
    /// What is to come before a save of the mode's layout, see `LayoutStore::setPrecondition`.
    std::function<BackgroundFile::Result()> written(LauncherWindowMode mode) {
        return kept(mode).written();
    }

    /// Before the user's removal of the application at `path` takes its tiles away.
    void rememberRemoved(const LiveLayouts& layouts, const QString& path);
    /// It is put back: it gets its place when it is seen. Or, after all, it is not.
    void putBack(const QString& path, bool isBack = true);
    void whenWritten(LauncherWindowMode mode, BackgroundFile::Done done) {
        kept(mode).whenWritten(std::move(done));
    }
    /// Forgets the places of an application, by its key or path, or all of the mode. `done` is told how
    /// many once that is on the disk; where it cannot be, they are remembered as before.
    using Forgotten = std::function<void(std::expected<qsizetype, LauncherError>)>;
    void forget(LauncherWindowMode mode, const std::optional<QString>& application, Forgotten done);

private:
    using Kept = KeptDocument<RememberedPlaces>;

    Kept& kept(LauncherWindowMode mode) { return _kept[std::size_t(mode)]; }
    const Kept& kept(LauncherWindowMode mode) const { return _kept[std::size_t(mode)]; }

    const Machine& _machine;
    std::array<Kept, 2> _kept;
};

} // namespace tessellar
