#pragma once

#include "launcher/launcher_error.h"
#include "launcher/live_layout.h"
#include "model/reconciliation.h"
#include "model/stored_document.h"

namespace tessellar {

/// The remembered places of dropped applications, in one file per mode:
///
///     remembered-places.json, remembered-places-windowed.json
///
/// Places are written before the layout that lacks their tiles, so that a tile is never lost without
/// its place. While a file is unreadable, nothing may be dropped in its mode. Main thread only.
class PlaceMemory {
public:
    explicit PlaceMemory(const Machine& machine);

    /// Reads the files; called again, only those that were unreadable.
    void load();
    const RememberedPlaces& operator[](LauncherWindowMode mode) const { return kept(mode).value(); }
    void set(LauncherWindowMode mode, const RememberedPlaces& places) { kept(mode).set(places); }

    /// False while the mode's file is unreadable.
    bool canRemember(LauncherWindowMode mode) const { return !kept(mode).isBlocked(); }
    /// To be completed before saving the mode's layout, see `LayoutStore::setPrecondition`.
    std::function<BackgroundFile::Result()> written(LauncherWindowMode mode) {
        return kept(mode).written();
    }

    /// Call before the user's removal of the application at `path` deletes its tiles.
    void rememberRemoved(const LiveLayouts& layouts, const QString& path);
    /// Call when the application is put back, so that its place is used once it is found; or, with
    /// false, to revoke that.
    void putBack(const QString& path, bool isBack = true);
    void whenWritten(LauncherWindowMode mode, BackgroundFile::Done done) {
        kept(mode).whenWritten(std::move(done));
    }
    /// Forgets the places of one application, by key or path, or of all. `done` receives their number
    /// once that is saved; if saving fails, they are restored. Refused while the file is unreadable.
    using Forgotten = std::function<void(std::expected<qsizetype, LauncherError>)>;
    void forget(LauncherWindowMode mode, const std::optional<QString>& application, Forgotten done);

private:
    using Kept = StoredDocument<RememberedPlaces>;

    Kept& kept(LauncherWindowMode mode) { return _kept[std::size_t(mode)]; }
    const Kept& kept(LauncherWindowMode mode) const { return _kept[std::size_t(mode)]; }

    const Machine& _machine;
    std::array<Kept, 2> _kept;
};

} // namespace tessellar
